#include "config/content/configcontent.h"
#include "config/download/configdownloader.h"
#include "config/download/downloaditem.h"
#include "net/sharedaccessmanager.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/support/testendpoints.h"
#include "tests/unit/net/answers.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QEventLoop>
#include <QtCore/QFile>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QPointer>
#include <QtCore/QTimer>
#include <QtNetwork/QNetworkAccessManager>
#include <QtNetwork/QNetworkReply>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <memory>
#include <utility>

using Answer = ScriptedServer::Answer;

namespace {

const QString documentPath = QStringLiteral("/uninstall/cfg/v1/846-en.json");
const QByteArray previous = "{\"previous\": \"document\", \"longer\": \"than what follows\"}";

QJsonObject product(const QJsonValue &pid, const QJsonValue &icon)
{
    return {{QStringLiteral("pid"), pid}, {QStringLiteral("icon"), icon}};
}

QJsonObject option(const QJsonValue &value, const QJsonValue &bannerUrl)
{
    return {{QStringLiteral("value"), value}, {QStringLiteral("banner_url"), bannerUrl}};
}

QJsonObject listed(const QJsonArray &objects)
{
    return {{QStringLiteral("list"), objects}};
}

QJsonObject document(const QJsonArray &categories, const QJsonArray &options)
{
    return {{QStringLiteral("apps"), categories},
            {QStringLiteral("problem_type"), listed(options)}};
}

/// An option without a picture: enough for a document to be of use.
QJsonArray plainOption()
{
    return {option(56, QString())};
}

QByteArray json(const QJsonObject &object)
{
    return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

QString image(const QString &name)
{
    return Config::imagesDir() + QLatin1Char('/') + name;
}

QStringList images()
{
    return QDir(Config::imagesDir()).entryList(QDir::Files);
}

void writeFile(const QString &fileName, const QByteArray &content)
{
    QFile file(fileName);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size())
        qFatal("cannot write %s", qPrintable(fileName));
}

/// The wait of the program's start: until the download is finished, the time is over or the
/// splash window is closed.
class StartUpWait : public QObject
{
public:
    explicit StartUpWait(ConfigDownloader *downloader)
        : m_downloader(downloader)
    {
        connect(downloader, &ConfigDownloader::finished, &m_loop, &QEventLoop::quit);
        connect(&m_timer, &QTimer::timeout, &m_loop, &QEventLoop::quit);
    }

    /// Returns whether the download finished.
    bool run(int msec)
    {
        m_downloader->start();
        m_timer.setSingleShot(true);
        m_timer.start(msec);
        m_loop.exec();
        if (m_timer.isActive()) {
            m_timer.stop();
            return true;
        }
        m_downloader->abort();
        return false;
    }

    /// Makes the time over as soon as the event loop looks at its timers.
    void endTime() { m_timer.start(0); }

    void closeSplash()
    {
        m_timer.stop();
        m_loop.quit();
    }

private:
    ConfigDownloader *const m_downloader;
    QTimer m_timer;
    QEventLoop m_loop;
};

} // namespace

class TestConfigDownloader : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void asksForTheDocumentInTheInstallationsLanguage_data();
    void asksForTheDocumentInTheInstallationsLanguage();
    void savesTheDocumentIndentedAsUtf8();
    void replacesAPreviousDocument();
    void followsRedirectsToTheDocument();
    void savesNoDocumentOfNoUse_data();
    void savesNoDocumentOfNoUse();
    void keepsThePreviousDocumentWhenTheDownloadFails_data();
    void keepsThePreviousDocumentWhenTheDownloadFails();
    void endsAtOnceWhenOffline();
    void skipsThePicturesWhenTheDocumentCannotBeWritten();
    void leavesNoPartOfADocumentWhenTheDiskIsFull();
    void fetchesNoPictureWhoseNameTheSystemWouldCut();
    void queuesVeryManyPicturesInNoTime();
    void twoLinksUnderOneNameDoNotMix_data();
    void twoLinksUnderOneNameDoNotMix();
    void finishesAtOnceWithoutPictures();

    void collectsPicturesUnderTheNamesThePagesLookFor_data();
    void collectsPicturesUnderTheNamesThePagesLookFor();
    void tellsWhetherADocumentHasOptions_data();
    void tellsWhetherADocumentHasOptions();
    void fetchesASharedLinkOnceForAllItsNames();
    void fetchesAProductOfTwoCategoriesOnceUnderOneName();
    void fetchesALinkSharedByProductAndOptionOnce();
    void tellsLinksApartByEveryCharacter();
    void savesAPictureWithoutSuffixUnderANameThatEndsInADot();
    void doesNotFetchIconsOfRecommendedProducts();

    void fetchesAtMostFiveAtOnceTheLastQueuedFirst();
    void goesOnWhenAPictureFails();
    void keepsPreviousPicturesWhenNewCopiesFail_data();
    void keepsPreviousPicturesWhenNewCopiesFail();
    void goesOnWithoutPicturesThatCannotBeWritten();
    void finishesWhenNoPictureCanBeWritten();
    void repeatsFinishedWhenTheLastPictureCannotBeStarted();
    void fetchesLargePictures();
    void takesNothingBeyondItsLimits_data();
    void takesNothingBeyondItsLimits();
    void picturesWithAQueryAreDroppedWhereNoFileHasSuchAName();
    void plantedLinksAreFollowed();

    void abortsTheDocumentWhenTheTimeIsOver_data();
    void abortsTheDocumentWhenTheTimeIsOver();
    void abortsPicturesWhenTheTimeIsOver();
    void abortsEveryDownloadWhenTheSplashIsClosed();
    void abortsNothingBeforeItIsStarted();
    void abortsNothingAfterItHasFinished();
    void mayBeDestroyedWhileTheDocumentIsPending();
    void mayBeDestroyedWhilePicturesArePending();
    void mayBeDestroyedFromItsFinishedSignal_data();
    void mayBeDestroyedFromItsFinishedSignal();
    void forgetsAPostedCheckWhenDestroyed();
    void checksItsItemsByName();

