#include "tests/component/wizard/wizardtest.h"
#include "tests/support/machine.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QUuid>
#include <QtGui/QWindow>

#include <atomic>
#include <nvupgrade.h>

class TestUpdateRun : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    // Check
    void everyCheckHasAnIdOfItsOwn();
    void windowIsDisabledDuringTheCheck();
    void windowMayBeClosedWhileTheCheckIsStuck();
    void checkWithoutUpgradeStaysOnTheFeedbackPage_data();
    void checkWithoutUpgradeStaysOnTheFeedbackPage();
    void quitUnderAMessageEndsQuietly();

    // Download
    void requestsReachTheLibrary_data();
    void requestsReachTheLibrary();
    void barFollowsTheReportsUntilTheInstallerHasFinished();
    void barIsFullOnlyWhenTheInstallerHasFinished_data();
    void barIsFullOnlyWhenTheInstallerHasFinished();
    void resultAfterCancelIsIgnored_data();
    void resultAfterCancelIsIgnored();
    void offerDuringADownloadShowsItWithoutAnotherCheck();
    void downloadFailingUnderAConfirmationIsIgnored_data();
    void downloadFailingUnderAConfirmationIsIgnored();
    void downloadFailingUnderAMessageIsIgnored();
    void closedWindowStartsNothing_data();
    void closedWindowStartsNothing();

    // Installer
    void installerReceivesItsArguments_data();
    void installerReceivesItsArguments();
    void downloadAnswerThatIsNoJsonIsFollowedByTheInstaller();
    void completedLookComesHalfASecondAfterTheInstaller();
    void failureReturnsToTheFeedbackPage_data();
    void failureReturnsToTheFeedbackPage();
    void closeIsRefusedWhileTheInstallerRuns();
    void hangingInstallerEndsWithTheWindow();

    // Completed
    void launchEndsTheProgram_data();
    void launchEndsTheProgram();
    void closeButtonQuits();
    void eventsOfTheWholeStoryComeInOrder();

private:
    /// Takes the offer and waits for the good end of the installer, or for the look that follows.
    void installUpgrade() const;
    void completeUpgrade() const;
    bool isCompleted() const;

    /// Does something in the moment in which the upgrade page comes for the first time. The
    /// download has only just been asked for then, however busy the machine is.
    void onceUpgrading(const std::function<void()> &action) const;

    void launch() const { window().upgradePage->btnCancel->click(); }
    QString launchRecord() const { return installFile("launched.txt"_s); }
    QJsonObject request(int call) const;
    QStringList installerArguments() const
    {
        return Sandbox::readLines(installation().installerRecord());
    }
};

namespace {

const auto checkFailed = "Failed to check update!"_s;
const auto nothingNewer = "You are already the latest version!"_s;
const auto downloadFailed = "Failed to download the update."_s;
const auto installFailed = "Install failed."_s;

const QStringList checkAndDownload{"check_upgrade_c"_s, "download_package_c"_s};

const auto upgradeCompleted = "DoRetain/UpgradeCompleted"_s;
const auto launchClicked = "DoRetain/UpgradeSuccess_launchclick"_s;

QString popUp(const char *source)
{
    return "DoUninstall/UninstallPopUp source="_s + QLatin1String(source);
}

QString feedback(const char *action, const char *source)
{
    return "DoUninstall/%1 MsgCode=61 Msgdetail= RetainActionName=Upgrade isoption=1 source=%2"_s
        .arg(QLatin1String(action), QLatin1String(source));
}

/// What happens to the installer and to the action button from the upgrade page on, in order.
class Journal : public QObject
{
public:
    explicit Journal(const MainWindow &window)
    {
        connect(window.wizardPages, &QStackedWidget::currentChanged, this, [this, &window] {
            const bool hasCome = window.wizardPages->currentWidget() == window.upgradePage;
            entries += hasCome ? "page comes"_s : "page goes"_s;
        });
        connect(installProcess(window), &QProcess::stateChanged, this,
                [this](QProcess::ProcessState state) {
                    if (state == QProcess::Starting)
                        entries += "installer starts"_s;
                    else if (state == QProcess::NotRunning)
                        entries += "installer ends"_s;
                });
        window.upgradePage->btnCancel->installEventFilter(this);
    }

