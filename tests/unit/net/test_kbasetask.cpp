#include "net/kbasetask.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QTimer>
#include <QtNetwork/QSslConfiguration>
#include <algorithm>

namespace {

/// Records which of its operations were called.
class RecordingTask : public KBaseTask
{
public:
    using KBaseTask::KBaseTask;

    QStringList calls;

protected:
    QNetworkReply *createReply() override
    {
        calls += "createReply"_s;
        return KBaseTask::createReply();
    }
    void onAborted() override { calls += "onAborted"_s; }
    void onError() override { calls += "onError"_s; }
    void onRedirected() override { calls += "onRedirected"_s; }
    void onSucceeded() override { calls += "onSucceeded"_s; }
    void onReadyRead() override { calls += "onReadyRead"_s; }
    void onProgress(qint64, qint64) override {}
};

/// A reply that declares a length, brings a body and ends without an error.
class CannedReply : public QNetworkReply
{
public:
    CannedReply(QObject *parent, const QByteArray &body, const QVariant &declaredLength)
        : QNetworkReply(parent)
        , m_body(body)
    {
        setHeader(QNetworkRequest::ContentLengthHeader, declaredLength);
        open(QIODevice::ReadOnly);
        QTimer::singleShot(0, this, [this] { Q_EMIT readyRead(); });
        QTimer::singleShot(0, this, [this] {
            setFinished(true);
            Q_EMIT finished();
        });
    }

    void abort() override {}
    bool isSequential() const override { return true; }
    qint64 bytesAvailable() const override { return m_body.size() + QIODevice::bytesAvailable(); }

protected:
    qint64 readData(char *data, qint64 maxSize) override
    {
        const int size = static_cast<int>(std::min<qint64>(maxSize, m_body.size()));
        std::copy_n(m_body.constData(), size, data);
        m_body.remove(0, size);
        return size;
    }

private:
    QByteArray m_body;
};

/// A task whose answer does not come from the network, read as it arrives or only at its end.
class CannedTask : public KBaseTask
{
public:
    CannedTask(QNetworkAccessManager *manager, const QByteArray &body,
               const QVariant &declaredLength, bool readsAtOnce)
        : KBaseTask(manager, QString())
        , m_body(body)
        , m_declaredLength(declaredLength)
        , m_readsAtOnce(readsAtOnce)
    {
    }

    qint64 buffer = 0; // of the reply: what it is made with, and what the task has made of it

    void start()
    {
        KBaseTask::start();
        buffer = m_reply->readBufferSize();
    }

protected:
    QNetworkReply *createReply() override
    {
        m_reply = new CannedReply(manager(), m_body, m_declaredLength);
        m_reply->setReadBufferSize(buffer);
        return m_reply;
    }
    void onReadyRead() override
    {
        if (m_readsAtOnce)
            readAll();
    }

private:
    const QByteArray m_body;
    const QVariant m_declaredLength;
    const bool m_readsAtOnce;
    QNetworkReply *m_reply = nullptr;
};

} // namespace

/// What is the base's alone; test_tasks has what every kind of task does.
class TestKBaseTask : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void failsWhenLessArrivesThanDeclaredEvenWithoutAnError_data();
    void failsWhenLessArrivesThanDeclaredEvenWithoutAnError();
    void buffersNoMoreThanTellsThatABodyIsTooLong_data();
    void buffersNoMoreThanTellsThatABodyIsTooLong();
    void refusesOldTls_data();
    void refusesOldTls();
    void readsAnAddressTolerantly();
    void keepsARequestOfItsOwn();
    void forwardsTheProgress();
    void forwardsAnUnknownTotalAsItIs();
    void treatsARedirectCodeWithoutTargetAsAnAnswer();
    void handlesOtherEventsWhileItWaits();
    void callsItsOperationsInOrder_data();
    void callsItsOperationsInOrder();
};

