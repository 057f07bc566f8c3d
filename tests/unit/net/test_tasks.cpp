#include "net/kgetfiletask.h"
#include "net/kposttask.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtCore/QTemporaryDir>

enum class Kind { Get, File, Post };
Q_DECLARE_METATYPE(Kind)

/// What every kind of task does.
class TestTasks : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void init()
    {
        NetTest::init();
        QFile::remove(filePath());
    }

    void succeedsWithTheWholeBody_data() { Answers::wholeRows(); }
    void succeedsWithTheWholeBody();
    void failsWithTheReplysErrorText_data() { Answers::failingRows(); }
    void failsWithTheReplysErrorText();
    void failsWhereNoServerIs_data();
    void failsWhereNoServerIs();
    void failsWhenTheBodyIsLongerThanItMayBe_data();
    void failsWhenTheBodyIsLongerThanItMayBe();

    void followsARedirect_data();
    void followsARedirect();
    void followsAChainOfRedirectsAndFinishesOnce();
    void resolvesEachRedirectAgainstTheOneBefore();
    void failsWhenARedirectLeadsNowhere();
    void followsARedirectCycleUntilItIsAborted();

    void isAbortedAtOnce_data() { Answers::stallingRows(); }
    void isAbortedAtOnce();
    void isAbortedInTheMiddleOfAChain();
    void isNotAbortedAfterItsEnd();
    void givesUpOnAStalledAnswer_data() { Answers::stallingRows(); }
    void givesUpOnAStalledAnswer();
    void givesUpAtTheNextTurnOfTheLoopForZero();
    void waitsWithoutLimitForANegativeTime();
    void stopsWaitingWhenItHasFinishedInTime();

    void leavesARunningReplyToTheEventLoopWhenDestroyed();
    void mayBeDestroyedFromItsFinishedSignal();
    void mayBeDestroyedWhileItFollowsRedirects();

private:
    QString filePath() const { return m_folder.filePath("file.bin"_s); }

    /// A task of the row's kind.
    std::unique_ptr<KBaseTask> task(const QString &url);

    /// What the task has received: what it holds, or the file, which is there only after success.
    QByteArray received(KBaseTask &task) const;

    /// Whether every request so far was of the row's kind, with its header and body.
    bool requestsAreOfTheKind() const;

    QTemporaryDir m_folder;
};

namespace {

const QByteArray posted = "name=value";

Kind kind()
{
    QFETCH_GLOBAL(Kind, kind);
    return kind;
}

} // namespace

void TestTasks::initTestCase_data()
{
    QTest::addColumn<Kind>("kind");
    QTest::newRow("get") << Kind::Get;
    QTest::newRow("file") << Kind::File;
    QTest::newRow("post") << Kind::Post;
}

std::unique_ptr<KBaseTask> TestTasks::task(const QString &url)
{
    if (kind() == Kind::Get)
        return std::make_unique<KBaseTask>(m_manager.get(), request(url));
    if (kind() == Kind::Post)
        return std::make_unique<KPostTask>(m_manager.get(), request(url), posted);
    auto task = std::make_unique<KGetFileTask>(m_manager.get(), request(url));
    QString error;
    if (!task->setFile(filePath(), error))
        qFatal("%s", qPrintable(error));
    return task;
}

QByteArray TestTasks::received(KBaseTask &task) const
{
    if (kind() != Kind::File)
        return task.readAll();
    QFile file(filePath());
    return file.open(QIODevice::ReadOnly) ? file.readAll() : "no file";
}

bool TestTasks::requestsAreOfTheKind() const
{
    const bool isPost = kind() == Kind::Post;
    for (const ScriptedServer::Request &request : m_server->requests()) {
        if (request.method != (isPost ? "POST" : "GET") ||
            request.headers.value("x-clip") != "one" ||
            request.body != (isPost ? posted : QByteArray()))
            return false;
    }
    return true;
}

