#include "tests/support/analyticsrecord.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QProcess>
#include <QtTest/QTest>

#include <functional>

using Script = std::function<void(ScriptedServer &)>;
Q_DECLARE_METATYPE(Script)

/// The whole program, started against a server that answers as told.
class TestStartup : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void freshContentIsInTheCacheBeforeTheWindow();
    void faultyDocumentLeavesTheCache_data();
    void faultyDocumentLeavesTheCache();
    void refusedConnectionLeavesTheCache();
    void faultyPictureLeavesThePreviousOne_data();
    void faultyPictureLeavesThePreviousOne();
    void requestsGoThroughTheProxyOfTheSettings();
};

namespace {

const QString documentPath = QStringLiteral("/uninstall/cfg/v1/846-en.json");
const QString cachedDocument = QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/en.cfg");
const QString cachedPicture =
    QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_60.png");
const QByteArray earlierDocument =
    R"({"problem_type":{"list":[{"value":60,"title":"Earlier","banner_url":"http://a.example/b.png"}]}})";
const QByteArray earlierPicture = "earlier picture";

constexpr int limitMs = 10000;
constexpr int startMs = 8000; // for a process on a busy machine

QByteArray freshDocument(const ScriptedServer &server)
{
    return R"({"problem_type":{"list":[{"value":60,"title":"Fresh","banner_url":")" +
           server.url(QStringLiteral("/b.png")).toUtf8() + R"("}]}})";
}

class Program
{
public:
    explicit Program(const QString &service)
    {
        qputenv("CLIPWRIGHT_SANDBOX_SERVICE", service.toUtf8());
        m_clock.start();
        m_process.setProcessChannelMode(QProcess::MergedChannels);
        m_process.start(QStringLiteral(CLIPWRIGHT_PROGRAM), QStringList());
    }

    ~Program()
    {
        m_process.kill();
        m_process.waitForFinished();
        qunsetenv("CLIPWRIGHT_SANDBOX_SERVICE");
    }
    Q_DISABLE_COPY(Program)

    // Milliseconds until the main window was there; -1 when it did not come.
    qint64 timeToWindow()
    {
        while (m_clock.elapsed() < limitMs + startMs) {
            QTest::qWait(20);
            if (AnalyticsRecord::actions().contains(QStringLiteral("UninstallPopUp"))) {
                const qint64 time = m_clock.elapsed();
                qInfo("the main window came after %lld ms", time);
                return time;
            }
        }
        return -1;
    }

    QProcess::ProcessState state() const { return m_process.state(); }

private:
    QProcess m_process;
    QElapsedTimer m_clock;
};

void writeEarlierCache(const Sandbox &sandbox)
{
    sandbox.writeFile(cachedDocument, earlierDocument);
    sandbox.writeFile(cachedPicture, earlierPicture);
}

} // namespace

void TestStartup::freshContentIsInTheCacheBeforeTheWindow()
{
    const Sandbox sandbox;
    writeEarlierCache(sandbox);
    ScriptedServer server;
    server.answer(documentPath, ScriptedServer::Answer::ok(freshDocument(server)).delayed(300));
    server.answer(QStringLiteral("/b.png"),
                  ScriptedServer::Answer::ok("fresh picture").delayed(300));
    Program program(server.url());
    const qint64 time = program.timeToWindow();
    QVERIFY2(time >= 600 && time < 600 + startMs, QByteArray::number(time).constData());
    QVERIFY(Sandbox::readFile(sandbox.path(cachedDocument)).contains("Fresh"));
    QCOMPARE(Sandbox::readFile(sandbox.path(cachedPicture)), QByteArray("fresh picture"));
    QCOMPARE(server.paths(), QStringList({documentPath, QStringLiteral("/b.png")}));
}

void TestStartup::faultyDocumentLeavesTheCache_data()
{
    using Answer = ScriptedServer::Answer;
    QTest::addColumn<Script>("script");
    QTest::addColumn<bool>("takesAllTime");
    const auto row = [](const char *name, const Answer &answer, bool takesAllTime = false) {
        QTest::newRow(name) << Script([answer](ScriptedServer &server) {
            server.answer(documentPath, answer);
        }) << takesAllTime;
    };
    row("reset in the head", Answer::ok("{}").resetInHead());
    row("reset in the body", Answer::ok(earlierDocument + ' ').resetInBody(20));
    row("stalled in the head", Answer::ok("{}").stalledInHead(), true);
    row("stalled in the body", Answer::ok(earlierDocument + ' ').stalledInBody(20), true);
    row("truncated by its length", Answer::ok(earlierDocument + ' ').declaringLength(4000));
    row("not found", Answer::error(404, "{}"));
    row("server error", Answer::error(500, "{}"));
    row("empty body", Answer::ok());
    row("a page of HTML", Answer::ok("<!DOCTYPE html><html><body>Log in</body></html>"));
    row("no options", Answer::ok(R"({"pid": 846, "apps": [], "problem_type": {"list": []}})"));
    row("100 MB of nothing", Answer::ok(QByteArray(100 * 1024 * 1024, ' ')));
    row("redirect cycle", Answer::redirect(documentPath), true);
}

