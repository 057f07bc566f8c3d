#include "tests/component/wizard/wizardtest.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/machine.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtGui/QWindow>

class TestUninstallRun : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void removeStartsTheUninstaller_data();
    void removeStartsTheUninstaller();
    void otherAnswersRemoveNothing_data();
    void otherAnswersRemoveNothing();
    void goodEndLeavesThePageToItsOwnTiming();
    void failureIsShown_data();
    void failureIsShown();
    void whatIsRegisteredIsBelieved();
    void outputIsDiscarded();
    void windowIsLockedUntilTheUninstallerRuns();
    void closeIsRefusedDuringTheRun();
    void hangingProcessEndsWithTheWindow();

private:
    QByteArray receivedArguments() const
    {
        return Sandbox::readFile(installation().uninstallerRecord());
    }
    QString title() const { return window().uninstallPage->lblTitle->text(); }
    void leaveThroughTheProductPage() const;
};

namespace {

const auto popUp = "DoUninstall/UninstallPopUp source=uninstall_action"_s;
const auto failedTitle = "Uninstall Failed"_s;

QString answered(const char *button, int deleteAll)
{
    return "DoUninstall/UninstallReConfirm ButtonClick=%1 is_delete_all=%2"_s
        .arg(QLatin1String(button))
        .arg(deleteAll);
}

QString result(const char *result)
{
    return "DoUninstall/UninstallCompleted result="_s + QLatin1String(result);
}

} // namespace

void TestUninstallRun::removeStartsTheUninstaller_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("deletesResources");

    QTest::newRow("without resources") << Answer(pressRemove) << false;
    QTest::newRow("with resources") << Answer([](ConfirmWindow &dialog) {
        dialog.checkBox->setChecked(true);
        dialog.btnRemove->click();
    }) << true;
    QTest::newRow("box ticked after the answer, in the same batch of events")
        << Answer([](ConfirmWindow &dialog) {
               dialog.btnRemove->click();
               dialog.checkBox->click();
           })
        << false;
}

void TestUninstallRun::removeStartsTheUninstaller()
{
    QFETCH(Answer, answer);
    QFETCH(bool, deletesResources);
    const QProcess *process = uninstallProcess(window());
    std::optional<QIODevice::OpenMode> mode;
    connect(process, &QProcess::started, &window(),
            [&mode, process] { mode = process->openMode(); });
    answerQuestion(answer);
    QCOMPARE(AnalyticsRecord::texts().constLast(), answered("Remove", deletesResources));
    AWAIT_EQUAL(page(), window().uninstallPage);
    AWAIT(!isProcessRunning(window()));
    QCOMPARE(mode, QIODevice::OpenMode(QIODevice::ReadWrite));
    QCOMPARE(receivedArguments(), deletesResources
                                      ? QByteArray("/VERYSILENT\n/REINSTALL\n/DELRESOURCE\n")
                                      : QByteArray("/VERYSILENT\n/REINSTALL\n"));
    AWAIT_EQUAL(QDir(installation().installDir()).exists(), !deletesResources);
    AWAIT(!QFile::exists(installFile("unins000.exe"_s)));
}

void TestUninstallRun::otherAnswersRemoveNothing_data()
{
    QTest::addColumn<Answer>("answer");
    QTest::addColumn<bool>("deletesResources");

    QTest::newRow("Cancel") << Answer([](ConfirmWindow &dialog) {
        dialog.checkBox->setChecked(true);
        dialog.btnCancel->click();
    }) << true;
    QTest::newRow("close from the window system") << Answer([](ConfirmWindow &dialog) {
        dialog.windowHandle()->close();
        QVERIFY(dialog.isVisible()); // until its owner has the answer
    }) << false;
    QTest::newRow("Cancel, then Remove in the same batch of events")
        << Answer([](ConfirmWindow &dialog) {
               dialog.btnCancel->click();
               dialog.btnRemove->click();
           })
        << false;
    QTest::newRow("end of the program")
        << Answer([](ConfirmWindow &) { QCoreApplication::quit(); }) << false;
}

