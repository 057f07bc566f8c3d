#include "config/download/configdownloader.h"
#include "config/download/downloaditem.h"
#include "tests/component/download/downloadtest.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QScopeGuard>
#include <QtCore/QTextCodec>

namespace {

const QString documentPath = "/uninstall/cfg/v1/846-en.json"_s;
const QByteArray earlierDocument = R"({"earlier": "document"})";

QJsonObject product(const QJsonValue &pid, const QJsonValue &icon)
{
    return {{"pid"_s, pid}, {"icon"_s, icon}};
}

QJsonObject option(const QJsonValue &value, const QJsonValue &bannerUrl)
{
    return {{"value"_s, value}, {"banner_url"_s, bannerUrl}};
}

QJsonObject listed(const QJsonArray &objects)
{
    return {{"list"_s, objects}};
}

/// A document of one category of products. An option without a picture is enough to make it of use.
QJsonObject document(const QJsonArray &products, const QJsonArray &options = {option(56, {})})
{
    return {{"apps"_s, QJsonArray{listed(products)}}, {"problem_type"_s, listed(options)}};
}

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QStringList sorted(QStringList texts)
{
    texts.sort();
    return texts;
}

} // namespace

class TestConfigDownloader : public DownloadTest
{
    Q_OBJECT

private Q_SLOTS:
    void asksForTheDocumentInTheInstallationsLanguage_data();
    void asksForTheDocumentInTheInstallationsLanguage();
    void replacesTheDocumentByTheServedOneIndentedAsUtf8();
    void followsRedirectsToTheDocument();
    void savesOnlyADocumentWithOptions_data();
    void savesOnlyADocumentWithOptions();
    void keepsTheEarlierFilesWhenDownloadsFail_data() { Answers::failingRows(); }
    void keepsTheEarlierFilesWhenDownloadsFail();
    void endsAtOnceWhenOffline();
    void skipsThePicturesWhenTheDocumentCannotBeWritten_data();
    void skipsThePicturesWhenTheDocumentCannotBeWritten();
    void keepsTheEarlierDocumentWhenTheDiskIsFull_data();
    void keepsTheEarlierDocumentWhenTheDiskIsFull();

    void collectsPicturesUnderTheNamesThePagesLookFor_data();
    void collectsPicturesUnderTheNamesThePagesLookFor();
    void fetchesEachLinkOnceForAllItsNames_data();
    void fetchesEachLinkOnceForAllItsNames();
    void fetchesNoPictureWhoseNameTheSystemWouldCut();
    void queuesManyPicturesInTimeInProportion();
    void twoLinksUnderOneNameDoNotMix_data();
    void twoLinksUnderOneNameDoNotMix();

    void fetchesAtMostFiveAtOnceTheLastQueuedFirst();
    void goesOnWhenAPictureFails();
    void goesOnWithoutPicturesThatCannotBeWritten();
    void finishesWhenNoPictureCanBeWritten();
    void repeatsFinishedWhenTheLastPictureCannotBeStarted();
    void fetchesALinkAgainThatIsQueuedAfterItsEnd();
    void takesNothingBeyondItsLimits_data();
    void takesNothingBeyondItsLimits();
    void picturesWithAQueryAreDroppedWhereNoFileHasSuchAName();
    void plantedLinksAreFollowed();

    void abortsTheDocument_data() { Answers::stallingRows(); }
    void abortsTheDocument();
    void abortsRunningPicturesAndNothingElse();
    void mayBeDestroyedWhileTheDocumentIsPending();
    void mayBeDestroyedWhilePicturesArePending();
    void mayBeDestroyedFromItsFinishedSignal_data();
    void mayBeDestroyedFromItsFinishedSignal();
    void forgetsAPostedCheckWhenDestroyed();
    void checksItsItemsByName();

private:
    void serve(const QJsonObject &object)
    {
        m_server->answer(documentPath, Answer::ok(json(object)));
    }

    /// Every path that was asked for; the framework asks again when a connection is lost early.
    QSet<QString> asked() const
    {
        const QStringList paths = m_server->paths();
        return {paths.begin(), paths.end()};
    }

    /// Products with the pids 1 to count, whose icons are answered like this.
    QJsonArray products(int count, const Answer &icon = Answer::ok("picture"))
    {
        QJsonArray products;
        for (int pid = 1; pid <= count; ++pid) {
            const QString path = "/%1.png"_s.arg(pid);
            m_server->answer(path, icon);
            products.append(product(pid, link(path)));
        }
        return products;
    }

