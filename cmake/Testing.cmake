# clipwright_test(<name> SOURCES <file>... [LINKS <lib>...] [LABELS <label>...] [TIMEOUT <s>]
#                 [SERIAL])
#
# One Qt Test executable, run offscreen. A warning that the test did not announce with
# QTest::ignoreMessage() fails it.
set(CLIPWRIGHT_TEST_ENVIRONMENT
  QT_QPA_PLATFORM=offscreen
  QT_LOGGING_RULES=qt.qpa.*=false
  "LSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/lsan.supp:print_suppressions=0"
  "TSAN_OPTIONS=suppressions=${CMAKE_SOURCE_DIR}/tests/tsan.supp:halt_on_error=1"
  UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1)

function(clipwright_test name)
  cmake_parse_arguments(PARSE_ARGV 1 arg "SERIAL" "TIMEOUT" "SOURCES;LINKS;LABELS")
  if(NOT arg_TIMEOUT)
    set(arg_TIMEOUT 60)
  endif()
  add_executable(${name} ${arg_SOURCES})
  target_link_libraries(${name} PRIVATE ${arg_LINKS} test_support Qt5::Test clipwright_flags)
  add_test(NAME ${name} COMMAND ${name})
  set_tests_properties(${name} PROPERTIES
    ENVIRONMENT "${CLIPWRIGHT_TEST_ENVIRONMENT}"
    FAIL_REGULAR_EXPRESSION "QWARN;QCRITICAL;QFATAL"
    LABELS "${arg_LABELS}"
    RUN_SERIAL "${arg_SERIAL}"
    TIMEOUT ${arg_TIMEOUT})
endfunction()