    QStringList entries;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        // The window's own lock, during a check, does not count.
        const auto *button = static_cast<QWidget *>(watched);
        const bool isEnabled = button->isEnabledTo(button->window());
        if (event->type() == QEvent::EnabledChange &&
            std::exchange(m_isEnabled, isEnabled) != isEnabled)
            entries += isEnabled ? "button enabled"_s : "button disabled"_s;
        return false;
    }

private:
    bool m_isEnabled = true;
};

} // namespace

void TestUpdateRun::installUpgrade() const
{
    takeOffer();
    AWAIT_EQUAL(window().upgradePage->progressBar->value(), 100);
}

void TestUpdateRun::completeUpgrade() const
{
    installUpgrade();
    AWAIT(isCompleted());
}

bool TestUpdateRun::isCompleted() const
{
    return window().upgradePage->lblTitle->text() == "Upgrade completed"_s;
}

void TestUpdateRun::onceUpgrading(const std::function<void()> &action) const
{
    auto connection = std::make_shared<QMetaObject::Connection>();
    *connection = connect(window().wizardPages, &QStackedWidget::currentChanged, &window(),
                          [this, action, connection] {
                              if (page() == window().upgradePage && disconnect(*connection))
                                  action();
                          });
}

QJsonObject TestUpdateRun::request(int call) const
{
    const QByteArray json = feed().calls().value(call).value("json"_s).toString().toUtf8();
    return json.count('\n') == 1 && json.endsWith('\n') ? QJsonDocument::fromJson(json).object()
                                                        : QJsonObject();
}

void TestUpdateRun::everyCheckHasAnIdOfItsOwn()
{
    QVERIFY(feed()->writeCheckAnswer("{}"));
    QStringList ids;
    connect(
        NvUpgradeHelper::instance(), &NvUpgradeHelper::s_CheckFinish, &window(),
        [&ids](const checkOutParam &result) { ids += QString::fromStdString(result.requestId); });
    for (int check = 1; check <= 2; ++check) {
        takeOffer();
        AWAIT(window().isEnabled());
        AWAIT_EQUAL(ids.size(), check);
        QVERIFY(!QUuid(ids.last()).isNull());
        QCOMPARE(QUuid(ids.last()).toString(), ids.last()); // in braces
    }
    QVERIFY(ids.at(0) != ids.at(1));
}

void TestUpdateRun::windowIsDisabledDuringTheCheck()
{
    QVERIFY(feed()->writeOrders({{"never_return"_s, "check"_s}}));
    takeOffer();
    QVERIFY(!window().isEnabled());
    AWAIT_EQUAL(feed().calls().size(), 1);
    QTest::qWait(100);
    QVERIFY(!window().isEnabled());
    QVERIFY(!overlay(window())->isVisible());
    QCOMPARE(page(), window().optionPage);
    ::stop();
    AWAIT(window().isEnabled());
    QCOMPARE(messages().texts(), QStringList(checkFailed));
}

void TestUpdateRun::windowMayBeClosedWhileTheCheckIsStuck()
{
    QVERIFY(feed()->writeOrders({{"never_return"_s, "check"_s}}));
    takeOffer();
    AWAIT_EQUAL(feed().calls().size(), 1);
    closeFromTheWindowSystem();
    QVERIFY(!window().isVisible());
}

void TestUpdateRun::checkWithoutUpgradeStaysOnTheFeedbackPage_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("text");

    const auto row = [](const char *name, const char *answer, const QString &text) {
        QTest::newRow(name) << QByteArray(answer) << text;
    };
    row("error code", R"({"errcode":"12","errmsg":"no"})", checkFailed);
    row("error code as a number", R"({"errcode":-3})", checkFailed);
    row("error code beside an offer",
        R"({"errcode":"12","result":{"needupgrade":"1","upgradeVersion":"8"}})", checkFailed);
    row("not needed", R"({"errcode":"0","result":{"needupgrade":"0","upgradeVersion":"8"}})",
        nothingNewer);
    row("not needed, as numbers", R"({"errcode":0,"result":{"needupgrade":0}})", nothingNewer);
    row("no result", R"({"errcode":"0"})", nothingNewer);
    row("no JSON", "service not available", nothingNewer);
    row("nothing", "", nothingNewer);
}

