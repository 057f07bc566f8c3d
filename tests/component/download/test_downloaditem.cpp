#include "config/content/configcontent.h"
#include "config/download/downloaditem.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QDir>
#include <QtCore/QFile>
#include <QtCore/QPointer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>

using Answer = ScriptedServer::Answer;

namespace {

const QByteArray previous = QByteArray("\x89PNG previous picture\0\xff", 24);

} // namespace

class TestDownloadItem : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void keepsThePreviousPictureWhenTheDiskIsFull();
    void waitsUntilItIsStarted();
    void savesThePictureUnderItsName_data();
    void savesThePictureUnderItsName();
    void savesThePictureUnderEveryName();
    void takesANameOnlyOnce();
    void takesANameWhileItRuns();
    void writesToATemporaryFileNamedAfterTheFirstName();
    void replacesAPreviousPictureOnceTheNewOneIsWhole();
    void overwritesAStrayTemporaryFile();
    void followsRedirects();
    void keepsThePreviousPictureWhenItFails_data();
    void keepsThePreviousPictureWhenItFails();
    void keepsThePreviousPictureWhenTheConnectionIsRefused();
    void endsWithoutASignalWhenAborted_data();
    void endsWithoutASignalWhenAborted();
    void isNotAbortedWhileItWaits();
    void isNotAbortedAfterItsEnd();
    void cannotStartWithoutATemporaryFile_data();
    void cannotStartWithoutATemporaryFile();
    void cannotStartUnderATooLongName();
    void savesUnderTheOtherNamesWhenOneCannotBeWritten();
    void usesTheSharedAccessManager();
    void mayBeDestroyedWhileItRuns();
    void mayBeDestroyedFromItsFinishedSignal();

private:
    static QString image(const QString &name)
    {
        return Config::imagesDir() + QLatin1Char('/') + name;
    }
    static QStringList images() { return QDir(Config::imagesDir()).entryList(QDir::Files); }

    std::unique_ptr<DownloadItem> item(const QStringList &names);

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
};

void TestDownloadItem::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    m_server = std::make_unique<ScriptedServer>();
}

void TestDownloadItem::cleanup()
{
    m_server.reset();
    m_sandbox.reset();
}

std::unique_ptr<DownloadItem> TestDownloadItem::item(const QStringList &names)
{
    return std::make_unique<DownloadItem>(nullptr, names, m_server->url(QStringLiteral("/a.png")));
}

void TestDownloadItem::waitsUntilItIsStarted()
{
    QObject parent;
    const auto *item =
        new DownloadItem(&parent, {QStringLiteral("pid_1.png")}, QStringLiteral("http://x"));
    QCOMPARE(item->parent(), &parent);
    QCOMPARE(item->state(), DownloadItem::State::Waiting);
    QCOMPARE(item->fileNames(), QStringList(QStringLiteral("pid_1.png")));
    QCOMPARE(item->link(), QStringLiteral("http://x"));
    QCOMPARE(images(), QStringList());
}

void TestDownloadItem::savesThePictureUnderItsName_data()
{
    Answers::wholeRows();
}

void TestDownloadItem::savesThePictureUnderItsName()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer(QStringLiteral("/a.png"), answer);
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QStringList imagesWhenFinished;
    connect(item.get(), &DownloadItem::finished, this, [&] { imagesWhenFinished = images(); });
    QVERIFY(item->start());
    QCOMPARE(item->state(), DownloadItem::State::Running);
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(item->state(), DownloadItem::State::Done);
    QCOMPARE(imagesWhenFinished, QStringList(QStringLiteral("pid_1.png")));
    QVERIFY(Sandbox::readFile(image(QStringLiteral("pid_1.png"))) == body);
}

void TestDownloadItem::savesThePictureUnderEveryName()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const QStringList names{QStringLiteral("option_3.png"), QStringLiteral("pid_1.png"),
                            QStringLiteral("pid_2.jpg")};
    const auto item = this->item(names);
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(images(), names);
    for (const QString &name : names)
        QCOMPARE(Sandbox::readFile(image(name)), QByteArray("picture"));
    QCOMPARE(m_server->requests().size(), 1);
}

