# One target carries the compiler flags of everything that is ours.

set(CLIPWRIGHT_SANITIZE "" CACHE STRING "Sanitizers for -fsanitize=, empty for none")
option(CLIPWRIGHT_FUZZ "Build the fuzz targets with libFuzzer; needs clang" OFF)
option(CLIPWRIGHT_COVERAGE "Count the lines that run; for gcc" OFF)

add_library(clipwright_flags INTERFACE)

target_compile_options(clipwright_flags INTERFACE
  $<$<CXX_COMPILER_ID:GNU,Clang>:
    -Werror -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual
    -Wold-style-cast -Wcast-align -Wconversion -Wformat=2>
  $<$<CXX_COMPILER_ID:MSVC>:/WX /W4 /utf-8>)

target_compile_definitions(clipwright_flags INTERFACE
  QT_NO_CAST_FROM_ASCII
  QT_NO_CAST_TO_ASCII
  QT_NO_CAST_FROM_BYTEARRAY
  QT_NO_URL_CAST_FROM_STRING
  QT_NO_NARROWING_CONVERSIONS_IN_CONNECT
  QT_NO_KEYWORDS
  QT_NO_FOREACH
  QT_USE_QSTRINGBUILDER)

# What ships does not depend on the folders of its build. These options stay out of CMAKE_CXX_FLAGS,
# which the command that links the program again repeats.
if(MINGW AND CMAKE_CROSSCOMPILING)
  foreach(mapped IN ITEMS "${CLIPWRIGHT_SYSROOT}=sysroot" "${PROJECT_SOURCE_DIR}=.")
    add_compile_options("$<$<COMPILE_LANGUAGE:CXX>:-ffile-prefix-map=${mapped}>")
  endforeach()
endif()

# By its own script GNU's linker keeps the unwind data of each function and, because these point to
# them, all functions: nothing is left out. Without that they go, and their entries in the table of
# functions stay as empty ranges. What only unwind data of functions that stay point to is named
# instead: the personalities, the handler of the C runtime and the types in catch clauses.
if(MINGW AND CMAKE_CROSSCOMPILING)
  execute_process(COMMAND ${CMAKE_LINKER} --verbose
    OUTPUT_VARIABLE sections COMMAND_ERROR_IS_FATAL ANY)
  string(REGEX REPLACE "^.*\n=+\n(.*)\n=+\n.*$" "\\1" sections "${sections}")
  foreach(change IN ITEMS "KEEP(*(.pdata*))/*(.pdata*)" "KEEP(*(.xdata*))/*(.xdata*)"
      "*(SORT(.data$*))/KEEP(*(.data$.LDFCM*)) *(SORT(.data$*))")
    string(REGEX MATCH "^(.*)/(.*)$" change "${change}")
    string(FIND "${sections}" "${CMAKE_MATCH_1}" found)
    if(found EQUAL -1)
      message(FATAL_ERROR "The linker's script has no \"${CMAKE_MATCH_1}\"")
    endif()
    string(REPLACE "${CMAKE_MATCH_1}" "${CMAKE_MATCH_2}" sections "${sections}")
  endforeach()
  file(CONFIGURE OUTPUT ${PROJECT_BINARY_DIR}/sections.ld @ONLY CONTENT
    "EXTERN(__gxx_personality_seh0 __C_specific_handler _gnu_exception_handler)\n@sections@")
  target_link_options(clipwright_flags INTERFACE
    $<$<STREQUAL:$<TARGET_PROPERTY:TYPE>,EXECUTABLE>:LINKER:-T,${PROJECT_BINARY_DIR}/sections.ld>)
endif()

if(CLIPWRIGHT_SANITIZE)
  target_compile_options(clipwright_flags INTERFACE
    -fsanitize=${CLIPWRIGHT_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  target_link_options(clipwright_flags INTERFACE -fsanitize=${CLIPWRIGHT_SANITIZE})
endif()

if(CLIPWRIGHT_FUZZ)
  target_compile_options(clipwright_flags INTERFACE -fsanitize=fuzzer-no-link)
endif()

if(CLIPWRIGHT_COVERAGE)
  target_compile_options(clipwright_flags INTERFACE --coverage -fprofile-update=atomic)
  target_link_options(clipwright_flags INTERFACE --coverage)
endif()

# Gives what ships a build-id, by which its debug symbols are found.
function(clipwright_build_id target)
  if(MINGW)
    target_link_options(${target} PRIVATE -Wl,--build-id)
  endif()
endfunction()
