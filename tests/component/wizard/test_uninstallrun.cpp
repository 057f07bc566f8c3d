#include "tests/support/analyticsrecord.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/machine.h"
#include "tests/support/mainwindowstate.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtTest/QTest>

#include <algorithm>
#include <optional>

class TestUninstallRun : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void argumentsWithoutResources();
    void argumentsWithResources();
    void whatIsSaidIsNotKept();
    void cancelEndsWithoutStartingAnything();
    void closeFromTheWindowSystemCountsAsCancel();
    void uninstallerMayBeWrittenTo();
    void filesAreReallyRemoved();
    void goodEndLeavesThePageToItsOwnTiming();
    void windowIsLockedFromRemoveToTheStart();
    void noPairFailsAfterHalfASecond();
    void noFolderFailsAfterHalfASecond();
    void whatIsRegisteredIsBelieved();
    void unstartableProgramFailsAtOnce();
    void exitCodeFails();
    void crashFails();
    void closeIsRefusedDuringTheRun();
    void hangingProcessEndsWithTheWindow();
    void failedRunIsReportedOnTheProductPage();
    void quitWhileAskingRemovesNothing();
    void firstAnswerCounts();
    void boxCountsAsItWasAtTheAnswer();
    void closeIsRefusedWhileTheUninstallerStarts();

private:
    void answer(MainWindow &window, int result, bool deleteAll = false);
    void failsAfterHalfASecond(MainWindow &window);

    /// The arguments that the uninstaller has recorded, a line each.
    QByteArray received() const { return Sandbox::readFile((*m_sandbox)->uninstallerRecord()); }

    std::unique_ptr<Sandbox> m_sandbox;
};

namespace {

const SampleInstallation::Orders noDelay{{QStringLiteral("delay"), QStringLiteral("0")}};

QString failedTitle()
{
    return QStringLiteral("Uninstall Failed");
}

QJsonObject lastProperties()
{
    return AnalyticsRecord::events().constLast().properties;
}

} // namespace

void TestUninstallRun::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    (*m_sandbox)->writeUninstaller(0, noDelay);
    AnalyticsRecord::restart();
}

void TestUninstallRun::cleanup()
{
    m_sandbox.reset();
}

// Presses Continue and answers the question that follows.
void TestUninstallRun::answer(MainWindow &window, int result, bool deleteAll)
{
    window.optionPage->btnContinue->setEnabled(true);
    QTimer::singleShot(0, &window, [&window, result, deleteAll] {
        auto *dialog = window.findChild<ConfirmWindow *>();
        dialog->checkBox->setChecked(deleteAll);
        (result ? dialog->btnRemove : dialog->btnCancel)->click();
    });
    window.optionPage->btnContinue->click();
}