void TestDownloadItem::takesANameOnlyOnce()
{
    const auto item = this->item({QStringLiteral("pid_1.png")});
    item->addFileName(QStringLiteral("pid_2.png"));
    item->addFileName(QStringLiteral("pid_1.png"));
    item->addFileName(QStringLiteral("pid_2.png"));
    QCOMPARE(item->fileNames(),
             QStringList({QStringLiteral("pid_1.png"), QStringLiteral("pid_2.png")}));
}

void TestDownloadItem::takesANameWhileItRuns()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    item->addFileName(QStringLiteral("pid_2.png"));
    QVERIFY(finished.wait());
    QCOMPARE(images(), item->fileNames());
}

void TestDownloadItem::writesToATemporaryFileNamedAfterTheFirstName()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture").held());
    const auto item = this->item({QStringLiteral("pid_1.png"), QStringLiteral("pid_0.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(images(), QStringList(QStringLiteral("pid_1.png.~tmp")));
    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(images(), QStringList({QStringLiteral("pid_0.png"), QStringLiteral("pid_1.png")}));
}

void TestDownloadItem::replacesAPreviousPictureOnceTheNewOneIsWhole()
{
    const QString name = QStringLiteral("pid_1.png");
    const QString other = QStringLiteral("pid_2.png");
    for (const QString &fileName : {image(name), image(other)}) {
        QFile file(fileName);
        QVERIFY(file.open(QIODevice::WriteOnly));
        file.write(previous);
    }
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture").held());
    const auto item = this->item({name, other});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(Sandbox::readFile(image(name)), previous);
    QCOMPARE(Sandbox::readFile(image(other)), previous);
    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(Sandbox::readFile(image(name)), QByteArray("picture"));
    QCOMPARE(Sandbox::readFile(image(other)), QByteArray("picture"));
}

void TestDownloadItem::keepsThePreviousPictureWhenTheDiskIsFull()
{
    QFile previous(image(QStringLiteral("pid_1.png")));
    QVERIFY(previous.open(QIODevice::WriteOnly));
    previous.write("previous picture");
    previous.close();
    if (!Machine::canFillDisk())
        QSKIP("no file here opens for writing and takes nothing");
    QVERIFY(Machine::makeFull(image(QStringLiteral("pid_1.png.~tmp"))));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), QByteArray("previous picture"));
}

void TestDownloadItem::overwritesAStrayTemporaryFile()
{
    QFile stray(image(QStringLiteral("pid_1.png.~tmp")));
    QVERIFY(stray.open(QIODevice::WriteOnly));
    stray.write("a longer rest of an earlier run");
    stray.close();
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(images(), QStringList(QStringLiteral("pid_1.png")));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), QByteArray("picture"));
}

