#pragma once

#include <QtCore/QDateTime>
#include <QtCore/QString>

namespace Analytics {

/// What the library is told once per run about machine and product. Unknown texts are empty.
struct BaseInfo
{
    QString property;  ///< the product's name with the analytics service
    int productId = 0; ///< 0 when the installation records none, or not a number
    QString productVersion;
    int timeZoneOffset = 0; ///< hours, see timeZoneOffset()
    QString localIPv4;
    QString installLanguage; ///< the installer's three-letter code
    QString platform;
    QString osVersion;
    int bitness = 64;
    QString systemLanguage;
    int installTime = 0; ///< seconds since the epoch; 0 when the file system does not tell
    QString uid;
};

/// Whole seconds since the epoch, rounded towards it; 0 for a time that is not valid.
int secondsSinceEpoch(const QDateTime &time);

/// computerName is resolved to the machine's address, which may block on the system's resolver.
BaseInfo gatherBaseInfo(const QString &computerName);

/// Offset from UTC in hours, told by when local midnight of 2 January 1970 was. Half-hour zones
/// east of UTC give the larger value: UTC+5:30 gives 6.
int timeZoneOffset(const QDateTime &localMidnight);

} // namespace Analytics