    /// Runs a downloader to its end, which it must report once.
    static bool download()
    {
        ConfigDownloader downloader;
        QSignalSpy finished(&downloader, &ConfigDownloader::finished);
        downloader.start();
        if (!finished.wait(10000))
            return false;
        QTest::qWait(10); // for what has been posted
        return finished.count() == 1;
    }
};

void TestConfigDownloader::asksForTheDocumentInTheInstallationsLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("code");
    QTest::newRow("English") << "ENG"_s
                             << "en"_s;
    QTest::newRow("German") << "DEU"_s
                            << "de"_s;
    QTest::newRow("Chinese, simplified") << "CHS"_s
                                         << "zh"_s;
    QTest::newRow("Chinese, Hong Kong") << "ZHH"_s
                                        << "tw"_s;
    QTest::newRow("unknown") << "xyz"_s
                             << "en"_s;
}

void TestConfigDownloader::asksForTheDocumentInTheInstallationsLanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, code);
    QVERIFY((*m_sandbox)->writeProductIni(language));
    const QString path = "/uninstall/cfg/v1/846-%1.json"_s.arg(code);
    m_server->answer(path, Answer::ok(json(document({}))));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), {path});
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("GET"));
    QVERIFY(QFile::exists(Config::configDir() + "/%1.cfg"_s.arg(code)));
}

void TestConfigDownloader::replacesTheDocumentByTheServedOneIndentedAsUtf8()
{
    // On a machine that uses another encoding for its own texts, too.
    const auto restore =
        qScopeGuard([own = QTextCodec::codecForLocale()] { QTextCodec::setCodecForLocale(own); });
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    QJsonObject object = document({});
    object.insert("title"_s, "Größe 日本語 🎬 \"quoted\"\n"_s);
    serve(object);
    writeFile(Config::configFilePath(), earlierDocument + QByteArray(1000, ' '));
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()),
             QJsonDocument(object).toJson(QJsonDocument::Indented));
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), object);
}

void TestConfigDownloader::followsRedirectsToTheDocument()
{
    m_server->answer(documentPath, Answer::redirect("../moved.json"_s, 302, "moved"));
    m_server->answer("/uninstall/cfg/moved.json"_s, Answer::ok(json(document({}))));
    QVERIFY(download());
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), document({}));
}

void TestConfigDownloader::savesOnlyADocumentWithOptions_data()
{
    QTest::addColumn<QByteArray>("body");
    QTest::addColumn<bool>("isSaved");
    const QJsonObject whole = document({product(1, "SERVER/a.png"_s)});
    const auto row = [](const char *name, const QByteArray &body, bool isSaved = false) {
        QTest::newRow(name) << body << isSaved;
    };
    const auto optionsRow = [&](const char *name, const QJsonValue &problemType, bool isSaved) {
        QJsonObject object = whole;
        object.insert("problem_type"_s, problemType);
        row(name, json(object), isSaved);
    };

    row("whole", json(whole), true);
    row("nothing", {});
    row("page of HTML", "<html><body>Please sign in</body></html>");
    row("cut off", json(whole).chopped(1));
    row("more behind it", json(whole) + "}");
    row("array", "[" + json(whole) + "]");
    row("empty array", "[]");
    row("text", "\"text\"");
    row("empty object", "{}");
    optionsRow("no options at all", QJsonValue::Undefined, false);
    optionsRow("options are text", "text"_s, false);
    optionsRow("options are an array", QJsonArray{option(56, {})}, false);
    optionsRow("options without list", QJsonObject(), false);
    optionsRow("empty list of options", listed({}), false);
    optionsRow("list without objects", listed({1, "text"_s, QJsonArray(), QJsonValue()}), false);
    optionsRow("empty option", listed({QJsonObject()}), true);
}

