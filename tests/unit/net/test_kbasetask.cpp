#include "net/kbasetask.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <algorithm>
#include <memory>

using Answer = ScriptedServer::Answer;

namespace {

/// Writes down which of its operations were called.
class RecordingTask : public KBaseTask
{
public:
    using KBaseTask::KBaseTask;

    QStringList calls;

protected:
    QNetworkReply *createReply() override
    {
        calls += QStringLiteral("createReply");
        return KBaseTask::createReply();
    }
    void onAborted() override { calls += QStringLiteral("onAborted"); }
    void onError() override { calls += QStringLiteral("onError"); }
    void onRedirected() override { calls += QStringLiteral("onRedirected"); }
    void onSucceeded() override { calls += QStringLiteral("onSucceeded"); }
    void onReadyRead() override { calls += QStringLiteral("onReadyRead"); }
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

protected:
    QNetworkReply *createReply() override
    {
        return new CannedReply(manager(), m_body, m_declaredLength);
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
};

} // namespace

class TestKBaseTask : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void runsUntilItHasFinished();
    void succeedsWithTheWholeBody_data();
    void succeedsWithTheWholeBody();
    void failsWithTheReplysErrorText_data();
    void failsWithTheReplysErrorText();
    void failsWhenLessArrivesThanDeclaredEvenWithoutAnError_data();
    void failsWhenLessArrivesThanDeclaredEvenWithoutAnError();
    void failsWhenTheBodyIsLongerThanItMayBe_data();
    void failsWhenTheBodyIsLongerThanItMayBe();
    void takesABodyAsLongAsItMayBe();
    void failsWhenTheConnectionIsRefused();
    void failsForAnAddressThatIsNone_data();
    void failsForAnAddressThatIsNone();
    void readsAnAddressTolerantly();
    void sendsTheRequestsHeaders();
    void forwardsTheProgress();
    void forwardsAnUnknownTotalAsItIs();

    void followsARedirect_data();
    void followsARedirect();
    void followsEveryRedirectCode_data();
    void followsEveryRedirectCode();
    void followsAChainOfRedirectsAndFinishesOnce();
    void resolvesEachRedirectAgainstTheOneBefore();
    void keepsTheHeadersOverRedirects();
    void failsWhenARedirectLeadsNowhere();
    void followsARedirectCycleUntilItIsAborted();
    void treatsARedirectCodeWithoutTargetAsAnAnswer();

    void waitsWithoutLimitForANegativeTime();
    void givesUpAtTheNextTurnOfTheLoopForZero();
    void givesUpOnAStalledAnswerAfterItsTime_data();
    void givesUpOnAStalledAnswerAfterItsTime();
    void stopsWaitingWhenItHasFinishedInTime();
    void isAbortedInTheMiddleOfAChain();
    void handlesOtherEventsWhileItWaits();

    void isAbortedAtOnce_data();
    void isAbortedAtOnce();
    void isNotAbortedAfterItsEnd();
    void leavesARunningReplyToTheEventLoopWhenDestroyed();
    void mayBeDestroyedFromItsFinishedSignal();
    void mayBeDestroyedWhileItFollowsRedirects();

    void callsItsOperationsInOrder_data();
    void callsItsOperationsInOrder();

private:
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

void TestKBaseTask::init()
{
    m_server = std::make_unique<ScriptedServer>();
    m_manager = std::make_unique<QNetworkAccessManager>();
}

void TestKBaseTask::cleanup()
{
    m_manager.reset();
    m_server.reset();
}

void TestKBaseTask::runsUntilItHasFinished()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").held());
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QCOMPARE(task.status(), KBaseTask::TaskRunning);
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(task.status(), KBaseTask::TaskRunning);
    QCOMPARE(finished.count(), 0);

    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), 1);
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("GET"));
}

void TestKBaseTask::succeedsWithTheWholeBody_data()
{
    Answers::wholeRows();
}

void TestKBaseTask::succeedsWithTheWholeBody()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), answer);
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QVERIFY(task.readAll() == body);
    QVERIFY(task.readAll().isEmpty());
}

void TestKBaseTask::failsWithTheReplysErrorText_data()
{
    Answers::failingRows();
}

void TestKBaseTask::failsWithTheReplysErrorText()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    QString errorText;
    connect(m_manager.get(), &QNetworkAccessManager::finished, this,
            [&errorText](const QNetworkReply *reply) { errorText = reply->errorString(); });
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!task.errorString().isEmpty());
    QCOMPARE(task.errorString(), errorText);
}

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

