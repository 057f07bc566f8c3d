#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>

/// The calls that the analytics library's stand-in received, read from its file.
namespace AnalyticsRecord {

struct Event
{
    QString category;
    QString action;
    QJsonObject properties;

    bool operator==(const Event &other) const;

    /// "category/action key=value key=value", the keys in order.
    QString text() const;
};

/// Every call, in order, as recorded.
QList<QJsonObject> calls();

/// The events among the calls.
QList<Event> events();

/// The actions of events(), for a look at their order.
QStringList actions();

/// Event::text() of events().
QStringList texts();

/// Removes the record and opens a new session.
void restart();

} // namespace AnalyticsRecord

/// For QCOMPARE.
char *toString(const AnalyticsRecord::Event &event);
