#include "analytics/session.h"

#include "analytics/baseinfo.h"
#include "app/env/appenv.h"
#include "platform/machineinfo.h"

#include <QtCore/QJsonDocument>

#include <data_api.h>

namespace Analytics {

namespace {

constexpr int stopTimeoutMs = 3000;

} // namespace

QString analyticsDir()
{
    return AppEnv::ensuredFolder(AppEnv::uninstallerDataDir() + QStringLiteral("/Analystic"));
}

void initAnalytics()
{
    data_init(analyticsDir().toUtf8().constData(), "Norvane");
}

void sendBaseInfo()
{
    const BaseInfo info = gatherBaseInfo(Platform::computerName());
    data_base_info(info.property.toUtf8().constData(), info.productId,
                   info.productVersion.toUtf8().constData(), info.timeZoneOffset,
                   info.localIPv4.toUtf8().constData(), info.installLanguage.toUtf8().constData(),
                   info.platform.toUtf8().constData(), info.osVersion.toUtf8().constData(),
                   info.bitness, info.systemLanguage.toUtf8().constData(), info.installTime, "",
                   info.uid.toUtf8().constData());
}

void sendEvent(const QString &category, const QString &action, const QJsonObject &properties)
{
    data_event(category.toUtf8().constData(), action.toUtf8().constData(),
               QJsonDocument(properties).toJson().constData(), 0);
}

void stopAnalytics()
{
    data_stop(stopTimeoutMs);
}

} // namespace Analytics