void TestKBaseTask::failsWhenTheBodyIsLongerThanItMayBe_data()
{
    QTest::addColumn<Answer>("answer");

    const QByteArray large = Answers::largeBody();
    QTest::newRow("by a byte") << Answer::ok("text!");
    QTest::newRow("by megabytes") << Answer::ok(large);
    QTest::newRow("of unknown length") << Answer::ok(large).withoutLength();
    QTest::newRow("compressed")
        << Answer::ok(Answers::gzipBytes()).withHeader("Content-Encoding", "gzip");
    QTest::newRow("behind a short part") << Answer::ok("text!").stalledInBody(5);
}

void TestKBaseTask::failsWhenTheBodyIsLongerThanItMayBe()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.setMaxSize(4);
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QTest::qWait(50);
    QCOMPARE(finished.count(), 1);
}

void TestKBaseTask::takesABodyAsLongAsItMayBe()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.setMaxSize(4);
    task.start();
    task.waitForFinished(5000);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
}

void TestKBaseTask::failsWhenTheConnectionIsRefused()
{
    const ClosedPort port;
    KBaseTask task(m_manager.get(), port.url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!task.errorString().isEmpty());
}

void TestKBaseTask::failsForAnAddressThatIsNone_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("empty") << QString();
    QTest::newRow("unknown scheme") << QStringLiteral("clip://127.0.0.1/a");
    QTest::newRow("no scheme") << QStringLiteral("127.0.0.1/a");
    QTest::newRow("no host") << QStringLiteral("http:///a");
}

void TestKBaseTask::failsForAnAddressThatIsNone()
{
    QFETCH(QString, url);
    KBaseTask task(m_manager.get(), url);
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QCOMPARE(finished.count(), 0);
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
}

void TestKBaseTask::readsAnAddressTolerantly()
{
    m_server->answer(QStringLiteral("/a%20b%5B"), Answer::ok());
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a b%5B")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
}

void TestKBaseTask::sendsTheRequestsHeaders()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok());
    QNetworkRequest request(QUrl(m_server->url(QStringLiteral("/a"))));
    request.setRawHeader("X-Clip", "kept");
    KBaseTask task(m_manager.get(), request);
    // The task has a request of its own.
    request.setRawHeader("X-Clip", "changed");
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(m_server->requests().constFirst().headers.value("x-clip"), QByteArray("kept"));
}

