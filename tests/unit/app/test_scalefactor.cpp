#include "app/env/scalefactor.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

#include <limits>

class TestScaleFactor : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void factorForRatio_data();
    void factorForRatio();
};

void TestScaleFactor::factorForRatio_data()
{
    QTest::addColumn<float>("ratio");
    QTest::addColumn<QByteArray>("factor");

    QTest::newRow("a monitor without width")
        << std::numeric_limits<float>::infinity() << QByteArray("1");
    QTest::newRow("no primary monitor") << 0.0F << QByteArray("0");
    QTest::newRow("just below one") << 0.374F << QByteArray("0");
    QTest::newRow("lower bound of one") << 0.375F << QByteArray("1");
    QTest::newRow("0.99") << 0.99F << QByteArray("1");
    QTest::newRow("unscaled") << 1.0F << QByteArray("1");
    QTest::newRow("just above unscaled") << 1.001F << QByteArray("1.25");
    QTest::newRow("1.1") << 1.1F << QByteArray("1.25");
    QTest::newRow("120 dpi") << 1.25F << QByteArray("1.25");
    QTest::newRow("just above 1.25") << 1.251F << QByteArray("1");
    QTest::newRow("1.3") << 1.3F << QByteArray("1");
    QTest::newRow("1.374") << 1.374F << QByteArray("1");
    QTest::newRow("1.375") << 1.375F << QByteArray("2");
    QTest::newRow("144 dpi") << 1.5F << QByteArray("2");
    QTest::newRow("192 dpi") << 2.0F << QByteArray("2");
    QTest::newRow("2.374") << 2.374F << QByteArray("2");
    QTest::newRow("2.375") << 2.375F << QByteArray("3");
    QTest::newRow("2.5") << 2.5F << QByteArray("3");
    QTest::newRow("4") << 4.0F << QByteArray("4");
}

void TestScaleFactor::factorForRatio()
{
    QFETCH(float, ratio);
    QFETCH(QByteArray, factor);
    QCOMPARE(ScaleFactor::toEnvironment(ScaleFactor::fromMonitorRatio(ratio)), factor);
}

QTEST_APPLESS_MAIN(TestScaleFactor)
#include "test_scalefactor.moc"
