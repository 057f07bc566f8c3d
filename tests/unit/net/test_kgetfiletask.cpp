#include "net/kgetfiletask.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/unit/net/nettest.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QTemporaryDir>
#include <QtCore/QThread>

/// What a download into a file does beside what every task does (test_tasks).
class TestKGetFileTask : public NetTest
{
    Q_OBJECT

private Q_SLOTS:
    void writesTheBodyAsItArrives();
    void holdsLittleOfTheBodyInMemory_data();
    void holdsLittleOfTheBodyInMemory();
    void emptiesAnExistingFileBeforeItStarts();
    void startsTheFileAgainFromZeroBytesOnARedirect_data();
    void startsTheFileAgainFromZeroBytesOnARedirect();
    void failsWhenTheDiskIsFull_data();
    void failsWhenTheDiskIsFull();
    void leavesNoFileWhenAbortedOnAFullDisk();
    void closesTheFileBeforeItFinishes();
    void refusesATargetThatCannotBeOpened_data();
    void refusesATargetThatCannotBeOpened();
    void refusesANamedPipe();

private:
    QString filePath() const { return m_folder.filePath("file.bin"_s); }
    std::unique_ptr<KGetFileTask> task() const
    {
        auto task = std::make_unique<KGetFileTask>(m_manager.get(), url());
        QString error;
        if (!task->setFile(filePath(), error))
            qFatal("%s", qPrintable(error));
        return task;
    }

    QTemporaryDir m_folder;
};

void TestKGetFileTask::writesTheBodyAsItArrives()
{
    const QByteArray body = Answers::largeBody();
    m_server->answer("/a"_s, Answer::ok(body).stalledInBody(3000000));
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
    QFETCH(int, maxSize);
    const QByteArray body = Answers::largeBody().repeated(6);
    m_server->answer("/a"_s, Answer::ok(body));
    auto slow = std::make_unique<SlowManager>();
    const SlowManager &watch = *slow;
    m_manager = std::move(slow);
    const auto task = this->task();
    if (maxSize >= 0)
        task->setMaxSize(maxSize);
    task->start();
    QCOMPARE(watch.findChild<QNetworkReply *>()->readBufferSize(), qint64(1) << 20);
    task->waitForFinished(-1);
    QCOMPARE(task->status(), KBaseTask::TaskSucceeded);
    QVERIFY(Sandbox::readFile(filePath()) == body);
    QVERIFY2(watch.most <= qint64(2) * 1024 * 1024, qPrintable("%1"_s.arg(watch.most)));
}

void TestKGetFileTask::emptiesAnExistingFileBeforeItStarts()
{
    QFile earlier(filePath());
    QVERIFY(earlier.open(QIODevice::WriteOnly) && earlier.write("what was there before") > 0);
    earlier.close();
    m_server->answer("/a"_s, Answer::ok("text"));
    const auto task = this->task();
    QCOMPARE(QFileInfo(filePath()).size(), qint64(0));
    QVERIFY(m_server->requests().isEmpty());
    task->start();
    task->waitForFinished(-1);
    QCOMPARE(Sandbox::readFile(filePath()), QByteArray("text"));
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
    m_server->answer("/a"_s, Answer::redirect("b"_s, 302, redirectBody));
    m_server->answer("/b"_s, Answer::redirect(url("/c"_s), 301, redirectBody));
    m_server->answer("/c"_s, Answer::ok(body).held());
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

void TestKGetFileTask::failsWhenTheDiskIsFull_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::newRow("found when the body is flushed") << QByteArray("text!");
    QTest::newRow("found while the body is written") << Answers::largeBody();
}

void TestKGetFileTask::failsWhenTheDiskIsFull()
{
    if (!Machine::FullDisk::isPossible)
        QSKIP("files cannot be kept from growing here");
    QFETCH(QByteArray, body);
    m_server->answer("/a"_s, Answer::ok(body));
    const auto task = this->task();
    {
        const Machine::FullDisk disk(4);
        task->start();
        task->waitForFinished(-1);
    }
    QCOMPARE(task->status(), KBaseTask::TaskFailed);
    QVERIFY(!QFile::exists(filePath()));
}

void TestKGetFileTask::leavesNoFileWhenAbortedOnAFullDisk()
{
    if (!Machine::FullDisk::isPossible)
        QSKIP("files cannot be kept from growing here");
    m_server->answer("/a"_s, Answer::ok("text").stalledInBody(2));
    const auto task = this->task();
    task->start();
    QSignalSpy readyRead(m_manager->findChild<QNetworkReply *>(), &QNetworkReply::readyRead);
    QVERIFY(readyRead.wait());
    {
        const Machine::FullDisk disk(0); // for what is not yet flushed
        task->abort();
    }
    QVERIFY(!QFile::exists(filePath()));
}

// A thousand pictures would need a thousand open files.
void TestKGetFileTask::closesTheFileBeforeItFinishes()
{
    m_server->answer("/a"_s, Answer::ok("text"));
    const auto task = this->task();
    QVERIFY(Machine::isOpen(filePath()));
    task->start();
    task->waitForFinished(-1);
    QVERIFY(!Machine::isOpen(filePath()));
    QVERIFY(QFile::remove(filePath()));
}

void TestKGetFileTask::refusesATargetThatCannotBeOpened_data()
{
    QTest::addColumn<QString>("relative");
    QTest::newRow("a folder") << "folder"_s;
    QTest::newRow("in a folder that is missing") << "missing/file.bin"_s;
    QTest::newRow("below a file") << "plain/file.bin"_s;
}

void TestKGetFileTask::refusesATargetThatCannotBeOpened()
{
    QFETCH(QString, relative);
    QDir(m_folder.path()).mkdir("folder"_s);
    QVERIFY(QFile(m_folder.filePath("plain"_s)).open(QIODevice::WriteOnly));
    const QString target = m_folder.filePath(relative);
    KGetFileTask task(m_manager.get(), url());
    QString error;
    QVERIFY(!task.setFile(target, error));
    QFile file(target);
    QVERIFY(!file.open(QIODevice::WriteOnly));
    QCOMPARE(error, file.errorString());
    QCOMPARE(task.status(), KBaseTask::TaskRunning);
}

void TestKGetFileTask::refusesANamedPipe()
{
    if (!Machine::makePipe(filePath()))
        QSKIP("no pipe has a name of the file system here");
    KGetFileTask task(m_manager.get(), url());
    QString error;
    QVERIFY(!task.setFile(filePath(), error));
    QVERIFY(!error.isEmpty());
}

QTEST_GUILESS_MAIN(TestKGetFileTask)
#include "test_kgetfiletask.moc"
