#include "net/kposttask.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QRegularExpression>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

class TestKPostTask : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void postsItsBody_data();
    void postsItsBody();
    void postsToAnAddress();
    void keepsABodyOfItsOwn();
    void readsTheAnswer_data();
    void readsTheAnswer();
    void failsWithAnErrorText_data();
    void failsWithAnErrorText();
    void failsWhenTheConnectionIsRefused();
    void givesUpOnAStalledAnswer_data();
    void givesUpOnAStalledAnswer();
    void postsTheSameBodyAgainAfterARedirect_data();
    void postsTheSameBodyAgainAfterARedirect();
    void postsItsBodyToEveryStopOfAChain();

private:
    QNetworkRequest request() const;

    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

void TestKPostTask::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_manager = std::make_unique<QNetworkAccessManager>();
}

void TestKPostTask::cleanup()
{
    m_manager.reset();
    m_server.reset();
}

QNetworkRequest TestKPostTask::request() const
{
    QNetworkRequest request(QUrl(m_server->url(QStringLiteral("/a"))));
    request.setRawHeader("Content-Type", "text/plain");
    request.setRawHeader("X-Clip", "one");
    return request;
}

void TestKPostTask::postsItsBody_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("text") << QByteArray("name=value");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("bytes of every kind") << QByteArray("\0\xff\r\n\r\n\0", 7);
    QTest::newRow("some megabytes") << Answers::largeBody();
}

void TestKPostTask::postsItsBody()
{
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    KPostTask task(m_manager.get(), request(), body);
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->requests().size(), 1);
    const ScriptedServer::Request asked = m_server->requests().constFirst();
    QCOMPARE(asked.method, QByteArray("POST"));
    QVERIFY(asked.body == body);
    QCOMPARE(asked.headers.value("content-type"), QByteArray("text/plain"));
    QCOMPARE(asked.headers.value("content-length"), QByteArray::number(body.size()));
}

void TestKPostTask::postsToAnAddress()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("content-type missing")));
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    KPostTask task(m_manager.get(), m_server->url(QStringLiteral("/a")), "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("POST"));
    QCOMPARE(m_server->requests().constFirst().body, QByteArray("name=value"));
}

void TestKPostTask::keepsABodyOfItsOwn()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok());
    QByteArray body = "before";
    KPostTask task(m_manager.get(), request(), body);
    body = "after";
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(m_server->requests().constFirst().body, QByteArray("before"));
}

void TestKPostTask::readsTheAnswer_data()
{
    Answers::wholeRows();
}

void TestKPostTask::readsTheAnswer()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), answer);
    KPostTask task(m_manager.get(), request(), "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QVERIFY(task.readAll() == body);
}

void TestKPostTask::failsWithAnErrorText_data()
{
    Answers::failingRows();
}

void TestKPostTask::failsWithAnErrorText()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    KPostTask task(m_manager.get(), request(), "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QVERIFY(!task.errorString().isEmpty());
}

void TestKPostTask::failsWhenTheConnectionIsRefused()
{
    const ClosedPort port;
    QNetworkRequest request(QUrl(port.url(QStringLiteral("/a"))));
    request.setRawHeader("Content-Type", "text/plain");
    KPostTask task(m_manager.get(), request, "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
}

void TestKPostTask::givesUpOnAStalledAnswer_data()
{
    Answers::stallingRows();
}

void TestKPostTask::givesUpOnAStalledAnswer()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    KPostTask task(m_manager.get(), request(), "name=value");
    task.start();
    task.waitForFinished(50);
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
}

void TestKPostTask::postsTheSameBodyAgainAfterARedirect_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QByteArray>("body");
    for (const int code : {301, 302, 303, 307, 308})
        QTest::addRow("%d", code) << code << QByteArray("name=value");
    QTest::newRow("empty") << 302 << QByteArray();
    QTest::newRow("some megabytes") << 302 << Answers::largeBody();
}

void TestKPostTask::postsTheSameBodyAgainAfterARedirect()
{
    QFETCH(int, code);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("b/c"), code, "moved"));
    m_server->answer(QStringLiteral("/b/c"), Answer::ok("text"));
    KPostTask task(m_manager.get(), request(), body);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->paths(), QStringList({QStringLiteral("/a"), QStringLiteral("/b/c")}));
    for (const ScriptedServer::Request &asked : m_server->requests()) {
        QCOMPARE(asked.method, QByteArray("POST"));
        QVERIFY(asked.body == body);
        QCOMPARE(asked.headers.value("content-type"), QByteArray("text/plain"));
        QCOMPARE(asked.headers.value("x-clip"), QByteArray("one"));
    }
}

void TestKPostTask::postsItsBodyToEveryStopOfAChain()
{
    constexpr int hops = 5;
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/0")));
    for (int hop = 0; hop < hops; ++hop)
        m_server->answer(QStringLiteral("/%1").arg(hop),
                         Answer::redirect(QStringLiteral("/%1").arg(hop + 1)));
    m_server->answer(QStringLiteral("/%1").arg(hops), Answer::ok("text"));
    KPostTask task(m_manager.get(), request(), "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().size(), hops + 2);
    for (const ScriptedServer::Request &asked : m_server->requests())
        QCOMPARE(asked.body, QByteArray("name=value"));
}

QTEST_GUILESS_MAIN(TestKPostTask)
#include "test_kposttask.moc"
