#pragma once

#include <QtCore/QObject>

/// Base of every test class. It drops the offscreen platform's warnings about what it lacks; any
/// other unexpected warning fails the test.
class TestCase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
};
