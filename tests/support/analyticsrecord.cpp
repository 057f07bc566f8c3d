#include "tests/support/analyticsrecord.h"

#include "analytics/session.h"
#include "tests/support/sandbox.h"

#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

namespace AnalyticsRecord {

namespace {

QString recordFile()
{
    return Analytics::analyticsDir() + QStringLiteral("/data_api.jsonl");
}

} // namespace

bool Event::operator==(const Event &other) const
{
    return category == other.category && action == other.action && properties == other.properties;
}

QString Event::text() const
{
    QString text = category + QLatin1Char('/') + action;
    for (auto property = properties.begin(); property != properties.end(); ++property)
        text += QLatin1Char(' ') + property.key() + QLatin1Char('=') + property->toString();
    return text;
}

QList<QJsonObject> calls()
{
    QList<QJsonObject> calls;
    const QStringList lines = Sandbox::readLines(recordFile());
    for (const QString &line : lines)
        calls += QJsonDocument::fromJson(line.toUtf8()).object();
    return calls;
}

QList<Event> events()
{
    QList<Event> events;
    const QList<QJsonObject> all = calls();
    for (const QJsonObject &call : all) {
        if (call.value(QLatin1String("call")) != QLatin1String("data_event"))
            continue;
        const QByteArray properties = call.value(QLatin1String("properties")).toString().toUtf8();
        events += {call.value(QLatin1String("category")).toString(),
                   call.value(QLatin1String("action")).toString(),
                   QJsonDocument::fromJson(properties).object()};
    }
    return events;
}

QStringList actions()
{
    QStringList actions;
    const QList<Event> all = events();
    for (const Event &event : all)
        actions += event.action;
    return actions;
}

QStringList texts()
{
    QStringList texts;
    const QList<Event> all = events();
    for (const Event &event : all)
        texts += event.text();
    return texts;
}

void restart()
{
    Analytics::stopAnalytics();
    QFile::remove(recordFile());
    Analytics::initAnalytics();
}

} // namespace AnalyticsRecord

char *toString(const AnalyticsRecord::Event &event)
{
    return QTest::toString(event.text());
}