void TestUpdateRun::checkWithoutUpgradeStaysOnTheFeedbackPage()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, text);
    QVERIFY(feed()->writeCheckAnswer(answer));
    takeOffer();
    AWAIT(window().isEnabled());
    QCOMPARE(messages().texts(), QStringList(text));
    QVERIFY(messages().all.constFirst().isUsable);
    QVERIFY(!messages().all.constFirst().isWindowEnabled);
    QVERIFY(!overlay(window())->isVisible());
    QVERIFY(!window().findChild<MessageWindow *>());
    QCOMPARE(page(), window().optionPage);
    QCOMPARE(feed().callNames(), checkAndDownload.mid(0, 1));
    QCOMPARE(
        AnalyticsRecord::texts(),
        QStringList({popUp("uninstall_action"), feedback("PopUp_FeedbackClick", "uninstall_action"),
                     feedback("RetainClick", "uninstall_action")}));
}

void TestUpdateRun::quitUnderAMessageEndsQuietly()
{
    QVERIFY(feed()->writeDownloadAnswer(R"({"errcode":"1"})"));
    messages().whileOpen = [](MessageWindow &) { QCoreApplication::quit(); };
    QVERIFY(quitsAfter([this] { takeOffer(); }));
    QCOMPARE(messages().texts(), QStringList(downloadFailed));
    QVERIFY(!window().findChild<MessageWindow *>());
    QVERIFY(!overlay(window())->isVisible());
}

void TestUpdateRun::requestsReachTheLibrary_data()
{
    QTest::addColumn<QByteArray>("checkAnswer"); // with %1 for the update description
    QTest::addColumn<QByteArray>("downloadAnswer");
    QTest::addColumn<QString>("version");
    QTest::addColumn<bool>("hasDescription");

    QTest::newRow("numerals")
        << QByteArray(R"({"errcode":"0","result":{"needupgrade":"1","upgradeVersion":"8.0.0.1",)"
                      R"("path":"%1"}})")
        << QByteArray(R"({"errcode":"0","result":{"downloaded":"1"}})") << "8.0.0.1"_s << true;
    QTest::newRow("numbers")
        << QByteArray(R"({"errcode":0,"result":{"needupgrade":1,"upgradeVersion":8.5,"path":""}})")
        << QByteArray(R"({"errcode":0,"result":{"downloaded":1}})") << "8.5"_s << false;
}

void TestUpdateRun::requestsReachTheLibrary()
{
    QFETCH(QByteArray, checkAnswer);
    QFETCH(QByteArray, downloadAnswer);
    QFETCH(QString, version);
    QFETCH(bool, hasDescription);
    const QString description = feed()->updateInfoFile();
    QVERIFY(feed()->writeCheckAnswer(checkAnswer.replace("%1", description.toUtf8())));
    QVERIFY(feed()->writeDownloadAnswer(downloadAnswer));
    bool isReady = false;
    onceUpgrading(
        [&] { isReady = window().isEnabled() && window().upgradePage->label_2->text() == "0%"_s; });
    installUpgrade();
    QVERIFY(isReady);
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(feed().callNames(), checkAndDownload);
    QCOMPARE(request(0), QJsonObject({{"brand"_s, "Norvane"_s},
                                      {"name"_s, "Norvane Clipwright"_s},
                                      {"nvid"_s, "20260417"_s},
                                      {"pid"_s, "8461"_s},
                                      {"platform"_s, "win_x64"_s},
                                      {"version"_s, "7.2.1.4"_s}}));
    QCOMPARE(request(1), QJsonObject({{"pid"_s, "8461"_s},
                                      {"version"_s, version},
                                      {"path"_s, hasDescription ? description : ""_s}}));
}

void TestUpdateRun::barFollowsTheReportsUntilTheInstallerHasFinished()
{
    QProgressBar *bar = window().upgradePage->progressBar;
    window().upgradePage->showUpgrading();
    for (const auto &[reported, shown] :
         {std::pair(0, 0), std::pair(40, 40), std::pair(99, 99), std::pair(60, 60),
          std::pair(100, 99), std::pair(250, 99), std::pair(98, 98)}) {
        Q_EMIT NvUpgradeHelper::instance()->s_DownProgress(reported);
        QCOMPARE(bar->value(), shown);
    }
    bar->setValue(100); // as after the installer
    Q_EMIT NvUpgradeHelper::instance()->s_DownProgress(60);
    QCOMPARE(bar->value(), 100);
}

