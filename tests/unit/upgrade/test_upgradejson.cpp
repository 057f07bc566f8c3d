#include "tests/support/testcase.h"
#include "upgrade/upgradejson.h"

#include <QtTest/QTest>
#include <limits>

namespace {

checkInPraram sampleCheck()
{
    return {
        "846",     "7.2.1.4",  "Norvane", "Norvane Clipwright", "20260417", "robin@mail.example",
        "win_x64", "{request}"};
}

QByteArray bytes(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

std::string withMember(const QByteArray &member, const QByteArray &value)
{
    return QByteArray("{\"" + member + "\":" + value + '}').toStdString();
}

std::string withResult(const QByteArray &result)
{
    return withMember("result", result);
}

bool isDefault(const checkOutParam &answer)
{
    return answer.errcode == 0 && answer.errmsg.empty() && !answer.needupgrade &&
           !answer.forceupgrade && answer.upgradeVersion.empty() && answer.packageSize == 0 &&
           answer.path.empty() && answer.requestId.empty();
}

bool isDefault(const downloadOutParam &answer)
{
    return answer.errcode == 0 && answer.errmsg.empty() && answer.version.empty() &&
           !answer.downloaded && answer.path.empty() && answer.requestId.empty();
}

bool isEmpty(const UpdateInfo &info)
{
    return info.brand.empty() && info.email.empty() && info.full_url.empty() &&
           info.whats_new_content.empty() && info.whats_new_title.empty() && info.nvid.empty() &&
           info.ok_path.empty() && info.version.empty();
}

} // namespace

class TestUpgradeJson : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void checkRequestIsOneLineOfStrings();
    void downloadRequestIsOneLineOfStrings();
    void emptyRequestKeepsAllMembers();
    void requestTextIsEscaped_data();
    void requestTextIsEscaped();

    void checkAnswerIsRead();
    void downloadAnswerIsRead();
    void errorCodeOtherThanZeroLeavesResultUnread_data();
    void errorCodeOtherThanZeroLeavesResultUnread();
    void textThatIsNoJsonGivesDefaults_data();
    void textThatIsNoJsonGivesDefaults();
    void rootThatIsNoObjectReadsAsEmpty_data();
    void rootThatIsNoObjectReadsAsEmpty();
    void resultThatIsNoObjectIsNotRead_data();
    void resultThatIsNoObjectIsNotRead();
    void memberIsReadAsText_data();
    void memberIsReadAsText();
    void numeralIsReadLikeAtoi_data();
    void numeralIsReadLikeAtoi();
    void flagIsTrueForNonZero_data();
    void flagIsTrueForNonZero();
    void commentsAreAllowed();

    void updateInfoIsRead();
    void updateInfoMissingMembersAreEmpty();
    void updateInfoOfOtherTypesIsEmptyText();

    void damagedAnswersNeverThrow();
};

void TestUpgradeJson::checkRequestIsOneLineOfStrings()
{
    QCOMPARE(bytes(UpgradeJson::checkRequest(sampleCheck())),
             QByteArray(R"({"brand":"Norvane","name":"Norvane Clipwright","nvid":"20260417",)"
                        R"("pid":"846","platform":"win_x64","version":"7.2.1.4"})"
                        "\n"));
}

void TestUpgradeJson::downloadRequestIsOneLineOfStrings()
{
    QCOMPARE(bytes(UpgradeJson::downloadRequest(
                 {"846", "8.0.0.1", "C:/Users/Robin/offer.json", "{request}"})),
             QByteArray(R"({"path":"C:/Users/Robin/offer.json","pid":"846","version":"8.0.0.1"})"
                        "\n"));
}

void TestUpgradeJson::emptyRequestKeepsAllMembers()
{
    QCOMPARE(bytes(UpgradeJson::checkRequest({})),
             QByteArray(R"({"brand":"","name":"","nvid":"","pid":"","platform":"","version":""})"
                        "\n"));
    QCOMPARE(bytes(UpgradeJson::downloadRequest({})),
             QByteArray(R"({"path":"","pid":"","version":""})"
                        "\n"));
}

void TestUpgradeJson::requestTextIsEscaped_data()
{
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("written");

    QTest::newRow("quote") << QByteArray("a\"b") << QByteArray(R"(a\"b)");
    QTest::newRow("backslash") << QByteArray(R"(C:\Temp\x)") << QByteArray(R"(C:\\Temp\\x)");
    QTest::newRow("line end") << QByteArray("a\nb\r\t") << QByteArray(R"(a\nb\r\t)");
    QTest::newRow("control character") << QByteArray("a\x01") << QByteArray(R"(a\u0001)");
    QTest::newRow("zero") << QByteArray("a\0b", 3) << QByteArray(R"(a\u0000b)");
    QTest::newRow("umlaut") << QByteArray("ü") << QByteArray(R"(\u00fc)");
    QTest::newRow("outside the basic plane") << QByteArray("🎬") << QByteArray(R"(\ud83c\udfac)");
}

