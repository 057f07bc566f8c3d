#include "net/khttpclient.h"
#include "tests/support/sandbox.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QTemporaryDir>
#include <QtCore/QTimer>

enum class Call { Get, GetFile, Post };
Q_DECLARE_METATYPE(Call)

/// What blocking calls make of their tasks, which have tests of their own.
class TestKHttpClient : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init();

    void succeedsWithTheBody_data();
    void succeedsWithTheBody();
    void failsWithTheErrorText();
    void givesUpAfterItsTimeUnlessItGetsAFile_data();
    void givesUpAfterItsTimeUnlessItGetsAFile();
    void getFileFailsWithoutARequestWhenTheFileCannotBeOpened();
    void postCountsAsAFormUnlessTheRequestSaysOtherwise_data();
    void postCountsAsAFormUnlessTheRequestSaysOtherwise();
    void answersOneCallAfterTheOther();
    void mayBeCalledWhileACallIsWaiting();

private:
    /// Makes the row's call to "/a", with an address or a request.
    KBaseTask::Status call(int msec, bool hasRequest = false);
    QString filePath() const { return m_folder.filePath("file.bin"_s); }

    KHttpClient m_client;
    QTemporaryDir m_folder;
    QByteArray m_data;
    QString m_error;
};

namespace {

Call rowsCall()
{
    QFETCH_GLOBAL(Call, call);
    return call;
}

} // namespace

void TestKHttpClient::initTestCase_data()
{
    QTest::addColumn<Call>("call");
    QTest::newRow("get") << Call::Get;
    QTest::newRow("getFile") << Call::GetFile;
    QTest::newRow("post") << Call::Post;
}

void TestKHttpClient::init()
{
    NetTest::init();
    QFile::remove(filePath());
    m_data = "data before";
    m_error = "error before"_s;
}

KBaseTask::Status TestKHttpClient::call(int msec, bool hasRequest)
{
    const QNetworkRequest request = NetTest::request(url());
    switch (rowsCall()) {
    case Call::Get:
        return hasRequest ? m_client.get(request, m_data, m_error, msec)
                          : m_client.get(url(), m_data, m_error, msec);
    case Call::GetFile:
        return hasRequest ? m_client.getFile(request, filePath(), m_error, msec)
                          : m_client.getFile(url(), filePath(), m_error, msec);
    case Call::Post:
        break;
    }
    return hasRequest ? m_client.post(request, "name=value", m_data, m_error, msec)
                      : m_client.post(url(), "name=value", m_data, m_error, msec);
}

void TestKHttpClient::succeedsWithTheBody_data()
{
    QTest::addColumn<bool>("hasRequest");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("from an address") << false << QByteArray("text");
    QTest::newRow("from a request") << true << QByteArray("text");
    QTest::newRow("of some megabytes") << false << Answers::largeBody();
    QTest::newRow("empty") << false << QByteArray();
}

void TestKHttpClient::succeedsWithTheBody()
{
    QFETCH(bool, hasRequest);
    QFETCH(QByteArray, body);
    m_server->answer("/a"_s, Answer::redirect("/b"_s, 302, "moved"));
    m_server->answer("/b"_s, Answer::ok(body));
    QCOMPARE(call(30000, hasRequest), KBaseTask::TaskSucceeded);
    if (rowsCall() == Call::GetFile) {
        QVERIFY(QFile::exists(filePath()));
        QVERIFY(Sandbox::readFile(filePath()) == body);
    } else {
        QVERIFY(m_data == body);
    }
    QCOMPARE(m_error, "error before"_s);
    const bool isPost = rowsCall() == Call::Post;
    for (const ScriptedServer::Request &asked : m_server->requests()) {
        QCOMPARE(asked.method, QByteArray(isPost ? "POST" : "GET"));
        QCOMPARE(asked.body, QByteArray(isPost ? "name=value" : ""));
        QCOMPARE(asked.headers.value("x-clip"), QByteArray(hasRequest ? "one" : ""));
    }
}

