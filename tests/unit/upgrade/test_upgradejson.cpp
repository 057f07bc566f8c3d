#include "tests/support/testcase.h"
#include "tests/support/upgradefields.h"
#include "upgrade/upgradejson.h"

#include <QtTest/QTest>
#include <limits>

namespace {

const QStringList noCheck = UpgradeFields::of(checkOutParam());
const QStringList noDownload = UpgradeFields::of(downloadOutParam());
const QStringList emptyInfo = UpgradeFields::of(UpdateInfo());

/// Empty when the text is no JSON.
QStringList infoFields(const std::string &json)
{
    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(json);
    return info ? UpgradeFields::of(*info) : QStringList();
}

std::string object(const QByteArray &member, const QByteArray &value)
{
    return QByteArray("{\"" + member + "\":" + value + '}').toStdString();
}

std::string result(const QByteArray &member, const QByteArray &value)
{
    return object("result", QByteArray::fromStdString(object(member, value)));
}

/// A record that has its default in all fields but one.
QStringList with(QStringList fields, int index, const QString &field)
{
    fields[index] = field;
    return fields;
}

} // namespace

class TestUpgradeJson : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void request_data();
    void request();
    void answer_data();
    void answer();
    void textThatIsNoJsonGivesDefaults_data();
    void textThatIsNoJsonGivesDefaults();
    void member_data();
    void member();
    void damagedAnswersNeverThrow();
};

void TestUpgradeJson::request_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QByteArray>("expected");
    const auto row = [](const char *name, const std::string &line, const QByteArray &expected) {
        QTest::newRow(name) << QByteArray::fromStdString(line) << expected + '\n';
    };

    row("check",
        UpgradeJson::checkRequest({"846", "7.2.1.4", "Norvane", "Norvane Clipwright", "20260417",
                                   "robin@mail.example", "win_x64", "{request}"}),
        R"({"brand":"Norvane","name":"Norvane Clipwright","nvid":"20260417",)"
        R"("pid":"846","platform":"win_x64","version":"7.2.1.4"})");
    row("empty check", UpgradeJson::checkRequest({}),
        R"({"brand":"","name":"","nvid":"","pid":"","platform":"","version":""})");
    row("download", UpgradeJson::downloadRequest({"846", "8.0.0.1", "C:/offer.json", "{request}"}),
        R"({"path":"C:/offer.json","pid":"846","version":"8.0.0.1"})");
    row("empty download", UpgradeJson::downloadRequest({}), R"({"path":"","pid":"","version":""})");

    const auto pathRow = [&](const char *name, const QByteArray &path, const QByteArray &written) {
        downloadInPraram params;
        params.path = path.toStdString();
        row(name, UpgradeJson::downloadRequest(params),
            R"({"path":")" + written + R"(","pid":"","version":""})");
    };
    pathRow("quote", "a\"b", R"(a\"b)");
    pathRow("backslash", R"(C:\Temp\x)", R"(C:\\Temp\\x)");
    pathRow("line end", "a\nb\r\t", R"(a\nb\r\t)");
    pathRow("control character", "a\x01", R"(a\u0001)");
    pathRow("zero", QByteArray("a\0b", 3), R"(a\u0000b)");
    pathRow("umlaut", "ü", R"(\u00fc)");
    pathRow("outside the basic plane", "🎬", R"(\ud83c\udfac)");
}

void TestUpgradeJson::request()
{
    QFETCH(QByteArray, line);
    QTEST(line, "expected");
}