void TestUpgradeJson::requestTextIsEscaped()
{
    QFETCH(QByteArray, path);
    QFETCH(QByteArray, written);
    downloadInPraram params;
    params.path = path.toStdString();
    QCOMPARE(bytes(UpgradeJson::downloadRequest(params)),
             QByteArray("{\"path\":\"" + written + "\",\"pid\":\"\",\"version\":\"\"}\n"));
}

void TestUpgradeJson::checkAnswerIsRead()
{
    const checkOutParam answer = UpgradeJson::checkAnswer(
        R"({"errcode":"0","errmsg":"fine","result":{"needupgrade":"1","forceupgrade":"2",)"
        R"("upgradeVersion":"8.0.0.1","packageSize":"25165824","path":"D:/Möbel/offer.json"}})");
    QCOMPARE(answer.errcode, 0);
    QCOMPARE(bytes(answer.errmsg), QByteArray("fine"));
    QVERIFY(answer.needupgrade);
    QVERIFY(answer.forceupgrade);
    QCOMPARE(bytes(answer.upgradeVersion), QByteArray("8.0.0.1"));
    QCOMPARE(answer.packageSize, 25165824);
    QCOMPARE(bytes(answer.path), QByteArray("D:/Möbel/offer.json"));
    QVERIFY(answer.requestId.empty());
}

void TestUpgradeJson::downloadAnswerIsRead()
{
    const downloadOutParam answer = UpgradeJson::downloadAnswer(
        R"({"errcode":"0","errmsg":"fine","result":{"version":"8.0.0.1","downloaded":"1",)"
        R"("path":"D:/package"}})");
    QCOMPARE(answer.errcode, 0);
    QCOMPARE(bytes(answer.errmsg), QByteArray("fine"));
    QCOMPARE(bytes(answer.version), QByteArray("8.0.0.1"));
    QVERIFY(answer.downloaded);
    QCOMPARE(bytes(answer.path), QByteArray("D:/package"));
    QVERIFY(answer.requestId.empty());
}

void TestUpgradeJson::errorCodeOtherThanZeroLeavesResultUnread_data()
{
    QTest::addColumn<QByteArray>("code");
    QTest::addColumn<int>("errcode");

    QTest::newRow("12") << QByteArray(R"("12")") << 12;
    QTest::newRow("negative") << QByteArray(R"("-2")") << -2;
    QTest::newRow("a number") << QByteArray("12") << 12;
    QTest::newRow("too large for 32 bits")
        << QByteArray(R"("4294967296")") << std::numeric_limits<int>::max();
}

void TestUpgradeJson::errorCodeOtherThanZeroLeavesResultUnread()
{
    QFETCH(QByteArray, code);
    QFETCH(int, errcode);
    const std::string json =
        QByteArray(R"({"errcode":)" + code +
                   R"(,"errmsg":"no","result":{"needupgrade":"1","forceupgrade":"1",)"
                   R"("upgradeVersion":"8","packageSize":"1","path":"p","version":"8",)"
                   R"("downloaded":"1"}})")
            .toStdString();

    checkOutParam check = UpgradeJson::checkAnswer(json);
    QCOMPARE(check.errcode, errcode);
    QCOMPARE(bytes(check.errmsg), QByteArray("no"));
    check.errcode = 0;
    check.errmsg.clear();
    QVERIFY(isDefault(check));

    downloadOutParam download = UpgradeJson::downloadAnswer(json);
    QCOMPARE(download.errcode, errcode);
    QCOMPARE(bytes(download.errmsg), QByteArray("no"));
    download.errcode = 0;
    download.errmsg.clear();
    QVERIFY(isDefault(download));
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
    QVERIFY(isDefault(UpgradeJson::checkAnswer(json.toStdString())));
    QVERIFY(isDefault(UpgradeJson::downloadAnswer(json.toStdString())));
    QVERIFY(!UpgradeJson::updateInfo(json.toStdString()));
}

void TestUpgradeJson::rootThatIsNoObjectReadsAsEmpty_data()
{
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("array") << QByteArray(R"([{"errcode":"5"}])");
    QTest::newRow("empty array") << QByteArray("[]");
    QTest::newRow("text") << QByteArray(R"("errcode")");
    QTest::newRow("number") << QByteArray("5");
    QTest::newRow("boolean") << QByteArray("true");
    QTest::newRow("null") << QByteArray("null");
}

