#include "analytics/baseinfo.h"

#include "app/env/appenv.h"
#include "platform/machineinfo.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>

namespace Analytics {

int secondsSinceEpoch(const QDateTime &time)
{
    return time.isValid() ? static_cast<int>(time.toMSecsSinceEpoch() / 1000) : 0;
}

BaseInfo gatherBaseInfo(const QString &computerName)
{
    const AppEnv::ProductInfo product = AppEnv::readProductInfo();

    BaseInfo info;
    info.property = QStringLiteral("UA-Clipwright-Win");
    info.productId = product.productId.toInt(nullptr, 10);
    info.productVersion = product.version;
    info.timeZoneOffset = timeZoneOffset(QDateTime(QDate(1970, 1, 2), QTime(0, 0, 0, 0)));
    info.localIPv4 = Platform::localIPv4(computerName);
    info.installLanguage = product.language;
    info.platform = QStringLiteral("Windows");
    info.osVersion = Platform::osVersion();
    info.systemLanguage = Platform::systemLanguageAbbrev();
    info.installTime =
        secondsSinceEpoch(QFileInfo(QCoreApplication::applicationFilePath()).birthTime());
    info.uid = AppEnv::readAccountInfo().uid;
    return info;
}

int timeZoneOffset(const QDateTime &localMidnight)
{
    const auto secondsSinceEpoch = static_cast<quint32>(localMidnight.toSecsSinceEpoch());
    return 24 - static_cast<int>(secondsSinceEpoch / 3600U);
}

} // namespace Analytics
