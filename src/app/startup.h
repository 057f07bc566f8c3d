#pragma once

class QApplication;

/// What happens from the creation of the application object to the end of the process.
namespace Startup {

/// Work that comes before anything is shown.
void beginSession();

/// Shows the program and runs it to its end; returns the process's exit code.
int run(QApplication &application);

} // namespace Startup