void TestUninstallRun::argumentsWithoutResources()
{
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.uninstallPage,
                              patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(received(), QByteArray("/VERYSILENT\n/REINSTALL\n"), patienceMs);
    QCOMPARE(AnalyticsRecord::events().constLast().action, QStringLiteral("UninstallReConfirm"));
    QCOMPARE(lastProperties(), QJsonObject({{QLatin1String("ButtonClick"), QLatin1String("Remove")},
                                            {QLatin1String("is_delete_all"), QLatin1String("0")}}));
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

void TestUninstallRun::argumentsWithResources()
{
    MainWindow window(nullptr);
    window.show();
    answer(window, 1, true);
    QTRY_COMPARE_WITH_TIMEOUT(received(), QByteArray("/VERYSILENT\n/REINSTALL\n/DELRESOURCE\n"),
                              patienceMs);
    QCOMPARE(lastProperties(), QJsonObject({{QLatin1String("ButtonClick"), QLatin1String("Remove")},
                                            {QLatin1String("is_delete_all"), QLatin1String("1")}}));
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

void TestUninstallRun::whatIsSaidIsNotKept()
{
    constexpr int megabytes = 4;
    (*m_sandbox)
        ->writeUninstaller(0, {{QStringLiteral("say"), QString::number(megabytes * 1024 * 1024)}});
    MainWindow window(nullptr);
    window.show();
    qint64 kept = 0;
    const QList<QProcess *> processes = window.findChildren<QProcess *>();
    for (QProcess *process : processes) {
        connect(process, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), &window,
                [process, &kept] {
                    kept = process->readAllStandardOutput().size() +
                           process->readAllStandardError().size();
                });
    }
    answer(window, 1);
    QTRY_VERIFY_WITH_TIMEOUT(!received().isEmpty() && !isProcessRunning(window), patienceMs);
    QVERIFY2(kept < qint64(1024) * 1024, qPrintable(QString::number(kept)));
}

void TestUninstallRun::cancelEndsWithoutStartingAnything()
{
    MainWindow window(nullptr);
    window.show();
    QVERIFY(quitsAfter([this, &window] { answer(window, 0, true); })); // with the last window
    QVERIFY(!window.isVisible());
    QVERIFY(!isProcessRunning(window));
    QCOMPARE(lastProperties(), QJsonObject({{QLatin1String("ButtonClick"), QLatin1String("Cancel")},
                                            {QLatin1String("is_delete_all"), QLatin1String("1")}}));
    QTest::qWait(200);
    QVERIFY(!isProcessRunning(window));
    QVERIFY(!QFile::exists((*m_sandbox)->uninstallerRecord()));
    QCOMPARE(AnalyticsRecord::actions(),
             QStringList({QStringLiteral("UninstallPopUp"), QStringLiteral("UninstallContinue"),
                          QStringLiteral("UninstallReConfirm")}));
}

void TestUninstallRun::closeFromTheWindowSystemCountsAsCancel()
{
    MainWindow window(nullptr);
    window.show();
    window.optionPage->btnContinue->setEnabled(true);
    bool stayed = false;
    QTimer::singleShot(0, &window, [&window, &stayed] {
        auto *dialog = window.findChild<ConfirmWindow *>();
        dialog->windowHandle()->close();
        stayed = dialog->isVisible();
    });
    window.optionPage->btnContinue->click();
    QVERIFY(stayed);
    QVERIFY(!window.isVisible());
    QCOMPARE(lastProperties().value(QLatin1String("ButtonClick")),
             QJsonValue(QLatin1String("Cancel")));
}

void TestUninstallRun::uninstallerMayBeWrittenTo()
{
    MainWindow window(nullptr);
    window.show();
    const QProcess *uninstaller = uninstallProcess(window);
    std::optional<QIODevice::OpenMode> mode;
    connect(uninstaller, &QProcess::started, &window,
            [uninstaller, &mode] { mode = uninstaller->openMode(); });
    answer(window, 1);
    QTRY_VERIFY_WITH_TIMEOUT(mode.has_value(), patienceMs);
    QCOMPARE(*mode, QIODevice::OpenMode(QIODevice::ReadWrite));
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

void TestUninstallRun::filesAreReallyRemoved()
{
    MainWindow window(nullptr);
    window.show();
    answer(window, 1, true);
    QTRY_VERIFY_WITH_TIMEOUT(!QDir((*m_sandbox)->installDir()).exists(), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

void TestUninstallRun::goodEndLeavesThePageToItsOwnTiming()
{
    const LinkCatcher links;
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_VERIFY_WITH_TIMEOUT(
        !QFile::exists((*m_sandbox)->installDir() + QStringLiteral("/unins000.exe")), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
    QVERIFY(window.uninstallPage->isRunning());
    QVERIFY(window.uninstallPage->progressBar->value() < 100);
    QCOMPARE(AnalyticsRecord::actions().last(), QStringLiteral("UninstallReConfirm"));

    window.uninstallPage->showElapsed(30000);
    QVERIFY(!window.uninstallPage->isRunning());
    QCOMPARE(lastProperties(), QJsonObject({{QLatin1String("result"), QLatin1String("success")}}));
}

void TestUninstallRun::windowIsLockedFromRemoveToTheStart()
{
    if (!Machine::startsProcessesLater())
        QSKIP("a process has started here as soon as it is asked for");
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QVERIFY(!window.isEnabled()); // the process has been asked for, no event has come yet
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    QCOMPARE(window.wizardPages->currentWidget(), window.uninstallPage);
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

// The time is taken from the moment in which the page of the run comes.
void TestUninstallRun::failsAfterHalfASecond(MainWindow &window)
{
    QElapsedTimer clock;
    connect(window.wizardPages, &QStackedWidget::currentChanged, &window,
            [&clock] { clock.start(); });
    answer(window, 1);
    QVERIFY(window.isEnabled());
    QCOMPARE(window.wizardPages->currentWidget(), window.uninstallPage);
    QVERIFY(window.uninstallPage->isRunning());
    QTRY_COMPARE_WITH_TIMEOUT(window.uninstallPage->lblTitle->text(), failedTitle(), patienceMs);
    const qint64 elapsed = clock.elapsed();
    QVERIFY2(elapsed >= 450 && elapsed < 4000, QByteArray::number(elapsed).constData());
}

void TestUninstallRun::noPairFailsAfterHalfASecond()
{
    QVERIFY(QFile::remove((*m_sandbox)->installDir() + QStringLiteral("/unins000.dat")));
    MainWindow window(nullptr);
    window.show();
    failsAfterHalfASecond(window);
    QCOMPARE(lastProperties(), QJsonObject({{QLatin1String("result"), QLatin1String("failure")}}));
    QVERIFY(!QFile::exists((*m_sandbox)->uninstallerRecord()));
}

void TestUninstallRun::noFolderFailsAfterHalfASecond()
{
    (*m_sandbox)->removeSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"));
    MainWindow window(nullptr);
    window.show();
    failsAfterHalfASecond(window);
}

void TestUninstallRun::whatIsRegisteredIsBelieved()
{
    const QString folder = m_sandbox->path(QStringLiteral("Anything/planted"));
    const QString record = m_sandbox->path(QStringLiteral("Received/planted.txt"));
    QVERIFY(QDir().mkpath(folder));
    QVERIFY(QFile::copy((*m_sandbox)->installDir() + QStringLiteral("/unins000.exe"),
                        folder + QStringLiteral("/unins005.exe")));
    m_sandbox->writeFile(QStringLiteral("Anything/planted/unins005.dat"),
                         "record=" + record.toUtf8() + '\n');
    (*m_sandbox)->setSystemValue(QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path"), folder);
    MainWindow window(nullptr);
    window.show();
    QTest::qWait(100);
    QVERIFY(!QFile::exists(record)); // not before Remove
    answer(window, 1);
    QTRY_COMPARE(Sandbox::readLines(record),
                 QStringList({QStringLiteral("/VERYSILENT"), QStringLiteral("/REINSTALL")}));
    QTRY_VERIFY(!isProcessRunning(window));
    QVERIFY(!QFile::exists((*m_sandbox)->uninstallerRecord()));
}

void TestUninstallRun::unstartableProgramFailsAtOnce()
{
    QVERIFY(Machine::makeUnstartable((*m_sandbox)->installDir() + QStringLiteral("/unins000.exe")));
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_COMPARE_WITH_TIMEOUT(window.uninstallPage->lblTitle->text(), failedTitle(), patienceMs);
    QVERIFY(window.isEnabled());
    QVERIFY(!window.uninstallPage->isRunning());
    QCOMPARE(window.wizardPages->currentWidget(), window.uninstallPage);
    QCOMPARE(AnalyticsRecord::actions().count(QStringLiteral("UninstallCompleted")), 1);
}

void TestUninstallRun::exitCodeFails()
{
    (*m_sandbox)->writeUninstaller(0, {{QStringLiteral("exit"), QStringLiteral("5")}});
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_COMPARE_WITH_TIMEOUT(window.uninstallPage->lblTitle->text(), failedTitle(), patienceMs);
    QCOMPARE(AnalyticsRecord::actions().count(QStringLiteral("UninstallCompleted")), 1);
    QVERIFY(QFile::exists((*m_sandbox)->installDir() + QStringLiteral("/ClipCore.dll")));
}

void TestUninstallRun::crashFails()
{
    (*m_sandbox)->writeUninstaller(0, {{QStringLiteral("end"), QStringLiteral("crash")}});
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_COMPARE_WITH_TIMEOUT(window.uninstallPage->lblTitle->text(), failedTitle(), patienceMs);
    QCOMPARE(AnalyticsRecord::actions().count(QStringLiteral("UninstallCompleted")), 1);
}

void TestUninstallRun::closeIsRefusedDuringTheRun()
{
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_VERIFY_WITH_TIMEOUT(window.uninstallPage->isRunning(), patienceMs);
    window.windowHandle()->close();
    QVERIFY(window.isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
    window.windowHandle()->close();
    QVERIFY(window.isVisible()); // the run is not over while it is shown
    window.uninstallPage->fail();
    window.windowHandle()->close();
    QVERIFY(!window.isVisible());
}

void TestUninstallRun::hangingProcessEndsWithTheWindow()
{
    (*m_sandbox)->writeUninstaller(0, {{QStringLiteral("end"), QStringLiteral("hang")}});
    // That it is ended on purpose is worth a warning to Qt.
    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression(QStringLiteral("QProcess: Destroyed while process .* is "
                                                        "still running\\.")));
    QElapsedTimer clock;
    {
        MainWindow window(nullptr);
        window.show();
        answer(window, 1);
        QTRY_VERIFY_WITH_TIMEOUT(window.uninstallPage->isRunning(), patienceMs);
        // Hangs, and is not just loading.
        QTRY_VERIFY_WITH_TIMEOUT(QFile::exists((*m_sandbox)->uninstallerRecord()), patienceMs);
        window.uninstallPage->showElapsed(60000);
        QVERIFY(window.uninstallPage->isRunning());
        clock.start();
    }
    QVERIFY(clock.elapsed() < 5000);
}

void TestUninstallRun::failedRunIsReportedOnTheProductPage()
{
    (*m_sandbox)->writeUninstaller(0, {{QStringLiteral("exit"), QStringLiteral("1")}});
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QTRY_COMPARE_WITH_TIMEOUT(window.uninstallPage->lblTitle->text(), failedTitle(), patienceMs);
    window.uninstallPage->btnProduct->click();
    QCOMPARE(window.wizardPages->currentWidget(), window.productPage);
    QVERIFY(quitsAfter([&window] { window.productPage->btnClose->click(); }));
    QCOMPARE(lastProperties(),
             QJsonObject({{QLatin1String("pagesource"), QLatin1String("moreproducts")},
                          {QLatin1String("result"), QLatin1String("failure")}}));
}

void TestUninstallRun::quitWhileAskingRemovesNothing()
{
    MainWindow window(nullptr);
    window.show();
    window.optionPage->btnContinue->setEnabled(true);
    QVERIFY(quitsAfter([&window] {
        QTimer::singleShot(100, &window, [] { QCoreApplication::quit(); });
        window.optionPage->btnContinue->click();
    }));
    QVERIFY(!window.findChild<ConfirmWindow *>());
    QVERIFY(!QFile::exists((*m_sandbox)->uninstallerRecord()));
    QCOMPARE(lastProperties().value(QLatin1String("ButtonClick")),
             QJsonValue(QLatin1String("Cancel")));
}

void TestUninstallRun::firstAnswerCounts()
{
    MainWindow window(nullptr);
    window.show();
    window.optionPage->btnContinue->setEnabled(true);
    QTimer::singleShot(0, &window, [&window] {
        auto *dialog = window.findChild<ConfirmWindow *>();
        dialog->btnCancel->click();
        dialog->btnRemove->click(); // in the same batch of events
    });
    window.optionPage->btnContinue->click();
    QVERIFY(!window.isVisible());
    QVERIFY(!isProcessRunning(window));
    QCOMPARE(lastProperties().value(QLatin1String("ButtonClick")),
             QJsonValue(QLatin1String("Cancel")));
}

void TestUninstallRun::boxCountsAsItWasAtTheAnswer()
{
    MainWindow window(nullptr);
    window.show();
    window.optionPage->btnContinue->setEnabled(true);
    QTimer::singleShot(0, &window, [&window] {
        auto *dialog = window.findChild<ConfirmWindow *>();
        dialog->btnRemove->click();
        dialog->checkBox->click(); // in the same batch of events
    });
    window.optionPage->btnContinue->click();
    QCOMPARE(lastProperties().value(QLatin1String("is_delete_all")),
             QJsonValue(QLatin1String("0")));
    QTRY_COMPARE_WITH_TIMEOUT(received(), QByteArray("/VERYSILENT\n/REINSTALL\n"), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

void TestUninstallRun::closeIsRefusedWhileTheUninstallerStarts()
{
    if (!Machine::startsProcessesLater())
        QSKIP("a process has started here as soon as it is asked for");
    MainWindow window(nullptr);
    window.show();
    answer(window, 1);
    QVERIFY(!window.isEnabled()); // started, but nobody has heard of it yet
    window.windowHandle()->close();
    QVERIFY(window.isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.uninstallPage,
                              patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!isProcessRunning(window), patienceMs);
}

QTEST_MAIN(TestUninstallRun)
#include "test_uninstallrun.moc"