void TestConfigDownloader::savesOnlyADocumentWithOptions()
{
    QFETCH(QByteArray, body);
    QFETCH(bool, isSaved);
    writeFile(Config::configFilePath(), earlierDocument);
    body.replace("SERVER", m_server->url().toLatin1());
    m_server->answer(documentPath, Answer::ok(body));
    m_server->answer("/a.png"_s, Answer::ok("picture"));
    QVERIFY(download());
    QStringList paths{documentPath};
    if (isSaved)
        paths += "/a.png"_s;
    QCOMPARE(m_server->paths(), paths);
    QCOMPARE(images(), isSaved ? QStringList{"pid_1.png"_s} : QStringList());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()),
             isSaved ? QJsonDocument::fromJson(body).toJson() : earlierDocument);
}

void TestConfigDownloader::keepsTheEarlierFilesWhenDownloadsFail()
{
    QFETCH(Answer, answer);
    writeFile(Config::configFilePath(), earlierDocument);
    writeFile(image("pid_1.png"_s), m_earlier);
    writeFile(image("option_56.png"_s), m_earlier);
    const QJsonObject served =
        document({product(1, link("/icon.png"_s))}, {option(56, link("/banner.png"_s))});
    m_server->answer(documentPath, answer);
    m_server->answer("/icon.png"_s, answer);
    m_server->answer("/banner.png"_s, answer);

    QVERIFY(download());
    QCOMPARE(asked(), {documentPath});
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), earlierDocument);

    serve(served);
    QVERIFY(download());
    QCOMPARE(asked().size(), 3);
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), served);
    QCOMPARE(images(), QStringList({"option_56.png"_s, "pid_1.png"_s}));
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
    QCOMPARE(Sandbox::readFile(image("option_56.png"_s)), m_earlier);
}

void TestConfigDownloader::endsAtOnceWhenOffline()
{
    const ClosedPort port;
    TestEndpoints::setConfiguration(port.url());
    QVERIFY(download());
    QVERIFY(!QFile::exists(Config::configFilePath()));

    writeFile(Config::configFilePath(), earlierDocument);
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), earlierDocument);
}

void TestConfigDownloader::skipsThePicturesWhenTheDocumentCannotBeWritten_data()
{
    QTest::addColumn<bool>("isFolder");
    QTest::newRow("a folder") << true;
    QTest::newRow("a named pipe") << false;
}

void TestConfigDownloader::skipsThePicturesWhenTheDocumentCannotBeWritten()
{
    QFETCH(bool, isFolder);
    const QString fileName = Config::configFilePath();
    if (isFolder)
        QVERIFY(QDir().mkpath(fileName));
    else if (!Machine::makePipe(fileName))
        QSKIP("no pipe has a name of the file system here");
    serve(document(products(1)));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), {documentPath});
}

void TestConfigDownloader::keepsTheEarlierDocumentWhenTheDiskIsFull_data()
{
    QTest::addColumn<QByteArray>("earlier");
    QTest::addColumn<bool>("isKept");
    QTest::newRow("no earlier document") << QByteArray() << false;
    QTest::newRow("shorter than the part that fits") << QByteArray("{}") << true;
    QTest::newRow("as long as the part that fits") << QByteArray(40, ' ') << true;
    // Never a part of it, either.
    QTest::newRow("its own room is lost as well") << QByteArray(41, ' ') << false;
}

void TestConfigDownloader::keepsTheEarlierDocumentWhenTheDiskIsFull()
{
    if (!Machine::FullDisk::isPossible)
        QSKIP("files cannot be kept from growing here");
    QFETCH(QByteArray, earlier);
    QFETCH(bool, isKept);
    if (!earlier.isEmpty())
        writeFile(Config::configFilePath(), earlier);
    serve(document(products(1)));
    {
        const Machine::FullDisk disk(40);
        QVERIFY(download());
    }
    QCOMPARE(m_server->paths(), {documentPath});
    QCOMPARE(QFile::exists(Config::configFilePath()), isKept);
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), isKept ? earlier : QByteArray());
}

void TestConfigDownloader::collectsPicturesUnderTheNamesThePagesLookFor_data()
{
    QTest::addColumn<QJsonValue>("number");
    QTest::addColumn<QJsonValue>("path");
    QTest::addColumn<QString>("name"); // behind "pid_" or "option_"; empty: not fetched
    const auto row = [](const char *title, const QJsonValue &number, const QJsonValue &path,
                        const QString &name = {}) {
        QTest::newRow(title) << number << path << name;
    };
    const QString path = "/a.png"_s;
    row("plain", 64, path, "64.png"_s);
    row("zero", 0, path, "0.png"_s);
    row("another suffix", 64, "/a.b.JPG"_s, "64.JPG"_s);
    row("no suffix", 64, "/a"_s, "64."_s);
    row("missing number", QJsonValue::Undefined, path);
    row("null number", {}, path);
    row("negative number", -1, path);
    row("number as text", "64"_s, path);
    row("broken number", 6.4, path);
    row("missing link", 64, QJsonValue::Undefined);
    row("empty link", 64, QString());
    row("link is a number", 64, 5);
}

