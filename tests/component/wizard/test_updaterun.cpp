#include "tests/support/analyticsrecord.h"
#include "tests/support/feed.h"
#include "tests/support/machine.h"
#include "tests/support/mainwindowstate.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "upgrade/nvupgradehelper.h"
#include "wizard/mainwindow.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>
#include <QtCore/QRegularExpression>
#include <QtCore/QTimer>
#include <QtCore/QUuid>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>
#include <functional>
#include <nvupgrade.h>
#include <optional>

namespace {

using Orders = SampleInstallation::Orders;

/// Makes the sandbox or the feed what a data row wants.
using Preparation = void (*)(const Feed &);

const auto version = QStringLiteral("8.0.0.1");
const auto registeredFolder = QStringLiteral("HKEY_CLASSES_ROOT/NCPFile/path");
const auto checkFailed = QStringLiteral("Failed to check update!");
const auto nothingNewer = QStringLiteral("You are already the latest version!");
const auto downloadFailed = QStringLiteral("Failed to download the update.");
const auto installFailed = QStringLiteral("Install failed.");

/// Answers the window's message boxes as a user does, and keeps what they were like.
class Messages : public QObject
{
public:
    struct Message
    {
        QString text;
        bool isUsable; ///< enabled, modal and the window's
        bool isWindowDimmed;
        bool isWindowEnabled;
        bool isActionEnabled;
        QWidget *page;
        QStringList actions; ///< events so far
    };

    explicit Messages(const MainWindow &window)
        : m_window(window)
    {
        qApp->installEventFilter(this);
    }

    QList<Message> all;
    /// Runs before OK is pressed.
    std::function<void(MessageWindow &)> whileOpen = [](MessageWindow &) {};

    QStringList texts() const
    {
        QStringList texts;
        for (const Message &message : all)
            texts += message.text;
        return texts;
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        auto *message = qobject_cast<MessageWindow *>(watched);
        if (message && event->type() == QEvent::Show && !event->spontaneous())
            QTimer::singleShot(0, message, [this, message] { answer(*message); });
        return false;
    }

private:
    void answer(MessageWindow &message)
    {
        const QWidget *layer = overlay(m_window);
        all += {message.lblMessage->text(),
                message.isEnabled() && message.isModal() && message.parent() == &m_window &&
                    message.btnOk->isEnabled(),
                layer->isVisible() && layer->geometry() == m_window.rect(),
                m_window.isEnabled(),
                m_window.upgradePage->btnCancel->isEnabled(),
                m_window.wizardPages->currentWidget(),
                AnalyticsRecord::actions()};
        whileOpen(message);
        if (message.btnOk->isEnabled())
            message.btnOk->click();
        else
            Q_EMIT message.closed(); // unusable, which is a failure and need not be a hang
    }

    const MainWindow &m_window;
};

/// What happens to the installer and to the action button from the upgrade page on, in order.
class Journal : public QObject
{
public:
    explicit Journal(const MainWindow &window)
    {
        connect(window.wizardPages, &QStackedWidget::currentChanged, this, [this, &window] {
            if (window.wizardPages->currentWidget() == window.upgradePage)
                entries = QStringList(QStringLiteral("upgrade page"));
            else
                entries += QStringLiteral("upgrade page left");
        });
        connect(installProcess(window), &QProcess::stateChanged, this,
                [this](QProcess::ProcessState state) {
                    if (state == QProcess::Starting)
                        entries += QStringLiteral("installer starts");
                    else if (state == QProcess::NotRunning)
                        entries += QStringLiteral("installer ended");
                });
        window.upgradePage->btnCancel->installEventFilter(this);
    }

    QStringList entries;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::EnabledChange) {
            entries += static_cast<QWidget *>(watched)->isEnabled()
                           ? QStringLiteral("action enabled")
                           : QStringLiteral("action disabled");
        }
        return false;
    }
};

/// Does something once, in the moment in which the upgrade page comes: the download has only just
/// been asked for then, however busy the machine is.
class OnceUpgrading : public QObject
{
public:
    OnceUpgrading(const MainWindow &window, const std::function<void()> &action)
    {
        connect(window.wizardPages, &QStackedWidget::currentChanged, this, [this, &window, action] {
            if (m_isDone || window.wizardPages->currentWidget() != window.upgradePage)
                return;
            m_isDone = true;
            action();
        });
    }

    bool isDone() const { return m_isDone; }

private:
    bool m_isDone = false;
};

void chooseUpgradeReason(const MainWindow &window)
{
    const QList<QRadioButton *> reasons = window.optionPage->findChildren<QRadioButton *>();
    for (QRadioButton *reason : reasons) {
        if (reason->accessibleName() == QLatin1String("My version is out of date"))
            reason->setChecked(true);
    }
}

void takeOffer(const MainWindow &window)
{
    chooseUpgradeReason(window);
    window.optionPage->btnNext->click();
}

bool isCompleted(const MainWindow &window)
{
    return window.upgradePage->lblTitle->text() == QLatin1String("Upgrade completed");
}

void closeFromTheWindowSystem(const MainWindow &window)
{
    window.windowHandle()->close();
}

AnalyticsRecord::Event popUp(const char *source)
{
    return {QStringLiteral("DoUninstall"),
            QStringLiteral("UninstallPopUp"),
            {{QLatin1String("source"), QLatin1String(source)}}};
}

