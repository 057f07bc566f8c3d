#include "platform/machineinfo.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QRegularExpression>
#include <QtCore/QSysInfo>
#include <QtTest/QTest>

const bool isUnix = QDir::separator() == QLatin1Char('/');
// Before anything asks for the system's locale, which is read once.
[[maybe_unused]] const bool isGerman = qputenv("LC_ALL", "de_DE.UTF-8");

class TestMachineInfo : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void machineHasAName();
    void addressOfAName_data();
    void addressOfAName();
    void versionIsMajorAndMinor();
    void languageIsAnAbbreviation();
};

void TestMachineInfo::machineHasAName()
{
    QVERIFY(!Platform::computerName().isEmpty());
}

void TestMachineInfo::addressOfAName_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("address");
    QTest::newRow("loopback") << QStringLiteral("localhost") << QStringLiteral("127.0.0.1");
    QTest::newRow("bytes over 127")
        << QStringLiteral("192.168.200.255") << QStringLiteral("192.168.200.255");
    QTest::newRow("does not resolve") << QStringLiteral("no-such-host.invalid") << QString();
    QTest::newRow("not a name") << QStringLiteral("..") << QString();
}

void TestMachineInfo::addressOfAName()
{
    QFETCH(QString, name);
    QTEST(Platform::localIPv4(name), "address");
}

void TestMachineInfo::versionIsMajorAndMinor()
{
    const QRegularExpression twoNumbers(QStringLiteral("\\A\\d+\\.\\d+\\z"));
    QVERIFY2(twoNumbers.match(Platform::osVersion()).hasMatch(), qPrintable(Platform::osVersion()));
    if (isUnix)
        QVERIFY(QSysInfo::kernelVersion().startsWith(Platform::osVersion() + QLatin1Char('.')));
}

void TestMachineInfo::languageIsAnAbbreviation()
{
    const QRegularExpression letters(QStringLiteral("\\A[A-Z]{2,3}\\z"));
    QVERIFY(letters.match(Platform::systemLanguageAbbrev()).hasMatch());
    if (isUnix)
        QCOMPARE(Platform::systemLanguageAbbrev(), QStringLiteral("DE"));
}

QTEST_APPLESS_MAIN(TestMachineInfo)
#include "test_machineinfo.moc"