void TestConfigDownloader::collectsPicturesUnderTheNamesThePagesLookFor()
{
    QFETCH(QJsonValue, number);
    QFETCH(QJsonValue, path);
    QFETCH(QString, name);
    const auto linkFor = [this, &path](const QString &kind) {
        if (!path.isString() || path.toString().isEmpty())
            return path;
        m_server->answer(kind + path.toString(), Answer::ok("picture"));
        return QJsonValue(link(kind + path.toString()));
    };
    const QJsonObject app = product(number, linkFor("/product"_s));
    const QJsonObject reason = option(number, linkFor("/option"_s));
    serve(document({app}, {reason}));
    QVERIFY(download());

    QStringList names;
    if (!name.isEmpty())
        names = QStringList{"option_"_s + name, "pid_"_s + name};
    QCOMPARE(images().size(), names.size());
    for (const QString &fileName : qAsConst(names))
        QCOMPARE(Sandbox::readFile(image(fileName)), QByteArray("picture"));
    if (!name.isEmpty()) {
        QCOMPARE(Config::optionImagePath(reason), image(names.at(0)));
        QCOMPARE(Config::productIconPath(app), image(names.at(1)));
    }
}

void TestConfigDownloader::fetchesEachLinkOnceForAllItsNames_data()
{
    QTest::addColumn<QByteArray>("served");
    QTest::addColumn<QStringList>("paths"); // of pictures, sorted
    QTest::addColumn<QStringList>("names"); // sorted
    const auto row = [](const char *name, const QJsonObject &served, const QStringList &paths,
                        const QStringList &names) {
        QTest::newRow(name) << json(served) << paths << names;
    };
    const QString a = "SERVER/a.png"_s;
    row("no pictures", document({product(1, QString())}), {}, {});
    row("two products", document({product(10, a), product(11, a)}), {"/a.png"_s},
        {"pid_10.png"_s, "pid_11.png"_s});
    row("a product twice", document({product(10, a), product(10, a)}), {"/a.png"_s},
        {"pid_10.png"_s});
    row("product and option", document({product(10, a)}, {option(10, a)}), {"/a.png"_s},
        {"option_10.png"_s, "pid_10.png"_s});
    row("links that differ in little",
        document({product(1, a), product(2, "SERVER/A.png"_s), product(3, "SERVER//a.png"_s),
                  product(4, a)}),
        {"/A.png"_s, "/a.png"_s, "/a.png"_s},
        {"pid_1.png"_s, "pid_2.png"_s, "pid_3.png"_s, "pid_4.png"_s});
    QJsonObject object = document({});
    object.insert("recommended"_s, listed({product(1, a)}));
    row("recommended products", object, {}, {});
    object = document({});
    object.insert("apps"_s, QJsonArray{listed({product(1, a)}), listed({product(2, a)})});
    row("two categories", object, {"/a.png"_s}, {"pid_1.png"_s, "pid_2.png"_s});
}

void TestConfigDownloader::fetchesEachLinkOnceForAllItsNames()
{
    QFETCH(QByteArray, served);
    QFETCH(QStringList, paths);
    QFETCH(QStringList, names);
    m_server->answer(documentPath,
                     Answer::ok(served.replace("SERVER", m_server->url().toLatin1())));
    for (const QString &path : qAsConst(paths))
        m_server->answer(path, Answer::ok(path.toLatin1()));
    QVERIFY(download());
    QCOMPARE(sorted(m_server->paths().mid(1)), paths);
    QCOMPARE(images(), names);
}

void TestConfigDownloader::fetchesNoPictureWhoseNameTheSystemWouldCut()
{
    writeFile(image("pid_1.png"_s), m_earlier);
    const QString hostile = link("/a.png"_s) + QChar(QChar::Null);
    m_server->answer("/a.png%00"_s, Answer::ok("half a pic").closedInBody(4));
    serve(document({product(1, hostile)}));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), {documentPath});
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), m_earlier);
}