AnalyticsRecord::Event feedback(const char *action, const char *source)
{
    return {QStringLiteral("DoUninstall"),
            QString::fromLatin1(action),
            {{QLatin1String("MsgCode"), QLatin1String("61")},
             {QLatin1String("Msgdetail"), QString()},
             {QLatin1String("isoption"), QLatin1String("1")},
             {QLatin1String("source"), QLatin1String(source)},
             {QLatin1String("RetainActionName"), QLatin1String("Upgrade")}}};
}

AnalyticsRecord::Event retain(const char *action)
{
    return {QStringLiteral("DoRetain"), QString::fromLatin1(action), {}};
}

} // namespace

Q_DECLARE_METATYPE(Preparation)

class TestUpdateRun : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    // Check
    void checkRequestReachesTheLibrary();
    void everyCheckHasAnIdOfItsOwn();
    void windowIsDisabledFromTheClickToTheResult();
    void windowMayBeClosedWhileTheCheckIsStuck();
    void checkWithoutUpgradeStaysOnTheFeedbackPage_data();
    void checkWithoutUpgradeStaysOnTheFeedbackPage();
    void windowStaysDisabledUntilTheMessageIsAnswered();
    void dimmingLayerShowsExactlyWhileTheMessageIsOpen();
    void neededUpgradeEnablesTheWindowAtOnce();
    void quitUnderAMessageEndsQuietly();

    // Download
    void downloadRequestReachesTheLibrary();
    void numbersCountLikeNumerals();
    void barIsFullOnlyWhenTheInstallerHasFinished();
    void barIsNearlyFullAfterADownloadWithoutProgress();
    void cancelReturnsToTheFeedbackPage();
    void resultAfterCancelIsIgnored_data();
    void resultAfterCancelIsIgnored();
    void offerDuringADownloadShowsItWithoutAnotherCheck();
    void downloadFailingUnderAConfirmationIsIgnored_data();
    void downloadFailingUnderAConfirmationIsIgnored();
    void downloadFailingUnderAMessageIsIgnored();

    // Installer
    void installerReceivesItsArguments_data();
    void installerReceivesItsArguments();
    void installPathIsTheDefaultFolderWithoutARegisteredOne();
    void newVersionIsThatOfTheUpdateDescription();
    void versionWithSwitchesIsOneArgument();
    void downloadAnswerThatIsNoJsonIsFollowedByTheInstaller();
    void installerMayBeWrittenTo();
    void completedLookComesHalfASecondAfterTheInstaller();
    void actionIsDisabledExactlyWhileTheInstallerRuns();
    void failureReturnsToTheFeedbackPage_data();
    void failureReturnsToTheFeedbackPage();
    void actionIsEnabledAfterTheFeedbackPageIsShown_data();
    void actionIsEnabledAfterTheFeedbackPageIsShown();
    void closeIsRefusedWhileTheInstallerRuns();
    void closeIsRefusedWhileTheFailureMessageIsOpen();
    void hangingInstallerEndsWithTheWindow();
    void failedUpgradeMayBeTriedAgain();

    // Completed
    void launchStartsTheProductAndEndsTheProgram();
    void launchWithoutProductEndsQuietly_data();
    void launchWithoutProductEndsQuietly();
    void closeButtonQuits();
    void eventsOfTheWholeStoryComeInOrder();

private:
    const SampleInstallation *installation() const { return m_feed->sandbox().operator->(); }

    /// Takes the offer and waits for the good end of the installer, or for the look that follows.
    void installUpgrade(const MainWindow &window) const;
    void completeUpgrade(const MainWindow &window) const;

    /// Takes the offer and waits until the library is inside a download that lasts until stop().
    void startEndlessDownload(const MainWindow &window) const;

    QStringList installerArguments() const;

    std::optional<Feed> m_feed;
};

void TestUpdateRun::init()
{
    m_feed.emplace(Sandbox::Content::Installation);
    m_feed->writeSmallUpgrade(version);
    QVERIFY(installation()->writeUpdateInstaller({}));
    AnalyticsRecord::restart();
}

void TestUpdateRun::cleanup()
{
    ::stop(); // what a failed test left behind would keep the helper for good
    NvUpgradeHelper::release();
    m_feed.reset();
}

void TestUpdateRun::installUpgrade(const MainWindow &window) const
{
    takeOffer(window);
    QTRY_COMPARE_WITH_TIMEOUT(window.upgradePage->progressBar->value(), 100, patienceMs);
}

void TestUpdateRun::completeUpgrade(const MainWindow &window) const
{
    installUpgrade(window);
    QTRY_VERIFY_WITH_TIMEOUT(isCompleted(window), patienceMs);
}

void TestUpdateRun::startEndlessDownload(const MainWindow &window) const
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), QStringLiteral("download")}}));
    takeOffer(window);
    QTRY_COMPARE_WITH_TIMEOUT(
        m_feed->callNames(),
        QStringList({QStringLiteral("check_upgrade_c"), QStringLiteral("download_package_c")}),
        patienceMs);
}

QStringList TestUpdateRun::installerArguments() const
{
    return Sandbox::readLines(installation()->installerRecord());
}

