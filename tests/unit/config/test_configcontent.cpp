#include "config/content/configcontent.h"
#include "tests/support/literals.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QScopeGuard>
#include <QtCore/QTextCodec>
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
    void readsALargeDocument();
    void readsNoNamedPipe();
    void stringIsEmptyUnlessItIsText();
    void objectListSkipsWhatIsNoObject();
    void optionType_data();
    void optionType();
    void picturePath_data();
    void picturePath();
};

namespace {

QJsonObject parsed(const QByteArray &json)
{
    const QJsonDocument document = QJsonDocument::fromJson(json);
    Q_ASSERT(document.isObject());
    return document.object();
}

const QString images = "Temp/Norvane Clipwright Uninstaller/Configs/Images"_s;

} // namespace

void TestConfigContent::foldersAreMadeOnDemand()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    QVERIFY(!QDir(sandbox.path(images)).exists());
    QCOMPARE(Config::imagesDir(), sandbox.path(images));
    QVERIFY(QDir(sandbox.path(images)).exists());
    QCOMPARE(Config::configDir() + "/Images"_s, Config::imagesDir());
    QCOMPARE(Config::configFilePath(), Config::configDir() + "/en.cfg"_s);
    QCOMPARE(Config::configProductId(), "846"_s);
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
    sandbox->writeProductIni("JPN"_s);
    QCOMPARE(Config::configLanguageCode(), "ja"_s);
    sandbox->writeProductIni(QString());
    QCOMPARE(Config::configLanguageCode(), "en"_s);
}

void TestConfigContent::readDocument_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QByteArray>("compact");

    const auto row = [](const char *name, const QByteArray &content,
                        const QByteArray &compact = {}) {
        QTest::newRow(name) << content << compact;
    };
    row("empty file", {});
    row("not json", "<html></html>");
    row("cut off", "{\"a\": [1, 2");
    row("object", "{\"a\": 1}", "{\"a\":1}");
    row("array", "[1]", "[1]");
    row("byte order mark", "\xEF\xBB\xBF{\"a\":1}", "{\"a\":1}");
    row("windows line ends", "{\r\n\"a\": 1\r\n}", "{\"a\":1}");
    row("letters outside ASCII", "{\"a\":\"\xC3\xA4\xE5\x8B\x95\"}",
        "{\"a\":\"\xC3\xA4\xE5\x8B\x95\"}");
    row("too deep", QByteArray(5000, '['));
    row("trailing text", "{} x");
}

void TestConfigContent::readDocument()
{
    // On a machine that uses another encoding for its own texts, too.
    const auto restore =
        qScopeGuard([own = QTextCodec::codecForLocale()] { QTextCodec::setCodecForLocale(own); });
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("ISO-8859-1"));
    QFETCH(QByteArray, content);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    sandbox.writeFile("document.cfg"_s, content);
    const QJsonDocument document = Config::readDocument(sandbox.path("document.cfg"_s));
    QTEST(document.toJson(QJsonDocument::Compact), "compact");
    QVERIFY(Config::readDocument(sandbox.path("none"_s)).isNull());
    QVERIFY(Config::readDocument(sandbox.path(QString())).isNull()); // a folder
}

void TestConfigContent::readsALargeDocument()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    QByteArray content = "{\"list\": [{}";
    content.reserve(9 * 1024 * 1024); // else each addition moves it
    while (content.size() < 8 * 1024 * 1024)
        content += ", {\"name\": \"" + QByteArray(1000, 'x') + "\"}";
    sandbox.writeFile("document.cfg"_s, content + "]}");
    const QJsonObject document = Config::readDocument(sandbox.path("document.cfg"_s)).object();
    QVERIFY(Config::jsonObjectList(document, "list"_s).size() > 8000);
}

void TestConfigContent::readsNoNamedPipe()
{
    const Sandbox sandbox(Sandbox::Content::Nothing);
    if (!Machine::makePipe(sandbox.path("document.cfg"_s)))
        QSKIP("no pipe has a name of the file system here");
    QVERIFY(Config::readDocument(sandbox.path("document.cfg"_s)).isNull());
}

void TestConfigContent::stringIsEmptyUnlessItIsText()
{
    QCOMPARE(Config::jsonString(parsed(R"({"k": "v"})"), "k"_s), "v"_s);
    for (const char *json : {"{}", R"({"k": 12})", R"({"k": true})", R"({"k": null})",
                             R"({"k": {}})", R"({"K": "v"})"})
        QVERIFY2(Config::jsonString(parsed(json), "k"_s).isEmpty(), json);
}