private:
    void serve(const QJsonObject &object);
    QString link(const QString &path) const { return m_server->url(path); }
    bool download();

    std::unique_ptr<Sandbox> m_sandbox;
    std::unique_ptr<ScriptedServer> m_server;
};

void TestConfigDownloader::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    m_server = std::make_unique<ScriptedServer>();
    TestEndpoints::setConfiguration(m_server->url());
}

void TestConfigDownloader::cleanup()
{
    m_server.reset();
    m_sandbox.reset();
}

void TestConfigDownloader::serve(const QJsonObject &object)
{
    m_server->answer(documentPath, Answer::ok(json(object)));
}

/// Runs one downloader to its end, as the program does at its start.
bool TestConfigDownloader::download()
{
    ConfigDownloader downloader;
    return StartUpWait(&downloader).run(10000);
}

void TestConfigDownloader::asksForTheDocumentInTheInstallationsLanguage_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("path");
    QTest::addColumn<QString>("file");
    QTest::newRow("English") << QStringLiteral("ENG") << documentPath << QStringLiteral("en.cfg");
    QTest::newRow("German") << QStringLiteral("DEU")
                            << QStringLiteral("/uninstall/cfg/v1/846-de.json")
                            << QStringLiteral("de.cfg");
    QTest::newRow("Chinese, simplified")
        << QStringLiteral("CHS") << QStringLiteral("/uninstall/cfg/v1/846-zh.json")
        << QStringLiteral("zh.cfg");
    QTest::newRow("Chinese, Hong Kong")
        << QStringLiteral("ZHH") << QStringLiteral("/uninstall/cfg/v1/846-tw.json")
        << QStringLiteral("tw.cfg");
    QTest::newRow("unknown") << QStringLiteral("xyz") << documentPath << QStringLiteral("en.cfg");
}

void TestConfigDownloader::asksForTheDocumentInTheInstallationsLanguage()
{
    QFETCH(QString, language);
    QFETCH(QString, path);
    QFETCH(QString, file);
    QVERIFY((*m_sandbox)->writeProductIni(language));
    m_server->answer(path, Answer::ok(json(document({}, plainOption()))));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList(path));
    QCOMPARE(m_server->requests().constFirst().method, QByteArray("GET"));
    QVERIFY(QFile::exists(Config::configDir() + QLatin1Char('/') + file));
}

void TestConfigDownloader::savesTheDocumentIndentedAsUtf8()
{
    QJsonObject object = document({}, plainOption());
    object.insert(QStringLiteral("title"), QStringLiteral("Größe 日本語 🎬 \"quoted\"\n"));
    serve(object);
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()),
             QJsonDocument(object).toJson(QJsonDocument::Indented));
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), object);
}

void TestConfigDownloader::replacesAPreviousDocument()
{
    const QJsonObject object = document({}, plainOption());
    writeFile(Config::configFilePath(), previous + QByteArray(1000, ' '));
    serve(object);
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), QJsonDocument(object).toJson());
}

void TestConfigDownloader::followsRedirectsToTheDocument()
{
    const QJsonObject object = document({}, plainOption());
    m_server->answer(documentPath, Answer::redirect(QStringLiteral("../moved.json"), 302, "moved"));
    m_server->answer(QStringLiteral("/uninstall/cfg/moved.json"), Answer::ok(json(object)));
    QVERIFY(download());
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), object);
}