void TestUpdateRun::checkRequestReachesTheLibrary()
{
    MainWindow window(nullptr);
    window.show();
    startEndlessDownload(window);
    const QByteArray request =
        m_feed->calls().constFirst().value(QLatin1String("json")).toString().toUtf8();
    const QByteArray expected(
        R"({"brand":"Norvane","name":"Norvane Clipwright","nvid":"20260417","pid":"8461",)"
        R"("platform":"win_x64","version":"7.2.1.4"})"
        "\n");
    QCOMPARE(request, expected);
}

void TestUpdateRun::everyCheckHasAnIdOfItsOwn()
{
    QVERIFY((*m_feed)->writeCheckAnswer("{}"));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    QStringList ids;
    connect(
        NvUpgradeHelper::instance(), &NvUpgradeHelper::s_CheckFinish, &window,
        [&ids](const checkOutParam &result) { ids += QString::fromStdString(result.requestId); });
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(ids.size(), 2, patienceMs);
    QVERIFY(!QUuid(ids.at(0)).isNull());
    QCOMPARE(QUuid(ids.at(0)).toString(), ids.at(0)); // in braces
    QVERIFY(ids.at(0) != ids.at(1));
}

void TestUpdateRun::windowIsDisabledFromTheClickToTheResult()
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("check_delay"), QStringLiteral("2000")},
                                    {QStringLiteral("never_return"), QStringLiteral("download")}}));
    MainWindow window(nullptr);
    window.show();
    QVERIFY(window.isEnabled());
    QElapsedTimer clock;
    clock.start();
    takeOffer(window);
    QVERIFY(!window.isEnabled());
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 1, patienceMs);
    QVERIFY(!window.isEnabled());
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    QVERIFY(clock.elapsed() >= 2000);
}

void TestUpdateRun::windowMayBeClosedWhileTheCheckIsStuck()
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), QStringLiteral("check")}}));
    MainWindow window(nullptr);
    window.show();
    takeOffer(window);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 1, patienceMs);
    QVERIFY(!window.isEnabled());
    closeFromTheWindowSystem(window);
    QVERIFY(!window.isVisible());
}

void TestUpdateRun::checkWithoutUpgradeStaysOnTheFeedbackPage_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QString>("text");

    QTest::newRow("error code") << QByteArray(R"({"errcode":"12","errmsg":"no"})") << checkFailed;
    QTest::newRow("error code as a number") << QByteArray(R"({"errcode":-3})") << checkFailed;
    QTest::newRow("error code beside an offer")
        << QByteArray(R"({"errcode":"12","result":{"needupgrade":"1","upgradeVersion":"8"}})")
        << checkFailed;
    QTest::newRow("not needed")
        << QByteArray(R"({"errcode":"0","result":{"needupgrade":"0","upgradeVersion":"8"}})")
        << nothingNewer;
    QTest::newRow("not needed, as numbers")
        << QByteArray(R"({"errcode":0,"result":{"needupgrade":0}})") << nothingNewer;
    QTest::newRow("no result") << QByteArray(R"({"errcode":"0"})") << nothingNewer;
    QTest::newRow("no JSON") << QByteArray("service not available") << nothingNewer;
    QTest::newRow("nothing") << QByteArray() << nothingNewer;
}

void TestUpdateRun::checkWithoutUpgradeStaysOnTheFeedbackPage()
{
    QFETCH(QByteArray, answer);
    QFETCH(QString, text);
    QVERIFY((*m_feed)->writeCheckAnswer(answer));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);

    QCOMPARE(messages.texts(), QStringList(text));
    QVERIFY(messages.all.constFirst().isUsable);
    QVERIFY(messages.all.constFirst().isWindowDimmed);
    QVERIFY(!messages.all.constFirst().isWindowEnabled);
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    QVERIFY(!window.findChild<MessageWindow *>());
    QCOMPARE(m_feed->callNames(), QStringList(QStringLiteral("check_upgrade_c")));
    const QList<AnalyticsRecord::Event> expected{
        popUp("uninstall_action"), feedback("PopUp_FeedbackClick", "uninstall_action"),
        feedback("RetainClick", "uninstall_action")};
    QCOMPARE(AnalyticsRecord::events(), expected);
}

void TestUpdateRun::windowStaysDisabledUntilTheMessageIsAnswered()
{
    QVERIFY((*m_feed)->writeCheckAnswer("{}"));
    MainWindow window(nullptr);
    Messages messages(window);
    window.show();
    bool wasDisabled = false;
    messages.whileOpen = [&](MessageWindow &message) {
        QTest::qWait(100);
        wasDisabled = !window.isEnabled() && message.isVisible();
    };
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    QVERIFY(wasDisabled);
    QVERIFY(!window.findChild<MessageWindow *>());
}

void TestUpdateRun::dimmingLayerShowsExactlyWhileTheMessageIsOpen()
{
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"1"})"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("check_delay"), QStringLiteral("2000")}}));
    MainWindow window(nullptr);
    Messages messages(window);
    window.show();
    const QWidget *layer = overlay(window);
    QPointer<MessageWindow> box;
    messages.whileOpen = [&](MessageWindow &message) {
        box = &message;
        QVERIFY(layer->isVisible());
        QTest::qWait(50);
        QVERIFY(layer->isVisible());
    };
    takeOffer(window);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 1, patienceMs);
    QVERIFY(!layer->isVisible());
    QTRY_COMPARE_WITH_TIMEOUT(messages.texts(), QStringList(checkFailed), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(!box, patienceMs);
    QVERIFY(!layer->isVisible());
}

