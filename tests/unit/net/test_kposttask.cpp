#include "net/kposttask.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QRegularExpression>

/// What a POST does beside what every task does (test_tasks).
class TestKPostTask : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void postsItsBodyAgainAfterARedirect_data();
    void postsItsBodyAgainAfterARedirect();
    void postsToAnAddress();
    void keepsABodyOfItsOwn();
};

void TestKPostTask::postsItsBodyAgainAfterARedirect_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("text") << QByteArray("name=value");
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("bytes of every kind") << QByteArray("\0\xff\r\n\r\n\0", 7);
    QTest::newRow("some megabytes") << Answers::largeBody();
}

void TestKPostTask::postsItsBodyAgainAfterARedirect()
{
    QFETCH(QByteArray, body);
    m_server->answer("/a"_s, Answer::redirect("/b"_s));
    m_server->answer("/b"_s, Answer::ok("text"));
    KPostTask task(m_manager.get(), request(url()), body);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->paths(), QStringList({"/a"_s, "/b"_s}));
    for (const ScriptedServer::Request &asked : m_server->requests()) {
        QCOMPARE(asked.method, QByteArray("POST"));
        QVERIFY(asked.body == body);
        QCOMPARE(asked.headers.value("content-type"), QByteArray("text/plain"));
        QCOMPARE(asked.headers.value("content-length"), QByteArray::number(body.size()));
    }
}

void TestKPostTask::postsToAnAddress()
{
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("content-type missing"_s));
    m_server->answer("/a"_s, Answer::ok("text"));
    KPostTask task(m_manager.get(), url(), "name=value");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("POST"));
    QCOMPARE(m_server->requests().constFirst().body, QByteArray("name=value"));
}

void TestKPostTask::keepsABodyOfItsOwn()
{
    m_server->answer("/a"_s, Answer::ok());
    QByteArray body = "before";
    KPostTask task(m_manager.get(), request(url()), body);
    body = "after";
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(m_server->requests().constFirst().body, QByteArray("before"));
}

QTEST_GUILESS_MAIN(TestKPostTask)
#include "test_kposttask.moc"