void TestUpgradeJson::rootThatIsNoObjectReadsAsEmpty()
{
    QFETCH(QByteArray, json);
    QVERIFY(isDefault(UpgradeJson::checkAnswer(json.toStdString())));
    QVERIFY(isDefault(UpgradeJson::downloadAnswer(json.toStdString())));
    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(json.toStdString());
    QVERIFY(info);
    QVERIFY(isEmpty(*info));
}

void TestUpgradeJson::resultThatIsNoObjectIsNotRead_data()
{
    QTest::addColumn<QByteArray>("result");

    QTest::newRow("array") << QByteArray(R"([{"needupgrade":"1","downloaded":"1"}])");
    QTest::newRow("text") << QByteArray(R"("needupgrade")");
    QTest::newRow("number") << QByteArray("1");
    QTest::newRow("boolean") << QByteArray("true");
    QTest::newRow("null") << QByteArray("null");
}

void TestUpgradeJson::resultThatIsNoObjectIsNotRead()
{
    QFETCH(QByteArray, result);
    QVERIFY(isDefault(UpgradeJson::checkAnswer(withResult(result))));
    QVERIFY(isDefault(UpgradeJson::downloadAnswer(withResult(result))));
}

void TestUpgradeJson::memberIsReadAsText_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<QByteArray>("text");

    QTest::newRow("text") << QByteArray(R"("a \"b\" \u00fc")") << QByteArray("a \"b\" ü");
    QTest::newRow("zero in the text") << QByteArray(R"("a\u0000b")") << QByteArray("a\0b", 3);
    QTest::newRow("empty text") << QByteArray(R"("")") << QByteArray();
    QTest::newRow("number") << QByteArray("12") << QByteArray("12");
    QTest::newRow("negative number") << QByteArray("-12") << QByteArray("-12");
    QTest::newRow("large number") << QByteArray("18446744073709551615")
                                  << QByteArray("18446744073709551615");
    QTest::newRow("largest power of ten") << QByteArray("1e308") << QByteArray("1e+308");
    QTest::newRow("too small for a fraction") << QByteArray("1e-999") << QByteArray("0.0");
    QTest::newRow("fraction") << QByteArray("2.5") << QByteArray("2.5");
    QTest::newRow("true") << QByteArray("true") << QByteArray("true");
    QTest::newRow("false") << QByteArray("false") << QByteArray("false");
    QTest::newRow("null") << QByteArray("null") << QByteArray();
    QTest::newRow("array") << QByteArray(R"(["a"])") << QByteArray();
    QTest::newRow("object") << QByteArray(R"({"a":"b"})") << QByteArray();
}

void TestUpgradeJson::memberIsReadAsText()
{
    QFETCH(QByteArray, value);
    QFETCH(QByteArray, text);

    QCOMPARE(bytes(UpgradeJson::checkAnswer(withMember("errmsg", value)).errmsg), text);
    QCOMPARE(bytes(UpgradeJson::downloadAnswer(withMember("errmsg", value)).errmsg), text);

    const QByteArray result = QByteArray::fromStdString(withMember("path", value));
    QCOMPARE(bytes(UpgradeJson::checkAnswer(withResult(result)).path), text);
    QCOMPARE(bytes(UpgradeJson::downloadAnswer(withResult(result)).path), text);

    const QByteArray version = QByteArray::fromStdString(withMember("upgradeVersion", value));
    QCOMPARE(bytes(UpgradeJson::checkAnswer(withResult(version)).upgradeVersion), text);

    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(withMember("version", value));
    QVERIFY(info);
    QCOMPARE(bytes(info->version), text);
}

void TestUpgradeJson::numeralIsReadLikeAtoi_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<int>("number");

    QTest::newRow("numeral") << QByteArray(R"("42")") << 42;
    QTest::newRow("number") << QByteArray("42") << 42;
    QTest::newRow("fraction") << QByteArray("42.9") << 42;
    QTest::newRow("leading digits") << QByteArray(R"("42 bytes")") << 42;
    QTest::newRow("blanks before") << QByteArray(R"("  42")") << 42;
    QTest::newRow("leading zeros") << QByteArray(R"("0042")") << 42;
    QTest::newRow("plus sign") << QByteArray(R"("+42")") << 42;
    QTest::newRow("minus sign") << QByteArray(R"("-42")") << -42;
    QTest::newRow("hexadecimal") << QByteArray(R"("0x42")") << 0;
    QTest::newRow("words") << QByteArray(R"("many")") << 0;
    QTest::newRow("empty") << QByteArray(R"("")") << 0;
    QTest::newRow("null") << QByteArray("null") << 0;
    QTest::newRow("array") << QByteArray("[42]") << 0;
    QTest::newRow("digits after a zero character") << QByteArray(R"("4\u00002")") << 4;
    QTest::newRow("largest") << QByteArray(R"("2147483647")") << std::numeric_limits<int>::max();
    QTest::newRow("over the largest")
        << QByteArray(R"("2147483648")") << std::numeric_limits<int>::max();
    QTest::newRow("far over the largest")
        << QByteArray(R"("99999999999999999999999")") << std::numeric_limits<int>::max();
    QTest::newRow("far below the smallest")
        << QByteArray(R"("-99999999999999999999999")") << std::numeric_limits<int>::min();
}

