#include "platform/machineinfo.h"

#include <QtCore/QLocale>
#include <QtCore/QStringList>

#include <memory>
#include <netdb.h>
#include <netinet/in.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace Platform {

QString computerName()
{
    char name[256] = {};
    if (gethostname(name, sizeof name - 1) != 0)
        return {};
    return QString::fromLocal8Bit(name);
}

QString localIPv4(const QString &computerName)
{
    addrinfo hints = {};
    hints.ai_family = AF_INET;
    hints.ai_socktype = SOCK_STREAM;
    addrinfo *found = nullptr;
    if (getaddrinfo(computerName.toLocal8Bit().constData(), nullptr, &hints, &found) != 0)
        return {};
    const std::unique_ptr<addrinfo, decltype(&freeaddrinfo)> guard(found, &freeaddrinfo);

    // The resolver describes addresses of every family by a general type.
    const void *address = found->ai_addr;
    const quint32 bytes = ntohl(static_cast<const sockaddr_in *>(address)->sin_addr.s_addr);
    return QStringLiteral("%1.%2.%3.%4")
        .arg(bytes >> 24 & 0xFFU)
        .arg(bytes >> 16 & 0xFFU)
        .arg(bytes >> 8 & 0xFFU)
        .arg(bytes & 0xFFU);
}

QString osVersion()
{
    utsname system = {};
    if (uname(&system) != 0)
        return {};
    // "6.1.0-31-amd64": major and minor lead.
    const QStringList numbers = QString::fromLocal8Bit(system.release).split(QLatin1Char('.'));
    return numbers.size() < 2 ? numbers.first() : numbers.at(0) + QLatin1Char('.') + numbers.at(1);
}

QString systemLanguageAbbrev()
{
    // The nearest thing here: a C locale has no language, which counts as English.
    const QLocale locale = QLocale::system();
    if (locale.language() == QLocale::C)
        return QStringLiteral("ENU");
    return locale.name().section(QLatin1Char('_'), 0, 0).toUpper();
}

} // namespace Platform