void TestUpdateRun::barIsFullOnlyWhenTheInstallerHasFinished_data()
{
    QTest::addColumn<int>("packageBytes");
    QTest::addColumn<QList<int>>("reported");
    QTest::addColumn<QList<int>>("shown");

    QTest::newRow("four chunks") << 64 * 1024 << QList<int>{0, 25, 50, 75, 100}
                                 << QList<int>{0, 25, 50, 75, 99, 100};
    QTest::newRow("no progress") << 0 << QList<int>{0} << QList<int>{0, 99, 100};
}

void TestUpdateRun::barIsFullOnlyWhenTheInstallerHasFinished()
{
    QFETCH(int, packageBytes);
    QFETCH(QList<int>, reported);
    QFETCH(QList<int>, shown);
    QVERIFY(feed()->writePackage(packageBytes));
    QVERIFY(feed()->writeOrders({{"chunk"_s, "16384"_s}}));
    QVERIFY(installation().writeUpdateInstaller({{"delay"_s, "300"_s}}));
    const QProgressBar *bar = window().upgradePage->progressBar;
    const QProcess *installer = installProcess(window());
    QList<int> reportedSoFar;
    QList<int> shownSoFar;
    int shownAtTheStart = -1;
    QProcess::ProcessState stateThen = QProcess::Running; // with the last value
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownProgress, &window(),
            [&](int percent) { reportedSoFar += percent; });
    connect(installer, &QProcess::started, &window(), [&] { shownAtTheStart = bar->value(); });
    connect(bar, &QProgressBar::valueChanged, &window(), [&](int value) {
        shownSoFar += value;
        stateThen = installer->state();
    });
    installUpgrade();
    QCOMPARE(shownAtTheStart, 99);
    QCOMPARE(reportedSoFar, reported);
    QCOMPARE(shownSoFar, shown);
    QCOMPARE(stateThen, QProcess::NotRunning);
    QCOMPARE(window().upgradePage->label_2->text(), "100%"_s);
}

void TestUpdateRun::resultAfterCancelIsIgnored_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<bool>("success");
    QTest::newRow("success") << QByteArray(R"({"errcode":"0"})") << true;
    QTest::newRow("failure") << QByteArray(R"({"errcode":"1"})") << false;
}

void TestUpdateRun::resultAfterCancelIsIgnored()
{
    QFETCH(QByteArray, answer);
    QFETCH(bool, success);
    QVERIFY(feed()->writeDownloadAnswer(answer));
    QVERIFY(feed()->writeOrders({{"download_delay"_s, "1000"_s}}));
    QList<bool> results;
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownFinish, &window(),
            [&results](bool result) { results += result; });
    QStringList events;
    onceUpgrading([&] {
        window().upgradePage->btnCancel->click();
        QCOMPARE(page(), window().optionPage);
        QVERIFY(window().isVisible());
        QVERIFY(NvUpgradeHelper::instance()->isDownloadRequested());
        events = AnalyticsRecord::texts();
        QCOMPARE(events.last(), popUp("upgrade_cancel"));
    });
    takeOffer();
    AWAIT_EQUAL(results, QList<bool>({success}));
    QTest::qWait(200);
    QCOMPARE(page(), window().optionPage);
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(installProcess(window())->state(), QProcess::NotRunning);
    QVERIFY(!QFile::exists(installation().installerRecord()));
    QCOMPARE(AnalyticsRecord::texts(), events);
    QVERIFY(window().upgradePage->btnCancel->isEnabled());
    QCOMPARE(feed().callNames(), checkAndDownload); // the library was not told to stop
}

void TestUpdateRun::offerDuringADownloadShowsItWithoutAnotherCheck()
{
    QVERIFY(feed()->writeOrders({{"download_delay"_s, "1000"_s}}));
    onceUpgrading([this] {
        window().upgradePage->btnCancel->click();
        QCOMPARE(page(), window().optionPage);
        window().optionPage->btnNext->click();
        QCOMPARE(page(), window().upgradePage);
        QVERIFY(window().isEnabled());
    });
    installUpgrade();
    QCOMPARE(feed().callNames(), checkAndDownload);
    QCOMPARE(installerArguments().size(), 8);
    QCOMPARE(messages().texts(), QStringList());
}