void TestConfigDownloader::savesNoDocumentOfNoUse_data()
{
    QTest::addColumn<QByteArray>("body");
    const QJsonArray categories{listed({product(1, QStringLiteral("SERVER/a.png"))})};
    const QJsonObject whole = document(categories, plainOption());
    QJsonObject object = whole;

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("page of HTML") << QByteArray("<html><body>Please sign in</body></html>");
    QTest::newRow("cut off") << json(whole).chopped(1);
    QTest::newRow("more behind it") << json(whole) + "}";
    QTest::newRow("array") << QByteArray("[" + json(whole) + "]");
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("text") << QByteArray("\"text\"");
    QTest::newRow("empty object") << QByteArray("{}");
    object.remove(QStringLiteral("problem_type"));
    QTest::newRow("no options at all") << json(object);
    object.insert(QStringLiteral("problem_type"), QStringLiteral("text"));
    QTest::newRow("options are text") << json(object);
    object.insert(QStringLiteral("problem_type"), plainOption());
    QTest::newRow("options are an array") << json(object);
    object.insert(QStringLiteral("problem_type"), QJsonObject());
    QTest::newRow("options without list") << json(object);
    object.insert(QStringLiteral("problem_type"), listed({}));
    QTest::newRow("empty list of options") << json(object);
    object.insert(QStringLiteral("problem_type"),
                  listed({1, QStringLiteral("text"), QJsonArray(), QJsonValue()}));
    QTest::newRow("list without objects") << json(object);
}

void TestConfigDownloader::savesNoDocumentOfNoUse()
{
    QFETCH(QByteArray, body);
    writeFile(Config::configFilePath(), previous);
    body.replace("SERVER", m_server->url().toLatin1());
    m_server->answer(documentPath, Answer::ok(body));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->paths(), QStringList(documentPath));
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), previous);
    QCOMPARE(images(), QStringList());
}

void TestConfigDownloader::keepsThePreviousDocumentWhenTheDownloadFails_data()
{
    Answers::failingRows();
}

void TestConfigDownloader::keepsThePreviousDocumentWhenTheDownloadFails()
{
    QFETCH(Answer, answer);
    writeFile(Config::configFilePath(), previous);
    m_server->answer(documentPath, answer);
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), previous);
}

void TestConfigDownloader::endsAtOnceWhenOffline()
{
    const ClosedPort port;
    TestEndpoints::setConfiguration(port.url());
    QElapsedTimer clock;
    clock.start();
    QVERIFY(download());
    QVERIFY(clock.elapsed() < 5000);
    QVERIFY(!QFile::exists(Config::configFilePath()));

    writeFile(Config::configFilePath(), previous);
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), previous);
}

void TestConfigDownloader::skipsThePicturesWhenTheDocumentCannotBeWritten()
{
    QVERIFY(QDir().mkpath(Config::configFilePath()));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    serve(document({listed({product(1, link(QStringLiteral("/a.png")))})}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->paths(), QStringList(documentPath));
}

void TestConfigDownloader::leavesNoPartOfADocumentWhenTheDiskIsFull()
{
    if (!Machine::canFillDisk())
        QSKIP("no file here opens for writing and takes nothing");
    QVERIFY(Machine::makeFull(Config::configFilePath()));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    serve(document({listed({product(1, link(QStringLiteral("/a.png")))})}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(m_server->paths(), QStringList(documentPath));
    QVERIFY(!QFile::exists(Config::configFilePath())); // the built-in one will be used
}

void TestConfigDownloader::fetchesNoPictureWhoseNameTheSystemWouldCut()
{
    writeFile(image(QStringLiteral("pid_1.png")), previous);
    const QString hostile = link(QStringLiteral("/a.png")) + QChar(QChar::Null);
    m_server->answer(QStringLiteral("/a.png%00"), Answer::ok("half a pic").closedInBody(4));
    serve(document({listed({product(1, hostile)})}, plainOption()));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList(documentPath));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), previous);
}

void TestConfigDownloader::queuesVeryManyPicturesInNoTime()
{
    QJsonArray products;
    const QString link = QStringLiteral("http://a-rather-long-host-name.invalid/pictures/%1.png");
    for (int i = 0; i < 60000; ++i)
        products += product(i, link.arg(i, 8, 10, QLatin1Char('0')));
    const QJsonObject object = document({listed(products)}, plainOption());
    ConfigDownloader downloader;
    QElapsedTimer clock;
    clock.start();
    QVERIFY(downloader.collectImages(object));
    QVERIFY2(clock.elapsed() < 20000, QByteArray::number(clock.elapsed()).constData());
}

