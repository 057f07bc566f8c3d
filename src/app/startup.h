#pragma once

class QApplication;

/// What happens between the application object's birth and the process's end.
namespace Startup {

/// Work that comes before anything is shown.
void beginSession();

/// Shows the program and runs it to its end; returns the process's exit code.
int run(QApplication &application);

} // namespace Startup
