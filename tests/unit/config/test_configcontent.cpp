#include "config/content/configcontent.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtTest/QTest>

class TestConfigContent : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void foldersAreMadeOnDemand();
    void languageCode_data();
    void languageCode();
    void languageComesFromTheInstallation();
    void readDocument_data();
    void readDocument();
    void hugeDocumentIsRead();
    void jsonString_data();
    void jsonString();
    void objectListSkipsWhatIsNoObject();
    void optionType_data();
    void optionType();
    void emptyTypeMatchesOptionsWithoutOne();
    void optionImagePath_data();
    void optionImagePath();
    void productIconPath_data();
    void productIconPath();
};

namespace {

QJsonObject parsed(const char *json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    Q_ASSERT(document.isObject());
    return document.object();
}

const QString defaultBanner = QStringLiteral(":/Resources/light/Option0_2x.png");
const QString defaultIcon = QStringLiteral(":/Resources/light/ico_default_2x.png");
const QString images = QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/Images");

} // namespace

void TestConfigContent::foldersAreMadeOnDemand()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    QVERIFY(!QDir(sandbox.path(images)).exists());
    QCOMPARE(Config::imagesDir(), sandbox.path(images));
    QVERIFY(QDir(sandbox.path(images)).exists());
    QCOMPARE(Config::configDir() + QStringLiteral("/Images"), Config::imagesDir());
    QCOMPARE(Config::configFilePath(), Config::configDir() + QStringLiteral("/en.cfg"));
    QCOMPARE(Config::configProductId(), QStringLiteral("846"));
}

void TestConfigContent::languageCode_data()
{
    QTest::addColumn<QString>("installerCode");
    QTest::addColumn<QString>("code");
    const char *table[][2] = {
        {"ENG", "en"}, {"CHS", "zh"}, {"CHT", "tw"}, {"ZHH", "tw"}, {"ESP", "es"}, {"DEU", "de"},
        {"FRA", "fr"}, {"ITA", "it"}, {"JPN", "ja"}, {"KOR", "ko"}, {"PTG", "pt"}, {"RUS", "ru"},
        {"ARG", "ar"}, {"NLD", "nl"}, {"PLK", "pl"}, {"ROM", "ro"}, {"IDN", "id"}, {"SWE", "sv"},
        {"xyz", "en"}, {"", "en"},    {"deu", "en"}, {"DEU ", "en"}};
    for (const auto &row : table) {
        QTest::addRow("\"%s\"", row[0])
            << QString::fromLatin1(row[0]) << QString::fromLatin1(row[1]);
    }
}

void TestConfigContent::languageCode()
{
    QFETCH(QString, installerCode);
    QTEST(Config::configLanguageCode(installerCode), "code");
}

void TestConfigContent::languageComesFromTheInstallation()
{
    const Sandbox sandbox;
    sandbox->writeProductIni(QStringLiteral("JPN"));
    QCOMPARE(Config::configLanguageCode(), QStringLiteral("ja"));
    sandbox->writeProductIni(QString());
    QCOMPARE(Config::configLanguageCode(), QStringLiteral("en"));
}

void TestConfigContent::readDocument_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("compact");

    QTest::newRow("empty file") << QByteArray() << QByteArray();
    QTest::newRow("not json") << QByteArray("<html></html>") << QByteArray();
    QTest::newRow("cut off") << QByteArray("{\"a\": [1, 2") << QByteArray();
    QTest::newRow("object") << QByteArray("{\"a\": 1}") << QByteArray("{\"a\":1}");
    QTest::newRow("array") << QByteArray("[1]") << QByteArray("[1]");
    QTest::newRow("byte order mark")
        << QByteArray("\xEF\xBB\xBF{\"a\":1}") << QByteArray("{\"a\":1}");
    QTest::newRow("windows line ends")
        << QByteArray("{\r\n\"a\": 1\r\n}") << QByteArray("{\"a\":1}");
    QTest::newRow("letters outside ASCII") << QByteArray("{\"a\":\"\xC3\xA4\xE5\x8B\x95\"}")
                                           << QByteArray("{\"a\":\"\xC3\xA4\xE5\x8B\x95\"}");
    QTest::newRow("too deep") << QByteArray(5000, '[') << QByteArray();
    QTest::newRow("trailing text") << QByteArray("{} x") << QByteArray();
}

