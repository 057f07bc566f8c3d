#include "config/download/downloaditem.h"
#include "tests/component/download/downloadtest.h"

#include <QtCore/QPointer>

class TestDownloadItem : public DownloadTest
{
    Q_OBJECT

private Q_SLOTS:
    void waitsUntilItIsStarted();
    void savesThePictureUnderItsName_data() { Answers::wholeRows(); }
    void savesThePictureUnderItsName();
    void replacesThePicturesOfAllItsNamesWhenTheNewOneIsWhole();
    void savesUnderTheOtherNamesWhenOneCannotBeWritten();
    void keepsTheEarlierPictureWhenTheDownloadFails_data() { Answers::failingRows(); }
    void keepsTheEarlierPictureWhenTheDownloadFails();
    void keepsTheEarlierPictureWhenTheDiskIsFull();
    void keepsTheEarlierPictureWhenTheNewOneIsGone();
    void endsWithoutASignalWhenAborted_data() { Answers::stallingRows(); }
    void endsWithoutASignalWhenAborted();
    void cannotStartWithoutATemporaryFile_data();
    void cannotStartWithoutATemporaryFile();
    void mayBeDestroyedWhileItRuns();
    void mayBeDestroyedFromItsFinishedSignal();

private:
    std::unique_ptr<DownloadItem> item(const QStringList &names) const
    {
        return std::make_unique<DownloadItem>(nullptr, names, link("/a.png"_s));
    }

    /// Runs the item to its end, which it must report once.
    static bool finishes(DownloadItem &item)
    {
        QSignalSpy finished(&item, &DownloadItem::finished);
        return item.start() && finished.wait() && finished.count() == 1 &&
               item.state() == DownloadItem::State::Done;
    }
};

void TestDownloadItem::waitsUntilItIsStarted()
{
    QObject parent;
    auto *item = new DownloadItem(&parent, {"pid_1.png"_s}, "http://x"_s);
    QCOMPARE(item->parent(), &parent);
    item->abort();
    QCOMPARE(item->state(), DownloadItem::State::Waiting);
    QCOMPARE(item->fileNames(), {"pid_1.png"_s});
    QCOMPARE(item->link(), "http://x"_s);
    QCOMPARE(images(), QStringList());
}

void TestDownloadItem::savesThePictureUnderItsName()
{
    QFETCH(Answer, answer);
    QFETCH(QByteArray, body);
    m_server->answer("/a.png"_s, answer);
    const auto item = this->item({"pid_1.png"_s});
    QStringList imagesWhenFinished;
    connect(item.get(), &DownloadItem::finished, this, [&] { imagesWhenFinished = images(); });
    QVERIFY(finishes(*item));
    QCOMPARE(imagesWhenFinished, {"pid_1.png"_s});
    QVERIFY(Sandbox::readFile(image("pid_1.png"_s)) == body);

    item->abort(); // too late
    QCOMPARE(item->state(), DownloadItem::State::Done);
    QCOMPARE(images(), {"pid_1.png"_s});
}

void TestDownloadItem::replacesThePicturesOfAllItsNamesWhenTheNewOneIsWhole()
{
    m_server->answer("/a.png"_s, Answer::ok("picture").held());
    const QStringList names{"pid_1.png"_s, "option_3.png"_s, "pid_2.jpg"_s};
    writeFile(image("pid_1.png"_s), m_earlier);
    writeFile(image("option_3.png"_s), m_earlier);
    writeFile(image("pid_1.png.~tmp"_s), "longer than the new picture, left by an earlier run");
    writeFile(image("pid_1.png.~tmpcopy"_s), "left as well");
    QTRY_VERIFY(!hasReplies());

    const auto item = this->item(names.mid(0, 2));
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QVERIFY(hasReplies()); // it uses the shared access manager
    QCOMPARE(item->state(), DownloadItem::State::Running);
    for (const QString &name : {names.at(0), names.at(2), names.at(2)})
        item->addFileName(name);
    QCOMPARE(item->fileNames(), names); // each of them once
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    QCOMPARE(images(), QStringList({"option_3.png"_s, "pid_1.png"_s, "pid_1.png.~tmp"_s,
                                    "pid_1.png.~tmpcopy"_s}));
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
    QCOMPARE(Sandbox::readFile(image("option_3.png"_s)), m_earlier);

    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(images(), QStringList({"option_3.png"_s, "pid_1.png"_s, "pid_2.jpg"_s}));
    for (const QString &name : names)
        QCOMPARE(Sandbox::readFile(image(name)), QByteArray("picture"));
    QCOMPARE(m_server->requests().size(), 1);
}

void TestDownloadItem::savesUnderTheOtherNamesWhenOneCannotBeWritten()
{
    QVERIFY(QDir().mkpath(image("pid_1.png"_s)));
    m_server->answer("/a.png"_s, Answer::ok("picture"));
    QVERIFY(finishes(*item({"pid_1.png"_s, "pid_2.png"_s})));
    QCOMPARE(images(), {"pid_2.png"_s});
}

