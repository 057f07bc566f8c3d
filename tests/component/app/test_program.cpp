#include "tests/support/analyticsrecord.h"
#include "tests/support/literals.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

using Answer = ScriptedServer::Answer;

class TestProgram : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void freshContentIsInTheCacheBeforeTheWindow();
    void requestsGoThroughTheProxyOfTheSettings();
    void secondCopyEndsAtOnceAndSilently();
    void killedCopyLeavesTheWayFree();
    void argumentsHaveNoEffect();
    void missingEverythingStillStarts();
};

namespace {

const QString documentPath = "/uninstall/cfg/v1/846-en.json"_s;
const QString configs = "Temp/Norvane Clipwright Uninstaller/Configs"_s;

class Program
{
public:
    explicit Program(const QStringList &arguments = {}, const QString &service = {})
    {
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        if (!service.isEmpty())
            environment.insert("CLIPWRIGHT_SANDBOX_SERVICE"_s, service);
        m_process.setProcessEnvironment(environment);
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QStringLiteral(CLIPWRIGHT_PROGRAM), arguments);
    }

    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
    }
    Q_DISABLE_COPY(Program)

    /// Waits for the main window, of which the last event so far tells.
    static bool isUp(int windows = 1)
    {
        return QTest::qWaitFor(
            [windows] { return AnalyticsRecord::actions().count("UninstallPopUp"_s) == windows; },
            patienceMs);
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

void TestProgram::freshContentIsInTheCacheBeforeTheWindow()
{
    const Sandbox sandbox;
    ScriptedServer server;
    const QByteArray document = R"({"problem_type": {"list": [{"value": 60, "banner_url": ")" +
                                server.url("/b.png"_s).toUtf8() + R"("}]}})";
    server.answer(documentPath, Answer::ok(document).delayed(300));
    server.answer("/b.png"_s, Answer::ok("picture").delayed(300));
    const Program program({}, server.url());
    QVERIFY(Program::isUp());
    QVERIFY(Sandbox::readFile(sandbox.path(configs + "/en.cfg"_s)).contains("/b.png"));
    QCOMPARE(Sandbox::readFile(sandbox.path(configs + "/Images/option_60.png"_s)),
             QByteArray("picture"));
    QCOMPARE(server.paths(), QStringList({documentPath, "/b.png"_s}));
}

void TestProgram::requestsGoThroughTheProxyOfTheSettings()
{
    const Sandbox sandbox;
    ScriptedServer proxy; // a proxy is asked for whole addresses
    const QString service = "http://config.host.example"_s;
    proxy.answer(service + documentPath, Answer::ok(R"({"problem_type": {"list": [{}]}})"));
    const QByteArray port = proxy.url().section(QLatin1Char(':'), -1).toLatin1();
    sandbox.writeFile("ProgramData/Norvane Clipwright/KConfig.ini"_s,
                      "[ProxyInfo]\nMode=2\nType=0\nServer=http://127.0.0.1\nPort=" + port + "\n");
    const Program program({}, service);
    QVERIFY(Program::isUp());
    QCOMPARE(proxy.paths(), {service + documentPath});
    QVERIFY(QFile::exists(sandbox.path(configs + "/en.cfg"_s)));
}

void TestProgram::secondCopyEndsAtOnceAndSilently()
{
    const Sandbox sandbox;
    Program first;
    QVERIFY(Program::isUp());

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
        const Program first;
        QVERIFY(Program::isUp());
    }
    QCOMPARE(sessions(), 1);
    const Program next;
    QVERIFY(Program::isUp(2));
}

void TestProgram::argumentsHaveNoEffect()
{
    const Sandbox sandbox;
    Program program({"/VERYSILENT"_s, "--help"_s, "/DELRESOURCE"_s});
    QVERIFY(Program::isUp());
    QTest::qWait(200);
    QCOMPARE(program.process().state(), QProcess::Running);
    QVERIFY(!QFile::exists(sandbox->uninstallerRecord()));
}

void TestProgram::missingEverythingStillStarts()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    Program program;
    QVERIFY(Program::isUp());
    QCOMPARE(program.process().state(), QProcess::Running);
}

QTEST_GUILESS_MAIN(TestProgram)
#include "test_program.moc"