void TestConfigContent::readDocument()
{
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile(QStringLiteral("document.cfg"), content);
    const QJsonDocument document =
        Config::readDocument(sandbox.path(QStringLiteral("document.cfg")));
    QTEST(document.toJson(QJsonDocument::Compact), "compact");
    QVERIFY(Config::readDocument(sandbox.path(QStringLiteral("none"))).isNull());
    QVERIFY(Config::readDocument(sandbox.path(QString())).isNull()); // a folder
}

void TestConfigContent::hugeDocumentIsRead()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    QByteArray content = "{\"list\": [{}";
    content.reserve(9 * 1024 * 1024); // else each addition moves it
    while (content.size() < 8 * 1024 * 1024)
        content += ", {\"name\": \"" + QByteArray(1000, 'x') + "\"}";
    sandbox.writeFile(QStringLiteral("document.cfg"), content + "]}");
    const QJsonObject document =
        Config::readDocument(sandbox.path(QStringLiteral("document.cfg"))).object();
    QVERIFY(Config::jsonObjectList(document, QStringLiteral("list")).size() > 8000);
}

void TestConfigContent::jsonString_data()
{
    QTest::addColumn<QByteArray>("object");
    QTest::addColumn<QString>("text");
    QTest::newRow("text") << QByteArray("{\"k\":\"v\"}") << QStringLiteral("v");
    QTest::newRow("missing") << QByteArray("{}") << QString();
    QTest::newRow("number") << QByteArray("{\"k\":12}") << QString();
    QTest::newRow("bool") << QByteArray("{\"k\":true}") << QString();
    QTest::newRow("null") << QByteArray("{\"k\":null}") << QString();
    QTest::newRow("object") << QByteArray("{\"k\":{}}") << QString();
    QTest::newRow("other case") << QByteArray("{\"K\":\"v\"}") << QString();
}

void TestConfigContent::jsonString()
{
    QFETCH(QByteArray, object);
    QTEST(Config::jsonString(parsed(object.constData()), QStringLiteral("k")), "text");
}

void TestConfigContent::objectListSkipsWhatIsNoObject()
{
    const QJsonObject object =
        parsed(R"({"list": [{"n": 3}, 1, "x", [], null, {"n": 1}, {"n": 3}], "no": {"n": 1}})");
    const QList<QJsonObject> list = Config::jsonObjectList(object, QStringLiteral("list"));
    QCOMPARE(list.size(), 3); // in the array's order, and none taken for a duplicate
    QCOMPARE(list.at(0).value(QLatin1String("n")), QJsonValue(3));
    QCOMPARE(list.at(1).value(QLatin1String("n")), QJsonValue(1));
    QCOMPARE(list.at(2).value(QLatin1String("n")), QJsonValue(3));
    QVERIFY(Config::jsonObjectList(object, QStringLiteral("no")).isEmpty());
    QVERIFY(Config::jsonObjectList(object, QStringLiteral("missing")).isEmpty());
}

void TestConfigContent::optionType_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QString>("type");
    QTest::newRow("jump") << QByteArray(R"({"extend": "{\"option_type\":\"jump\",\"url\":\"\"}"})")
                          << QStringLiteral("jump");
    QTest::newRow("empty text") << QByteArray(R"({"extend": ""})") << QString();
    QTest::newRow("empty object") << QByteArray(R"({"extend": "{}"})") << QString();
    QTest::newRow("missing") << QByteArray("{}") << QString();
    QTest::newRow("an object instead of text counts as missing")
        << QByteArray(R"({"extend": {"option_type": "jump"}})") << QString();
    QTest::newRow("not json") << QByteArray(R"({"extend": "option_type=jump"})") << QString();
    QTest::newRow("an array") << QByteArray(R"({"extend": "[\"jump\"]"})") << QString();
    QTest::newRow("type is a number")
        << QByteArray(R"({"extend": "{\"option_type\":1}"})") << QString();
}