void TestKBaseTask::failsWhenLessArrivesThanDeclaredEvenWithoutAnError_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<QVariant>("declaredLength");
    QTest::addColumn<KBaseTask::Status>("status");
    QTest::newRow("less") << QByteArray("tex") << QVariant(4) << KBaseTask::TaskFailed;
    QTest::newRow("nothing") << QByteArray() << QVariant(4) << KBaseTask::TaskFailed;
    QTest::newRow("as declared") << QByteArray("text") << QVariant(4) << KBaseTask::TaskSucceeded;
    QTest::newRow("nothing, as declared")
        << QByteArray() << QVariant(0) << KBaseTask::TaskSucceeded;
    QTest::newRow("no length") << QByteArray("tex") << QVariant() << KBaseTask::TaskSucceeded;
}

void TestKBaseTask::failsWhenLessArrivesThanDeclaredEvenWithoutAnError()
{
    QFETCH(QByteArray, body);
    QFETCH(QVariant, declaredLength);
    QFETCH(KBaseTask::Status, status);
    for (const bool readsAtOnce : {false, true}) {
        CannedTask task(m_manager.get(), body, declaredLength, readsAtOnce);
        QSignalSpy finished(&task, &KBaseTask::finished);
        task.start();
        task.waitForFinished(-1);
        QCOMPARE(task.status(), status);
        QCOMPARE(finished.count(), 1);
    }
}

void TestKBaseTask::buffersNoMoreThanTellsThatABodyIsTooLong_data()
{
    QTest::addColumn<qint64>("limit");
    QTest::addColumn<qint64>("before"); // 0 is any size
    QTest::addColumn<qint64>("after");
    QTest::addColumn<KBaseTask::Status>("status"); // of a body of four bytes
    const auto row = [](const char *name, int limit, int before, int after, bool succeeds) {
        QTest::newRow(name) << qint64(limit) << qint64(before) << qint64(after)
                            << (succeeds ? KBaseTask::TaskSucceeded : KBaseTask::TaskFailed);
    };
    row("no limit", -1, 0, 0, true);
    row("no limit, a buffer", -1, 9, 9, true);
    row("limit", 4, 0, 5, true);
    row("limit, a larger buffer", 4, 9, 5, true);
    row("limit, a buffer as large", 4, 4, 4, true);
    row("limit, a smaller buffer", 4, 1, 1, true);
    row("limit that is passed", 3, 0, 4, false);
    row("nothing allowed", 0, 0, 1, false);
}

void TestKBaseTask::buffersNoMoreThanTellsThatABodyIsTooLong()
{
    QFETCH(qint64, limit);
    QFETCH(qint64, before);
    CannedTask task(m_manager.get(), "text", {}, false);
    task.setMaxSize(limit);
    task.buffer = before;
    task.start();
    QTEST(task.buffer, "after");
    task.waitForFinished(-1);
    QTEST(task.status(), "status");
}

void TestKBaseTask::refusesOldTls_data()
{
    QTest::addColumn<QString>("url");
    QTest::addColumn<int>("protocol");
    QTest::newRow("encrypted") << "https://a.example/"_s << int(QSsl::TlsV1_2OrLater);
    QTest::newRow("plain") << "http://a.example/"_s << int(QSsl::SecureProtocols); // as it was
}

void TestKBaseTask::refusesOldTls()
{
    class CannedManager : public QNetworkAccessManager
    {
    public:
        int protocol = QSsl::UnknownProtocol;

    protected:
        QNetworkReply *createRequest(Operation /*operation*/, const QNetworkRequest &request,
                                     QIODevice * /*data*/) override
        {
            protocol = request.sslConfiguration().protocol();
            return new CannedReply(this, "text", {});
        }
    };
    QFETCH(QString, url);
    CannedManager manager;
    KBaseTask task(&manager, url);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QTEST(manager.protocol, "protocol");
}

void TestKBaseTask::readsAnAddressTolerantly()
{
    m_server->answer("/a%20b%5B"_s, Answer::ok());
    KBaseTask task(m_manager.get(), m_server->url("/a b%5B"_s));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
}