void TestConfigDownloader::twoLinksUnderOneNameDoNotMix_data()
{
    QTest::addColumn<QString>("suffix");
    QTest::newRow("the same") << QStringLiteral("png");
    QTest::newRow("the same to some systems") << QStringLiteral("PNG");
}

void TestConfigDownloader::twoLinksUnderOneNameDoNotMix()
{
    QFETCH(QString, suffix);
    const QString last = QStringLiteral("/second.") + suffix;
    const QByteArray first(300000, '1');
    const QByteArray second(300000, '2');
    m_server->answer(QStringLiteral("/first.png"), Answer::ok(first));
    m_server->answer(last, Answer::ok(second).delayed(20));
    m_server->answer(QStringLiteral("/missing.png"), Answer::error(404));
    serve(
        document({listed({product(1, link(QStringLiteral("/missing.png"))),
                          product(1, link(QStringLiteral("/first.png"))), product(1, link(last))})},
                 plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(m_server->mostOpenRequests(), 1); // one after the other
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), first);
    const QStringList names = images();
    QVERIFY(names.contains(QStringLiteral("pid_1.png")));
    for (const QString &name : names)
        QCOMPARE(name.toLower(), QStringLiteral("pid_1.png"));
}

void TestConfigDownloader::finishesAtOnceWithoutPictures()
{
    serve(document({listed({product(1, QString())})}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(images(), QStringList());
}

void TestConfigDownloader::collectsPicturesUnderTheNamesThePagesLookFor_data()
{
    QTest::addColumn<QJsonValue>("number");
    QTest::addColumn<QJsonValue>("path");
    QTest::addColumn<QString>("name"); ///< behind "pid_" or "option_"; empty: not fetched

    const QJsonValue path = QStringLiteral("/a.png");
    QTest::newRow("plain") << QJsonValue(64) << path << QStringLiteral("64.png");
    QTest::newRow("zero") << QJsonValue(0) << path << QStringLiteral("0.png");
    QTest::newRow("another suffix")
        << QJsonValue(64) << QJsonValue(QStringLiteral("/a.b.JPG")) << QStringLiteral("64.JPG");
    QTest::newRow("no suffix") << QJsonValue(64) << QJsonValue(QStringLiteral("/a"))
                               << QStringLiteral("64.");
    QTest::newRow("missing number") << QJsonValue(QJsonValue::Undefined) << path << QString();
    QTest::newRow("null number") << QJsonValue() << path << QString();
    QTest::newRow("negative number") << QJsonValue(-5) << path << QString();
    QTest::newRow("number as text") << QJsonValue(QStringLiteral("64")) << path << QString();
    QTest::newRow("broken number") << QJsonValue(6.4) << path << QString();
    QTest::newRow("missing link") << QJsonValue(64) << QJsonValue(QJsonValue::Undefined)
                                  << QString();
    QTest::newRow("empty link") << QJsonValue(64) << QJsonValue(QString()) << QString();
    QTest::newRow("link is a number") << QJsonValue(64) << QJsonValue(5) << QString();
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
    const QJsonObject app = product(number, linkFor(QStringLiteral("/product")));
    const QJsonObject reason = option(number, linkFor(QStringLiteral("/option")));
    serve(document({listed({app})}, {reason}));
    QVERIFY(download());

    QStringList names;
    if (!name.isEmpty())
        names = QStringList({QStringLiteral("option_") + name, QStringLiteral("pid_") + name});
    QCOMPARE(images().size(), names.size());
    for (const QString &fileName : std::as_const(names))
        QCOMPARE(Sandbox::readFile(image(fileName)), QByteArray("picture"));
    if (!name.isEmpty()) {
        QCOMPARE(Config::optionImagePath(reason), image(names.at(0)));
        QCOMPARE(Config::productIconPath(app), image(names.at(1)));
    }
}

void TestConfigDownloader::tellsWhetherADocumentHasOptions_data()
{
    QTest::addColumn<QJsonObject>("object");
    QTest::addColumn<bool>("has");
    const QJsonArray categories{listed({product(1, QStringLiteral("http://x/a.png"))})};
    QTest::newRow("empty") << QJsonObject() << false;
    QTest::newRow("products only") << document(categories, {}) << false;
    QTest::newRow("option without picture") << document({}, plainOption()) << true;
    QTest::newRow("empty option") << document({}, {QJsonObject()}) << true;
    QTest::newRow("both") << document(categories, plainOption()) << true;
}

void TestConfigDownloader::tellsWhetherADocumentHasOptions()
{
    QFETCH(QJsonObject, object);
    QFETCH(bool, has);
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    QCOMPARE(downloader.collectImages(object), has);
    QCOMPARE(finished.count(), 0);
}

void TestConfigDownloader::fetchesASharedLinkOnceForAllItsNames()
{
    const QString icon = link(QStringLiteral("/shared.png"));
    m_server->answer(QStringLiteral("/shared.png"), Answer::ok("picture"));
    serve(document({listed({product(10, icon), product(11, icon)})}, plainOption()));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList({documentPath, QStringLiteral("/shared.png")}));
    QCOMPARE(images(), QStringList({QStringLiteral("pid_10.png"), QStringLiteral("pid_11.png")}));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_10.png"))), QByteArray("picture"));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_11.png"))), QByteArray("picture"));
}

