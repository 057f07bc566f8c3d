#include "app/loading.h"
#include "config/content/configcontent.h"
#include "config/download/configdownloader.h"
#include "tests/support/literals.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/support/testendpoints.h"
#include "ui/splashwindow.h"

#include <QtCore/QDir>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <functional>
#include <memory>

using Answer = ScriptedServer::Answer;

/// The wait for the configuration while the splash is shown.
class TestLoading : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void endsWhenTheDownloadHasFinished_data();
    void endsWhenTheDownloadHasFinished();
    void isLimitedToTenSeconds();
    void abortsWhatRunsWhenTheTimeIsOver_data() { endsEarly_data(); }
    void abortsWhatRunsWhenTheTimeIsOver();
    void abortsWhatRunsWhenTheSplashIsClosed_data() { endsEarly_data(); }
    void abortsWhatRunsWhenTheSplashIsClosed();

private:
    void endsEarly_data();
    /// Loads, and acts when the server has the last request; expects that all requests end then.
    void endsEarly(const std::function<void()> &act);

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<ConfigDownloader> m_downloader;
    std::unique_ptr<QTimer> m_limit;
    std::unique_ptr<SplashWindow> m_splash;
};

namespace {

const QString documentPath = "/uninstall/cfg/v1/846-en.json"_s;

} // namespace

void TestLoading::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    m_server = std::make_unique<ScriptedServer>();
    TestEndpoints::setConfiguration(m_server->url());
    m_downloader = std::make_unique<ConfigDownloader>();
    m_limit = std::make_unique<QTimer>();
    m_splash = std::make_unique<SplashWindow>(nullptr);
    m_splash->show();
}

void TestLoading::cleanup()
{
    m_splash.reset();
    m_limit.reset();
    m_downloader.reset();
    m_server.reset();
    m_sandbox.reset();
}

void TestLoading::endsWhenTheDownloadHasFinished_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("document") << Answer::ok(R"({"problem_type": {"list": [{}]}})");
    QTest::newRow("failure") << Answer::error(500);
}

void TestLoading::endsWhenTheDownloadHasFinished()
{
    QFETCH(Answer, answer);
    m_server->answer(documentPath, answer);
    QSignalSpy finished(m_downloader.get(), &ConfigDownloader::finished);
    QSignalSpy timeout(m_limit.get(), &QTimer::timeout);
    Startup::loadConfiguration(*m_downloader, *m_limit, *m_splash);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(timeout.count(), 0);
    QVERIFY(!m_limit->isActive());
    QVERIFY(m_splash->isVisible());
}

void TestLoading::isLimitedToTenSeconds()
{
    m_server->answer(documentPath, Answer::ok().silent());
    connect(m_server.get(), &ScriptedServer::requested, m_limit.get(), [this] {
        QCOMPARE(m_limit->interval(), 10000);
        QVERIFY(m_limit->isActive());
        QVERIFY(m_limit->isSingleShot());
        QCOMPARE(m_limit->timerType(), Qt::PreciseTimer);
        m_limit->start(0);
    });
    QSignalSpy finished(m_downloader.get(), &ConfigDownloader::finished);
    Startup::loadConfiguration(*m_downloader, *m_limit, *m_splash);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(m_server->requests().size(), 1);
}

void TestLoading::endsEarly_data()
{
    QTest::addColumn<bool>("hasDocument");
    QTest::newRow("document pending") << false;
    QTest::newRow("pictures pending") << true;
}

void TestLoading::endsEarly(const std::function<void()> &act)
{
    QFETCH(bool, hasDocument);
    const QByteArray document =
        R"({"problem_type": {"list": [{"value": 1, "banner_url": "SERVER/1.png"},
                                      {"value": 2, "banner_url": "SERVER/2.png"}]}})";
    const Answer answer =
        Answer::ok(QByteArray(document).replace("SERVER", m_server->url().toLatin1()));
    m_server->answer(documentPath, hasDocument ? answer : Answer(answer).stalledInBody(20));
    m_server->answer("/1.png"_s, Answer::ok("picture").stalledInBody(3));
    m_server->answer("/2.png"_s, Answer::ok("picture").stalledInBody(3));
    const int last = hasDocument ? 3 : 1;
    connect(m_server.get(), &ScriptedServer::requested, m_downloader.get(), [this, act, last] {
        if (m_server->requests().size() == last)
            act();
    });
    QSignalSpy finished(m_downloader.get(), &ConfigDownloader::finished);
    Startup::loadConfiguration(*m_downloader, *m_limit, *m_splash);
    QVERIFY(!m_limit->isActive());
    QCOMPARE(finished.count(), 0);
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(m_server->requests().size(), last);
    QCOMPARE(QDir(Config::imagesDir()).entryList(QDir::Files), QStringList());
    QCOMPARE(QFile::exists(Config::configFilePath()), hasDocument);
}

void TestLoading::abortsWhatRunsWhenTheTimeIsOver()
{
    endsEarly([this] { m_limit->start(0); });
    QVERIFY(m_splash->isVisible());
}

void TestLoading::abortsWhatRunsWhenTheSplashIsClosed()
{
    endsEarly([this] { m_splash->btnClose->click(); });
    QVERIFY(!m_splash->isVisible());
}

QTEST_MAIN(TestLoading)
#include "test_loading.moc"