void TestConfigDownloader::queuesManyPicturesInTimeInProportion()
{
    const auto milliseconds = [](int count) {
        QJsonArray products;
        const QString link = "http://a-rather-long-host-name.invalid/pictures/%1.png"_s;
        for (int i = 0; i < count; ++i)
            products += product(i, link.arg(i, 8, 10, QLatin1Char('0')));
        const QJsonObject object = document(products);
        ConfigDownloader downloader;
        QElapsedTimer clock;
        clock.start();
        downloader.collectImages(object);
        return clock.elapsed();
    };
    const qint64 some = milliseconds(5000);
    const qint64 many = milliseconds(50000); // a search for each would take a hundred times as long
    QVERIFY2(many < 40 * qMax(some, qint64(10)), qPrintable("%1, %2"_s.arg(some).arg(many)));
}

void TestConfigDownloader::twoLinksUnderOneNameDoNotMix_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("the same") << "png"_s;
    QTest::newRow("the same to some systems") << "PNG"_s;
}

void TestConfigDownloader::twoLinksUnderOneNameDoNotMix()
{
    QFETCH(QString, suffix);
    const QString last = "/second."_s + suffix;
    const QByteArray first(300000, '1');
    m_server->answer("/first.png"_s, Answer::ok(first));
    m_server->answer(last, Answer::ok(QByteArray(300000, '2')).delayed(20));
    serve(document({product(1, link("/missing.png"_s)), product(1, link("/first.png"_s)),
                    product(1, link(last))}));
    QVERIFY(download());
    QCOMPARE(m_server->mostOpenRequests(), 1); // one after the other
    QCOMPARE(Sandbox::readFile(image("pid_1.png"_s)), first);
    const QStringList names = images();
    QVERIFY(names.contains("pid_1.png"_s));
    for (const QString &name : names)
        QCOMPARE(name.toLower(), "pid_1.png"_s);
}

void TestConfigDownloader::fetchesAtMostFiveAtOnceTheLastQueuedFirst()
{
    constexpr int pictures = 12;
    serve(document(products(pictures, Answer::ok("picture").held())));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QTRY_COMPARE(m_server->heldAnswers(), 5);
    QTest::qWait(50);
    QCOMPARE(m_server->heldAnswers(), 5);
    // Five connections are made at once; which is ready first is up to the network.
    QCOMPARE(sorted(m_server->paths().mid(1)),
             QStringList({"/10.png"_s, "/11.png"_s, "/12.png"_s, "/8.png"_s, "/9.png"_s}));

    for (int pid = 7; pid >= 1; --pid) {
        m_server->release();
        QTRY_COMPARE(m_server->heldAnswers(), 5);
        QCOMPARE(m_server->paths().constLast(), "/%1.png"_s.arg(pid));
    }
    for (int left = 5; left > 0; --left) {
        QCOMPARE(finished.count(), 0);
        m_server->release();
        QTRY_COMPARE(images().filter("~tmp"_s).size(), left - 1);
    }
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), pictures + 1);
    QCOMPARE(m_server->mostOpenRequests(), 5);
    QCOMPARE(images().size(), pictures);
}

void TestConfigDownloader::goesOnWhenAPictureFails()
{
    QJsonArray icons = products(20);
    for (int pid = 1; pid <= 20; pid += 2)
        m_server->answer("/%1.png"_s.arg(pid), Answer::error(404));
    icons.append(product(21, "clip://no/such/scheme.png"_s));
    icons.append(product(22, "not a link"_s));
    serve(document(icons));
    QVERIFY(download());
    QCOMPARE(m_server->requests().size(), 21);
    QCOMPARE(images().size(), 10);
    QVERIFY(m_server->mostOpenRequests() <= 5);
}

void TestConfigDownloader::goesOnWithoutPicturesThatCannotBeWritten()
{
    for (const int pid : {2, 6, 9, 12})
        QVERIFY(QDir().mkpath(image("pid_%1.png.~tmp"_s.arg(pid))));
    serve(document(products(12, Answer::ok("picture").delayed(20))));
    QVERIFY(download());
    QCOMPARE(images().size(), 8);
    QCOMPARE(m_server->requests().size(), 9);
    QVERIFY(m_server->mostOpenRequests() <= 5);
}