void TestConfigDownloader::fetchesAProductOfTwoCategoriesOnceUnderOneName()
{
    const QJsonObject app = product(10, link(QStringLiteral("/a.png")));
    ConfigDownloader downloader;
    QVERIFY(downloader.collectImages(document({listed({app}), listed({app})}, plainOption())));
    const QList<DownloadItem *> items = downloader.findChildren<DownloadItem *>();
    QCOMPARE(items.size(), 1);
    QCOMPARE(items.constFirst()->fileNames(), QStringList(QStringLiteral("pid_10.png")));

    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    serve(document({listed({app}), listed({app})}, plainOption()));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList({documentPath, QStringLiteral("/a.png")}));
    QCOMPARE(images(), QStringList(QStringLiteral("pid_10.png")));
}

void TestConfigDownloader::fetchesALinkSharedByProductAndOptionOnce()
{
    const QString shared = link(QStringLiteral("/a.png"));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    serve(document({listed({product(10, shared)})}, {option(10, shared)}));
    QVERIFY(download());
    QCOMPARE(m_server->requests().size(), 2);
    QCOMPARE(images(),
             QStringList({QStringLiteral("option_10.png"), QStringLiteral("pid_10.png")}));
}

void TestConfigDownloader::tellsLinksApartByEveryCharacter()
{
    ConfigDownloader downloader;
    downloader.addItem(QStringLiteral("pid_1.png"), QStringLiteral("http://x/a.png"));
    downloader.addItem(QStringLiteral("pid_2.png"), QStringLiteral("http://x/A.png"));
    downloader.addItem(QStringLiteral("pid_3.png"), QStringLiteral("http://x//a.png"));
    downloader.addItem(QStringLiteral("pid_4.png"), QStringLiteral("http://x/a.png"));
    const QList<DownloadItem *> items = downloader.findChildren<DownloadItem *>();
    QCOMPARE(items.size(), 3);
    QCOMPARE(items.constFirst()->fileNames(),
             QStringList({QStringLiteral("pid_1.png"), QStringLiteral("pid_4.png")}));
}

void TestConfigDownloader::savesAPictureWithoutSuffixUnderANameThatEndsInADot()
{
    const QJsonObject app = product(7, link(QStringLiteral("/icons/7")));
    m_server->answer(QStringLiteral("/icons/7"), Answer::ok("picture"));
    serve(document({listed({app})}, plainOption()));
    QVERIFY(download());
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_7."))), QByteArray("picture"));
    QCOMPARE(Config::productIconPath(app), image(QStringLiteral("pid_7.")));
}

void TestConfigDownloader::doesNotFetchIconsOfRecommendedProducts()
{
    QJsonObject object = document({}, plainOption());
    object.insert(QStringLiteral("recommended"),
                  listed({product(1, link(QStringLiteral("/a.png")))}));
    serve(object);
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList(documentPath));
}

void TestConfigDownloader::fetchesAtMostFiveAtOnceTheLastQueuedFirst()
{
    constexpr int pictures = 12;
    QJsonArray products;
    for (int pid = 1; pid <= pictures; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        m_server->answer(path, Answer::ok(path.toLatin1()).held());
        products.append(product(pid, link(path)));
    }
    serve(document({listed(products)}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QTRY_COMPARE(m_server->heldAnswers(), 5);
    QTest::qWait(50);
    QCOMPARE(m_server->heldAnswers(), 5);
    // Five connections are made at once; which is ready first is up to the network.
    QStringList firstFive = m_server->paths().mid(1);
    firstFive.sort();
    QCOMPARE(firstFive, QStringList({QStringLiteral("/10.png"), QStringLiteral("/11.png"),
                                     QStringLiteral("/12.png"), QStringLiteral("/8.png"),
                                     QStringLiteral("/9.png")}));

    for (int pid = 7; pid >= 1; --pid) {
        m_server->release();
        QTRY_COMPARE(m_server->heldAnswers(), 5);
        QCOMPARE(m_server->paths().constLast(), QStringLiteral("/%1.png").arg(pid));
    }
    for (int left = 5; left > 0; --left) {
        QCOMPARE(finished.count(), 0);
        m_server->release();
        QTRY_COMPARE(images().filter(QStringLiteral("~tmp")).size(), left - 1);
    }
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), pictures + 1);
    QCOMPARE(m_server->mostOpenRequests(), 5);
    for (int pid = 1; pid <= pictures; ++pid)
        QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_%1.png").arg(pid))),
                 QByteArray("/" + QByteArray::number(pid) + ".png"));
}