void TestKBaseTask::forwardsTheProgress()
{
    const QByteArray body = Answers::largeBody();
    m_server->answer(QStringLiteral("/a"), Answer::ok(body));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
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

void TestKBaseTask::followsARedirect_data()
{
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("followed");
    QTest::newRow("absolute") << QStringLiteral("%1/c/d") << QStringLiteral("/c/d");
    QTest::newRow("without scheme") << QStringLiteral("//%2/c/d") << QStringLiteral("/c/d");
    QTest::newRow("path from the root") << QStringLiteral("/c/d") << QStringLiteral("/c/d");
    QTest::newRow("sibling") << QStringLiteral("d") << QStringLiteral("/a/d");
    QTest::newRow("below") << QStringLiteral("c/d") << QStringLiteral("/a/c/d");
    QTest::newRow("above") << QStringLiteral("../d") << QStringLiteral("/d");
    QTest::newRow("query") << QStringLiteral("?x=1") << QStringLiteral("/a/b?x=1");
}

void TestKBaseTask::followsARedirect()
{
    QFETCH(QString, location);
    QFETCH(QString, followed);
    const QString root = m_server->url();
    location.replace(QStringLiteral("%1"), root);
    location.replace(QStringLiteral("%2"), QUrl(root).authority());
    m_server->answer(QStringLiteral("/a/b"), Answer::redirect(location));
    m_server->answer(followed, Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a/b")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->paths(), QStringList({QStringLiteral("/a/b"), followed}));
}

void TestKBaseTask::followsEveryRedirectCode_data()
{
    QTest::addColumn<int>("code");
    for (const int code : {301, 302, 303, 307, 308})
        QTest::addRow("%d", code) << code;
}

void TestKBaseTask::followsEveryRedirectCode()
{
    QFETCH(int, code);
    m_server->answer(QStringLiteral("/a"),
                     Answer::redirect(QStringLiteral("/b"), code, "moved away"));
    m_server->answer(QStringLiteral("/b"), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
}

void TestKBaseTask::followsAChainOfRedirectsAndFinishesOnce()
{
    constexpr int hops = 60;
    for (int hop = 0; hop < hops; ++hop)
        m_server->answer(QStringLiteral("/%1").arg(hop),
                         Answer::redirect(QStringLiteral("/%1").arg(hop + 1)));
    m_server->answer(QStringLiteral("/%1").arg(hops), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/0")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    QStringList statuses;
    connect(m_server.get(), &ScriptedServer::requested, &task, [&] {
        if (task.status() != KBaseTask::TaskRunning)
            statuses += QString::number(task.status());
    });
    task.start();
    QVERIFY(finished.wait(30000));
    QCOMPARE(statuses, QStringList());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(m_server->requests().size(), hops + 1);
    QCOMPARE(m_server->mostOpenRequests(), 1);
}

void TestKBaseTask::resolvesEachRedirectAgainstTheOneBefore()
{
    ScriptedServer other;
    m_server->answer(QStringLiteral("/a/b"), Answer::redirect(other.url(QStringLiteral("/c/d"))));
    other.answer(QStringLiteral("/c/d"), Answer::redirect(QStringLiteral("e")));
    other.answer(QStringLiteral("/c/e"), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a/b")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(other.paths(), QStringList({QStringLiteral("/c/d"), QStringLiteral("/c/e")}));
}

void TestKBaseTask::keepsTheHeadersOverRedirects()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/b")));
    m_server->answer(QStringLiteral("/b"), Answer::redirect(QStringLiteral("/c"), 307));
    m_server->answer(QStringLiteral("/c"), Answer::ok());
    QNetworkRequest request(QUrl(m_server->url(QStringLiteral("/a"))));
    request.setRawHeader("X-Clip", "one");
    request.setHeader(QNetworkRequest::UserAgentHeader, QStringLiteral("Clipwright/7"));
    KBaseTask task(m_manager.get(), request);
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(m_server->requests().size(), 3);
    for (const ScriptedServer::Request &asked : m_server->requests()) {
        QCOMPARE(asked.method, QByteArray("GET"));
        QCOMPARE(asked.headers.value("x-clip"), QByteArray("one"));
        QCOMPARE(asked.headers.value("user-agent"), QByteArray("Clipwright/7"));
    }
}

void TestKBaseTask::failsWhenARedirectLeadsNowhere()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/b")));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QVERIFY(finished.wait());
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), 2);
}

void TestKBaseTask::followsARedirectCycleUntilItIsAborted()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/b")));
    m_server->answer(QStringLiteral("/b"), Answer::redirect(QStringLiteral("/a")));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QSignalSpy requested(m_server.get(), &ScriptedServer::requested);
    while (m_server->requests().size() <= 150)
        QVERIFY(requested.wait());
    QCOMPARE(finished.count(), 0);
    QCOMPARE(task.status(), KBaseTask::TaskRunning);

    task.abort();
    QCOMPARE(finished.count(), 1);
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    // One request may be on its way.
    const int asked = m_server->requests().size();
    QTest::qWait(50);
    QVERIFY(m_server->requests().size() <= asked + 1);
}

void TestKBaseTask::treatsARedirectCodeWithoutTargetAsAnAnswer()
{
    m_server->answer(QStringLiteral("/a"), Answer::error(300, "choose"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("choose"));
}

void TestKBaseTask::waitsWithoutLimitForANegativeTime()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").delayed(300));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
}

void TestKBaseTask::givesUpAtTheNextTurnOfTheLoopForZero()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").silent());
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    task.waitForFinished(0); // the server would never answer
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
}

void TestKBaseTask::givesUpOnAStalledAnswerAfterItsTime_data()
{
    Answers::stallingRows();
}

void TestKBaseTask::givesUpOnAStalledAnswerAfterItsTime()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    QElapsedTimer clock;
    clock.start();
    task.start();
    task.waitForFinished(100);
    QVERIFY(clock.elapsed() >= 80);
    QVERIFY(clock.elapsed() < 5000);
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
    QTRY_COMPARE(m_server->openRequests(), 0);
}

void TestKBaseTask::stopsWaitingWhenItHasFinishedInTime()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    QElapsedTimer clock;
    clock.start();
    task.start();
    task.waitForFinished(30000);
    QVERIFY(clock.elapsed() < 10000);
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(task.readAll(), QByteArray("text"));
    QCOMPARE(finished.count(), 1);
}

