#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

/// What the recording analytics library was told, read back from its file.
namespace AnalyticsRecord {

struct Event
{
    QString category;
    QString action;
    QJsonObject properties;

    bool operator==(const Event &other) const;
};

/// Every call, in order, as recorded.
QList<QJsonObject> calls();

/// The events among the calls.
QList<Event> events();

/// The actions of events(), for a look at their order.
QStringList actions();

/// Forgets what was recorded and opens a new session.
void restart();

} // namespace AnalyticsRecord

/// For QCOMPARE.
char *toString(const AnalyticsRecord::Event &event);