void TestConfigDownloader::finishesWhenNoPictureCanBeWritten()
{
    writeFile(Config::configDir() + "/Images"_s, "in the way");
    serve(document(products(12)));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(m_server->paths(), {documentPath});
    QVERIFY(QFile::exists(Config::configFilePath()));
}

void TestConfigDownloader::repeatsFinishedWhenTheLastPictureCannotBeStarted()
{
    QVERIFY(QDir().mkpath(image("pid_1.png.~tmp"_s)));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.addItem("pid_1.png"_s, link("/1.png"_s));
    downloader.checkItems();
    QCOMPARE(finished.count(), 1);
    QTRY_COMPARE(finished.count(), 2);
    QTest::qWait(10);
    QCOMPARE(finished.count(), 2);
}

void TestConfigDownloader::fetchesALinkAgainThatIsQueuedAfterItsEnd()
{
    m_server->answer("/1.png"_s, Answer::ok("picture"));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    for (const QString &name : {"pid_1.png"_s, "pid_2.png"_s}) {
        downloader.addItem(name, link("/1.png"_s));
        downloader.checkItems();
        QVERIFY(finished.wait());
        QCOMPARE(Sandbox::readFile(image(name)), QByteArray("picture"));
    }
    QCOMPARE(m_server->paths(), QStringList({"/1.png"_s, "/1.png"_s}));
}

void TestConfigDownloader::takesNothingBeyondItsLimits_data()
{
    QTest::addColumn<int>("documentBytes");
    QTest::addColumn<int>("pictureBytes");
    QTest::addColumn<bool>("takesDocument");
    QTest::addColumn<bool>("takesPicture");
    constexpr int mebibyte = 1024 * 1024;
    QTest::newRow("both as large as may be") << 8 * mebibyte << 16 * mebibyte << true << true;
    QTest::newRow("document too large") << 8 * mebibyte + 1 << 1 << false << false;
    QTest::newRow("picture too large") << 1 << 16 * mebibyte + 1 << true << false;
}

void TestConfigDownloader::takesNothingBeyondItsLimits()
{
    QFETCH(int, documentBytes);
    QFETCH(int, pictureBytes);
    QFETCH(bool, takesDocument);
    QFETCH(bool, takesPicture);
    const QByteArray content =
        json(document(products(1, Answer::ok(QByteArray(pictureBytes, 'x')))));
    const QByteArray blanks(qMax(0, documentBytes - content.size()), ' ');
    m_server->answer(documentPath, Answer::ok(content + blanks));
    QVERIFY(download());
    QCOMPARE(QFile::exists(Config::configFilePath()), takesDocument);
    QCOMPARE(images(), takesPicture ? QStringList{"pid_1.png"_s} : QStringList());
}

void TestConfigDownloader::picturesWithAQueryAreDroppedWhereNoFileHasSuchAName()
{
    m_server->answer("/a.png?v=2"_s, Answer::ok("picture"));
    m_server->answer("/b.png"_s, Answer::ok("picture"));
    serve(document({product(1, link("/a.png?v=2"_s)), product(2, link("/b.png"_s))}));
    QVERIFY(download());
    QStringList expected{"pid_2.png"_s};
    if (Machine::allowsAnyFileName)
        expected.prepend("pid_1.png?v=2"_s);
    QCOMPARE(images(), expected);
}

void TestConfigDownloader::plantedLinksAreFollowed()
{
    if (!Machine::makesFollowedLinks)
        QSKIP("links are of another kind here, and the folder is the user's own");
    const auto plant = [this](const QString &link, const QString &name) {
        m_sandbox->writeFile(name, "the user's");
        QVERIFY(QFile::link(m_sandbox->path(name), link));
    };
    plant(Config::configFilePath(), "letter"_s);
    plant(image("pid_1.png.~tmp"_s), "photograph"_s);
    plant(image("pid_1.png"_s), "drawing"_s);
    const QJsonObject served = document(products(1));
    serve(served);
    QVERIFY(download());
    const auto content = [this](const QString &name) {
        return Sandbox::readFile(m_sandbox->path(name));
    };
    // Written through are a document and a picture, as they were served.
    QCOMPARE(content("letter"_s), QJsonDocument(served).toJson());
    QCOMPARE(content("photograph"_s), QByteArray("picture"));
    QCOMPARE(content("drawing"_s), QByteArray("the user's"));
}

