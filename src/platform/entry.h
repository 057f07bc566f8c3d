#pragma once

/// The program's main routine, which the system's entry (unix/main.cpp, win32/winmain.cpp) calls
/// and whose result is the exit code. It is part of the program, not of the platform library.
int programMain(int argc, char **argv);
