#include "platform/singleinstance.h"

#include <QtCore/QString>

#include <windows.h>

namespace Platform {

bool claimSingleInstance(const char *name)
{
    // The handle is never closed: the system drops the mutex with the process.
    const HANDLE mutex = CreateMutexW(
        nullptr, FALSE, reinterpret_cast<const wchar_t *>(QString::fromUtf8(name).utf16()));
    if (GetLastError() != ERROR_ALREADY_EXISTS)
        return true;
    ReleaseMutex(mutex);
    return false;
}

} // namespace Platform