void TestUpdateRun::neededUpgradeEnablesTheWindowAtOnce()
{
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    bool wasReady = false;
    connect(window.wizardPages, &QStackedWidget::currentChanged, &window, [&] {
        wasReady = window.isEnabled() && NvUpgradeHelper::instance()->isDownloadRequested() &&
                   window.upgradePage->label_2->text() == QLatin1String("0%");
    });
    startEndlessDownload(window);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.upgradePage, patienceMs);
    QVERIFY(wasReady);
    QVERIFY(messages.all.isEmpty());
}

void TestUpdateRun::quitUnderAMessageEndsQuietly()
{
    QVERIFY((*m_feed)->writeDownloadAnswer(R"({"errcode":"1"})"));
    MainWindow window(nullptr);
    Messages messages(window);
    window.show();
    messages.whileOpen = [](MessageWindow &) { QCoreApplication::quit(); };
    QVERIFY(quitsAfter([&window] { takeOffer(window); }));
    QCOMPARE(messages.texts(), QStringList(downloadFailed));
    QVERIFY(!window.findChild<MessageWindow *>());
    QVERIFY(!overlay(window)->isVisible());
}

void TestUpdateRun::downloadRequestReachesTheLibrary()
{
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    QCOMPARE(m_feed->callNames(), QStringList({QStringLiteral("check_upgrade_c"),
                                               QStringLiteral("download_package_c")}));
    const QString request = m_feed->calls().at(1).value(QLatin1String("json")).toString();
    QCOMPARE(request.count(QLatin1Char('\n')), 1);
    QVERIFY(request.endsWith(QLatin1Char('\n')));
    const QJsonObject expected{{QLatin1String("pid"), QLatin1String("8461")},
                               {QLatin1String("version"), version},
                               {QLatin1String("path"), (*m_feed)->updateInfoFile()}};
    QCOMPARE(QJsonDocument::fromJson(request.toUtf8()).object(), expected);
}

void TestUpdateRun::numbersCountLikeNumerals()
{
    QVERIFY((*m_feed)->writeCheckAnswer(
        R"({"errcode":0,"result":{"needupgrade":1,"upgradeVersion":8.5,"path":""}})"));
    QVERIFY((*m_feed)->writeDownloadAnswer(R"({"errcode":0,"result":{"downloaded":1}})"));
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    const QString request = m_feed->calls().at(1).value(QLatin1String("json")).toString();
    QCOMPARE(QJsonDocument::fromJson(request.toUtf8()).object().value(QLatin1String("version")),
             QJsonValue(QLatin1String("8.5")));
}

void TestUpdateRun::barIsFullOnlyWhenTheInstallerHasFinished()
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("16384")}}));
    QVERIFY(
        installation()->writeUpdateInstaller({{QStringLiteral("delay"), QStringLiteral("300")}}));
    MainWindow window(nullptr);
    window.show();
    QList<int> reported;
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownProgress, &window,
            [&reported](int percent) { reported += percent; });
    QList<int> shown;
    QStringList texts;
    bool wasInstallerRunning = true;
    int shownAtItsStart = -1;
    connect(installProcess(window), &QProcess::started, &window,
            [&] { shownAtItsStart = window.upgradePage->progressBar->value(); });
    connect(window.upgradePage->progressBar, &QProgressBar::valueChanged, &window, [&](int value) {
        shown += value;
        texts += window.upgradePage->label_2->text();
        wasInstallerRunning = installProcess(window)->state() != QProcess::NotRunning;
    });
    completeUpgrade(window);
    QCOMPARE(shownAtItsStart, 99);
    QCOMPARE(reported, QList<int>({0, 25, 50, 75, 100}));
    QCOMPARE(shown, QList<int>({0, 25, 50, 75, 99, 100}));
    QCOMPARE(texts.constLast(), QStringLiteral("100%"));
    QVERIFY(!wasInstallerRunning); // at 100
}

void TestUpdateRun::barIsNearlyFullAfterADownloadWithoutProgress()
{
    QVERIFY((*m_feed)->writePackage(0));
    MainWindow window(nullptr);
    window.show();
    QList<int> shown;
    connect(window.upgradePage->progressBar, &QProgressBar::valueChanged, &window,
            [&shown](int value) { shown += value; });
    installUpgrade(window);
    QCOMPARE(shown, QList<int>({0, 99, 100}));
}

void TestUpdateRun::cancelReturnsToTheFeedbackPage()
{
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    startEndlessDownload(window);
    window.upgradePage->btnCancel->click();
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    QVERIFY(window.isVisible());
    QVERIFY(messages.all.isEmpty());
    QCOMPARE(AnalyticsRecord::events().constLast(), popUp("upgrade_cancel"));
    QVERIFY(NvUpgradeHelper::instance()->isDownloadRequested());
    QCOMPARE(m_feed->calls().size(), 2); // the library is not told to stop
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
    QVERIFY((*m_feed)->writeDownloadAnswer(answer));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("download_delay"), QStringLiteral("1000")}}));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    QList<bool> results;
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownFinish, &window,
            [&results](bool result) { results += result; });
    QStringList actions;
    const OnceUpgrading cancel(window, [&] {
        window.upgradePage->btnCancel->click();
        QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
        actions = AnalyticsRecord::actions();
        QVERIFY(results.isEmpty());
    });
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(cancel.isDone(), patienceMs);

    QTRY_COMPARE_WITH_TIMEOUT(results, QList<bool>({success}), patienceMs);
    QTest::qWait(200);
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    QVERIFY(messages.all.isEmpty());
    QCOMPARE(installProcess(window)->state(), QProcess::NotRunning);
    QVERIFY(!QFile::exists(installation()->installerRecord()));
    QCOMPARE(AnalyticsRecord::actions(), actions);
    QVERIFY(window.upgradePage->btnCancel->isEnabled());
}

