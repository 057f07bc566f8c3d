# clipwright_test(<name> SOURCES <file>... [LINKS <lib>...] [LABELS <label>...] [TIMEOUT <s>]
#                 [VARIANTS <suffix>:<variable>=<value>[|<variable>=<value>]...]
#                 [NOT_ON_WINDOWS <reason> NOT_ON_WINDOWS_IF <regex>])
#
# One Qt Test executable, run offscreen; once, or once for each variant with its environment. A
# warning that the test did not announce with QTest::ignoreMessage() fails it. Variants whose names
# match the expression are skipped on Windows.
if(CMAKE_HOST_WIN32)
  find_package(Python3 REQUIRED COMPONENTS Interpreter)
else()
  set(Python3_EXECUTABLE /usr/bin/python3) # the distribution's: its bindings are packaged for no other
endif()

# What the preset tsan builds: the tests with the label "threads".
add_custom_target(thread-tests)

set(CLIPWRIGHT_TEST_ENVIRONMENT
  QT_QPA_PLATFORM=offscreen
  QT_LOGGING_RULES=qt.qpa.*=false
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
  "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp:halt_on_error=1"
  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1)

# A TIMEOUT is for a native build; emulators, sanitizers and counters take their time.
function(clipwright_timeout result seconds)
  if(CMAKE_CROSSCOMPILING OR CLIPWRIGHT_SANITIZE OR CLIPWRIGHT_COVERAGE)
    math(EXPR seconds "${seconds} * 4")
  endif()
  set(${result} ${seconds} PARENT_SCOPE)
endfunction()

# A static Qt has only the platforms that are linked in.
function(clipwright_link_offscreen_platform target)
  if(TARGET Qt5::QOffscreenIntegrationPlugin)
    set_property(TARGET ${target} APPEND PROPERTY QT_PLUGINS Qt5::QOffscreenIntegrationPlugin)
  endif()
endfunction()

# A test that cannot run on this side is listed all the same, and skipped with its reason.
function(clipwright_skipped_test name reason)
  add_test(NAME ${name} COMMAND ${CMAKE_COMMAND} -E echo "SKIPPED: ${reason}")
  set_tests_properties(${name} PROPERTIES SKIP_REGULAR_EXPRESSION "^SKIPPED: ")
endfunction()

function(clipwright_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "" "TIMEOUT;NOT_ON_WINDOWS;NOT_ON_WINDOWS_IF"
    "SOURCES;LINKS;LABELS;VARIANTS")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  clipwright_timeout(arg_TIMEOUT ${arg_TIMEOUT})
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} test_support Qt5::Test clipwright_flags)
  # Compiles in half the time and runs as fast: what is tested is built as it ships.
  target_compile_options(${name} PRIVATE
    $<$<AND:$<CXX_COMPILER_ID:GNU,Clang>,$<NOT:$<CONFIG:Debug>>>:-O0 -U_FORTIFY_SOURCE>)
  clipwright_link_offscreen_platform(${name})
  if("threads" IN_LIST arg_LABELS)
    add_dependencies(thread-tests ${name})
  endif()
  if(NOT arg_VARIANTS)
    set(arg_VARIANTS ":")
  endif()
  foreach(variant IN LISTS arg_VARIANTS)
    string(REGEX MATCH "^([^:]*):(.*)$" unused "${variant}")
    set(test ${name})
    if(CMAKE_MATCH_1)
      set(test ${name}_${CMAKE_MATCH_1})
    endif()
    string(REPLACE "|" ";" environment "${CMAKE_MATCH_2}")
    if(arg_NOT_ON_WINDOWS AND WIN32 AND test MATCHES "${arg_NOT_ON_WINDOWS_IF}")
      clipwright_skipped_test(${test} "${arg_NOT_ON_WINDOWS}")
      continue()
    endif()
    add_test(NAME ${test} COMMAND ${name})
    set_tests_properties(${test} PROPERTIES
      ENVIRONMENT "${CLIPWRIGHT_TEST_ENVIRONMENT};${environment}"
      FAIL_REGULAR_EXPRESSION "QWARN;QCRITICAL;QFATAL"
      LABELS "${arg_LABELS}"
      TIMEOUT ${arg_TIMEOUT})
  endforeach()
endfunction()
