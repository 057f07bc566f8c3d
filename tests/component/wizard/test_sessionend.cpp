#include "platform/sessionend.h"
#include "tests/component/wizard/wizardtest.h"
#include "tests/support/linkcatcher.h"

#include <QtGui/QWindow>

namespace {

QString shownReason;

} // namespace

// The linker takes this definition, an object's, and leaves out the platform library's.
void Platform::setSessionEndReason(QWindow *window, const QString &reason)
{
    if (window)
        shownReason = reason;
}

class TestSessionEnd : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void uninstallerKeepsTheSessionUntilItsOutcomeIsKnown_data();
    void uninstallerKeepsTheSessionUntilItsOutcomeIsKnown();
    void installerKeepsTheSession();
    void downloadDoesNotKeepTheSession();
    void questionsDoNotKeepTheSession();

private:
    // What the window answers, and what the system would show.
    QString answer() const
    {
        return window().refusesSessionEnd() ? "refuses: "_s + shownReason
                                            : "agrees"_s + shownReason;
    }
};

void TestSessionEnd::uninstallerKeepsTheSessionUntilItsOutcomeIsKnown_data()
{
    QTest::addColumn<int>("exitCode");
    QTest::newRow("success") << 0;
    QTest::newRow("failure") << 3;
}

void TestSessionEnd::uninstallerKeepsTheSessionUntilItsOutcomeIsKnown()
{
    QFETCH(const int, exitCode);
    const LinkCatcher links;
    const auto refusal = "refuses: Thanks for your feedback! Uninstalling..."_s;
    QVERIFY(installation().writeUninstaller(0, {{"exit"_s, QString::number(exitCode)}}));
    QCOMPARE(answer(), "agrees"_s);
    QString whenStarted;
    connect(uninstallProcess(window()), &QProcess::started, &window(),
            [this, &whenStarted] { whenStarted = answer(); });
    answerQuestion();
    AWAIT(!whenStarted.isEmpty() && !isProcessRunning(window()));
    QCOMPARE(whenStarted, refusal);
    if (exitCode == 0) {
        QCOMPARE(answer(), refusal); // the page shows the run for a while
        window().uninstallPage->showElapsed(30000);
    }
    AWAIT_EQUAL(answer(), "agrees"_s);
}

void TestSessionEnd::installerKeepsTheSession()
{
    QVERIFY(installation().writeUpdateInstaller({{"exit"_s, "3"_s}}));
    QString whenStarted;
    connect(installProcess(window()), &QProcess::started, &window(),
            [this, &whenStarted] { whenStarted = answer(); });
    QString whenFailed;
    messages().whileOpen = [this, &whenFailed](MessageWindow &) { whenFailed = answer(); };
    takeOffer();
    AWAIT(!whenFailed.isEmpty());
    QCOMPARE(whenStarted, "refuses: Upgrading, please wait..."_s);
    QCOMPARE(whenFailed, "agrees"_s);
}

void TestSessionEnd::downloadDoesNotKeepTheSession()
{
    QString whileDownloading;
    connect(window().wizardPages, &QStackedWidget::currentChanged, &window(),
            [this, &whileDownloading] {
                if (whileDownloading.isEmpty())
                    whileDownloading = answer();
            });
    takeOffer();
    AWAIT_EQUAL(window().upgradePage->progressBar->value(), 100);
    QCOMPARE(whileDownloading, "agrees"_s);
    QCOMPARE(answer(), "agrees"_s);
}

void TestSessionEnd::questionsDoNotKeepTheSession()
{
    QString whenAsked;
    answerQuestion([this, &whenAsked](ConfirmWindow &dialog) {
        whenAsked = answer();
        dialog.btnCancel->click();
    });
    QCOMPARE(whenAsked, "agrees"_s);
}

QTEST_MAIN(TestSessionEnd)
#include "test_sessionend.moc"