void TestUpdateRun::offerDuringADownloadShowsItWithoutAnotherCheck()
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("download_delay"), QStringLiteral("1000")}}));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    const OnceUpgrading cancel(window, [&window] {
        window.upgradePage->btnCancel->click();
        QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
        QVERIFY(NvUpgradeHelper::instance()->isDownloadRequested());

        window.optionPage->btnNext->click();
        QCOMPARE(window.wizardPages->currentWidget(), window.upgradePage);
        QVERIFY(window.isEnabled());
    });
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(cancel.isDone(), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(isCompleted(window), patienceMs);
    QCOMPARE(m_feed->callNames(), QStringList({QStringLiteral("check_upgrade_c"),
                                               QStringLiteral("download_package_c")}));
    QCOMPARE(installerArguments().size(), 8);
    QVERIFY(messages.all.isEmpty());
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
    QVERIFY(installation()->writeUninstaller(0, {}));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    bool isFinished = false;
    connect(NvUpgradeHelper::instance(), &NvUpgradeHelper::s_DownFinish, &window,
            [&isFinished] { isFinished = true; });
    startEndlessDownload(window);
    window.upgradePage->btnCancel->click();

    bool wasUndisturbed = false;
    QTimer::singleShot(0, &window, [&] {
        ::stop();
        const bool isHeard = QTest::qWaitFor([&isFinished] { return isFinished; }, patienceMs);
        auto *dialog = window.findChild<ConfirmWindow *>();
        wasUndisturbed = isHeard && dialog->isVisible() && overlay(window)->isVisible() &&
                         window.wizardPages->currentWidget() == window.optionPage;
        (remove ? dialog->btnRemove : dialog->btnCancel)->click();
    });
    window.optionPage->btnContinue->click();
    QVERIFY(wasUndisturbed);
    QVERIFY(messages.all.isEmpty());
    QCOMPARE(AnalyticsRecord::actions().last(), QStringLiteral("UninstallReConfirm"));
    if (remove) {
        QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.uninstallPage,
                                  patienceMs);
        const QProcess *uninstaller = uninstallProcess(window);
        QTRY_COMPARE_WITH_TIMEOUT(uninstaller->state(), QProcess::NotRunning, patienceMs);
        QVERIFY(!QFile::exists(installation()->installDir() + QStringLiteral("/unins000.exe")));
    } else {
        QVERIFY(!window.isVisible());
    }
}

void TestUpdateRun::downloadFailingUnderAMessageIsIgnored()
{
    QVERIFY((*m_feed)->writeCheckAnswer("{}"));
    MainWindow window(nullptr);
    Messages messages(window);
    window.show();
    messages.whileOpen = [&window](MessageWindow &message) {
        Q_EMIT NvUpgradeHelper::instance()->s_DownFinish(false);
        QTest::qWait(50);
        QVERIFY(message.isVisible());
        QVERIFY(!window.isEnabled());
    };
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    QCOMPARE(messages.texts(), QStringList(nothingNewer));
    QCOMPARE(AnalyticsRecord::actions().count(QStringLiteral("UninstallPopUp")), 1);
}

void TestUpdateRun::installerReceivesItsArguments_data()
{
    QTest::addColumn<QString>("language");
    QTest::newRow("known language") << QStringLiteral("DEU");
    QTest::newRow("unknown language") << QStringLiteral("xyz");
    QTest::newRow("no language") << QString();
}

void TestUpdateRun::installerReceivesItsArguments()
{
    QFETCH(QString, language);
    const QString folder = m_feed->sandbox().path(QStringLiteral("Clips %1 für Zoë/日本 \"8\""));
    installation()->setSystemValue(registeredFolder, folder);
    QVERIFY(installation()->writeProductIni(language));
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    const QByteArray config =
        m_feed->sandbox()
            .path(QStringLiteral("ProgramData/Norvane Clipwright/Back_UpdateInfo.json"))
            .toUtf8();
    const QByteArray expected = "/CFGPATH=\"" + config +
                                "\"\n"
                                "/NEWVER=\"8.0.0.1\"\n"
                                "/LANG=\"" +
                                language.toUtf8() +
                                "\"\n"
                                "/SKIN=\"0\"\n"
                                "/CURVER=\"7.2.1.4\"\n"
                                "/INSTALLPATH=\"" +
                                folder.toUtf8() +
                                "\"\n"
                                "/PRODUCTNAME=\"Norvane Clipwright\"\n"
                                "/SOURCE=\"Uninstaller\"\n";
    QCOMPARE(Sandbox::readFile(installation()->installerRecord()), expected);
    QVERIFY(Sandbox::readLines(installation()->productDataDir() + QStringLiteral("/Clipwright.ini"))
                .contains(QStringLiteral("Version=8.0.0.1")));
}