void TestConfigDownloader::goesOnWhenAPictureFails()
{
    QJsonArray products;
    for (int pid = 1; pid <= 20; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        if (pid % 2 == 0)
            m_server->answer(path, Answer::ok("picture"));
        products.append(product(pid, link(path)));
    }
    products.append(product(21, QStringLiteral("clip://no/such/scheme.png")));
    products.append(product(22, QStringLiteral("not a link")));
    serve(document({listed(products)}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QCOMPARE(finished.count(), 1);
    QCOMPARE(m_server->requests().size(), 21);
    QCOMPARE(images().size(), 10);
    QVERIFY(m_server->mostOpenRequests() <= 5);
}

void TestConfigDownloader::keepsPreviousPicturesWhenNewCopiesFail_data()
{
    Answers::failingRows();
}

void TestConfigDownloader::keepsPreviousPicturesWhenNewCopiesFail()
{
    QFETCH(Answer, answer);
    const QByteArray picture("\x89PNG\r\n\0\xff", 8);
    writeFile(image(QStringLiteral("pid_1.png")), picture);
    writeFile(image(QStringLiteral("option_56.png")), picture);
    m_server->answer(QStringLiteral("/icon.png"), answer);
    m_server->answer(QStringLiteral("/banner.png"), answer);
    serve(document({listed({product(1, link(QStringLiteral("/icon.png")))})},
                   {option(56, link(QStringLiteral("/banner.png")))}));
    QVERIFY(download());
    QCOMPARE(images(), QStringList({QStringLiteral("option_56.png"), QStringLiteral("pid_1.png")}));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_1.png"))), picture);
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("option_56.png"))), picture);
}