void TestUpdateRun::downloadFailingUnderAConfirmationIsIgnored_data()
{
    QTest::addColumn<bool>("remove");
    QTest::newRow("then removed") << true;
    QTest::newRow("then cancelled") << false;
}

void TestUpdateRun::downloadFailingUnderAConfirmationIsIgnored()
{
    QFETCH(bool, remove);
    QVERIFY(feed()->writeOrders({{"never_return"_s, "download"_s}}));
    bool isFinished = false;
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownFinish, &window(),
            [&isFinished] { isFinished = true; });
    takeOffer();
    AWAIT_EQUAL(feed().calls().size(), 2);
    AWAIT_EQUAL(page(), window().upgradePage);
    window().upgradePage->btnCancel->click();
    answerQuestion([&](ConfirmWindow &dialog) {
        ::stop();
        AWAIT(isFinished);
        QVERIFY(dialog.isVisible() && overlay(window())->isVisible());
        QCOMPARE(page(), window().optionPage);
        (remove ? dialog.btnRemove : dialog.btnCancel)->click();
    });
    QVERIFY(isFinished);
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(AnalyticsRecord::actions().last(), "UninstallReConfirm"_s);
    QCOMPARE(window().isVisible(), remove);
    if (remove) {
        AWAIT_EQUAL(page(), window().uninstallPage);
        AWAIT(!isProcessRunning(window()));
        QVERIFY(!QFile::exists(installFile("unins000.exe"_s)));
    }
}

void TestUpdateRun::downloadFailingUnderAMessageIsIgnored()
{
    QVERIFY(feed()->writeCheckAnswer("{}"));
    messages().whileOpen = [this](MessageWindow &message) {
        Q_EMIT NvUpgradeHelper::instance()->s_DownFinish(false);
        QTest::qWait(50);
        QVERIFY(message.isVisible());
        QVERIFY(!window().isEnabled());
    };
    takeOffer();
    AWAIT(window().isEnabled());
    QCOMPARE(messages().texts(), QStringList(nothingNewer));
    QCOMPARE(AnalyticsRecord::actions().count("UninstallPopUp"_s), 1);
}

void TestUpdateRun::closedWindowStartsNothing_data()
{
    QTest::addColumn<QByteArray>("checkAnswer"); // unless empty, an offer
    QTest::addColumn<QByteArray>("downloadAnswer");
    QTest::addColumn<bool>("isDownloading"); // or checking, when the window is closed

    const QByteArray error(R"({"errcode":"1"})");
    QTest::newRow("check: an offer") << QByteArray() << QByteArray() << false;
    QTest::newRow("check: an error") << error << QByteArray() << false;
    QTest::newRow("check: nothing newer") << QByteArray("{}") << QByteArray() << false;
    QTest::newRow("download: complete") << QByteArray() << QByteArray("{}") << true;
    QTest::newRow("download: an error") << QByteArray() << error << true;
}

// The helper's thread has sent its answer, and the window is closed before the answer arrives.
void TestUpdateRun::closedWindowStartsNothing()
{
    QFETCH(QByteArray, checkAnswer);
    QFETCH(QByteArray, downloadAnswer);
    QFETCH(bool, isDownloading);
    if (!checkAnswer.isEmpty())
        QVERIFY(feed()->writeCheckAnswer(checkAnswer));
    QVERIFY(feed()->writeDownloadAnswer(downloadAnswer));
    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    std::atomic<int> answers{0}; // counted after the window's own connections have queued them
    const auto count = [&answers] { ++answers; };
    connect(helper, &NvUpgradeHelper::s_CheckFinish, helper, count, Qt::DirectConnection);
    connect(helper, &NvUpgradeHelper::s_DownFinish, helper, count, Qt::DirectConnection);
    const auto handleNoEventsUntil = [&answers](int number) {
        while (answers < number)
            QTest::qSleep(10);
    };
    onceUpgrading([&] {
        handleNoEventsUntil(2);
        launch(); // what Cancel does once the download is over
    });
    QVERIFY(quitsAfter([&] {
        takeOffer();
        if (!isDownloading) {
            handleNoEventsUntil(1);
            closeFromTheWindowSystem();
        }
    }));
    QVERIFY(!window().isVisible());
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(feed().callNames(), checkAndDownload.mid(0, isDownloading ? 2 : 1));
    QVERIFY(!helper->isDownloadRequested());
    QCOMPARE(installProcess(window())->state(), QProcess::NotRunning);
    QVERIFY(!QFile::exists(installation().installerRecord()));
    QCOMPARE(AnalyticsRecord::texts().last(),
             isDownloading ? launchClicked : feedback("RetainClick", "uninstall_action"));
    if (isDownloading)
        AWAIT(QFile::exists(launchRecord()));
}