void TestUpdateRun::installPathIsTheDefaultFolderWithoutARegisteredOne()
{
    installation()->removeSystemValue(registeredFolder);
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    QCOMPARE(installerArguments().value(5), QStringLiteral("/INSTALLPATH=\"%1\"")
                                                .arg(m_feed->sandbox().path(QStringLiteral(
                                                    "Program Files/Norvane/Norvane Clipwright"))));
}

void TestUpdateRun::newVersionIsThatOfTheUpdateDescription()
{
    QVERIFY((*m_feed)->writeUpdateInfo(QStringLiteral("8.0.0.1 (»Größe«)")));
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    QCOMPARE(installerArguments().value(1), QStringLiteral("/NEWVER=\"8.0.0.1 (»Größe«)\""));
}

void TestUpdateRun::versionWithSwitchesIsOneArgument()
{
    const QString hostile = QStringLiteral("8\" \\\" /SOURCE=\"x\" %1 /RUN=\"evil.exe");
    QVERIFY((*m_feed)->writeUpdateInfo(hostile));
    MainWindow window(nullptr);
    window.show();
    installUpgrade(window);
    QCOMPARE(installerArguments().size(), 8);
    QCOMPARE(installerArguments().value(1), QStringLiteral("/NEWVER=\"%1\"").arg(hostile));
}

void TestUpdateRun::downloadAnswerThatIsNoJsonIsFollowedByTheInstaller()
{
    QVERIFY((*m_feed)->writeDownloadAnswer("service not available"));
    MainWindow window(nullptr);
    const Messages messages(window); // answered, should there be one
    window.show();
    installUpgrade(window);
    QCOMPARE(messages.texts(), QStringList());
    QCOMPARE(installerArguments().value(1), QStringLiteral("/NEWVER=\"8.0.0.1\""));
}

void TestUpdateRun::installerMayBeWrittenTo()
{
    MainWindow window(nullptr);
    window.show();
    const QProcess *installer = installProcess(window);
    std::optional<QIODevice::OpenMode> mode;
    connect(installer, &QProcess::started, &window,
            [installer, &mode] { mode = installer->openMode(); });
    installUpgrade(window);
    QVERIFY(mode.has_value());
    QCOMPARE(*mode, QIODevice::OpenMode(QIODevice::ReadWrite));
}

void TestUpdateRun::completedLookComesHalfASecondAfterTheInstaller()
{
    MainWindow window(nullptr);
    window.show();
    QElapsedTimer clock;
    QList<AnalyticsRecord::Event> events;
    connect(installProcess(window), qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
            &window, [&] {
                clock.start();
                QCOMPARE(window.upgradePage->progressBar->value(), 100);
                QVERIFY(!isCompleted(window));
                QVERIFY(!window.upgradePage->progressBar->isHidden());
                events = AnalyticsRecord::events();
                QCOMPARE(events.constLast(), retain("UpgradeCompleted"));
            });
    completeUpgrade(window);
    const qint64 elapsed = clock.elapsed();
    QVERIFY2(elapsed >= 450 && elapsed < 4000, QByteArray::number(elapsed).constData());
    QCOMPARE(window.wizardPages->currentWidget(), window.upgradePage);
    QVERIFY(window.isVisible());
    QCOMPARE(window.upgradePage->btnCancel->text(), QStringLiteral("Launch"));
    QVERIFY(window.upgradePage->progressBar->isHidden());
    QCOMPARE(AnalyticsRecord::events(), events);
}

void TestUpdateRun::actionIsDisabledExactlyWhileTheInstallerRuns()
{
    MainWindow window(nullptr);
    const Journal journal(window);
    window.show();
    completeUpgrade(window);
    QCOMPARE(journal.entries,
             QStringList({QStringLiteral("upgrade page"), QStringLiteral("action disabled"),
                          QStringLiteral("installer starts"), QStringLiteral("installer ended"),
                          QStringLiteral("action enabled")}));
}

void TestUpdateRun::failureReturnsToTheFeedbackPage_data()
{
    QTest::addColumn<Preparation>("prepare");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("startsInstaller");
    QTest::addColumn<bool>("isActionEnabled"); // while the message is open

    QTest::newRow("download: error code") << Preparation([](const Feed &feed) {
        QVERIFY(feed->writeDownloadAnswer(R"({"errcode":"5","result":{"downloaded":"1"}})"));
    }) << downloadFailed << false << true;
    QTest::newRow("download: nothing to fetch")
        << Preparation([](const Feed &feed) { QVERIFY(QFile::remove(feed->packageFile())); })
        << downloadFailed << false << true;
    QTest::newRow("installer missing") << Preparation([](const Feed &feed) {
        QVERIFY(QFile::remove(feed.sandbox()->updateInstaller()));
    }) << installFailed << false << true;
    QTest::newRow("installer not executable") << Preparation([](const Feed &feed) {
        QVERIFY(Machine::makeUnstartable(feed.sandbox()->updateInstaller()));
    }) << installFailed << false << false;
    QTest::newRow("installer: exit code") << Preparation([](const Feed &feed) {
        QVERIFY(
            feed.sandbox()->writeUpdateInstaller({{QStringLiteral("exit"), QStringLiteral("3")}}));
    }) << installFailed << true << false;
    QTest::newRow("installer: crash") << Preparation([](const Feed &feed) {
        QVERIFY(feed.sandbox()->writeUpdateInstaller(
            {{QStringLiteral("end"), QStringLiteral("crash")}}));
    }) << installFailed << true << false;
}

