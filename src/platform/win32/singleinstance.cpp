#include "platform/singleinstance.h"

#include <QtCore/QString>

#include <string>
#include <windows.h>

namespace Platform {

bool claimSingleInstance(const char *name)
{
    // The handle is never closed: the system drops the mutex with the process.
    const std::wstring wideName = QString::fromUtf8(name).toStdWString();
    const HANDLE mutex = CreateMutexW(nullptr, FALSE, wideName.c_str());
    if (GetLastError() != ERROR_ALREADY_EXISTS)
        return true;
    ReleaseMutex(mutex);
    return false;
}

} // namespace Platform