void TestKBaseTask::keepsARequestOfItsOwn()
{
    m_server->answer("/a"_s, Answer::ok());
    QNetworkRequest request{QUrl(url())};
    request.setRawHeader("X-Clip", "kept");
    KBaseTask task(m_manager.get(), request);
    request.setRawHeader("X-Clip", "changed");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(m_server->requests().constFirst().headers.value("x-clip"), QByteArray("kept"));
}

void TestKBaseTask::forwardsTheProgress()
{
    const QByteArray body = Answers::largeBody();
    m_server->answer("/a"_s, Answer::ok(body));
    KBaseTask task(m_manager.get(), url());
    QSignalSpy progress(&task, &KBaseTask::progress);
    task.start();
    task.waitForFinished(-1);
    QVERIFY(progress.count() > 0);
    QCOMPARE(progress.constLast().at(0).toLongLong(), qint64(body.size()));
    QCOMPARE(progress.constLast().at(1).toLongLong(), qint64(body.size()));
}

void TestKBaseTask::forwardsAnUnknownTotalAsItIs()
{
    // An answer without length would do the same, though only while it takes its time.
    KBaseTask task(m_manager.get(), m_server->url());
    QSignalSpy progress(&task, &KBaseTask::progress);
    task.updateDataReadProgress(5, -1);
    QCOMPARE(progress.count(), 1);
    QCOMPARE(progress.constFirst().at(0).toLongLong(), qint64(5));
    QCOMPARE(progress.constFirst().at(1).toLongLong(), qint64(-1));
}

void TestKBaseTask::treatsARedirectCodeWithoutTargetAsAnAnswer()
{
    m_server->answer("/a"_s, Answer::error(300, "choose"));
    KBaseTask task(m_manager.get(), url());
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("choose"));
}

void TestKBaseTask::handlesOtherEventsWhileItWaits()
{
    m_server->answer("/a"_s, Answer::ok("a").held());
    m_server->answer("/b"_s, Answer::ok("b"));
    KBaseTask outer(m_manager.get(), url());
    KBaseTask inner(m_manager.get(), m_server->url("/b"_s));
    connect(m_server.get(), &ScriptedServer::requested, &inner, [&] {
        if (m_server->requests().size() > 1)
            return;
        QTimer::singleShot(0, &inner, [&] {
            inner.start();
            inner.waitForFinished(-1);
            m_server->release();
        });
    });
    outer.start();
    outer.waitForFinished(-1);
    QCOMPARE(inner.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(outer.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(outer.readAll(), QByteArray("a"));
    QCOMPARE(inner.readAll(), QByteArray("b"));
}

void TestKBaseTask::callsItsOperationsInOrder_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("msec");
    QTest::addColumn<QStringList>("calls");
    const QString create = "createReply"_s;
    const QString readyRead = "onReadyRead"_s;
    QTest::newRow("success") << Answer::ok("text") << -1
                             << QStringList({create, readyRead, "onSucceeded"_s});
    QTest::newRow("error") << Answer::ok("text").closedInHead() << -1
                           << QStringList({create, "onError"_s});
    QTest::newRow("time-out") << Answer::ok("text").silent() << 50
                              << QStringList({create, "onAborted"_s});
    QTest::newRow("redirect") << Answer::redirect("/b"_s, 302, "moved") << -1
                              << QStringList({create, readyRead, "onRedirected"_s, create,
                                              readyRead, "onSucceeded"_s});
}

void TestKBaseTask::callsItsOperationsInOrder()
{
    QFETCH(Answer, answer);
    QFETCH(int, msec);
    QFETCH(QStringList, calls);
    m_server->answer("/a"_s, answer);
    m_server->answer("/b"_s, Answer::ok("text"));
    RecordingTask task(m_manager.get(), url());
    task.start();
    task.waitForFinished(msec);
    // Whether the body arrives in one piece is up to the network.
    task.calls.erase(std::unique(task.calls.begin(), task.calls.end()), task.calls.end());
    QCOMPARE(task.calls, calls);
}

QTEST_GUILESS_MAIN(TestKBaseTask)
#include "test_kbasetask.moc"
