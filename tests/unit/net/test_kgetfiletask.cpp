#include "net/kgetfiletask.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QThread>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

class TestKGetFileTask : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void putsTheWholeBodyIntoTheFile_data();
    void putsTheWholeBodyIntoTheFile();
    void writesTheBodyAsItArrives();
    void holdsLittleOfTheBodyInMemory_data();
    void holdsLittleOfTheBodyInMemory();
    void emptiesAnExistingFileBeforeItStarts();
    void leavesNoFileBehindWhenItFails_data();
    void leavesNoFileBehindWhenItFails();
    void leavesNoFileBehindWhenTheBodyIsTooLong();
    void leavesNoFileBehindWhenTheConnectionIsRefused();
    void leavesNoFileBehindWhenItIsAborted_data();
    void leavesNoFileBehindWhenItIsAborted();
    void leavesNoFileBehindWhenItTimesOut_data();
    void leavesNoFileBehindWhenItTimesOut();
    void startsTheFileAgainFromZeroBytesOnARedirect_data();
    void startsTheFileAgainFromZeroBytesOnARedirect();
    void leavesNoFileBehindWhenARedirectLeadsNowhere();
    void leavesNoFileBehindWhenARedirectCycleIsAborted();
    void refusesATargetThatCannotBeOpened_data();
    void refusesATargetThatCannotBeOpened();
    void closesTheFileWhenDestroyedWhileRunning();

private:
    QString filePath() const { return m_sandbox->path(QStringLiteral("file.bin")); }
    std::unique_ptr<KGetFileTask> task() const;

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
    std::unique_ptr<QNetworkAccessManager> m_manager;
};

void TestKGetFileTask::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    m_server = std::make_unique<ScriptedServer>();
    m_manager = std::make_unique<QNetworkAccessManager>();
}

void TestKGetFileTask::cleanup()
{
    m_manager.reset();
    m_server.reset();
    m_sandbox.reset();
}

std::unique_ptr<KGetFileTask> TestKGetFileTask::task() const
{
    auto task =
        std::make_unique<KGetFileTask>(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QString error;
    if (!task->setFile(filePath(), error))
        qFatal("%s", qPrintable(error));
    return task;
}

void TestKGetFileTask::putsTheWholeBodyIntoTheFile_data()
{
    Answers::wholeRows();
}

void TestKGetFileTask::putsTheWholeBodyIntoTheFile()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"), answer);
    const auto task = this->task();
    QByteArray fileWhenFinished;
    connect(task.get(), &KBaseTask::finished, this,
            [&] { fileWhenFinished = Sandbox::readFile(filePath()); });
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QVERIFY(QFile::exists(filePath()));
    QVERIFY(fileWhenFinished == body);
    QVERIFY(Sandbox::readFile(filePath()) == body);
}

void TestKGetFileTask::writesTheBodyAsItArrives()
{
    const QByteArray body = Answers::largeBody();
    m_server->answer(QStringLiteral("/a"), Answer::ok(body).stalledInBody(3000000));
    const auto task = this->task();
    task->start();
    QTRY_VERIFY(QFileInfo(filePath()).size() > 2900000);
    QCOMPARE(task->status(), KBaseTask::TaskRunning);
    QVERIFY(body.startsWith(Sandbox::readFile(filePath())));
}

void TestKGetFileTask::holdsLittleOfTheBodyInMemory_data()
{
    QTest::addColumn<int>("maxSize");
    QTest::newRow("of any size") << -1;
    QTest::newRow("of a size that is limited") << 64 * 1024 * 1024;
}

void TestKGetFileTask::holdsLittleOfTheBodyInMemory()
{
    // Sees what waits in memory before the task takes it, and is slow to let it do so.
    class SlowManager : public QNetworkAccessManager
    {
    public:
        qint64 most = 0;

    protected:
        QNetworkReply *createRequest(Operation operation, const QNetworkRequest &request,
                                     QIODevice *data) override
        {
            QNetworkReply *reply = QNetworkAccessManager::createRequest(operation, request, data);
            connect(reply, &QNetworkReply::readyRead, this, [this, reply] {
                most = qMax(most, reply->bytesAvailable());
                QThread::msleep(10);
            });
            return reply;
        }
    };
    const QByteArray body = Answers::largeBody().repeated(6);
    m_server->answer(QStringLiteral("/a"), Answer::ok(body));
    auto slow = std::make_unique<SlowManager>();
    const SlowManager &watch = *slow;
    m_manager = std::move(slow);
    const auto task = this->task();
    QFETCH(int, maxSize);
    if (maxSize >= 0)
        task->setMaxSize(maxSize);
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QVERIFY(Sandbox::readFile(filePath()) == body);
    QVERIFY2(watch.most <= 2 * 1024 * 1024, qPrintable(QString::number(watch.most)));
}

void TestKGetFileTask::emptiesAnExistingFileBeforeItStarts()
{
    m_sandbox->writeFile(QStringLiteral("file.bin"), "what was there before");
    m_server->answer(QStringLiteral("/a"), Answer::ok("text"));
    const auto task = this->task();
    QCOMPARE(QFileInfo(filePath()).size(), qint64(0));
    QVERIFY(m_server->requests().isEmpty());
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(Sandbox::readFile(filePath()), QByteArray("text"));
}

