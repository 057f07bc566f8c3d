#include "tests/support/testcase.h"
#include "ui/uninstallrules.h"

#include <QtTest/QTest>

class TestUninstallRules : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void progress_data();
    void progress();
    void progressNeverFalls();
    void secondsLeft_data();
    void secondsLeft();
    void email_data();
    void email();
    void spokenEveryTenSeconds();
};

void TestUninstallRules::progress_data()
{
    QTest::addColumn<qint64>("elapsedMs");
    QTest::addColumn<int>("range");
    QTest::addColumn<int>("value");
    const qint64 rows[][3] = {{0, 100, 0},        {100, 100, 0},      {299, 100, 0},
                              {300, 100, 1},      {7500, 100, 25},    {14999, 100, 49},
                              {15000, 100, 50},   {20000, 100, 60},   {24999, 100, 69},
                              {25000, 100, 70},   {27500, 100, 85},   {29999, 100, 99},
                              {20000, 1000, 600}, {29999, 1000, 999}, {29999, 0, 0}};
    for (const auto &row : rows) {
        QTest::addRow("%lld ms of %lld", row[0], row[1])
            << row[0] << static_cast<int>(row[1]) << static_cast<int>(row[2]);
    }
}

void TestUninstallRules::progress()
{
    QFETCH(qint64, elapsedMs);
    QFETCH(int, range);
    QTEST(UninstallRules::progressValue(elapsedMs, range), "value");
}

void TestUninstallRules::progressNeverFalls()
{
    int last = 0;
    for (qint64 elapsed = 0; elapsed < UninstallRules::curveEndMs; ++elapsed) {
        const int value = UninstallRules::progressValue(elapsed, 100);
        QVERIFY(value >= last);
        last = value;
    }
    QCOMPARE(last, 99);
}

void TestUninstallRules::secondsLeft_data()
{
    QTest::addColumn<int>("value");
    QTest::addColumn<qint64>("elapsedMs");
    QTest::addColumn<int>("seconds");
    QTest::newRow("just begun") << 1 << qint64(300) << 30;
    QTest::newRow("a quarter") << 25 << qint64(7500) << 23; // 22.5, away from zero
    QTest::newRow("half") << 50 << qint64(15000) << 15;
    QTest::newRow("after 20 s") << 60 << qint64(20000) << 13;
    QTest::newRow("nearly done") << 99 << qint64(29999) << 0;
    QTest::newRow("full") << 100 << qint64(30000) << 0;
    QTest::newRow("waiting for a slow process") << 99 << qint64(600000) << 6;
}

void TestUninstallRules::secondsLeft()
{
    QFETCH(int, value);
    QFETCH(qint64, elapsedMs);
    QTEST(UninstallRules::secondsLeft(value, 100, elapsedMs), "seconds");
}

void TestUninstallRules::email_data()
{
    QTest::addColumn<QString>("address");
    QTest::addColumn<bool>("valid");
    const auto row = [](const char *address, bool valid) {
        QTest::newRow(address) << QString::fromUtf8(address) << valid;
    };
    row("a@b.cd", true);
    row("robin@mail.test", true);
    row("Robin.Q_Smith9@sub-domain.mail.co", true);
    row("a@b-.museum", true);
    row("a@b.c", false);       // one letter after the last dot
    row("a@b.example", false); // seven
    row("a@b.c1", false);
    row("a..b@c.de", false); // two separators in a row
    row("a._b@c.de", false);
    row(".a@b.cd", false);
    row("a.@b.cd", false);
    row("a-b@c.de", false);
    row("a+b@c.de", false);
    row("a@b", false);
    row("@b.cd", false);
    row("a@@b.cd", false);
    row("a b@c.de", false);
    row("a@b..cd", false);
    row("a@b.cd\n", false);
    row("x a@b.cd", false);
    row("a@b.cd x", false);
    row("\xC3\xA4@b.cd", false);
    row("", false);
}

void TestUninstallRules::email()
{
    QFETCH(QString, address);
    QTEST(UninstallRules::isValidEmail(address), "valid");
}

void TestUninstallRules::spokenEveryTenSeconds()
{
    QCOMPARE(UninstallRules::spokenStep(30), 3);
    QCOMPARE(UninstallRules::spokenStep(21), 3);
    QCOMPARE(UninstallRules::spokenStep(20), 2);
    QCOMPARE(UninstallRules::spokenStep(11), 2);
    QCOMPARE(UninstallRules::spokenStep(10), 1);
    QCOMPARE(UninstallRules::spokenStep(1), 1);
    QCOMPARE(UninstallRules::spokenStep(0), 0);
}

QTEST_APPLESS_MAIN(TestUninstallRules)
#include "test_uninstallrules.moc"