void TestConfigDownloader::abortsTheDocument()
{
    QFETCH(Answer, answer);
    writeFile(Config::configFilePath(), earlierDocument);
    m_server->answer(documentPath, answer);
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QTRY_COMPARE(m_server->openRequests(), 1);
    downloader.abort();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), earlierDocument);
}

void TestConfigDownloader::abortsRunningPicturesAndNothingElse()
{
    serve(document(products(12, Answer::ok("picture").held())));
    m_server->answer("/12.png"_s, Answer::ok("picture"));
    writeFile(image("pid_11.png"_s), m_earlier);
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.abort(); // nothing runs yet
    downloader.start();
    QTRY_VERIFY(m_server->heldAnswers() == 5 && QFile::exists(image("pid_12.png"_s)));
    downloader.abort();
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(m_server->requests().size(), 1 + 1 + 5);
    QCOMPARE(images(), QStringList({"pid_11.png"_s, "pid_12.png"_s}));
    QCOMPARE(Sandbox::readFile(image("pid_11.png"_s)), m_earlier);
    QVERIFY(QFile::exists(Config::configFilePath()));
    QMap<DownloadItem::State, int> states;
    for (const DownloadItem *item : downloader.findChildren<DownloadItem *>())
        ++states[item->state()];
    QCOMPARE(states.value(DownloadItem::State::Done), 1 + 5);
    QCOMPARE(states.value(DownloadItem::State::Waiting), 6);
}

void TestConfigDownloader::mayBeDestroyedWhileTheDocumentIsPending()
{
    m_server->answer(documentPath, Answer::ok("text").stalledInBody(2));
    {
        ConfigDownloader downloader;
        downloader.start();
        QTRY_COMPARE(m_server->openRequests(), 1);
    }
    QTRY_COMPARE(m_server->openRequests(), 0);
    QTRY_VERIFY(!hasReplies());
}

void TestConfigDownloader::mayBeDestroyedWhilePicturesArePending()
{
    serve(document(products(7, Answer::ok("picture").held())));
    {
        ConfigDownloader downloader;
        downloader.start();
        QTRY_COMPARE(m_server->heldAnswers(), 5);
    }
    QTRY_COMPARE(m_server->openRequests(), 0);
    QTRY_VERIFY(!hasReplies());
    QVERIFY(!QFile::exists(image("pid_7.png"_s)));
}

void TestConfigDownloader::mayBeDestroyedFromItsFinishedSignal_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::newRow("document failed") << Answer::error(500);
    QTest::newRow("document without options") << Answer::ok("{}");
    QTest::newRow("no pictures") << Answer::ok(json(document({})));
    QTest::newRow("after a picture") << Answer(); // made below
}

void TestConfigDownloader::mayBeDestroyedFromItsFinishedSignal()
{
    QFETCH(Answer, answer);
    const bool hasPicture = QLatin1String(QTest::currentDataTag()) == "after a picture"_s;
    if (hasPicture)
        serve(document(products(1)));
    else
        m_server->answer(documentPath, answer);
    QPointer<ConfigDownloader> downloader = new ConfigDownloader;
    connect(downloader.data(), &ConfigDownloader::finished, this, [&] { delete downloader; });
    downloader->start();
    QTRY_VERIFY(!downloader);
    QTRY_VERIFY(!hasReplies());
    QCOMPARE(QFile::exists(image("pid_1.png"_s)), hasPicture);
}

void TestConfigDownloader::forgetsAPostedCheckWhenDestroyed()
{
    QVERIFY(QDir().mkpath(image("pid_2.png.~tmp"_s)));
    {
        ConfigDownloader downloader;
        downloader.addItem("pid_1.png"_s, link("/1.png"_s));
        downloader.addItem("pid_2.png"_s, link("/2.png"_s));
        downloader.checkItems();
    }
    QTest::qWait(20);
    QVERIFY(m_server->requests().isEmpty());
}

void TestConfigDownloader::checksItsItemsByName()
{
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    QVERIFY(QMetaObject::invokeMethod(&downloader, "checkItems", Qt::QueuedConnection));
    QCOMPARE(finished.count(), 0);
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
}

QTEST_GUILESS_MAIN(TestConfigDownloader)
#include "test_configdownloader.moc"