void TestStartup::faultyDocumentLeavesTheCache()
{
    QFETCH(Script, script);
    QFETCH(bool, takesAllTime);
    const Sandbox sandbox;
    writeEarlierCache(sandbox);
    ScriptedServer server;
    script(server);
    Program program(server.url());
    const qint64 time = program.timeToWindow();
    const qint64 earliest = takesAllTime ? limitMs : 0;
    QVERIFY2(time >= earliest && time < earliest + startMs, QByteArray::number(time).constData());
    QCOMPARE(Sandbox::readFile(sandbox.path(cachedDocument)), earlierDocument);
    QCOMPARE(Sandbox::readFile(sandbox.path(cachedPicture)), earlierPicture);
    QCOMPARE(program.state(), QProcess::Running);
    QVERIFY(server.paths().contains(documentPath));
}

void TestStartup::refusedConnectionLeavesTheCache()
{
    const Sandbox sandbox;
    writeEarlierCache(sandbox);
    const ClosedPort port;
    Program program(port.url());
    const qint64 time = program.timeToWindow();
    QVERIFY2(time >= 0 && time < startMs, QByteArray::number(time).constData());
    QCOMPARE(Sandbox::readFile(sandbox.path(cachedDocument)), earlierDocument);
}

void TestStartup::faultyPictureLeavesThePreviousOne_data()
{
    using Answer = ScriptedServer::Answer;
    QTest::addColumn<Script>("script");
    QTest::addColumn<bool>("takesAllTime");
    const auto row = [](const char *name, const Answer &answer, bool takesAllTime = false) {
        QTest::newRow(name) << Script([answer](ScriptedServer &server) {
            server.answer(QStringLiteral("/b.png"), answer);
        }) << takesAllTime;
    };
    row("not found", Answer::error(404, "x"));
    row("reset in the body", Answer::ok(QByteArray(100000, 'x')).resetInBody(50000));
    row("stalled in the body", Answer::ok(QByteArray(100000, 'x')).stalledInBody(50000), true);
}

void TestStartup::faultyPictureLeavesThePreviousOne()
{
    QFETCH(Script, script);
    QFETCH(bool, takesAllTime);
    const Sandbox sandbox;
    writeEarlierCache(sandbox);
    ScriptedServer server;
    server.answer(documentPath, ScriptedServer::Answer::ok(freshDocument(server)));
    script(server);
    Program program(server.url());
    const qint64 time = program.timeToWindow();
    const qint64 earliest = takesAllTime ? limitMs : 0;
    QVERIFY2(time >= earliest && time < earliest + startMs, QByteArray::number(time).constData());
    QVERIFY(Sandbox::readFile(sandbox.path(cachedDocument)).contains("Fresh"));
    QCOMPARE(Sandbox::readFile(sandbox.path(cachedPicture)), earlierPicture);
}

void TestStartup::requestsGoThroughTheProxyOfTheSettings()
{
    const Sandbox sandbox;
    ScriptedServer proxy; // a proxy is asked for whole addresses
    const QString address = QStringLiteral("http://config.host.example") + documentPath;
    proxy.answer(address, ScriptedServer::Answer::ok(earlierDocument));
    const QString port = proxy.url().section(QLatin1Char(':'), -1);
    sandbox.writeFile(
        QStringLiteral("ProgramData/Norvane Clipwright/KConfig.ini"),
        "[ProxyInfo]\nMode=2\nType=0\nServer=http://127.0.0.1\nPort=" + port.toLatin1() + "\n");
    Program program(QStringLiteral("http://config.host.example"));
    QVERIFY(program.timeToWindow() >= 0);
    QVERIFY2(proxy.paths().contains(address), qPrintable(proxy.paths().join(QLatin1Char(' '))));
    QVERIFY(Sandbox::readFile(sandbox.path(cachedDocument)).contains("Earlier"));
}

QTEST_GUILESS_MAIN(TestStartup)
#include "test_startup.moc"
