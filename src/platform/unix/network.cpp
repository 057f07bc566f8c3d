#include "platform/network.h"

#include "platform/unix/systemini.h"

#include <QtNetwork/QNetworkConfigurationManager>

namespace Platform {

// Qt 5.15 deprecates this class, but Qt 5 has no other that asks the system.
QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

bool isNetworkOnline()
{
    const QVariant online = systemIniValue(QStringLiteral("System/Online"));
    return online.isValid() ? online.toBool() : QNetworkConfigurationManager().isOnline();
}

QT_WARNING_POP

} // namespace Platform