void TestDownloadItem::keepsTheEarlierPictureWhenTheDownloadFails()
{
    QFETCH(Answer, answer);
    writeFile(image("pid_1.png"_s), m_earlier);
    m_server->answer("/a.png"_s, answer);
    QVERIFY(finishes(*item({"pid_1.png"_s, "pid_2.png"_s})));
    QCOMPARE(images(), {"pid_1.png"_s});
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
}

void TestDownloadItem::keepsTheEarlierPictureWhenTheDiskIsFull()
{
    if (!Machine::FullDisk::isPossible)
        QSKIP("files cannot be kept from growing here");
    writeFile(image("pid_1.png"_s), m_earlier);
    // Less and more than is collected before it is written.
    for (const QByteArray &body : {QByteArray("picture"), QByteArray(1 << 20, 'x')}) {
        m_server->answer("/a.png"_s, Answer::ok(body));
        {
            const Machine::FullDisk disk(4);
            QVERIFY(finishes(*item({"pid_1.png"_s})));
        }
        QCOMPARE(images(), {"pid_1.png"_s});
        QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
    }
}

void TestDownloadItem::keepsTheEarlierPictureWhenTheNewOneIsGone()
{
    if (!Machine::removesOpenFiles)
        QSKIP("an open file cannot be removed here");
    writeFile(image("pid_1.png"_s), m_earlier);
    m_server->answer("/a.png"_s, Answer::ok("picture").held());
    const auto item = this->item({"pid_1.png"_s});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->heldAnswers(), 1);
    // As a program that empties the folder for temporary files does.
    QVERIFY(QFile::remove(image("pid_1.png.~tmp"_s)));
    m_server->release();
    QVERIFY(finished.wait());
    QCOMPARE(images(), {"pid_1.png"_s});
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
}

void TestDownloadItem::endsWithoutASignalWhenAborted()
{
    QFETCH(Answer, answer);
    writeFile(image("pid_1.png"_s), m_earlier);
    m_server->answer("/a.png"_s, answer);
    const auto item = this->item({"pid_1.png"_s});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->requests().size(), 1);
    item->abort();
    QCOMPARE(item->state(), DownloadItem::State::Done);
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(images(), {"pid_1.png"_s});
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
}

void TestDownloadItem::cannotStartWithoutATemporaryFile_data()
{
    QTest::addColumn<QString>("folder"); // made before
    QTest::addColumn<QString>("file");   // made before
    QTest::addColumn<QString>("name");
    const QString data = "Temp/Norvane Clipwright Uninstaller"_s;
    const QString name = "pid_1.png"_s;
    QTest::newRow("a folder has its name")
        << data + "/Configs/Images/pid_1.png.~tmp"_s << QString() << name;
    QTest::newRow("no picture folder") << QString() << data + "/Configs/Images"_s << name;
    QTest::newRow("no configuration folder") << QString() << data + "/Configs"_s << name;
    QTest::newRow("no data folder") << QString() << data << name;
    QTest::newRow("too long a name")
        << QString() << QString() << "pid_1."_s + QString(400, QLatin1Char('x'));
}

void TestDownloadItem::cannotStartWithoutATemporaryFile()
{
    QFETCH(QString, folder);
    QFETCH(QString, file);
    QFETCH(QString, name);
    if (!folder.isEmpty())
        QVERIFY(QDir().mkpath(m_sandbox->path(folder)));
    if (!file.isEmpty())
        m_sandbox->writeFile(file, "in the way");
    m_server->answer("/a.png"_s, Answer::ok("picture"));
    const auto item = this->item({name});
    QSignalSpy finished(item.get(), &DownloadItem::finished);
    QVERIFY(!item->start());
    QVERIFY(!finished.wait(50));
    QVERIFY(m_server->requests().isEmpty());
}

void TestDownloadItem::mayBeDestroyedWhileItRuns()
{
    m_server->answer("/a.png"_s, Answer::ok("picture").stalledInBody(2));
    auto item = this->item({"pid_1.png"_s});
    QVERIFY(item->start());
    QTRY_COMPARE(m_server->openRequests(), 1);
    item.reset();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QTRY_VERIFY(!hasReplies());
    QVERIFY(!QFile::exists(image("pid_1.png"_s)));
}

void TestDownloadItem::mayBeDestroyedFromItsFinishedSignal()
{
    m_server->answer("/a.png"_s, Answer::ok("picture"));
    QPointer<DownloadItem> item = this->item({"pid_1.png"_s}).release();
    connect(item.data(), &DownloadItem::finished, this, [&item] { delete item; });
    QVERIFY(item->start());
    QTRY_VERIFY(!item);
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), QByteArray("picture"));
}

QTEST_GUILESS_MAIN(TestDownloadItem)
#include "test_downloaditem.moc"