void TestTasks::succeedsWithTheWholeBody()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer("/a"_s, answer.held());
    const auto task = this->task(url());
    QCOMPARE(task->status(), KBaseTask::TaskRunning);
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    QByteArray receivedWhenFinished;
    connect(task.get(), &KBaseTask::finished, this,
            [&] { receivedWhenFinished = received(*task); });
    task->start();
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(task->status(), KBaseTask::TaskRunning);
    QCOMPARE(finished.count(), 0);

    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QCOMPARE(finished.count(), 1);
    QVERIFY(receivedWhenFinished == body);
    QCOMPARE(m_server->requests().size(), 1);
    QVERIFY(requestsAreOfTheKind());
}

void TestTasks::failsWithTheReplysErrorText()
{
    QFETCH(Answer, answer);
    m_server->answer("/a"_s, answer);
    QString errorText;
    connect(m_manager.get(), &QNetworkAccessManager::finished, this,
            [&errorText](const QNetworkReply *reply) { errorText = reply->errorString(); });
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    bool existsWhenFinished = true;
    connect(task.get(), &KBaseTask::finished, this,
            [&] { existsWhenFinished = QFile::exists(filePath()); });
    task->start();
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!task->errorString().isEmpty());
    QCOMPARE(task->errorString(), errorText);
    QVERIFY(!existsWhenFinished);
}

void TestTasks::failsWhereNoServerIs_data()
{
    QTest::addColumn<QString>("url");
    QTest::newRow("refused") << "refused"_s; // at a port of its own
    QTest::newRow("empty") << QString();
    QTest::newRow("unknown scheme") << "clip://127.0.0.1/a"_s;
    QTest::newRow("no scheme") << "127.0.0.1/a"_s;
    QTest::newRow("no host") << "http:///a"_s;
}

void TestTasks::failsWhereNoServerIs()
{
    QFETCH(QString, url);
    const ClosedPort port;
    const auto task = this->task(url == "refused"_s ? port.url("/a"_s) : url);
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QCOMPARE(finished.count(), 0);
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!task->errorString().isEmpty());
    QVERIFY(!QFile::exists(filePath()));
}

void TestTasks::failsWhenTheBodyIsLongerThanItMayBe_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<KBaseTask::Status>("status");
    const Answer large = Answer::ok(Answers::largeBody());
    QTest::newRow("as long as it may be") << Answer::ok("text") << KBaseTask::TaskSucceeded;
    QTest::newRow("by a byte") << Answer::ok("text!") << KBaseTask::TaskFailed;
    QTest::newRow("by megabytes") << large << KBaseTask::TaskFailed;
    QTest::newRow("of unknown length") << Answer(large).withoutLength() << KBaseTask::TaskFailed;
    QTest::newRow("compressed")
        << Answer::ok(Answers::gzipBytes()).withHeader("Content-Encoding", "gzip")
        << KBaseTask::TaskFailed;
    QTest::newRow("behind a short part")
        << Answer::ok("text!").stalledInBody(5) << KBaseTask::TaskFailed;
}

void TestTasks::failsWhenTheBodyIsLongerThanItMayBe()
{
    QFETCH(Answer, answer);
    QFETCH(KBaseTask::Status, status);
    m_server->answer("/a"_s, answer);
    const auto task = this->task(url());
    task->setMaxSize(4);
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), status);
    QVERIFY(!finished.wait(50)); // once
    if (status == KBaseTask::TaskSucceeded)
        QCOMPARE(received(*task), QByteArray("text"));
    else
        QVERIFY(!QFile::exists(filePath()));
}