void TestUninstallRun::otherAnswersRemoveNothing()
{
    QFETCH(Answer, answer);
    QFETCH(bool, deletesResources);
    bool isAsked = true;
    connect(qApp, &QGuiApplication::lastWindowClosed, &window(),
            [this, &isAsked] { isAsked = window().findChild<ConfirmWindow *>()->isVisible(); });
    QVERIFY(quitsAfter([this, answer] { answerQuestion(answer); })); // with the last window
    QVERIFY(!isAsked);
    QVERIFY(!window().isVisible());
    QVERIFY(!window().findChild<ConfirmWindow *>());
    QTest::qWait(200);
    QVERIFY(!isProcessRunning(window()));
    QVERIFY(!QFile::exists(installation().uninstallerRecord()));
    QCOMPARE(AnalyticsRecord::actions(),
             QStringList({"UninstallPopUp"_s, "UninstallContinue"_s, "UninstallReConfirm"_s}));
    QCOMPARE(AnalyticsRecord::texts().constLast(), answered("Cancel", deletesResources));
}

/// Leaves the uninstall page by its button and the program by the product page's.
void TestUninstallRun::leaveThroughTheProductPage() const
{
    window().uninstallPage->btnProduct->click();
    QCOMPARE(page(), window().productPage);
    QVERIFY(quitsAfter([this] { window().productPage->btnClose->click(); }));
}

void TestUninstallRun::goodEndLeavesThePageToItsOwnTiming()
{
    const LinkCatcher links;
    answerQuestion();
    AWAIT(!receivedArguments().isEmpty() && !isProcessRunning(window()));
    QVERIFY(window().uninstallPage->isRunning());
    QVERIFY(window().uninstallPage->progressBar->value() < 100);
    QCOMPARE(AnalyticsRecord::actions().last(), "UninstallReConfirm"_s);

    window().uninstallPage->showElapsed(30000);
    QVERIFY(!window().uninstallPage->isRunning());
    QCOMPARE(AnalyticsRecord::texts().last(), result("success"));
    AWAIT(window().uninstallPage->hasSucceeded());
    leaveThroughTheProductPage();
    QCOMPARE(AnalyticsRecord::texts().last(),
             "DoUninstall/Click_exit pagesource=moreproducts result=success"_s);
}

void TestUninstallRun::failureIsShown_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QList<int>>("delays");
    QTest::addColumn<bool>("isUninstallerRun");

    QTest::newRow("no .dat beside the .exe") << Preparation([](const WizardTest &test) {
        QVERIFY(QFile::remove(test.installFile("unins000.dat"_s)));
    }) << QList<int>{500} << false;
    QTest::newRow("no registered folder")
        << Preparation([](const WizardTest &test) { test.registerFolder({}); }) << QList<int>{500}
        << false;
    QTest::newRow("not executable") << Preparation([](const WizardTest &test) {
        QVERIFY(Machine::makeUnstartable(test.installFile("unins000.exe"_s)));
    }) << QList<int>() << false;
    QTest::newRow("exit code") << Preparation([](const WizardTest &test) {
        QVERIFY(test.installation().writeUninstaller(0, {{"exit"_s, "5"_s}}));
    }) << QList<int>() << true;
    QTest::newRow("crash") << Preparation([](const WizardTest &test) {
        QVERIFY(test.installation().writeUninstaller(0, {{"end"_s, "crash"_s}}));
    }) << QList<int>() << true;
}

void TestUninstallRun::failureIsShown()
{
    QFETCH(Preparation, prepare);
    QFETCH(QList<int>, delays);
    QFETCH(bool, isUninstallerRun);
    AWAIT_EQUAL(pendingDelays(), QList<int>()); // of the tests before
    prepare(*this);
    answerQuestion();
    QCOMPARE(pendingDelays(), delays);
    if (!delays.isEmpty()) {
        QVERIFY(window().isEnabled());
        QCOMPARE(page(), window().uninstallPage);
        QVERIFY(window().uninstallPage->isRunning());
        QVERIFY(title() != failedTitle);
    }
    AWAIT_EQUAL(title(), failedTitle);
    QVERIFY(window().isEnabled());
    QCOMPARE(page(), window().uninstallPage);
    QVERIFY(!window().uninstallPage->isRunning());
    QCOMPARE(AnalyticsRecord::texts().mid(2),
             QStringList({answered("Remove", 0), result("failure")}));
    QCOMPARE(QFile::exists(installation().uninstallerRecord()), isUninstallerRun);
    QVERIFY(QFile::exists(installFile("ClipCore.dll"_s)));
    leaveThroughTheProductPage();
    QCOMPARE(AnalyticsRecord::texts().last(),
             "DoUninstall/Click_exit pagesource=moreproducts result=failure"_s);
}