void TestConfigContent::optionType()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, type);
    const QJsonObject object = parsed(option.constData());
    QCOMPARE(Config::jsonString(Config::extendObject(object), QStringLiteral("option_type")), type);
    QCOMPARE(Config::hasOptionType(object, {QStringLiteral("jump"), QStringLiteral("x")}),
             type == QLatin1String("jump"));
    QVERIFY(!Config::hasOptionType(object, {QStringLiteral("Jump")}));
    QVERIFY(!Config::hasOptionType(object, {}));
}

void TestConfigContent::emptyTypeMatchesOptionsWithoutOne()
{
    QVERIFY(Config::hasOptionType(QJsonObject(), {QString()}));
    QVERIFY(Config::hasOptionType(QJsonObject(), {QStringLiteral("")}));
}

void TestConfigContent::optionImagePath_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QString>("file"); // in the image folder, made before; empty: the default
    const QByteArray link = R"("banner_url": "https://a.example/x/banner.jpg")";
    QTest::newRow("downloaded") << "{\"value\": 64, " + link + "}"
                                << QStringLiteral("option_64.jpg");
    QTest::newRow("zero") << "{\"value\": 0, " + link + "}" << QStringLiteral("option_0.jpg");
    QTest::newRow("no suffix") << QByteArray(
                                      R"({"value": 64, "banner_url": "https://a.example/x"})")
                               << QStringLiteral("option_64.");
    QTest::newRow("last of several dots")
        << QByteArray(R"({"value": 64, "banner_url": "a.tar.gz"})")
        << QStringLiteral("option_64.gz");
    QTest::newRow("no link") << QByteArray(R"({"value": 64})") << QString();
    QTest::newRow("empty link") << QByteArray(R"({"value": 64, "banner_url": ""})") << QString();
    QTest::newRow("link is a number")
        << QByteArray(R"({"value": 64, "banner_url": 7})") << QString();
    QTest::newRow("no value") << "{" + link + "}" << QString();
    QTest::newRow("value is text") << "{\"value\": \"64\", " + link + "}" << QString();
    QTest::newRow("value is negative") << "{\"value\": -5, " + link + "}" << QString();
}

void TestConfigContent::optionImagePath()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, file);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QJsonObject object = parsed(option.constData());
    QCOMPARE(Config::optionImagePath(object), defaultBanner); // nothing downloaded yet

    const QStringList downloads{QStringLiteral("option_64.png"), QStringLiteral("option_-5.jpg"),
                                QStringLiteral("option_-1.jpg"), file};
    for (const QString &download : downloads)
        sandbox.writeFile(images + QLatin1Char('/') + download +
                              (download.isEmpty() ? QStringLiteral("x") : QString()),
                          "not even a picture");
    QCOMPARE(Config::optionImagePath(object),
             file.isEmpty() ? defaultBanner : Config::imagesDir() + QLatin1Char('/') + file);
}

void TestConfigContent::productIconPath_data()
{
    QTest::addColumn<QByteArray>("product");
    QTest::addColumn<QString>("file");
    const QByteArray icon = R"("icon": "https://a.example/i/app.png")";
    QTest::newRow("downloaded") << "{\"pid\": 10, " + icon + "}" << QStringLiteral("pid_10.png");
    QTest::newRow("negative pid, even if a file has its name")
        << "{\"pid\": -5, " + icon + "}" << QString();
    QTest::newRow("no pid") << "{" + icon + "}" << QString();
    QTest::newRow("no icon") << QByteArray("{\"pid\": 10}") << QString();
    QTest::newRow("other suffix than the file on disk")
        << QByteArray(R"({"pid": 10, "icon": "app.svg"})") << QString();
}

void TestConfigContent::productIconPath()
{
    QFETCH(QByteArray, product);
    QFETCH(QString, file);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    for (const char *name : {"pid_10.png", "pid_-5.png", "pid_-1.png"})
        sandbox.writeFile(images + QLatin1Char('/') + QString::fromLatin1(name), "x");
    QCOMPARE(Config::productIconPath(parsed(product.constData())),
             file.isEmpty() ? defaultIcon : Config::imagesDir() + QLatin1Char('/') + file);
}

QTEST_GUILESS_MAIN(TestConfigContent)
#include "test_configcontent.moc"
