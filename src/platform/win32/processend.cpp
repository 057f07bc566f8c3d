#include "platform/processend.h"

#include <cstdlib>
#include <windows.h>

namespace Platform {

void endProcess(int exitCode)
{
    // std::_Exit() calls ExitProcess(), which ends all other threads, even one that holds a
    // library's lock, and then runs the libraries' detach code, which may wait for that lock.
    TerminateProcess(GetCurrentProcess(), static_cast<UINT>(exitCode));
    std::abort(); // not reached
}

} // namespace Platform