void TestUninstallRun::whatIsRegisteredIsBelieved()
{
    const QString folder = feed().sandbox().path("Anything/planted"_s);
    const QString record = feed().sandbox().path("Received/planted.txt"_s);
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy(installFile("unins000.exe"_s), folder + "/unins005.exe"_s));
    feed().sandbox().writeFile("Anything/planted/unins005.dat"_s,
                               "record=" + record.toUtf8() + '\n');
    registerFolder(folder);
    QTest::qWait(100);
    QVERIFY(!QFile::exists(record)); // not before Remove
    answerQuestion();
    AWAIT_EQUAL(Sandbox::readLines(record), QStringList({"/VERYSILENT"_s, "/REINSTALL"_s}));
    AWAIT(!isProcessRunning(window()));
    QVERIFY(!QFile::exists(installation().uninstallerRecord()));
}

void TestUninstallRun::outputIsDiscarded()
{
    constexpr int megabytes = 4;
    QVERIFY(
        installation().writeUninstaller(0, {{"say"_s, QString::number(megabytes * 1024 * 1024)}}));
    QProcess *process = uninstallProcess(window());
    QList<int> kept;
    connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &window(), [&] {
        kept = {process->readAllStandardOutput().size(), process->readAllStandardError().size()};
    });
    answerQuestion();
    AWAIT_EQUAL(kept.size(), 2);
    QVERIFY2(kept.at(0) < 500000 && kept.at(1) < 500000,
             qPrintable("%1 %2"_s.arg(kept.at(0)).arg(kept.at(1))));
}

void TestUninstallRun::windowIsLockedUntilTheUninstallerRuns()
{
    if (!Machine::startsProcessesLater)
        QSKIP("a process has started here as soon as it is asked for");
    answerQuestion();
    QCOMPARE(uninstallProcess(window())->state(), QProcess::Starting); // no event has come yet
    QVERIFY(!window().isEnabled());
    closeFromTheWindowSystem();
    QVERIFY(window().isVisible());
    AWAIT(window().isEnabled());
    QCOMPARE(page(), window().uninstallPage);
    AWAIT(!isProcessRunning(window()));
}

void TestUninstallRun::closeIsRefusedDuringTheRun()
{
    answerQuestion();
    AWAIT(window().uninstallPage->isRunning());
    closeFromTheWindowSystem();
    QVERIFY(window().isVisible());
    AWAIT(!isProcessRunning(window()));
    closeFromTheWindowSystem();
    QVERIFY(window().isVisible()); // the run is not over while it is shown
    window().uninstallPage->fail();
    closeFromTheWindowSystem();
    QVERIFY(!window().isVisible());
}

void TestUninstallRun::hangingProcessEndsWithTheWindow()
{
    QVERIFY(installation().writeUninstaller(0, {{"end"_s, "hang"_s}}));
    answerQuestion();
    AWAIT(window().uninstallPage->isRunning());
    AWAIT(!receivedArguments().isEmpty()); // hangs, and is not just loading
    window().uninstallPage->showElapsed(60000);
    QVERIFY(window().uninstallPage->isRunning());
    expectKilledProcess();
    QElapsedTimer clock;
    clock.start();
    destroyWindow();
    QVERIFY(clock.elapsed() < 5000); // QProcess would wait half a minute for a child it cannot kill
}

QTEST_MAIN(TestUninstallRun)
#include "test_uninstallrun.moc"