void TestUpdateRun::installerReceivesItsArguments_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QString>("folder"); // in the sandbox; none registered when empty
    QTest::addColumn<QString>("version");

    const auto folder = "Clips %1 für Zoë/日本 \"8\""_s;
    const auto version = "8.0.0.1"_s;
    QTest::newRow("known language") << "DEU"_s << folder << version;
    QTest::newRow("unknown language") << "xyz"_s << folder << version;
    QTest::newRow("no language") << QString() << folder << version;
    QTest::newRow("no registered folder") << "ENG"_s << QString() << version;
    QTest::newRow("version beyond ASCII") << "ENG"_s << folder << "8.0.0.1 (»Größe«)"_s;
    QTest::newRow("version with switches")
        << "ENG"_s << folder << "8\" \\\" /SOURCE=\"x\" %1 /RUN=\"evil.exe"_s;
}

void TestUpdateRun::installerReceivesItsArguments()
{
    QFETCH(QString, language);
    QFETCH(QString, folder);
    QFETCH(QString, version);
    const auto path = [this](const QString &relative) { return feed().sandbox().path(relative); };
    registerFolder(folder.isEmpty() ? QString() : path(folder));
    QVERIFY(installation().writeProductIni(language));
    QVERIFY(feed()->writeUpdateInfo(version));
    const QProcess *process = installProcess(window());
    std::optional<QIODevice::OpenMode> mode;
    connect(process, &QProcess::started, &window(), [&] { mode = process->openMode(); });
    installUpgrade();
    if (folder.isEmpty())
        folder = "Program Files/Norvane/Norvane Clipwright"_s;
    const QStringList expected{"/CFGPATH=\""_s +
                                   path("ProgramData/Norvane Clipwright/Back_UpdateInfo.json\""_s),
                               "/NEWVER=\""_s + version + u'"',
                               "/LANG=\""_s + language + u'"',
                               "/SKIN=\"0\""_s,
                               "/CURVER=\"7.2.1.4\""_s,
                               "/INSTALLPATH=\""_s + path(folder) + u'"',
                               "/PRODUCTNAME=\"Norvane Clipwright\""_s,
                               "/SOURCE=\"Uninstaller\""_s};
    QCOMPARE(installerArguments(), expected);
    QCOMPARE(mode, QIODevice::OpenMode(QIODevice::ReadWrite));
}

void TestUpdateRun::downloadAnswerThatIsNoJsonIsFollowedByTheInstaller()
{
    QVERIFY(feed()->writeDownloadAnswer("service not available"));
    installUpgrade();
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(installerArguments().value(1), "/NEWVER=\"8.0.0.1\""_s);
}

void TestUpdateRun::completedLookComesHalfASecondAfterTheInstaller()
{
    AWAIT_EQUAL(pendingDelays(), QList<int>()); // of the tests before
    const Journal journal(window());
    QList<int> delays;
    QStringList events;
    connect(installProcess(window()), qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
            &window(), [&] {
                delays = pendingDelays();
                QCOMPARE(window().upgradePage->progressBar->value(), 100);
                QVERIFY(!window().upgradePage->progressBar->isHidden());
                QVERIFY(!isCompleted());
                events = AnalyticsRecord::texts();
                QCOMPARE(events.last(), upgradeCompleted);
            });
    completeUpgrade();
    QCOMPARE(delays, QList<int>{500});
    QCOMPARE(page(), window().upgradePage);
    QVERIFY(window().isVisible());
    QCOMPARE(window().upgradePage->btnCancel->text(), "Launch"_s);
    QVERIFY(window().upgradePage->progressBar->isHidden());
    QCOMPARE(AnalyticsRecord::texts(), events);
    QCOMPARE(journal.entries,
             QStringList({"page comes"_s, "button disabled"_s, "installer starts"_s,
                          "installer ends"_s, "button enabled"_s}));
}