void TestConfigDownloader::goesOnWithoutPicturesThatCannotBeWritten()
{
    QJsonArray products;
    for (int pid = 1; pid <= 12; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        m_server->answer(path, Answer::ok("picture").delayed(20));
        products.append(product(pid, link(path)));
    }
    for (const int pid : {2, 6, 9, 12})
        QVERIFY(QDir().mkpath(image(QStringLiteral("pid_%1.png.~tmp").arg(pid))));
    serve(document({listed(products)}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(images().size(), 8);
    QCOMPARE(m_server->requests().size(), 9);
    QVERIFY(m_server->mostOpenRequests() <= 5);
}

void TestConfigDownloader::finishesWhenNoPictureCanBeWritten()
{
    writeFile(Config::configDir() + QStringLiteral("/Images"), "in the way");
    QJsonArray products;
    for (int pid = 1; pid <= 12; ++pid)
        products.append(product(pid, link(QStringLiteral("/%1.png").arg(pid))));
    serve(document({listed(products)}, plainOption()));
    QVERIFY(download());
    QCOMPARE(m_server->paths(), QStringList(documentPath));
    QVERIFY(QFile::exists(Config::configFilePath()));
}

void TestConfigDownloader::repeatsFinishedWhenTheLastPictureCannotBeStarted()
{
    QVERIFY(QDir().mkpath(image(QStringLiteral("pid_1.png.~tmp"))));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.addItem(QStringLiteral("pid_1.png"), link(QStringLiteral("/1.png")));
    downloader.checkItems();
    QCOMPARE(finished.count(), 1);
    QTRY_COMPARE(finished.count(), 2);
    QTest::qWait(10);
    QCOMPARE(finished.count(), 2);
}

void TestConfigDownloader::fetchesLargePictures()
{
    const QByteArray large = Answers::largeBody();
    QJsonArray products;
    for (int pid = 1; pid <= 3; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        m_server->answer(path, Answer::ok(large));
        products.append(product(pid, link(path)));
    }
    serve(document({listed(products)}, plainOption()));
    QVERIFY(download());
    for (int pid = 1; pid <= 3; ++pid)
        QVERIFY(Sandbox::readFile(image(QStringLiteral("pid_%1.png").arg(pid))) == large);
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
        json(document({listed({product(1, link(QStringLiteral("/a.png")))})}, plainOption()));
    const QByteArray blanks(qMax(0, documentBytes - content.size()), ' ');
    m_server->answer(documentPath, Answer::ok(content + blanks));
    m_server->answer(QStringLiteral("/a.png"), Answer::ok(QByteArray(pictureBytes, 'x')));
    QVERIFY(download());
    QCOMPARE(QFile::exists(Config::configFilePath()), takesDocument);
    QCOMPARE(images(), takesPicture ? QStringList(QStringLiteral("pid_1.png")) : QStringList());
}

void TestConfigDownloader::picturesWithAQueryAreDroppedWhereNoFileHasSuchAName()
{
    const bool isNameAllowed = QDir::separator() == QLatin1Char('/');
    m_server->answer(QStringLiteral("/a.png?v=2"), Answer::ok("picture"));
    m_server->answer(QStringLiteral("/b.png"), Answer::ok("picture"));
    serve(document({listed({product(1, link(QStringLiteral("/a.png?v=2"))),
                            product(2, link(QStringLiteral("/b.png")))})},
                   plainOption()));
    QVERIFY(download());
    QStringList expected(QStringLiteral("pid_2.png"));
    if (isNameAllowed)
        expected.prepend(QStringLiteral("pid_1.png?v=2"));
    QCOMPARE(images(), expected);
}

void TestConfigDownloader::plantedLinksAreFollowed()
{
    if (QDir::separator() == QLatin1Char('\\'))
        QSKIP("links are of another kind here, and the folder is the user's own");
    const auto plant = [this](const QString &link, const QString &name) {
        m_sandbox->writeFile(name, "the user's");
        QVERIFY(QFile::link(m_sandbox->path(name), link));
    };
    plant(Config::configFilePath(), QStringLiteral("letter"));
    plant(image(QStringLiteral("pid_1.png.~tmp")), QStringLiteral("photograph"));
    plant(image(QStringLiteral("pid_1.png")), QStringLiteral("drawing"));
    const QJsonObject served =
        document({listed({product(1, link(QStringLiteral("/a.png")))})}, plainOption());
    m_server->answer(QStringLiteral("/a.png"), Answer::ok("picture"));
    serve(served);
    QVERIFY(download());
    const auto content = [this](const QString &name) {
        return Sandbox::readFile(m_sandbox->path(name));
    };
    // Written through are a document and a picture, as they were served.
    QCOMPARE(content(QStringLiteral("letter")), QJsonDocument(served).toJson());
    QCOMPARE(content(QStringLiteral("photograph")), QByteArray("picture"));
    QCOMPARE(content(QStringLiteral("drawing")), QByteArray("the user's"));
}

void TestConfigDownloader::abortsTheDocumentWhenTheTimeIsOver_data()
{
    Answers::stallingRows();
}

void TestConfigDownloader::abortsTheDocumentWhenTheTimeIsOver()
{
    QFETCH(Answer, answer);
    writeFile(Config::configFilePath(), previous);
    m_server->answer(documentPath, answer);
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    QVERIFY(!StartUpWait(&downloader).run(100));
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(Sandbox::readFile(Config::configFilePath()), previous);
}

void TestConfigDownloader::abortsPicturesWhenTheTimeIsOver()
{
    const QString stalled = QStringLiteral("pid_1.png");
    writeFile(image(stalled), "previous picture");
    m_server->answer(QStringLiteral("/1.png"), Answer::ok("new picture").stalledInBody(3));
    m_server->answer(QStringLiteral("/2.png"), Answer::ok("new picture"));
    const QJsonObject object = document({listed({product(1, link(QStringLiteral("/1.png"))),
                                                 product(2, link(QStringLiteral("/2.png")))})},
                                        plainOption());
    serve(object);
    {
        ConfigDownloader downloader;
        QSignalSpy finished(&downloader, &ConfigDownloader::finished);
        StartUpWait wait(&downloader);
        QTimer look;
        connect(&look, &QTimer::timeout, &wait, [this, &wait, &look] {
            if (!QFile::exists(image(QStringLiteral("pid_2.png"))) || m_server->openRequests() != 1)
                return;
            look.stop(); // the time is over once
            wait.endTime();
        });
        look.start(5);
        QVERIFY(!wait.run(30000));
        QCOMPARE(finished.count(), 0);
    }
    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(Sandbox::readFile(image(stalled)), QByteArray("previous picture"));
    QCOMPARE(Sandbox::readFile(image(QStringLiteral("pid_2.png"))), QByteArray("new picture"));
    QCOMPARE(Config::readDocument(Config::configFilePath()).object(), object);
}

void TestConfigDownloader::abortsEveryDownloadWhenTheSplashIsClosed()
{
    QJsonArray products;
    for (int pid = 1; pid <= 12; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        m_server->answer(path, Answer::ok("picture").held());
        products.append(product(pid, link(path)));
    }
    serve(document({listed(products)}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    StartUpWait wait(&downloader);
    connect(m_server.get(), &ScriptedServer::requested, &wait, [this, &wait] {
        if (m_server->heldAnswers() == 5)
            wait.closeSplash();
    });
    QElapsedTimer clock;
    clock.start();
    QVERIFY(!wait.run(10000));
    QVERIFY(clock.elapsed() < 5000);

    QTRY_COMPARE(m_server->openRequests(), 0);
    QCOMPARE(finished.count(), 0);
    QCOMPARE(m_server->requests().size(), 6);
    QCOMPARE(images(), QStringList());
    int done = 0;
    for (const DownloadItem *item : downloader.findChildren<DownloadItem *>()) {
        QVERIFY(item->state() != DownloadItem::State::Running);
        if (item->state() == DownloadItem::State::Done)
            ++done;
    }
    QCOMPARE(done, 5);
}

void TestConfigDownloader::abortsNothingBeforeItIsStarted()
{
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.addItem(QStringLiteral("pid_1.png"), link(QStringLiteral("/1.png")));
    downloader.abort();
    QCOMPARE(finished.count(), 0);
    QCOMPARE(downloader.findChild<DownloadItem *>()->state(), DownloadItem::State::Waiting);
}

void TestConfigDownloader::abortsNothingAfterItHasFinished()
{
    m_server->answer(QStringLiteral("/1.png"), Answer::ok("picture"));
    serve(document({listed({product(1, link(QStringLiteral("/1.png")))})}, plainOption()));
    ConfigDownloader downloader;
    QSignalSpy finished(&downloader, &ConfigDownloader::finished);
    downloader.start();
    QVERIFY(finished.wait());
    downloader.abort();
    QTest::qWait(10);
    QCOMPARE(finished.count(), 1);
    QCOMPARE(images(), QStringList(QStringLiteral("pid_1.png")));
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
    QTRY_VERIFY(!Net::sharedAccessManager()->findChild<QNetworkReply *>());
}

void TestConfigDownloader::mayBeDestroyedWhilePicturesArePending()
{
    QJsonArray products;
    for (int pid = 1; pid <= 7; ++pid) {
        const QString path = QStringLiteral("/%1.png").arg(pid);
        m_server->answer(path, Answer::ok("picture").held());
        products.append(product(pid, link(path)));
    }
    serve(document({listed(products)}, plainOption()));
    {
        ConfigDownloader downloader;
        downloader.start();
        QTRY_COMPARE(m_server->heldAnswers(), 5);
    }
    QTRY_COMPARE(m_server->openRequests(), 0);
    QTRY_VERIFY(!Net::sharedAccessManager()->findChild<QNetworkReply *>());
    QVERIFY(!QFile::exists(image(QStringLiteral("pid_7.png"))));
}

void TestConfigDownloader::mayBeDestroyedFromItsFinishedSignal_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("hasPicture");
    QTest::newRow("document failed") << Answer::error(500) << false;
    QTest::newRow("document of no use") << Answer::ok("{}") << false;
    QTest::newRow("no pictures") << Answer::ok(json(document({}, plainOption()))) << false;
    QTest::newRow("after a picture") << Answer() << true;
}

void TestConfigDownloader::mayBeDestroyedFromItsFinishedSignal()
{
    QFETCH(Answer, answer);
    QFETCH(bool, hasPicture);
    m_server->answer(QStringLiteral("/1.png"), Answer::ok("picture"));
    if (hasPicture)
        serve(document({listed({product(1, link(QStringLiteral("/1.png")))})}, plainOption()));
    else
        m_server->answer(documentPath, answer);
    QPointer<ConfigDownloader> downloader = new ConfigDownloader;
    connect(downloader.data(), &ConfigDownloader::finished, this, [&] { delete downloader; });
    downloader->start();
    QTRY_VERIFY(!downloader);
    QTRY_VERIFY(!Net::sharedAccessManager()->findChild<QNetworkReply *>());
    QCOMPARE(QFile::exists(image(QStringLiteral("pid_1.png"))), hasPicture);
}

void TestConfigDownloader::forgetsAPostedCheckWhenDestroyed()
{
    QVERIFY(QDir().mkpath(image(QStringLiteral("pid_2.png.~tmp"))));
    {
        ConfigDownloader downloader;
        downloader.addItem(QStringLiteral("pid_1.png"), link(QStringLiteral("/1.png")));
        downloader.addItem(QStringLiteral("pid_2.png"), link(QStringLiteral("/2.png")));
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