void TestKBaseTask::isAbortedInTheMiddleOfAChain()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/b")));
    m_server->answer(QStringLiteral("/b"), Answer::ok("text").silent());
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QTRY_COMPARE(m_server->requests().size(), 2);
    task.abort();
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->paths(), QStringList({QStringLiteral("/a"), QStringLiteral("/b")}));
}

void TestKBaseTask::handlesOtherEventsWhileItWaits()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("a").held());
    m_server->answer(QStringLiteral("/b"), Answer::ok("b"));
    KBaseTask outer(m_manager.get(), m_server->url(QStringLiteral("/a")));
    KBaseTask inner(m_manager.get(), m_server->url(QStringLiteral("/b")));
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

void TestKBaseTask::isAbortedAtOnce_data()
{
    Answers::stallingRows();
}

void TestKBaseTask::isAbortedAtOnce()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.start();
    QTRY_COMPARE(m_server->requests().size(), 1);
    QCOMPARE(task.status(), KBaseTask::TaskRunning);
    task.abort();
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
    task.abort();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(task.status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
}

void TestKBaseTask::isNotAbortedAfterItsEnd()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    KBaseTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(-1);
    QSignalSpy finished(&task, &KBaseTask::finished);
    task.abort();
    QCOMPARE(task.status(), KBaseTask::TaskSucceeded);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(task.readAll(), QByteArray("text"));
}

void TestKBaseTask::leavesARunningReplyToTheEventLoopWhenDestroyed()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").silent());
    auto task = std::make_unique<KBaseTask>(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    const QPointer<QNetworkReply> reply = m_manager->findChild<QNetworkReply *>();
    QVERIFY(reply);
    QTRY_COMPARE(m_server->openRequests(), 1);
    task.reset();
    QVERIFY(reply);
    QTRY_VERIFY(!reply);
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
}

void TestKBaseTask::mayBeDestroyedFromItsFinishedSignal()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    QPointer<KBaseTask> task = new KBaseTask(m_manager.get(), m_server->url(QStringLiteral("/a")));
    connect(task.data(), &KBaseTask::finished, this, [&task] { delete task; });
    task->start();
    QTRY_VERIFY(!task);
    QTRY_VERIFY(!m_manager->findChild<QNetworkReply *>());
}

void TestKBaseTask::mayBeDestroyedWhileItFollowsRedirects()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/a")));
    auto task = std::make_unique<KBaseTask>(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task->start();
    QSignalSpy requested(m_server.get(), &ScriptedServer::requested);
    while (m_server->requests().size() <= 10)
        QVERIFY(requested.wait());
    task.reset();
    QTRY_VERIFY(!m_manager->findChild<QNetworkReply *>());
}

void TestKBaseTask::callsItsOperationsInOrder_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<int>("msec");
    QTest::addColumn<QStringList>("calls");
    const QString create = QStringLiteral("createReply");
    const QString readyRead = QStringLiteral("onReadyRead");
    QTest::newRow("success") << Answer::ok("text") << -1
                             << QStringList({create, readyRead, QStringLiteral("onSucceeded")});
    QTest::newRow("error") << Answer::ok("text").closedInHead() << -1
                           << QStringList({create, QStringLiteral("onError")});
    QTest::newRow("time-out") << Answer::ok("text").silent() << 50
                              << QStringList({create, QStringLiteral("onAborted")});
    QTest::newRow("redirect") << Answer::redirect(QStringLiteral("/b"), 302, "moved") << -1
                              << QStringList({create, readyRead, QStringLiteral("onRedirected"),
                                              create, readyRead, QStringLiteral("onSucceeded")});
}

void TestKBaseTask::callsItsOperationsInOrder()
{
    QFETCH(Answer, answer);
    QFETCH(int, msec);
    QFETCH(QStringList, calls);
    m_server->answer(QStringLiteral("/a"), answer);
    m_server->answer(QStringLiteral("/b"), Answer::ok("text"));
    RecordingTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    task.start();
    task.waitForFinished(msec);
    // Whether the body arrives in one piece is up to the network.
    task.calls.removeDuplicates();
    calls.removeDuplicates();
    QCOMPARE(task.calls, calls);
}

QTEST_GUILESS_MAIN(TestKBaseTask)
#include "test_kbasetask.moc"
