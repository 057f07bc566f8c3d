#pragma once

#include "tests/support/analyticsrecord.h"
#include "tests/support/literals.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtTest/QTest>

#include <memory>

/// Base of the pages' tests: each test function has a sample installation and a record of events of
/// its own.
class PageTest : public TestCase
{
    Q_OBJECT

protected:
    std::unique_ptr<Sandbox> m_sandbox;

private Q_SLOTS:
    void init()
    {
        m_sandbox = std::make_unique<Sandbox>();
        AnalyticsRecord::restart();
    }
    void cleanup() { m_sandbox.reset(); }
};

inline QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

inline QList<QJsonObject> objects(const char *json)
{
    QList<QJsonObject> objects;
    const QJsonArray elements = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &element : elements)
        objects += element.toObject();
    return objects;
}

/// The action and the properties of the latest event, such as: Click_exit {"result":"success"}
inline QString lastEvent()
{
    const QList<AnalyticsRecord::Event> events = AnalyticsRecord::events();
    if (events.isEmpty())
        return "no event"_s;
    const QJsonDocument properties(events.constLast().properties);
    return events.constLast().action + QLatin1Char(' ') +
           QString::fromUtf8(properties.toJson(QJsonDocument::Compact));
}

/// A property of the latest event.
inline QString lastProperty(const char *name)
{
    const QList<AnalyticsRecord::Event> events = AnalyticsRecord::events();
    return events.isEmpty() ? "no event"_s
                            : events.constLast().properties.value(QLatin1String(name)).toString();
}