void TestTasks::followsARedirect_data()
{
    QTest::addColumn<int>("code");
    QTest::addColumn<QString>("location");
    QTest::addColumn<QString>("followed");
    QTest::newRow("absolute") << 302 << "%1/c/d"_s
                              << "/c/d"_s;
    QTest::newRow("without scheme") << 302 << "//%2/c/d"_s
                                    << "/c/d"_s;
    QTest::newRow("path from the root") << 302 << "/c/d"_s
                                        << "/c/d"_s;
    QTest::newRow("below") << 302 << "c/d"_s
                           << "/a/c/d"_s;
    QTest::newRow("above") << 302 << "../d"_s
                           << "/d"_s;
    QTest::newRow("query") << 302 << "?x=1"_s
                           << "/a/b?x=1"_s;
    for (const int code : {301, 303, 307, 308})
        QTest::addRow("%d", code) << code << "d"_s
                                  << "/a/d"_s;
}

void TestTasks::followsARedirect()
{
    QFETCH(int, code);
    QFETCH(QString, location);
    QFETCH(QString, followed);
    location.replace("%1"_s, m_server->url());
    location.replace("%2"_s, QUrl(m_server->url()).authority());
    m_server->answer("/a/b"_s, Answer::redirect(location, code, "moved a long way away"));
    m_server->answer(followed, Answer::ok("text"));
    const auto task = this->task(url("/a/b"_s));
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QCOMPARE(received(*task), QByteArray("text"));
    QCOMPARE(m_server->paths(), QStringList({"/a/b"_s, followed}));
    QVERIFY(requestsAreOfTheKind());
}

void TestTasks::followsAChainOfRedirectsAndFinishesOnce()
{
    constexpr int hops = 60; // more than the framework would follow
    for (int hop = 0; hop < hops; ++hop)
        m_server->answer("/%1"_s.arg(hop), Answer::redirect("/%1"_s.arg(hop + 1)));
    m_server->answer("/%1"_s.arg(hops), Answer::ok("text"));
    const auto task = this->task(url("/0"_s));
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    bool isRunning = true;
    connect(m_server.get(), &ScriptedServer::requested, task.get(),
            [&] { isRunning = isRunning && task->status() == KBaseTask::TaskRunning; });
    task->start();
    QVERIFY(finished.wait(30000));
    QVERIFY(isRunning);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QCOMPARE(received(*task), QByteArray("text"));
    QCOMPARE(m_server->requests().size(), hops + 1);
    QCOMPARE(m_server->mostOpenRequests(), 1);
    QTRY_COMPARE(m_manager->findChildren<QNetworkReply *>().size(), 1);
    QVERIFY(requestsAreOfTheKind());
}

void TestTasks::resolvesEachRedirectAgainstTheOneBefore()
{
    ScriptedServer other;
    m_server->answer("/a/b"_s, Answer::redirect(other.url("/c/d"_s)));
    other.answer("/c/d"_s, Answer::redirect("e"_s));
    other.answer("/c/e"_s, Answer::ok("text"));
    const auto task = this->task(url("/a/b"_s));
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(received(*task), QByteArray("text"));
    QCOMPARE(other.paths(), QStringList({"/c/d"_s, "/c/e"_s}));
}

void TestTasks::failsWhenARedirectLeadsNowhere()
{
    m_server->answer("/a"_s, Answer::redirect("/b"_s, 302, "moved"));
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), 2);
    QVERIFY(!QFile::exists(filePath()));
}

void TestTasks::followsARedirectCycleUntilItIsAborted()
{
    m_server->answer("/a"_s, Answer::redirect("/b"_s, 302, "moved"));
    m_server->answer("/b"_s, Answer::redirect("/a"_s));
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QSignalSpy requested(m_server.get(), &ScriptedServer::requested);
    while (m_server->requests().size() <= 120)
        QVERIFY(requested.wait());
    QCOMPARE(finished.count(), 0);
    QCOMPARE(task->status(), KBaseTask::TaskRunning);

    task->abort();
    QCOMPARE(finished.count(), 1);
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QVERIFY(!QFile::exists(filePath()));
    // One request may be on its way.
    const int asked = m_server->requests().size();
    QTest::qWait(50);
    QVERIFY(m_server->requests().size() <= asked + 1);
}

