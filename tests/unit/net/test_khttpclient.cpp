#include "net/khttpclient.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

class TestKHttpClient : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void getsTheBody_data();
    void getsTheBody();
    void getFailsWithAnErrorText_data();
    void getFailsWithAnErrorText();
    void getFailsWhenTheConnectionIsRefused();
    void getGivesUpAfterItsTimeAndTouchesNeitherDataNorError_data();
    void getGivesUpAfterItsTimeAndTouchesNeitherDataNorError();
    void getGivesUpAtOnceForZero();
    void getNeverTimesOutForANegativeTime();
    void getSendsTheRequestsHeaders();
    void getFollowsRedirects();

    void getFileStoresTheBody_data();
    void getFileStoresTheBody();
    void getFileFailsAndLeavesNoFile_data();
    void getFileFailsAndLeavesNoFile();
    void getFileFailsWithoutARequestWhenTheFileCannotBeOpened();
    void getFileWaitsUntilTheEndWhateverTheTime_data();
    void getFileWaitsUntilTheEndWhateverTheTime();

    void postReturnsTheAnswer();
    void postCountsAsAFormUnlessTheRequestSaysOtherwise_data();
    void postCountsAsAFormUnlessTheRequestSaysOtherwise();
    void postLeavesTheCallersRequestAsItIs();
    void postFailsWithAnErrorText_data();
    void postFailsWithAnErrorText();
    void postGivesUpAfterItsTime();

    void answersOneCallAfterTheOther();
    void mayBeCalledWhileACallIsWaiting();

private:
    QString url() const { return m_server->url(QStringLiteral("/a")); }
    QString filePath() const { return m_sandbox->path(QStringLiteral("file.bin")); }

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<KHttpClient> m_client;
    QByteArray m_data;
    QString m_error;
};

void TestKHttpClient::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    m_server = std::make_unique<ScriptedServer>();
    m_client = std::make_unique<KHttpClient>();
    m_data = "data before";
    m_error = QStringLiteral("error before");
}

void TestKHttpClient::cleanup()
{
    m_client.reset();
    m_server.reset();
    m_sandbox.reset();
}

void TestKHttpClient::getsTheBody_data()
{
    Answers::wholeRows();
}

void TestKHttpClient::getsTheBody()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), answer);
    QCOMPARE(m_client->get(url(), m_data, m_error, 30000), KBaseTask::TaskSucceeded);
    QVERIFY(m_data == body);
    QCOMPARE(m_error, QStringLiteral("error before"));
}

void TestKHttpClient::getFailsWithAnErrorText_data()
{
    Answers::failingRows();
}

void TestKHttpClient::getFailsWithAnErrorText()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskFailed);
    QCOMPARE(m_data, QByteArray("data before"));
    QVERIFY(!m_error.isEmpty());
    QVERIFY(m_error != QLatin1String("error before"));
}

void TestKHttpClient::getFailsWhenTheConnectionIsRefused()
{
    const ClosedPort port;
    QCOMPARE(m_client->get(port.url(), m_data, m_error, -1), KBaseTask::TaskFailed);
    QCOMPARE(m_data, QByteArray("data before"));
    QVERIFY(m_error != QLatin1String("error before"));
}

void TestKHttpClient::getGivesUpAfterItsTimeAndTouchesNeitherDataNorError_data()
{
    Answers::stallingRows();
}

void TestKHttpClient::getGivesUpAfterItsTimeAndTouchesNeitherDataNorError()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    QByteArray data;
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(m_client->get(url(), data, m_error, 100), KBaseTask::TaskAborted);
    QVERIFY(clock.elapsed() >= 80);
    QVERIFY(clock.elapsed() < 5000); // on a busy machine; nothing else would ever end it
    QVERIFY(data.isEmpty());
    QCOMPARE(m_error, QStringLiteral("error before"));
    QCOMPARE(m_client->get(url(), m_data, m_error, 50), KBaseTask::TaskAborted);
    QCOMPARE(m_data, QByteArray("data before"));
}

void TestKHttpClient::getGivesUpAtOnceForZero()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").silent());
    QCOMPARE(m_client->get(url(), m_data, m_error, 0), KBaseTask::TaskAborted);
    QCOMPARE(m_data, QByteArray("data before"));
    QCOMPARE(m_error, QStringLiteral("error before"));
}

void TestKHttpClient::getNeverTimesOutForANegativeTime()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").delayed(300));
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_data, QByteArray("text"));
}

void TestKHttpClient::getSendsTheRequestsHeaders()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok());
    QNetworkRequest request{QUrl(url())};
    request.setRawHeader("X-Clip", "one");
    QCOMPARE(m_client->get(request, m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_data, QByteArray());
    QCOMPARE(m_server->requests().constFirst().headers.value("x-clip"), QByteArray("one"));
}

void TestKHttpClient::getFollowsRedirects()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("b"), 302, "moved"));
    m_server->answer(QStringLiteral("/b"), Answer::ok("text"));
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_data, QByteArray("text"));
}

void TestKHttpClient::getFileStoresTheBody_data()
{
    Answers::wholeRows();
}

void TestKHttpClient::getFileStoresTheBody()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), answer);
    QCOMPARE(m_client->getFile(url(), filePath(), m_error, -1), KBaseTask::TaskSucceeded);
    QVERIFY(QFile::exists(filePath()));
    QVERIFY(Sandbox::readFile(filePath()) == body);
    QCOMPARE(m_error, QStringLiteral("error before"));
}

