#include "platform/sessionend.h"

#include <QtGui/QWindow>

#include <windows.h>

namespace Platform {

void setSessionEndReason(QWindow *window, const QString &reason)
{
    if (!window)
        return;
    const auto handle = reinterpret_cast<HWND>(window->winId());
    if (reason.isEmpty())
        ShutdownBlockReasonDestroy(handle);
    else
        ShutdownBlockReasonCreate(handle, reinterpret_cast<LPCWSTR>(reason.utf16()));
}

} // namespace Platform