void TestConfigContent::objectListSkipsWhatIsNoObject()
{
    const QJsonObject object =
        parsed(R"({"list": [{"n": 3}, 1, "x", [], null, {"n": 1}, {"n": 3}], "no": {"n": 1}})");
    const QList<QJsonObject> list = Config::jsonObjectList(object, "list"_s);
    QCOMPARE(list.size(), 3); // in the array's order, and none taken for a duplicate
    QCOMPARE(list.at(0).value(QLatin1String("n")), QJsonValue(3));
    QCOMPARE(list.at(1).value(QLatin1String("n")), QJsonValue(1));
    QCOMPARE(list.at(2).value(QLatin1String("n")), QJsonValue(3));
    QVERIFY(Config::jsonObjectList(object, "no"_s).isEmpty());
    QVERIFY(Config::jsonObjectList(object, "missing"_s).isEmpty());
}

void TestConfigContent::optionType_data()
{
    QTest::addColumn<QByteArray>("option");
    QTest::addColumn<QString>("type");
    const auto row = [](const char *name, const QByteArray &option, const QString &type = {}) {
        QTest::newRow(name) << option << type;
    };
    row("jump", R"({"extend": "{\"option_type\":\"jump\",\"url\":\"\"}"})", "jump"_s);
    row("empty text", R"({"extend": ""})");
    row("empty object", R"({"extend": "{}"})");
    row("missing", "{}");
    row("an object instead of text", R"({"extend": {"option_type": "jump"}})");
    row("not json", R"({"extend": "option_type=jump"})");
    row("an array", R"({"extend": "[\"jump\"]"})");
    row("type is a number", R"({"extend": "{\"option_type\":1}"})");
}

void TestConfigContent::optionType()
{
    QFETCH(QByteArray, option);
    QFETCH(QString, type);
    const QJsonObject object = parsed(option);
    QCOMPARE(Config::jsonString(Config::extendObject(object), "option_type"_s), type);
    QCOMPARE(Config::hasOptionType(object, {"jump"_s, "x"_s}), type == QLatin1String("jump"));
    QCOMPARE(Config::hasOptionType(object, {"Jump"_s, QString()}), type.isEmpty());
    QVERIFY(!Config::hasOptionType(object, {}));
}

void TestConfigContent::picturePath_data()
{
    QTest::addColumn<QByteArray>("number");
    QTest::addColumn<QByteArray>("link");
    QTest::addColumn<QString>("name"); // behind "option_" or "pid_"; empty: the default picture
    const auto row = [](const char *title, const QByteArray &number, const QByteArray &link,
                        const QString &name = {}) {
        QTest::newRow(title) << number << link << name;
    };
    const QByteArray link = R"("https://a.example/x/banner.jpg")";
    row("downloaded", "64", link, "64.jpg"_s);
    row("zero", "0", link, "0.jpg"_s);
    row("no suffix", "64", R"("https://a.example/x")", "64."_s);
    row("last of several dots", "64", R"("a.tar.gz")", "64.gz"_s);
    row("other suffix than the file on disk", "64", R"("a.svg")");
    row("link is null", "64", "null");
    row("empty link", "64", R"("")");
    row("link is a number", "64", "7");
    row("number is null", "null", link);
    row("number is text", R"("64")", link);
    row("number is negative", "-1", link);
}

void TestConfigContent::picturePath()
{
    QFETCH(QByteArray, number);
    QFETCH(QByteArray, link);
    QFETCH(QString, name);
    const Sandbox sandbox(Sandbox::Content::Nothing);
    const QJsonObject option =
        parsed(R"({"value": )" + number + R"(, "banner_url": )" + link + "}");
    const QJsonObject product = parsed(R"({"pid": )" + number + R"(, "icon": )" + link + "}");
    const QString defaultBanner = ":/Resources/light/Option0_2x.png"_s;
    const QString defaultIcon = ":/Resources/light/ico_default_2x.png"_s;
    QCOMPARE(Config::optionImagePath(option), defaultBanner); // nothing downloaded yet
    QCOMPARE(Config::productIconPath(product), defaultIcon);

    for (const QString &prefix : {"/option_"_s, "/pid_"_s}) {
        for (const QString &download : {"64.png"_s, "-1.jpg"_s, "-1."_s, "64x"_s, name})
            sandbox.writeFile(images + prefix + download, "not even a picture");
    }
    const QString folder = Config::imagesDir();
    QCOMPARE(Config::optionImagePath(option),
             name.isEmpty() ? defaultBanner : folder + "/option_"_s + name);
    QCOMPARE(Config::productIconPath(product),
             name.isEmpty() ? defaultIcon : folder + "/pid_"_s + name);
}

QTEST_GUILESS_MAIN(TestConfigContent)
#include "test_configcontent.moc"
