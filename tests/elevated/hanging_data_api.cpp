// In place of the maker's analytics library: hangs when it is detached, as one does whose thread
// was ended while it held a lock; and, where the environment variable HANG_IN_STOP is set, in
// data_stop(). Where CRASH_IN_INIT is set, data_init() crashes.

#include "data_api.h"

#include <cstdlib>
#include <windows.h>

namespace {

void hang()
{
    for (;;)
        Sleep(1000);
}

[[gnu::noinline]] void crashDeliberately(volatile int *address)
{
    *address = 1;
}

} // namespace

int data_init(const char * /*folder*/, const char * /*company*/)
{
    if (std::getenv("CRASH_IN_INIT"))
        crashDeliberately(nullptr);
    return 0;
}

int data_base_info(const char * /*property*/, int /*productId*/, const char * /*productVersion*/,
                   int /*timeZoneOffset*/, const char * /*localAddress*/,
                   const char * /*installLanguage*/, const char * /*platform*/,
                   const char * /*osVersion*/, int /*bitness*/, const char * /*systemLanguage*/,
                   int /*installTime*/, const char * /*reserved*/, const char * /*uid*/)
{
    return 0;
}

int data_event(const char * /*category*/, const char * /*action*/, const char * /*properties*/,
               int /*reserved*/)
{
    return 0;
}

int data_stop(int /*milliseconds*/)
{
    if (std::getenv("HANG_IN_STOP"))
        hang();
    return 0;
}

BOOL WINAPI DllMain(HINSTANCE /*library*/, DWORD reason, LPVOID /*reserved*/)
{
    if (reason == DLL_PROCESS_DETACH)
        hang();
    return TRUE;
}