void TestUpdateRun::failureReturnsToTheFeedbackPage_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QString>("text");
    QTest::addColumn<QStringList>("journal"); // between the page's coming and going

    QTest::newRow("download: error code") << Preparation([](const WizardTest &test) {
        QVERIFY(test.feed()->writeDownloadAnswer(R"({"errcode":"5","result":{"downloaded":"1"}})"));
    }) << downloadFailed << QStringList();
    QTest::newRow("download: nothing to fetch") << Preparation([](const WizardTest &test) {
        QVERIFY(QFile::remove(test.feed()->packageFile()));
    }) << downloadFailed << QStringList();
    QTest::newRow("installer missing") << Preparation([](const WizardTest &test) {
        QVERIFY(QFile::remove(test.installation().updateInstaller()));
    }) << installFailed << QStringList();

    const QStringList run{"button disabled"_s, "installer starts"_s, "installer ends"_s};
    QTest::newRow("installer not executable") << Preparation([](const WizardTest &test) {
        QVERIFY(Machine::makeUnstartable(test.installation().updateInstaller()));
    }) << installFailed << run;
    QTest::newRow("installer: exit code") << Preparation([](const WizardTest &test) {
        QVERIFY(test.installation().writeUpdateInstaller({{"exit"_s, "3"_s}}));
    }) << installFailed << run;
    QTest::newRow("installer: crash") << Preparation([](const WizardTest &test) {
        QVERIFY(test.installation().writeUpdateInstaller({{"end"_s, "crash"_s}}));
    }) << installFailed << run;
}

void TestUpdateRun::failureReturnsToTheFeedbackPage()
{
    QFETCH(Preparation, prepare);
    QFETCH(QString, text);
    QFETCH(QStringList, journal);
    prepare(*this);
    const bool isInstallerRun = !journal.isEmpty();
    journal = QStringList("page comes"_s) + journal + QStringList("page goes"_s);
    if (isInstallerRun)
        journal += "button enabled"_s;
    const Journal recorded(window());
    messages().whileOpen = [this](const MessageWindow &message) {
        closeFromTheWindowSystem();
        QVERIFY(message.isVisible() && window().isVisible());
    };
    takeOffer();
    AWAIT_EQUAL(recorded.entries, journal);
    QCOMPARE(messages().texts(), QStringList(text));
    const Messages::Message &message = messages().all.constFirst();
    QVERIFY(message.isUsable);
    QVERIFY(message.isWindowEnabled);
    QCOMPARE(message.isActionEnabled, !isInstallerRun);
    QCOMPARE(message.page, window().upgradePage);
    QCOMPARE(message.actions.last(), "RetainClick"_s);
    QVERIFY(!overlay(window())->isVisible());

    // The same again: the failure has left nothing behind.
    window().optionPage->btnNext->click();
    AWAIT_EQUAL(recorded.entries, journal + journal);
    QCOMPARE(messages().texts(), QStringList({text, text}));
    QCOMPARE(
        AnalyticsRecord::texts(),
        QStringList({popUp("uninstall_action"), feedback("PopUp_FeedbackClick", "uninstall_action"),
                     feedback("RetainClick", "uninstall_action"), popUp("upgrade_failure"),
                     feedback("RetainClick", "upgrade_failure"), popUp("upgrade_failure")}));
    messages().whileOpen = nullptr;
    closeFromTheWindowSystem();
    QVERIFY(!window().isVisible());
}

void TestUpdateRun::closeIsRefusedWhileTheInstallerRuns()
{
    bool hasStayed = false;
    connect(installProcess(window()), &QProcess::started, &window(), [this, &hasStayed] {
        closeFromTheWindowSystem();
        hasStayed = window().isVisible();
    });
    completeUpgrade();
    QVERIFY(hasStayed);
    closeFromTheWindowSystem();
    QVERIFY(!window().isVisible());
}

