#pragma once

#include <QtCore/QObject>

/// Base of every test class. It drops the warnings with which the offscreen platform excuses its
/// own limits; every other unexpected warning fails the test.
class TestCase : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
};
