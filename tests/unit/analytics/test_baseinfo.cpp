#include "analytics/baseinfo.h"
#include "platform/machineinfo.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QFileInfo>
#include <QtTest/QTest>

class TestBaseInfo : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void timeZoneOffset_data();
    void timeZoneOffset();
    void timeZoneOffsetIsTheMachines_data();
    void timeZoneOffsetIsTheMachines();
    void secondsSinceEpoch_data();
    void secondsSinceEpoch();
    void describesTheInstallation();
    void emptyMachineGivesEmptyValues();
    void nameThatDoesNotResolveGivesAnEmptyAddress();
    void productIdThatIsNoNumberCountsAsZero();
};

void TestBaseInfo::timeZoneOffset_data()
{
    QTest::addColumn<int>("offsetSeconds");
    QTest::addColumn<int>("hours");
    QTest::newRow("UTC") << 0 << 0;
    QTest::newRow("UTC+1") << 3600 << 1;
    QTest::newRow("UTC+8") << 8 * 3600 << 8;
    QTest::newRow("UTC+14") << 14 * 3600 << 14;
    QTest::newRow("UTC-5") << -5 * 3600 << -5;
    QTest::newRow("UTC-10") << -10 * 3600 << -10;
    QTest::newRow("UTC-12") << -12 * 3600 << -12;
    QTest::newRow("UTC+5:30 gives the larger value") << 5 * 3600 + 1800 << 6;
    QTest::newRow("UTC+5:45 gives the larger value") << 5 * 3600 + 2700 << 6;
    QTest::newRow("UTC-3:30") << -3 * 3600 - 1800 << -3;
}

void TestBaseInfo::timeZoneOffset()
{
    QFETCH(int, offsetSeconds);
    const QDateTime midnight(QDate(1970, 1, 2), QTime(0, 0), Qt::OffsetFromUTC, offsetSeconds);
    QTEST(Analytics::timeZoneOffset(midnight), "hours");
}

void TestBaseInfo::timeZoneOffsetIsTheMachines_data()
{
    QTest::addColumn<QByteArray>("zone"); // counts hours west of UTC
    QTest::addColumn<int>("hours");
    QTest::newRow("UTC") << QByteArray("UTC0") << 0;
    QTest::newRow("UTC-10") << QByteArray("WEST10") << -10;
    QTest::newRow("UTC+9") << QByteArray("EAST-9") << 9;
    QTest::newRow("a second before UTC") << QByteArray("ODD-0:00:01") << 1; // to whole hours
}

void TestBaseInfo::timeZoneOffsetIsTheMachines()
{
    QFETCH(QByteArray, zone);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QByteArray previous = qgetenv("TZ");
    if (!Machine::setTimeZone(zone))
        QSKIP("this system's zone cannot be changed for one process");
    const int offset = Analytics::gatherBaseInfo(QStringLiteral("localhost")).timeZoneOffset;
    Machine::setTimeZone(previous);
    QTEST(offset, "hours");
}

void TestBaseInfo::secondsSinceEpoch_data()
{
    QTest::addColumn<QDateTime>("time");
    QTest::addColumn<int>("seconds");
    QTest::newRow("the epoch") << QDateTime::fromMSecsSinceEpoch(0) << 0;
    QTest::newRow("parts of a second are cut off") << QDateTime::fromMSecsSinceEpoch(1999) << 1;
    QTest::newRow("before the epoch, too") << QDateTime::fromMSecsSinceEpoch(-1999) << -1;
    QTest::newRow("a file system that does not tell") << QDateTime() << 0;
}

void TestBaseInfo::secondsSinceEpoch()
{
    QFETCH(QDateTime, time);
    QTEST(Analytics::secondsSinceEpoch(time), "seconds");
}

void TestBaseInfo::describesTheInstallation()
{
    const Sandbox sandbox;
    const Analytics::BaseInfo info = Analytics::gatherBaseInfo(QStringLiteral("localhost"));
    QCOMPARE(info.property, QStringLiteral("UA-Clipwright-Win"));
    QCOMPARE(info.productId, 8461);
    QCOMPARE(info.productVersion, QStringLiteral("7.2.1.4"));
    QCOMPARE(info.localIPv4, QStringLiteral("127.0.0.1"));
    QCOMPARE(info.installLanguage, QStringLiteral("ENG"));
    QCOMPARE(info.platform, QStringLiteral("Windows"));
    QCOMPARE(info.osVersion, Platform::osVersion());
    QCOMPARE(info.bitness, 64);
    QCOMPARE(info.systemLanguage, Platform::systemLanguageAbbrev());
    QCOMPARE(info.uid, QStringLiteral("20260417"));

    const QDateTime created = QFileInfo(QCoreApplication::applicationFilePath()).birthTime();
    QCOMPARE(info.installTime,
             created.isValid() ? static_cast<int>(created.toSecsSinceEpoch()) : 0);
}

void TestBaseInfo::emptyMachineGivesEmptyValues()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const Analytics::BaseInfo info = Analytics::gatherBaseInfo(QStringLiteral("localhost"));
    QCOMPARE(info.productId, 0);
    QCOMPARE(info.productVersion, QString());
    QCOMPARE(info.installLanguage, QString());
    QCOMPARE(info.uid, QString());
}

void TestBaseInfo::nameThatDoesNotResolveGivesAnEmptyAddress()
{
    const Sandbox sandbox;
    const Analytics::BaseInfo info =
        Analytics::gatherBaseInfo(QStringLiteral("no-such-host.invalid"));
    QCOMPARE(info.localIPv4, QString());
    QCOMPARE(info.productId, 8461);
}

void TestBaseInfo::productIdThatIsNoNumberCountsAsZero()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("ProgramData/Norvane Clipwright/Clipwright.ini"),
                      "[System]\nProductID=0x20\n");
    QCOMPARE(Analytics::gatherBaseInfo(QStringLiteral("localhost")).productId, 0);
}

QTEST_GUILESS_MAIN(TestBaseInfo)
#include "test_baseinfo.moc"