void TestUpgradeJson::answer_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("check");
    QTest::addColumn<QStringList>("download");
    QTest::addColumn<QStringList>("info");
    const auto row = [](const char *name, const QByteArray &json, const QStringList &check,
                        const QStringList &download, const QStringList &info = emptyInfo) {
        QTest::newRow(name) << json << check << download << info;
    };
    const auto list = [](const char *fields) {
        return QString::fromUtf8(fields).split(QLatin1Char('|'));
    };

    row("check",
        R"({"errcode":"0","errmsg":"fine","result":{"needupgrade":"1","forceupgrade":"2",)"
        R"("upgradeVersion":"8.0.0.1","packageSize":"25165824","path":"D:/Möbel/offer.json"}})",
        list("0|fine|1|1|8.0.0.1|25165824|D:/Möbel/offer.json|"),
        list("0|fine||0|D:/Möbel/offer.json|"));
    row("download",
        R"({"errcode":"0","errmsg":"fine","result":{"version":"8.0.0.1","downloaded":"1",)"
        R"("path":"D:/package"}})",
        list("0|fine|0|0||0|D:/package|"), list("0|fine|8.0.0.1|1|D:/package|"));
    row("update description",
        R"({"brand":"b","email":"e","full_url":"f","whats_new_content":"c",)"
        R"("whats_new_title":"t","nvid":"n","ok_path":"p","version":"v","more":"m"})",
        noCheck, noDownload, list("b|e|f|c|t|n|p|v"));
    row("comments", "// a remark\n{\"errcode\": /* really */ \"5\"}",
        with(noCheck, 0, QStringLiteral("5")), with(noDownload, 0, QStringLiteral("5")));

    for (const auto &[code, errcode] : {std::pair{R"("12")", 12},
                                        {R"("-2")", -2},
                                        {"12", 12},
                                        {R"("4294967296")", std::numeric_limits<int>::max()}}) {
        const QString number = QString::number(errcode);
        const QByteArray json = QByteArray(R"({"errcode":)") + code +
                                R"(,"errmsg":"no","result":{"needupgrade":"1","forceupgrade":"1",)"
                                R"("upgradeVersion":"8","packageSize":"1","path":"p",)"
                                R"("version":"8","downloaded":"1"}})";
        QTest::addRow("error %s", code)
            << json << with(with(noCheck, 0, number), 1, QStringLiteral("no"))
            << with(with(noDownload, 0, number), 1, QStringLiteral("no")) << emptyInfo;
    }

    for (const char *root : {R"([{"errcode":"5"}])", "[]", R"("errcode")", "5", "true", "null"}) {
        QTest::addRow("root %s", root) << QByteArray(root) << noCheck << noDownload << emptyInfo;
    }
    for (const char *value :
         {R"([{"needupgrade":"1","downloaded":"1"}])", R"("needupgrade")", "1", "true", "null"}) {
        QTest::addRow("result %s", value) << QByteArray::fromStdString(object("result", value))
                                          << noCheck << noDownload << emptyInfo;
    }
}

void TestUpgradeJson::answer()
{
    QFETCH(QByteArray, json);
    QTEST(UpgradeFields::of(UpgradeJson::checkAnswer(json.toStdString())), "check");
    QTEST(UpgradeFields::of(UpgradeJson::downloadAnswer(json.toStdString())), "download");
    QTEST(infoFields(json.toStdString()), "info");
}

void TestUpgradeJson::textThatIsNoJsonGivesDefaults_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("blanks") << QByteArray("  \n");
    QTest::newRow("words") << QByteArray("service not available");
    QTest::newRow("cut off") << QByteArray(R"({"errcode":"5","errmsg":"cut o)");
    QTest::newRow("cut off in a number") << QByteArray(R"({"errcode":5)");
    QTest::newRow("bytes") << QByteArray("\xff\xfe\x80\x00\x01", 5);
    QTest::newRow("byte order mark") << QByteArray("\xef\xbb\xbf{\"errcode\":\"5\"}");
    QTest::newRow("number out of range") << QByteArray(R"({"errcode":1e999})");
    QTest::newRow("negative number out of range") << QByteArray(R"({"errcode":-1e999})");
    QTest::newRow("integer out of range") << R"({"errcode":)" + QByteArray(400, '9') + '}';
    QTest::newRow("number out of range that is not read")
        << QByteArray(R"({"errcode":"5","result":{"sizes":[1,[2,1e999]]}})");
    QTest::newRow("half a surrogate pair") << QByteArray(R"({"errcode":"5\ud83c"})");
    QTest::newRow("unfinished comment") << QByteArray(R"(/* {"errcode":"5"})");
    QTest::newRow("nested too deeply") << QByteArray(100'000, '[') + QByteArray(100'000, ']');
    QTest::newRow("objects nested too deeply")
        << QByteArray("{\"result\":").repeated(100'000) + "1" + QByteArray(100'000, '}');
}

void TestUpgradeJson::textThatIsNoJsonGivesDefaults()
{
    QFETCH(QByteArray, json);
    QCOMPARE(UpgradeFields::of(UpgradeJson::checkAnswer(json.toStdString())), noCheck);
    QCOMPARE(UpgradeFields::of(UpgradeJson::downloadAnswer(json.toStdString())), noDownload);
    QCOMPARE(infoFields(json.toStdString()), QStringList());
}