void TestDownloadItem::followsRedirects()
{
    m_server->answer(QStringLiteral("/a.png"),
                     Answer::redirect(QStringLiteral("b.png"), 302, "moved to another place"));
    m_server->answer(QStringLiteral("/b.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), QByteArray("picture"));
}

void TestDownloadItem::keepsThePreviousPictureWhenItFails_data()
{
    Answers::failingRows();
}

void TestDownloadItem::keepsThePreviousPictureWhenItFails()
{
    QFETCH(Answer, answer);
    QFile file(image(QStringLiteral("pid_1.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(previous);
    file.close();
    m_server->answer(QStringLiteral("/a.png"), answer);
    const auto item = this->item({QStringLiteral("pid_1.png"), QStringLiteral("pid_2.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(item->state(), DownloadItem::State::Done);
    QCOMPARE(images(), QStringList(QStringLiteral("pid_1.png")));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), previous);
}

void TestDownloadItem::keepsThePreviousPictureWhenTheConnectionIsRefused()
{
    QFile file(image(QStringLiteral("pid_1.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(previous);
    file.close();
    const ClosedPort port;
    DownloadItem item(nullptr, {QStringLiteral("pid_1.png")}, port.url(QStringLiteral("/a.png")));
    QSignalSpy finished(&item, &DownloadItem::finished);
    QVERIFY(item.start());
    QVERIFY(finished.wait());
    QCOMPARE(images(), QStringList(QStringLiteral("pid_1.png")));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), previous);
}

void TestDownloadItem::endsWithoutASignalWhenAborted_data()
{
    Answers::stallingRows();
}

void TestDownloadItem::endsWithoutASignalWhenAborted()
{
    QFETCH(Answer, answer);
    QFile file(image(QStringLiteral("pid_1.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    file.write(previous);
    file.close();
    m_server->answer(QStringLiteral("/a.png"), answer);
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->requests().size(), 1);
    item->abort();
    QCOMPARE(item->state(), DownloadItem::State::Done);
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), previous);
}

void TestDownloadItem::isNotAbortedWhileItWaits()
{
    const auto item = this->item({QStringLiteral("pid_1.png")});
    item->abort();
    QCOMPARE(item->state(), DownloadItem::State::Waiting);
}

void TestDownloadItem::isNotAbortedAfterItsEnd()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    item->abort();
    QCOMPARE(finished.count(), 1);
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), QByteArray("picture"));
}

void TestDownloadItem::cannotStartWithoutATemporaryFile_data()
{
    QTest::addColumn<QString>("folder");
    QTest::addColumn<QString>("file");
    const QString data = QStringLiteral("Temp/Norvane Clipwright Uninstaller");
    QTest::newRow("a folder has its name")
        << data + QStringLiteral("/Configs/Images/pid_1.png.~tmp") << QString();
    QTest::newRow("no picture folder") << QString() << data + QStringLiteral("/Configs/Images");
    QTest::newRow("no configuration folder") << QString() << data + QStringLiteral("/Configs");
    QTest::newRow("no data folder") << QString() << data;
}

void TestDownloadItem::cannotStartWithoutATemporaryFile()
{
    QFETCH(QString, folder);
    QFETCH(QString, file);
    if (!folder.isEmpty())
        QVERIFY(QDir().mkpath(m_sandbox->path(folder)));
    if (!file.isEmpty())
        m_sandbox->writeFile(file, "in the way");
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(!item->start());
    QTest::qWait(50);
    QCOMPARE(finished.count(), 0);
    QVERIFY(m_server->requests().isEmpty());
}

void TestDownloadItem::cannotStartUnderATooLongName()
{
    const QString link = m_server->url(QStringLiteral("/a.")) + QString(400, QLatin1Char('x'));
    QVERIFY(!item({Config::productIconName(1, link)})->start());
    QCOMPARE(images(), QStringList());
    QCOMPARE(m_server->requests().size(), 0);
}

void TestDownloadItem::savesUnderTheOtherNamesWhenOneCannotBeWritten()
{
    QVERIFY(QDir().mkpath(image(QStringLiteral("pid_1.png"))));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    const auto item = this->item({QStringLiteral("pid_1.png"), QStringLiteral("pid_2.png")});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(finished.wait());
    QCOMPARE(images(), QStringList(QStringLiteral("pid_2.png")));
}

void TestDownloadItem::usesTheSharedAccessManager()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    QTRY_VERIFY(!Net::sharedAccessManager()->findChild<QNetworkReply *>());
    const auto item = this->item({QStringLiteral("pid_1.png")});
    QVERIFY(item->start());
    QVERIFY(Net::sharedAccessManager()->findChild<QNetworkReply *>());
}

void TestDownloadItem::mayBeDestroyedWhileItRuns()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture").stalledInBody(2));
    auto item = this->item({QStringLiteral("pid_1.png")});
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->openRequests(), 1);
    item.reset();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QTRY_VERIFY(!Net::sharedAccessManager()->findChild<QNetworkReply *>());
    QVERIFY(!QFile::exists(image(QStringLiteral("pid_1.png"))));
}

void TestDownloadItem::mayBeDestroyedFromItsFinishedSignal()
{
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    QPointer<DownloadItem> item = this->item({QStringLiteral("pid_1.png")}).release();
    connect(item.data(), &DownloadItem::finished, this, [&item] { delete item; });
    QVERIFY(item->start());
    QTRY_VERIFY(!item);
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), QByteArray("picture"));
}

QTEST_GUILESS_MAIN(TestDownloadItem)
#include "test_downloaditem.moc"