void TestKGetFileTask::leavesNoFileBehindWhenItFails_data()
{
    Answers::failingRows();
}

void TestKGetFileTask::leavesNoFileBehindWhenItFails()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    const auto task = this->task();
    bool existsWhenFinished = true;
    connect(task.get(), &KBaseTask::finished, this,
            [&] { existsWhenFinished = QFile::exists(filePath()); });
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QVERIFY(!task->errorString().isEmpty());
    QVERIFY(!existsWhenFinished);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileBehindWhenTheBodyIsTooLong()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok(Answers::largeBody()).withoutLength());
    const std::unique_ptr<KGetFileTask> task = this->task();
    task->setMaxSize(1000 * 1000);
    task->start();
    task->waitForFinished(5000);
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileBehindWhenTheConnectionIsRefused()
{
    const ClosedPort port;
    KGetFileTask task(m_manager.get(), port.url(QStringLiteral("/a")));
    QString error;
    QVERIFY(task.setFile(filePath(), error));
    QVERIFY(QFile::exists(filePath()));
    task.start();
    task.waitForFinished(-1);
    QCOMPARE(task.status(), KBaseTask::TaskFailed);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileBehindWhenItIsAborted_data()
{
    Answers::stallingRows();
}

void TestKGetFileTask::leavesNoFileBehindWhenItIsAborted()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    const auto task = this->task();
    task->start();
    QTRY_COMPARE(m_server->requests().size(), 1);
    QVERIFY(QFile::exists(filePath()));
    task->abort();
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileBehindWhenItTimesOut_data()
{
    Answers::stallingRows();
}

void TestKGetFileTask::leavesNoFileBehindWhenItTimesOut()
{
    QFETCH(Answer, answer);
    m_server->answer(QStringLiteral("/a"), answer);
    const auto task = this->task();
    task->start();
    task->waitForFinished(50);
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::startsTheFileAgainFromZeroBytesOnARedirect_data()
{
    QTest::addColumn<QByteArray>("redirectBody");
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("longer than the file")
        << QByteArray("moved a long way away") << QByteArray("text");
    QTest::newRow("shorter than the file") << QByteArray("m") << QByteArray("text");
    QTest::newRow("some megabytes") << Answers::largeBody() << QByteArray("text");
    QTest::newRow("nothing to come") << QByteArray("moved") << QByteArray();
    QTest::newRow("no body") << QByteArray() << QByteArray("text");
}

void TestKGetFileTask::startsTheFileAgainFromZeroBytesOnARedirect()
{
    QFETCH(QByteArray, redirectBody);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a"),
                     Answer::redirect(QStringLiteral("b"), 302, redirectBody));
    m_server->answer(QStringLiteral("/b"),
                     Answer::redirect(m_server->url(QStringLiteral("/c")), 301, redirectBody));
    m_server->answer(QStringLiteral("/c"), Answer::ok(body).held());
    const auto task = this->task();
    QSignalSpy finished(task.get(), &KBaseTask::finished);
    task->start();
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(QFileInfo(filePath()).size(), qint64(0));
    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QVERIFY(QFile::exists(filePath()));
    QCOMPARE(Sandbox::readFile(filePath()), body);
}

void TestKGetFileTask::leavesNoFileBehindWhenARedirectLeadsNowhere()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/b"), 302, "moved"));
    const auto task = this->task();
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileBehindWhenARedirectCycleIsAborted()
{
    m_server->answer(QStringLiteral("/a"), Answer::redirect(QStringLiteral("/a"), 302, "moved"));
    const auto task = this->task();
    task->start();
    QSignalSpy requested(m_server.get(), &ScriptedServer::requested);
    while (m_server->requests().size() <= 120)
        QVERIFY(requested.wait());
    QCOMPARE(task->status(), KBaseTask::TaskRunning);
    task->abort();
    QCOMPARE(task->status(), KBaseTask::TaskAborted);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::refusesATargetThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("relative");
    QTest::newRow("a folder") << QStringLiteral("folder");
    QTest::newRow("in a folder that is missing") << QStringLiteral("missing/file.bin");
    QTest::newRow("below a file") << QStringLiteral("plain/file.bin");
}

void TestKGetFileTask::refusesATargetThatCannotBeOpened()
{
    QFETCH(QString, relative);
    QDir(m_sandbox->path(QString())).mkdir(QStringLiteral("folder"));
    m_sandbox->writeFile(QStringLiteral("plain"), "text");
    const QString target = m_sandbox->path(relative);
    KGetFileTask task(m_manager.get(), m_server->url(QStringLiteral("/a")));
    QString error;
    QVERIFY(!task.setFile(target, error));
    QFile file(target);
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QCOMPARE(error, file.errorString());
    QCOMPARE(task.status(), KBaseTask::TaskRunning);
}

void TestKGetFileTask::closesTheFileWhenDestroyedWhileRunning()
{
    m_server->answer(QStringLiteral("/a"), Answer::ok("text").stalledInBody(2));
    auto task = this->task();
    task->start();
    QTRY_COMPARE(m_server->requests().size(), 1);
    task.reset();
    QVERIFY(QFile::remove(filePath()));
    QTRY_COMPARE(m_server->openRequests(), 0);
    QVERIFY(!QFile::exists(filePath()));
}

QTEST_GUILESS_MAIN(TestKGetFileTask)
#include "test_kgetfiletask.moc"
