#include "tests/support/analyticsrecord.h"
#include "tests/support/feed.h"
#include "tests/support/mainwindowstate.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "upgrade/nvupgradehelper.h"
#include "wizard/mainwindow.h"

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QRadioButton>
#include <optional>

/// A removal and an update while the document names programs and arguments wherever it can.
class TestHostileRun : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void nothingOfTheDocumentReachesTheUninstaller();
    void nothingOfTheDocumentReachesTheUpdateInstaller();

private:
    std::optional<Feed> m_feed;
};

namespace {

const QString mark = QStringLiteral("evil");

// "@" stands for what a command line could be led astray by.
const char option[] = R"({
    "value": %1, "title": "@ reason %1", "banner_title": "@", "banner_url": "@", "button_name": "@",
    "banner_click_url": "@", "uninstaller": "@", "arguments": ["@"], "path": "@", "command": "@",
    "extend": "{\"option_type\":\"%2\",\"button_name\":\"@\",\"url\":\"@\",\"path\":\"@\"}"})";
const char document[] = R"({
    "pid": "@", "path": "@", "installer": "@", "arguments": "@", "version": "@", "lang": "@",
    "apps": [{"key": "utilities", "list": [{"pid": 12, "name": "@", "url": "@", "icon": "@"}]}],
    "recommended": {"list": [{"pid": 12, "name": "@", "url": "@", "icon": "@"}]},
    "problem_type": {"list": [%1, %2, %3, %4]}})";

QByteArray hostileDocument()
{
    const QString entry = QString::fromLatin1(option);
    QString text = QString::fromLatin1(document).arg(
        entry.arg(1).arg(QStringLiteral("homepage")), entry.arg(2).arg(QStringLiteral("submit")),
        entry.arg(3).arg(QStringLiteral("upgrade")), entry.arg(4).arg(QStringLiteral("jump")));
    return text.replace(QLatin1Char('@'), QStringLiteral("' /DELRESOURCE & C:/evil.exe;")).toUtf8();
}

QRadioButton *reason(const MainWindow &window, int number)
{
    const QList<QRadioButton *> reasons = window.optionPage->findChildren<QRadioButton *>();
    for (QRadioButton *reason : reasons) {
        if (reason->accessibleName().contains(mark) &&
            reason->accessibleName().endsWith(QStringLiteral("reason %1").arg(number)))
            return reason;
    }
    qFatal("the window does not show the hostile document");
}

} // namespace

void TestHostileRun::init()
{
    m_feed.emplace(Sandbox::Content::Installation);
    m_feed->writeSmallUpgrade(QStringLiteral("8.0.0.1"));
    const Sandbox &sandbox = m_feed->sandbox();
    QVERIFY(sandbox->writeUpdateInstaller({}));
    QVERIFY(sandbox->writeUninstaller(0, {}));
    sandbox.writeFile(QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/en.cfg"),
                      hostileDocument());
    AnalyticsRecord::restart();
}

void TestHostileRun::cleanup()
{
    NvUpgradeHelper::release();
    m_feed.reset();
}

void TestHostileRun::nothingOfTheDocumentReachesTheUninstaller()
{
    MainWindow window(nullptr);
    window.show();
    reason(window, 2)->setChecked(true);
    QTimer::singleShot(0, &window,
                       [&window] { window.findChild<ConfirmWindow *>()->btnRemove->click(); });
    window.optionPage->btnContinue->click();
    const QString program = m_feed->sandbox()->installDir() + QStringLiteral("/unins000.exe");
    QTRY_VERIFY_WITH_TIMEOUT(!QFile::exists(program) && !isProcessRunning(window), patienceMs);
    QCOMPARE(Sandbox::readFile(m_feed->sandbox()->uninstallerRecord()),
             QByteArray("/VERYSILENT\n/REINSTALL\n"));
}

void TestHostileRun::nothingOfTheDocumentReachesTheUpdateInstaller()
{
    MainWindow window(nullptr);
    window.show();
    QString message;
    QTimer answers;
    connect(&answers, &QTimer::timeout, &window, [&window, &message] {
        if (auto *box = window.findChild<MessageWindow *>()) {
            message = box->lblMessage->text();
            box->btnOk->click();
        }
    });
    answers.start(50);
    reason(window, 3)->setChecked(true);
    window.optionPage->btnNext->click();
    QTRY_VERIFY_WITH_TIMEOUT(!message.isEmpty() || window.upgradePage->progressBar->value() == 100,
                             patienceMs);
    QCOMPARE(message, QString());
    const QStringList arguments =
        Sandbox::readLines(m_feed->sandbox()->installerRecord()); // of the sample's own installer
    QCOMPARE(arguments.size(), 8);
    for (const QString &argument : arguments)
        QVERIFY2(!argument.contains(mark), qPrintable(argument));
    QVERIFY(!QFile::exists(m_feed->sandbox()->uninstallerRecord()));
}

QTEST_MAIN(TestHostileRun)
#include "test_hostilerun.moc"