void TestTasks::isAbortedAtOnce()
{
    QFETCH(Answer, answer);
    m_server->answer("/a"_s, answer);
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QTRY_COMPARE(m_server->requests().size(), 1);
    QCOMPARE(task->status(), KBaseTask::TaskRunning);
    QCOMPARE(QFile::exists(filePath()), kind() == Kind::File);
    task->abort();
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!QFile::exists(filePath()));
    task->abort();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
}

void TestTasks::isAbortedInTheMiddleOfAChain()
{
    m_server->answer("/a"_s, Answer::redirect("/b"_s));
    m_server->answer("/b"_s, Answer::ok("text").silent());
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QTRY_COMPARE(m_server->requests().size(), 2);
    task->abort();
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
}

void TestTasks::isNotAbortedAfterItsEnd()
{
    m_server->answer("/a"_s, Answer::ok("text"));
    const auto task = this->task(url());
    task->start();
    task->waitForFinished(-1);
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->abort();
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(received(*task), QByteArray("text"));
}

void TestTasks::givesUpOnAStalledAnswer()
{
    QFETCH(Answer, answer);
    m_server->answer("/a"_s, answer);
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    const FiredTimers timers;
    task->start();
    task->waitForFinished(70);
    QVERIFY(timers.intervals.contains(70));
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
    QVERIFY(!QFile::exists(filePath()));
    QTRY_COMPARE(m_server->openRequests(), 0);
}

void TestTasks::givesUpAtTheNextTurnOfTheLoopForZero()
{
    m_server->answer("/a"_s, Answer::ok("text").silent());
    const auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    task->waitForFinished(0); // the server would never answer
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QCOMPARE(finished.count(), 1);
}

void TestTasks::waitsWithoutLimitForANegativeTime()
{
    m_server->answer("/a"_s, Answer::ok("text").delayed(300));
    const auto task = this->task(url());
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
}

void TestTasks::stopsWaitingWhenItHasFinishedInTime()
{
    m_server->answer("/a"_s, Answer::ok("text"));
    const auto task = this->task(url());
    const FiredTimers timers;
    task->start();
    task->waitForFinished(10000);
    QVERIFY(!timers.intervals.contains(10000));
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QCOMPARE(received(*task), QByteArray("text"));
}

void TestTasks::leavesARunningReplyToTheEventLoopWhenDestroyed()
{
    m_server->answer("/a"_s, Answer::ok("text").stalledInBody(2));
    auto task = this->task(url());
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    const QPointer<QNetworkReply> reply = m_manager->findChild<QNetworkReply *>();
    QVERIFY(reply);
    QTRY_COMPARE(m_server->openRequests(), 1);
    task.reset();
    QVERIFY(reply);
    QCOMPARE(QFile::remove(filePath()), kind() == Kind::File); // it is closed
    QTRY_VERIFY(!reply);
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QVERIFY(!QFile::exists(filePath()));
}

void TestTasks::mayBeDestroyedFromItsFinishedSignal()
{
    m_server->answer("/a"_s, Answer::ok("text"));
    QPointer<KBaseTask> task = this->task(url()).release();
    connect(task.data(), &KBaseTask::finished, this, [&task] { delete task; });
    task->start();
    QTRY_VERIFY(!task);
    QTRY_VERIFY(!m_manager->findChild<QNetworkReply *>());
}

void TestTasks::mayBeDestroyedWhileItFollowsRedirects()
{
    m_server->answer("/a"_s, Answer::redirect("/a"_s));
    auto task = this->task(url());
    task->start();
    QSignalSpy requested(m_server.get(), &ScriptedServer::requested);
    while (m_server->requests().size() <= 10)
        QVERIFY(requested.wait());
    task.reset();
    QTRY_VERIFY(!m_manager->findChild<QNetworkReply *>());
}

QTEST_GUILESS_MAIN(TestTasks)
#include "test_tasks.moc"
