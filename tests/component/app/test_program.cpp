#include "tests/support/analyticsrecord.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

class TestProgram : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void secondCopyEndsAtOnceAndSilently();
    void killedCopyLeavesTheWayFree();
    void argumentsHaveNoEffect();
    void missingEverythingStillStarts();
};

namespace {

class Program
{
public:
    explicit Program(const QStringList &arguments = {})
    {
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QStringLiteral(CLIPWRIGHT_PROGRAM), arguments);
    }

    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY(Program)

    bool isUp() const
    {
        return AnalyticsRecord::actions().contains(QStringLiteral("UninstallPopUp"));
    }
    QProcess &process() { return m_process; }

private:
    QProcess m_process;
};

int sessions()
{
    int count = 0;
    const QList<QJsonObject> calls = AnalyticsRecord::calls();
    for (const QJsonObject &call : calls)
        count += call.value(QLatin1String("call")) == QLatin1String("data_init");
    return count;
}

} // namespace

void TestProgram::secondCopyEndsAtOnceAndSilently()
{
    const Sandbox sandbox;
    Program first;
    QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), 20000);

    QElapsedTimer clock;
    clock.start();
    Program second;
    QVERIFY(second.process().waitForFinished());
    QVERIFY(clock.elapsed() >= 100);
    QCOMPARE(second.process().exitStatus(), QProcess::NormalExit);
    QCOMPARE(second.process().exitCode(), 0);
    QCOMPARE(second.process().readAll(), QByteArray());
    QCOMPARE(sessions(), 1); // it did not even open a session, let alone a window
    QCOMPARE(first.process().state(), QProcess::Running);
}

void TestProgram::killedCopyLeavesTheWayFree()
{
    const Sandbox sandbox;
    {
        Program first;
        QTRY_VERIFY_WITH_TIMEOUT(first.isUp(), 20000);
    }
    QCOMPARE(sessions(), 1);
    const Program next;
    QTRY_COMPARE_WITH_TIMEOUT(AnalyticsRecord::actions().count(QStringLiteral("UninstallPopUp")), 2,
                              20000);
}

void TestProgram::argumentsHaveNoEffect()
{
    const Sandbox sandbox;
    Program program(
        {QStringLiteral("/VERYSILENT"), QStringLiteral("--help"), QStringLiteral("/DELRESOURCE")});
    QTRY_VERIFY_WITH_TIMEOUT(program.isUp(), 20000);
    QTest::qWait(200);
    QCOMPARE(program.process().state(), QProcess::Running);
    QVERIFY(!QFile::exists(sandbox->uninstallerRecord()));
}

void TestProgram::missingEverythingStillStarts()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    Program program;
    QTRY_VERIFY_WITH_TIMEOUT(program.isUp(), 20000);
    QCOMPARE(program.process().state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(TestProgram)
#include "test_program.moc"