void TestUpgradeJson::numeralIsReadLikeAtoi()
{
    QFETCH(QByteArray, value);
    QFETCH(int, number);
    QCOMPARE(UpgradeJson::checkAnswer(withMember("errcode", value)).errcode, number);
    QCOMPARE(UpgradeJson::downloadAnswer(withMember("errcode", value)).errcode, number);
    const QByteArray result = QByteArray::fromStdString(withMember("packageSize", value));
    QCOMPARE(UpgradeJson::checkAnswer(withResult(result)).packageSize, number);
}

void TestUpgradeJson::flagIsTrueForNonZero_data()
{
    QTest::addColumn<QByteArray>("value");
    QTest::addColumn<bool>("flag");

    QTest::newRow("one") << QByteArray(R"("1")") << true;
    QTest::newRow("zero") << QByteArray(R"("0")") << false;
    QTest::newRow("minus one") << QByteArray(R"("-1")") << true;
    QTest::newRow("a number") << QByteArray("1") << true;
    QTest::newRow("a word") << QByteArray(R"("true")") << false;
    QTest::newRow("a boolean has no digits") << QByteArray("true") << false;
    QTest::newRow("null") << QByteArray("null") << false;
}

void TestUpgradeJson::flagIsTrueForNonZero()
{
    QFETCH(QByteArray, value);
    QFETCH(bool, flag);
    const auto check = [&](const char *member) {
        return UpgradeJson::checkAnswer(
            withResult(QByteArray::fromStdString(withMember(member, value))));
    };
    QCOMPARE(check("needupgrade").needupgrade, flag);
    QVERIFY(!check("needupgrade").forceupgrade);
    QCOMPARE(check("forceupgrade").forceupgrade, flag);
    QVERIFY(!check("forceupgrade").needupgrade);
    QCOMPARE(UpgradeJson::downloadAnswer(
                 withResult(QByteArray::fromStdString(withMember("downloaded", value))))
                 .downloaded,
             flag);
}

void TestUpgradeJson::commentsAreAllowed()
{
    QCOMPARE(UpgradeJson::checkAnswer("// a remark\n{\"errcode\": /* really */ \"5\"}").errcode, 5);
}

void TestUpgradeJson::updateInfoIsRead()
{
    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(
        R"({"brand":"b","email":"e","full_url":"f","whats_new_content":"c",)"
        R"("whats_new_title":"t","nvid":"n","ok_path":"p","version":"v","more":"m"})");
    QVERIFY(info);
    QCOMPARE(bytes(info->brand), QByteArray("b"));
    QCOMPARE(bytes(info->email), QByteArray("e"));
    QCOMPARE(bytes(info->full_url), QByteArray("f"));
    QCOMPARE(bytes(info->whats_new_content), QByteArray("c"));
    QCOMPARE(bytes(info->whats_new_title), QByteArray("t"));
    QCOMPARE(bytes(info->nvid), QByteArray("n"));
    QCOMPARE(bytes(info->ok_path), QByteArray("p"));
    QCOMPARE(bytes(info->version), QByteArray("v"));
}

void TestUpgradeJson::updateInfoMissingMembersAreEmpty()
{
    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(R"({"version":"8.0.0.1"})");
    QVERIFY(info);
    QCOMPARE(bytes(info->version), QByteArray("8.0.0.1"));
    UpdateInfo others = *info;
    others.version.clear();
    QVERIFY(isEmpty(others));
}

void TestUpgradeJson::updateInfoOfOtherTypesIsEmptyText()
{
    const std::optional<UpdateInfo> info = UpgradeJson::updateInfo(
        R"({"brand":[],"email":{},"full_url":null,"whats_new_content":["line"],)"
        R"("whats_new_title":{"en":"t"},"nvid":[1],"ok_path":[[]],"version":{"major":8}})");
    QVERIFY(info);
    QVERIFY(isEmpty(*info));
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