void TestKHttpClient::getFileFailsAndLeavesNoFile_data()
{
    Answers::failingRows();
}

void TestKHttpClient::getFileFailsAndLeavesNoFile()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    QCOMPARE(m_client->getFile(url(), filePath(), m_error, -1), KBaseTask::TaskFailed);
    QVERIFY(!QFile::exists(filePath()));
    QVERIFY(m_error != QLatin1String("error before"));
}

void TestKHttpClient::getFileFailsWithoutARequestWhenTheFileCannotBeOpened()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    QDir().mkpath(filePath());
    QCOMPARE(m_client->getFile(url(), filePath(), m_error, -1), KBaseTask::TaskFailed);
    QFile file(filePath());
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QCOMPARE(m_error, file.errorString());
    QTest::qWait(50);
    QVERIFY(m_server->requests().isEmpty());
}

void TestKHttpClient::getFileWaitsUntilTheEndWhateverTheTime_data()
{
    QTest::addColumn<int>("msec");
    QTest::newRow("none") << -1;
    QTest::newRow("zero") << 0;
    QTest::newRow("short") << 20;
}

void TestKHttpClient::getFileWaitsUntilTheEndWhateverTheTime()
{
    QFETCH(int, msec);
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").delayed(200));
    const QNetworkRequest request{QUrl(url())};
    QCOMPARE(m_client->getFile(request, filePath(), m_error, msec), KBaseTask::TaskSucceeded);
    QCOMPARE(Sandbox::readFile(filePath()), QByteArray("text"));
}

void TestKHttpClient::postReturnsTheAnswer()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    QCOMPARE(m_client->post(url(), "name=value", m_data, m_error, 30000), KBaseTask::TaskSucceeded);
    QCOMPARE(m_data, QByteArray("text"));
    QCOMPARE(m_error, QStringLiteral("error before"));
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("POST"));
    QCOMPARE(m_server->requests().constFirst().body, QByteArray("name=value"));
}

void TestKHttpClient::postCountsAsAFormUnlessTheRequestSaysOtherwise_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<QByteArray>("sent");
    const QByteArray form = "application/x-www-form-urlencoded";
    QTest::newRow("none") << QByteArray() << QByteArray() << form;
    QTest::newRow("given") << QByteArray("Content-Type") << QByteArray("application/json")
                           << QByteArray("application/json");
    QTest::newRow("given in lower case")
        << QByteArray("content-type") << QByteArray("text/plain") << QByteArray("text/plain");
    QTest::newRow("another header") << QByteArray("X-Clip") << QByteArray("one") << form;
}

void TestKHttpClient::postCountsAsAFormUnlessTheRequestSaysOtherwise()
{
    QFETCH(QByteArray, header);
    QFETCH(QByteArray, given);
    QFETCH(QByteArray, sent);
    m_server->answer(QStringLiteral("/a"), Answer::ok());
    QNetworkRequest request{QUrl(url())};
    if (!header.isEmpty())
        request.setRawHeader(header, given);
    QCOMPARE(m_client->post(request, "{}", m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().constFirst().headers.value("content-type"), sent);
}

void TestKHttpClient::postLeavesTheCallersRequestAsItIs()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok());
    QNetworkRequest request{QUrl(url())};
    m_client->post(request, "name=value", m_data, m_error, -1);
    QVERIFY(!request.hasRawHeader("Content-Type"));
}

void TestKHttpClient::postFailsWithAnErrorText_data()
{
    Answers::failingRows();
}

void TestKHttpClient::postFailsWithAnErrorText()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    QCOMPARE(m_client->post(url(), "name=value", m_data, m_error, -1), KBaseTask::TaskFailed);
    QCOMPARE(m_data, QByteArray("data before"));
    QVERIFY(m_error != QLatin1String("error before"));
}

void TestKHttpClient::postGivesUpAfterItsTime()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").stalledInBody(2));
    QCOMPARE(m_client->post(url(), "name=value", m_data, m_error, 50), KBaseTask::TaskAborted);
    QCOMPARE(m_data, QByteArray("data before"));
    QCOMPARE(m_error, QStringLiteral("error before"));
}

void TestKHttpClient::answersOneCallAfterTheOther()
{
    m_server->answer(QStringLiteral("/a"), {Answer::error(500), Answer::ok("text")});
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskFailed);
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_client->post(url(), "name=value", m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_client->getFile(url(), filePath(), m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().size(), 4);
}

void TestKHttpClient::mayBeCalledWhileACallIsWaiting()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("outer").held());
    m_server->answer(QStringLiteral("/b"), Answer::ok("inner"));
    QByteArray inner;
    connect(m_server.get(), &ScriptedServer::requested, m_client.get(), [&] {
        if (m_server->requests().size() > 1)
            return;
        QTimer::singleShot(0, m_client.get(), [&] {
            QString error;
            m_client->get(m_server->url(QStringLiteral("/b")), inner, error, -1);
            m_server->release();
        });
    });
    QCOMPARE(m_client->get(url(), m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(inner, QByteArray("inner"));
    QCOMPARE(m_data, QByteArray("outer"));
}

QTEST_GUILESS_MAIN(TestKHttpClient)
#include "test_khttpclient.moc"
