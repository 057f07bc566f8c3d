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
