#include "tests/component/wizard/wizardtest.h"

/// A removal and an update while the document names programs and arguments wherever it can.
class TestHostileRun : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void nothingOfTheDocumentReachesTheUninstaller();
    void nothingOfTheDocumentReachesTheUpdateInstaller();

private:
    void prepareInstallation() override;
};

namespace {

const auto mark = "' /DELRESOURCE & C:/evil.exe;"_s; // could lead a command line astray

QByteArray hostileDocument()
{
    // "@" stands for the mark.
    const auto option = R"({
        "value": %1, "title": "@ reason %1", "banner_title": "@", "banner_url": "@",
        "button_name": "@", "banner_click_url": "@", "uninstaller": "@", "arguments": ["@"],
        "path": "@", "command": "@",
        "extend": "{\"option_type\":\"%2\",\"button_name\":\"@\",\"url\":\"@\",\"path\":\"@\"}"})"_s;
    const auto document = R"({
        "pid": "@", "path": "@", "installer": "@", "arguments": "@", "version": "@", "lang": "@",
        "apps": [{"key": "utilities",
                  "list": [{"pid": 12, "name": "@", "url": "@", "icon": "@"}]}],
        "recommended": {"list": [{"pid": 12, "name": "@", "url": "@", "icon": "@"}]},
        "problem_type": {"list": [%1, %2, %3, %4]}})"_s;
    return document
        .arg(option.arg("1"_s, "homepage"_s), option.arg("2"_s, "submit"_s),
             option.arg("3"_s, "upgrade"_s), option.arg("4"_s, "jump"_s))
        .replace("@"_s, mark)
        .toUtf8();
}

} // namespace

void TestHostileRun::prepareInstallation()
{
    feed().sandbox().writeFile("Temp/Norvane Clipwright Uninstaller/Configs/en.cfg"_s,
                               hostileDocument());
}

void TestHostileRun::nothingOfTheDocumentReachesTheUninstaller()
{
    chooseReason(mark + " reason 2"_s);
    answerQuestion();
    AWAIT(!QFile::exists(installFile("unins000.exe"_s)) && !isProcessRunning(window()));
    QCOMPARE(Sandbox::readFile(installation().uninstallerRecord()),
             QByteArray("/VERYSILENT\n/REINSTALL\n"));
}

void TestHostileRun::nothingOfTheDocumentReachesTheUpdateInstaller()
{
    chooseReason(mark + " reason 3"_s);
    window().optionPage->btnNext->click();
    AWAIT(!messages().all.isEmpty() || window().upgradePage->progressBar->value() == 100);
    QCOMPARE(messages().texts(), QStringList());
    const QStringList arguments = Sandbox::readLines(installation().installerRecord());
    QCOMPARE(arguments.size(), 8);
    QVERIFY2(arguments.filter("evil"_s).isEmpty(), qPrintable(arguments.join(u'\n')));
    QVERIFY(!QFile::exists(installation().uninstallerRecord()));
}

QTEST_MAIN(TestHostileRun)
#include "test_hostilerun.moc"