void TestKHttpClient::failsWithTheErrorText()
{
    m_server->answer("/a"_s, Answer::error(404, "sorry"));
    QCOMPARE(call(-1), KBaseTask::TaskFailed);
    QCOMPARE(m_error, "Error transferring %1 - server replied: Scripted"_s.arg(url()));
    QCOMPARE(m_data, QByteArray("data before"));
    QVERIFY(!QFile::exists(filePath()));
}

void TestKHttpClient::givesUpAfterItsTimeUnlessItGetsAFile_data()
{
    QTest::addColumn<int>("msec");
    QTest::addColumn<bool>("isLimited");
    QTest::newRow("zero") << 0 << true;
    QTest::newRow("some time") << 70 << true;
    QTest::newRow("no limit") << -1 << false;
}

void TestKHttpClient::givesUpAfterItsTimeUnlessItGetsAFile()
{
    QFETCH(int, msec);
    QFETCH(bool, isLimited);
    m_server->answer("/a"_s, Answer::ok("text").delayed(300));
    const bool isAborted = isLimited && rowsCall() != Call::GetFile;
    const FiredTimers timers;
    QCOMPARE(call(msec), isAborted ? KBaseTask::TaskAborted : KBaseTask::TaskSucceeded);
    QCOMPARE(timers.intervals.contains(msec), isAborted);
    QCOMPARE(m_data == "data before", isAborted || rowsCall() == Call::GetFile);
    QCOMPARE(m_error, "error before"_s);
}

void TestKHttpClient::getFileFailsWithoutARequestWhenTheFileCannotBeOpened()
{
    m_server->answer("/a"_s, Answer::ok("text"));
    const QString folder = m_folder.path();
    QCOMPARE(m_client.getFile(url(), folder, m_error, -1), KBaseTask::TaskFailed);
    QFile file(folder);
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QCOMPARE(m_error, file.errorString());
    QTest::qWait(50);
    QVERIFY(m_server->requests().isEmpty());
}

void TestKHttpClient::postCountsAsAFormUnlessTheRequestSaysOtherwise_data()
{
    QTest::addColumn<QByteArray>("header");
    QTest::addColumn<QByteArray>("given");
    QTest::addColumn<QByteArray>("sent");
    const QByteArray form = "application/x-www-form-urlencoded";
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
    m_server->answer("/a"_s, Answer::ok());
    QNetworkRequest request{QUrl(url())};
    request.setRawHeader(header, given);
    QCOMPARE(m_client.post(request, "{}", m_data, m_error, -1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().constFirst().headers.value("content-type"), sent);
    QCOMPARE(request.rawHeaderList(), {header}); // the caller's is as it was
}

void TestKHttpClient::answersOneCallAfterTheOther()
{
    m_server->answer("/a"_s, {Answer::error(500), Answer::ok("text")});
    QCOMPARE(call(-1), KBaseTask::TaskFailed);
    QCOMPARE(call(-1), KBaseTask::TaskSucceeded);
    QCOMPARE(m_server->requests().size(), 2);
}

void TestKHttpClient::mayBeCalledWhileACallIsWaiting()
{
    m_server->answer("/a"_s, Answer::ok("outer").held());
    m_server->answer("/b"_s, Answer::ok("inner"));
    QByteArray inner;
    connect(m_server.get(), &ScriptedServer::requested, m_server.get(), [&] {
        if (m_server->requests().size() > 1)
            return;
        QTimer::singleShot(0, m_server.get(), [&] {
            QString error;
            m_client.get(url("/b"_s), inner, error, -1);
            m_server->release();
        });
    });
    QCOMPARE(call(-1), KBaseTask::TaskSucceeded);
    QCOMPARE(inner, QByteArray("inner"));
}

QTEST_GUILESS_MAIN(TestKHttpClient)
#include "test_khttpclient.moc"