void TestUpgradeJson::member_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<int>("number"); // as atoi() reads the text
    const auto row = [](const char *name, const QByteArray &value, const QByteArray &text,
                        int number = 0) { QTest::newRow(name) << value << text << number; };
    using Limits = std::numeric_limits<int>;

    row("text", R"("a \"b\" \u00fc")", "a \"b\" ü");
    row("empty text", R"("")", {});
    row("zero in the text", R"("a\u0000b")", QByteArray("a\0b", 3));
    row("digits after a zero character", R"("4\u00002")", QByteArray("4\0002", 3), 4);
    row("numeral", R"("42")", "42", 42);
    row("one", R"("1")", "1", 1);
    row("leading digits", R"("42 bytes")", "42 bytes", 42);
    row("blanks before", R"("  42")", "  42", 42);
    row("leading zeros", R"("0042")", "0042", 42);
    row("plus sign", R"("+42")", "+42", 42);
    row("minus sign", R"("-42")", "-42", -42);
    row("hexadecimal", R"("0x42")", "0x42");
    row("largest", R"("2147483647")", "2147483647", Limits::max());
    row("over the largest", R"("2147483648")", "2147483648", Limits::max());
    row("far over the largest", R"("99999999999999999999999")", "99999999999999999999999",
        Limits::max());
    row("far below the smallest", R"("-99999999999999999999999")", "-99999999999999999999999",
        Limits::min());
    row("number", "12", "12", 12);
    row("negative number", "-12", "-12", -12);
    row("large number", "18446744073709551615", "18446744073709551615", Limits::max());
    row("largest power of ten", "1e308", "1e+308", 1);
    row("too small for a fraction", "1e-999", "0.0");
    row("fraction", "42.5", "42.5", 42);
    row("true has no digits", "true", "true");
    row("false", "false", "false");
    row("null", "null", {});
    row("array", R"(["1"])", {});
    row("array of a number", "[42]", {});
    row("object", R"({"1":"1"})", {});
}

void TestUpgradeJson::member()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, text);
    QFETCH(int, number);
    const QString asText = UpgradeFields::text(text.toStdString());
    const QString asNumber = QString::number(number);
    const QString asFlag = number == 0 ? QStringLiteral("0") : QStringLiteral("1");
    struct Member
    {
        const char *name;
        QString field;
    };

    const Member outcome[] = {{"errcode", asNumber}, {"errmsg", asText}};
    for (int index = 0; index < 2; ++index) {
        const auto &[name, field] = outcome[index];
        const std::string json = object(name, value);
        QCOMPARE(UpgradeFields::of(UpgradeJson::checkAnswer(json)), with(noCheck, index, field));
        QCOMPARE(UpgradeFields::of(UpgradeJson::downloadAnswer(json)),
                 with(noDownload, index, field));
    }

    int index = 2;
    for (const auto &[name, field] : {Member{"needupgrade", asFlag},
                                      {"forceupgrade", asFlag},
                                      {"upgradeVersion", asText},
                                      {"packageSize", asNumber},
                                      {"path", asText}}) {
        QCOMPARE(UpgradeFields::of(UpgradeJson::checkAnswer(result(name, value))),
                 with(noCheck, index++, field));
    }
    index = 2;
    for (const auto &[name, field] :
         {Member{"version", asText}, {"downloaded", asFlag}, {"path", asText}}) {
        QCOMPARE(UpgradeFields::of(UpgradeJson::downloadAnswer(result(name, value))),
                 with(noDownload, index++, field));
    }
    index = 0;
    for (const char *name : {"brand", "email", "full_url", "whats_new_content", "whats_new_title",
                             "nvid", "ok_path", "version"})
        QCOMPARE(infoFields(object(name, value)), with(emptyInfo, index++, asText));
}

void TestUpgradeJson::damagedAnswersNeverThrow()
{
    const std::string whole =
        R"({"errcode":"0","errmsg":"","result":{"needupgrade":"1","packageSize":[1,2.5e3,-7],)"
        R"("downloaded":true,"path":"D:\/M\u00f6bel","version":null}, "version":{"a":"b"}})";
    const auto readAll = [](const std::string &json) {
        UpgradeJson::checkAnswer(json);
        UpgradeJson::downloadAnswer(json);
        UpgradeJson::updateInfo(json);
    };
    for (std::size_t at = 0; at < whole.size(); ++at) {
        readAll(whole.substr(0, at));
        readAll(whole.substr(at));
        for (const char damage : {'\0', '"', '\\', '{', ']', '9', '\x80', '\xff'}) {
            std::string damaged = whole;
            damaged[at] = damage;
            readAll(damaged);
        }
    }
}

QTEST_APPLESS_MAIN(TestUpgradeJson)
#include "test_upgradejson.moc"