void TestUpdateRun::failureReturnsToTheFeedbackPage()
{
    QFETCH(Preparation, prepare);
    QFETCH(QString, text);
    QFETCH(bool, startsInstaller);
    QFETCH(bool, isActionEnabled);
    prepare(*m_feed);
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(!messages.all.isEmpty(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.optionPage, patienceMs);

    QCOMPARE(messages.texts(), QStringList(text));
    const Messages::Message &message = messages.all.constFirst();
    QVERIFY(message.isUsable);
    QVERIFY(message.isWindowDimmed);
    QVERIFY(message.isWindowEnabled);
    QCOMPARE(message.isActionEnabled, isActionEnabled);
    QCOMPARE(message.page, window.upgradePage);
    QCOMPARE(message.actions.last(), QStringLiteral("RetainClick"));

    QVERIFY(!overlay(window)->isVisible());
    QVERIFY(window.upgradePage->btnCancel->isEnabled());
    QCOMPARE(QFile::exists(installation()->installerRecord()), startsInstaller);
    window.optionPage->btnNext->click();
    QTRY_COMPARE_WITH_TIMEOUT(messages.all.size(), 2, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.optionPage, patienceMs);
    const QList<AnalyticsRecord::Event> expected{
        popUp("uninstall_action"),
        feedback("PopUp_FeedbackClick", "uninstall_action"),
        feedback("RetainClick", "uninstall_action"),
        popUp("upgrade_failure"),
        feedback("RetainClick", "upgrade_failure"),
        popUp("upgrade_failure"),
    };
    QCOMPARE(AnalyticsRecord::events(), expected);
}

void TestUpdateRun::actionIsEnabledAfterTheFeedbackPageIsShown_data()
{
    QTest::addColumn<Orders>("orders");
    QTest::newRow("exit code") << Orders{{QStringLiteral("exit"), QStringLiteral("255")}};
    QTest::newRow("crash") << Orders{{QStringLiteral("end"), QStringLiteral("crash")}};
}

void TestUpdateRun::actionIsEnabledAfterTheFeedbackPageIsShown()
{
    QFETCH(Orders, orders);
    QVERIFY(installation()->writeUpdateInstaller(orders));
    MainWindow window(nullptr);
    const Messages messages(window);
    const Journal journal(window);
    window.show();
    takeOffer(window);
    const QStringList expected{
        QStringLiteral("upgrade page"),      QStringLiteral("action disabled"),
        QStringLiteral("installer starts"),  QStringLiteral("installer ended"),
        QStringLiteral("upgrade page left"), QStringLiteral("action enabled")};
    QTRY_COMPARE_WITH_TIMEOUT(journal.entries, expected, patienceMs);
}

void TestUpdateRun::closeIsRefusedWhileTheInstallerRuns()
{
    MainWindow window(nullptr);
    window.show();
    bool hasStayed = false;
    connect(installProcess(window), &QProcess::started, &window, [&window, &hasStayed] {
        closeFromTheWindowSystem(window);
        hasStayed = window.isVisible();
    });
    completeUpgrade(window);
    QVERIFY(hasStayed);
    closeFromTheWindowSystem(window);
    QVERIFY(!window.isVisible());
}

void TestUpdateRun::closeIsRefusedWhileTheFailureMessageIsOpen()
{
    QVERIFY(installation()->writeUpdateInstaller({{QStringLiteral("exit"), QStringLiteral("1")}}));
    MainWindow window(nullptr);
    Messages messages(window);
    window.show();
    messages.whileOpen = [&window](MessageWindow &message) {
        closeFromTheWindowSystem(window);
        QVERIFY(window.isVisible());
        QVERIFY(message.isVisible());
        QVERIFY(window.upgradePage->isActionDisabled());
    };
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(!messages.all.isEmpty(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.optionPage, patienceMs);
    closeFromTheWindowSystem(window);
    QVERIFY(!window.isVisible());
}

void TestUpdateRun::hangingInstallerEndsWithTheWindow()
{
    QVERIFY(
        installation()->writeUpdateInstaller({{QStringLiteral("end"), QStringLiteral("hang")}}));
    // That it is ended on purpose is worth a warning to Qt.
    QTest::ignoreMessage(
        QtWarningMsg, QRegularExpression(QStringLiteral("QProcess: Destroyed while process .* is "
                                                        "still running\\.")));
    auto window = std::make_unique<MainWindow>(nullptr);
    window->show();
    takeOffer(*window);
    QTRY_COMPARE_WITH_TIMEOUT(installProcess(*window)->state(), QProcess::Running, patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(installation()->installerRecord()),
                             patienceMs); // hangs, and is not just loading
    bool hasEnded = false;
    connect(installProcess(*window), qOverload<int, QProcess::ExitStatus>(&QProcess::finished),
            qApp, [&hasEnded] { hasEnded = true; });
    QElapsedTimer clock;
    clock.start();
    window.reset();
    QVERIFY(hasEnded);
    QVERIFY(clock.elapsed() < 5000);
}

void TestUpdateRun::failedUpgradeMayBeTriedAgain()
{
    QVERIFY(installation()->writeUpdateInstaller({{QStringLiteral("exit"), QStringLiteral("1")}}));
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(!messages.all.isEmpty(), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.optionPage, patienceMs);
    QCOMPARE(window.upgradePage->progressBar->value(), 99);

    QVERIFY(installation()->writeUpdateInstaller({}));
    QList<int> shown;
    connect(window.upgradePage->progressBar, &QProgressBar::valueChanged, &window,
            [&shown](int value) { shown += value; });
    installUpgrade(window);
    QCOMPARE(shown.constFirst(), 0);
    QCOMPARE(shown.constLast(), 100);
    QCOMPARE(messages.all.size(), 1);
    QCOMPARE(m_feed->callNames().count(QStringLiteral("check_upgrade_c")), 2);
}

void TestUpdateRun::launchStartsTheProductAndEndsTheProgram()
{
    MainWindow window(nullptr);
    window.show();
    completeUpgrade(window);
    QVERIFY(quitsAfter([&window] { window.upgradePage->btnCancel->click(); }));
    QVERIFY(!window.isVisible());
    const QString record = installation()->installDir() + QStringLiteral("/launched.txt");
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(record), patienceMs);
    QVERIFY(Sandbox::readFile(record).isEmpty()); // no arguments
    QCOMPARE(AnalyticsRecord::events().constLast(), retain("UpgradeSuccess_launchclick"));
}

void TestUpdateRun::launchWithoutProductEndsQuietly_data()
{
    QTest::addColumn<Preparation>("prepare");

    QTest::newRow("no executable") << Preparation([](const Feed &feed) {
        QVERIFY(QFile::remove(feed.sandbox()->installDir() +
                              QStringLiteral("/Norvane Clipwright X.exe")));
    });
    QTest::newRow("no folder") << Preparation(
        [](const Feed &feed) { QVERIFY(QDir(feed.sandbox()->installDir()).removeRecursively()); });
    QTest::newRow("no registered folder") << Preparation(
        [](const Feed &feed) { feed.sandbox()->removeSystemValue(registeredFolder); });
}

void TestUpdateRun::launchWithoutProductEndsQuietly()
{
    QFETCH(Preparation, prepare);
    prepare(*m_feed);
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    completeUpgrade(window);
    QVERIFY(quitsAfter([&window] { window.upgradePage->btnCancel->click(); }));
    QVERIFY(!window.isVisible());
    QVERIFY(messages.all.isEmpty());
    QCOMPARE(AnalyticsRecord::events().constLast(), retain("UpgradeSuccess_launchclick"));
}

void TestUpdateRun::closeButtonQuits()
{
    MainWindow window(nullptr);
    window.show();
    completeUpgrade(window);
    QVERIFY(window.upgradePage->btnClose->isVisible());
    QVERIFY(quitsAfter([&window] { window.upgradePage->btnClose->click(); }));
    QCOMPARE(AnalyticsRecord::events().constLast(), retain("UpgradeCompleted"));
    QVERIFY(!QFile::exists(installation()->installDir() + QStringLiteral("/launched.txt")));
}

void TestUpdateRun::eventsOfTheWholeStoryComeInOrder()
{
    MainWindow window(nullptr);
    const Messages messages(window);
    window.show();
    // No answer, an update that fails, one that is called off, one that succeeds.
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"1"})"));
    takeOffer(window);
    QTRY_VERIFY_WITH_TIMEOUT(window.isEnabled(), patienceMs);
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeDownloadAnswer(R"({"errcode":"1"})"));
    window.optionPage->btnNext->click();
    QTRY_COMPARE_WITH_TIMEOUT(messages.texts(), QStringList({checkFailed, downloadFailed}),
                              patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(window.wizardPages->currentWidget(), window.optionPage, patienceMs);
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("download_delay"), QStringLiteral("1000")}}));
    const OnceUpgrading cancel(window, [&window] {
        window.upgradePage->btnCancel->click();
        window.optionPage->btnNext->click();
    });
    window.optionPage->btnNext->click();
    QTRY_VERIFY_WITH_TIMEOUT(cancel.isDone(), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(isCompleted(window), patienceMs);
    QVERIFY(quitsAfter([&window] { window.upgradePage->btnCancel->click(); }));

    const QList<AnalyticsRecord::Event> expected{
        popUp("uninstall_action"),
        feedback("PopUp_FeedbackClick", "uninstall_action"),
        feedback("RetainClick", "uninstall_action"),
        feedback("RetainClick", "uninstall_action"),
        popUp("upgrade_failure"),
        feedback("RetainClick", "upgrade_failure"),
        popUp("upgrade_cancel"),
        feedback("RetainClick", "upgrade_cancel"),
        retain("UpgradeCompleted"),
        retain("UpgradeSuccess_launchclick"),
    };
    QCOMPARE(AnalyticsRecord::events(), expected);
    QTRY_VERIFY_WITH_TIMEOUT(
        QFile::exists(installation()->installDir() + QStringLiteral("/launched.txt")), patienceMs);
}

QTEST_MAIN(TestUpdateRun)
#include "test_updaterun.moc"