void TestUpdateRun::hangingInstallerEndsWithTheWindow()
{
    QVERIFY(installation().writeUpdateInstaller({{"end"_s, "hang"_s}}));
    takeOffer();
    AWAIT(!installerArguments().isEmpty()); // hangs, and is not just loading
    bool hasEnded = false;
    connect(installProcess(window()), qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
            qApp, [&hasEnded] { hasEnded = true; });
    expectKilledProcess();
    QElapsedTimer clock;
    clock.start();
    destroyWindow();
    QVERIFY(hasEnded);
    QVERIFY(clock.elapsed() < 5000); // QProcess would wait half a minute for a child it cannot kill
}

void TestUpdateRun::launchEndsTheProgram_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<bool>("startsTheProduct");

    QTest::newRow("whole") << Preparation([](const WizardTest &) {}) << true;
    QTest::newRow("no executable") << Preparation([](const WizardTest &test) {
        QVERIFY(QFile::remove(test.installFile("Norvane Clipwright X.exe"_s)));
    }) << false;
    QTest::newRow("no folder") << Preparation([](const WizardTest &test) {
        QVERIFY(QDir(test.installation().installDir()).removeRecursively());
    }) << false;
    QTest::newRow("no registered folder")
        << Preparation([](const WizardTest &test) { test.registerFolder({}); }) << false;
}

void TestUpdateRun::launchEndsTheProgram()
{
    QFETCH(Preparation, prepare);
    QFETCH(bool, startsTheProduct);
    prepare(*this);
    completeUpgrade();
    QVERIFY(quitsAfter([this] { launch(); }));
    QVERIFY(!window().isVisible());
    QCOMPARE(messages().texts(), QStringList());
    QCOMPARE(AnalyticsRecord::texts().last(), launchClicked);
    if (startsTheProduct)
        AWAIT(QFile::exists(launchRecord()));
    QCOMPARE(Sandbox::readFile(launchRecord()), QByteArray()); // no arguments
}

void TestUpdateRun::closeButtonQuits()
{
    completeUpgrade();
    QVERIFY(window().upgradePage->btnClose->isVisible());
    QVERIFY(quitsAfter([this] { window().upgradePage->btnClose->click(); }));
    QCOMPARE(AnalyticsRecord::texts().last(), upgradeCompleted);
    QVERIFY(!QFile::exists(launchRecord()));
}

void TestUpdateRun::eventsOfTheWholeStoryComeInOrder()
{
    // A check that fails, an installer that fails, a download that is left and taken up again.
    QVERIFY(feed()->writeCheckAnswer(R"({"errcode":"1"})"));
    takeOffer();
    AWAIT(window().isEnabled());
    feed().writeSmallUpgrade("8.0.0.1"_s);
    QVERIFY(installation().writeUpdateInstaller({{"exit"_s, "1"_s}}));
    window().optionPage->btnNext->click();
    AWAIT_EQUAL(messages().texts(), QStringList({checkFailed, installFailed}));
    AWAIT_EQUAL(page(), window().optionPage);
    QVERIFY(installation().writeUpdateInstaller({}));
    QVERIFY(feed()->writeOrders({{"download_delay"_s, "1000"_s}}));
    onceUpgrading([this] {
        window().upgradePage->btnCancel->click();
        window().optionPage->btnNext->click();
    });
    window().optionPage->btnNext->click();
    AWAIT(isCompleted());
    QVERIFY(quitsAfter([this] { launch(); }));
    QCOMPARE(
        AnalyticsRecord::texts(),
        QStringList({popUp("uninstall_action"), feedback("PopUp_FeedbackClick", "uninstall_action"),
                     feedback("RetainClick", "uninstall_action"),
                     feedback("RetainClick", "uninstall_action"), popUp("upgrade_failure"),
                     feedback("RetainClick", "upgrade_failure"), popUp("upgrade_cancel"),
                     feedback("RetainClick", "upgrade_cancel"), upgradeCompleted, launchClicked}));
    AWAIT(QFile::exists(launchRecord()));
}

QTEST_MAIN(TestUpdateRun)
#include "test_updaterun.moc"
