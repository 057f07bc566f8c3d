# 64-bit Windows from Linux, with the sysroot that packaging/windows/sysroot made.
set(CMAKE_SYSTEM_NAME Windows)
set(CMAKE_SYSTEM_PROCESSOR x86_64)

# The standard library's threads are those of the posix model; which model the plain names mean is
# up to the machine.
set(CMAKE_C_COMPILER x86_64-w64-mingw32-gcc-posix)
set(CMAKE_CXX_COMPILER x86_64-w64-mingw32-g++-posix)
set(CMAKE_RC_COMPILER x86_64-w64-mingw32-windres)

set(CLIPWRIGHT_SYSROOT "$ENV{CLIPWRIGHT_SYSROOT}" CACHE PATH "Static Qt and jsoncpp")
list(APPEND CMAKE_TRY_COMPILE_PLATFORM_VARIABLES CLIPWRIGHT_SYSROOT)
set(CMAKE_FIND_ROOT_PATH "${CLIPWRIGHT_SYSROOT}" /usr/x86_64-w64-mingw32)
set(CMAKE_FIND_ROOT_PATH_MODE_PROGRAM NEVER)
set(CMAKE_FIND_ROOT_PATH_MODE_LIBRARY ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_INCLUDE ONLY)
set(CMAKE_FIND_ROOT_PATH_MODE_PACKAGE ONLY)

# Compiles the translation catalogues, and runs on this machine.
file(GLOB Qt5LinguistTools_DIR /usr/lib/*/cmake/Qt5LinguistTools)

# What ships depends on no compiler's library, and not on the time of its build. Stacks and strings
# are protected as in the sysroot; functions that nothing calls are left out.
string(JOIN " " CMAKE_CXX_FLAGS_INIT -fstack-protector-strong -D_FORTIFY_SOURCE=2
  -ffunction-sections -fdata-sections)
set(CMAKE_EXE_LINKER_FLAGS_INIT "-static -Wl,--gc-sections -Wl,--no-insert-timestamp")
set(CMAKE_SHARED_LINKER_FLAGS_INIT "-static -Wl,--gc-sections -Wl,--no-insert-timestamp")

set(CMAKE_CROSSCOMPILING_EMULATOR ${CMAKE_CURRENT_LIST_DIR}/run-in-wine)
