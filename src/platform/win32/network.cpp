#include "platform/network.h"

#include <QtNetwork/QNetworkConfigurationManager>

// clang-format off
#include <windows.h>
#include <wininet.h>
// clang-format on

namespace Platform {

// Qt 5.15 deprecates this class, but Qt 5 has no other that asks the system.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

bool isNetworkOnline()
{
    DWORD flags = 0;
    return InternetGetConnectedState(&flags, 0) || QNetworkConfigurationManager().isOnline();
}

QT_WARNING_POP

} // namespace Platform
