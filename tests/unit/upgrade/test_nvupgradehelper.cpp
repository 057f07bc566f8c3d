#include "platform/narrowtext.h"
#include "tests/support/feed.h"
#include "tests/support/machine.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "tests/support/upgradefields.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtTest/QTest>
#include <atomic>
#include <nvupgrade.h>
#include <optional>

namespace {

using Operation = void (*)(NvUpgradeHelper *);

const auto version = QStringLiteral("8.0.0.1");

checkInPraram sampleCheck(const char *requestId = "{check}")
{
    return {"846",     "7.2.1.4", "Norvane", R"(M"ö\bel)", "20260417", "robin@mail.example",
            "win_x64", requestId};
}

downloadInPraram sampleDownload()
{
    return {"846", "8.0.0.1", R"(C:\Users\Zoë\"offer".json)", "{download}"};
}

void askForCheck(NvUpgradeHelper *helper)
{
    helper->checkUpgrade(sampleCheck());
}

void askForDownload(NvUpgradeHelper *helper)
{
    helper->downloadPackage(sampleDownload());
}

QByteArray description(const QByteArray &infoVersion)
{
    return "{\"brand\":\"Norvane\",\"version\":\"" + infoVersion + "\"}\n";
}

QStringList describedAs(const char *infoVersion)
{
    UpdateInfo info;
    info.brand = "Norvane";
    info.version = infoVersion;
    return UpgradeFields::of(info);
}

/// What the library answered, with the path in UTF-8 rather than the system's code page.
template<typename Answer>
QStringList answered(Answer answer)
{
    answer.path = Platform::fromNarrow(answer.path).toStdString();
    return UpgradeFields::of(answer);
}

QStringList fields(const QByteArray &text)
{
    return QString::fromUtf8(text).split(QLatin1Char('|'));
}

/// What the helper's signals bring to the GUI thread.
class Receiver : public QObject
{
public:
    explicit Receiver(NvUpgradeHelper *helper)
    {
        connect(helper, &NvUpgradeHelper::s_CheckFinish, this, [this](const checkOutParam &params) {
            note(QStringLiteral("check ") + QString::fromStdString(params.requestId));
            checks += params;
        });
        connect(helper, &NvUpgradeHelper::s_DownFinish, this, [this](bool success) {
            note(QStringLiteral("download"));
            downloads += success;
        });
        connect(helper, &NvUpgradeHelper::s_DownProgress, this, [this](int percent) {
            note(QStringLiteral("progress"));
            percents += percent;
        });
    }

    QList<checkOutParam> checks;
    QList<bool> downloads;
    QList<int> percents;
    QStringList order;
    bool allInOwnThread = true;

private:
    void note(const QString &what)
    {
        order += what;
        allInOwnThread = allInOwnThread && QThread::currentThread() == thread();
    }
};

} // namespace

Q_DECLARE_METATYPE(Operation)

class TestNvUpgradeHelper : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_feed.emplace(); }
    void cleanup();

    // Life
    void parameterTypesAreRegisteredUnderTheirNames();
    void instanceIsTheSameUntilReleased();
    void helperLivesInARunningThreadOfItsOwn();
    void newHelperKnowsNothing();
    void newHelperReadsUpdateInfoOnce();
    void operationsStartTheThreadWhenItDoesNotRun_data();
    void operationsStartTheThreadWhenItDoesNotRun();
    void destructionStartsTheThreadAndAsksTheLibraryToStop();
    void destructionWaitsForARunningDownload();
    void destructionFollowsAnIdleThreadAtOnce();
    void idleHelperIsReleased_data();
    void idleHelperIsReleased();
    void helperInsideACallIsNotReleased_data();
    void helperInsideACallIsNotReleased();
    void helperWithAWaitingRequestIsNotReleased();

    // Requests and their results
    void requestReachesTheLibraryByteForByte_data();
    void requestReachesTheLibraryByteForByte();
    void check_data();
    void check();
    void download_data();
    void download();
    void resultsArriveInTheGuiThread();
    void progressReachesTheGuiUnchangedAndInOrder_data();
    void progressReachesTheGuiUnchangedAndInOrder();
    void progressAfterTheDownloadIsDropped();
    void isDownloadRequestedUntilJustBeforeFinish();
    void requestsRunOneAtATimeInTheirOrder();
    void stopReachesTheLibraryAfterTheCallInProgress();

    // "Back_UpdateInfo.json"
    void checkTakesUpdateInfoOver_data();
    void checkTakesUpdateInfoOver();
    void offersDescriptionIsReadWhole();
    void fullDiskKeepsUpdateInfo();
    void folderInPlaceOfUpdateInfoLeavesNoCopyBehind();
    void missingUpdateInfoFileLeavesUpdateInfoUnchanged();
    void missingDataFolderIsMade();
    void unusableDataFolderLosesNothingElse();
    void downloadTakesUpdateInfoOfTheLastStoredCheckOver();
    void downloadWithoutCheckReadsUpdateInfoAgain();
    void failedDownloadLeavesUpdateInfoAlone();

private:
    /// Sends one request and waits for its finish.
    checkOutParam checked(const checkInPraram &params = sampleCheck()) const;
    bool downloaded() const;

    void writeUpdateInfoFile(const QByteArray &content) const;
    QByteArray updateInfoFile() const;
    QStringList updateInfo() const;

    std::optional<Feed> m_feed;
};

void TestNvUpgradeHelper::cleanup()
{
    NvUpgradeHelper::release();
    m_feed.reset();
}

checkOutParam TestNvUpgradeHelper::checked(const checkInPraram &params) const
{
    const Receiver receiver(NvUpgradeHelper::instance());
    NvUpgradeHelper::instance()->checkUpgrade(params);
    if (!QTest::qWaitFor([&] { return !receiver.checks.isEmpty(); }, patienceMs))
        qFatal("the check did not finish");
    return receiver.checks.constFirst();
}

bool TestNvUpgradeHelper::downloaded() const
{
    const Receiver receiver(NvUpgradeHelper::instance());
    askForDownload(NvUpgradeHelper::instance());
    if (!QTest::qWaitFor([&] { return !receiver.downloads.isEmpty(); }, patienceMs))
        qFatal("the download did not finish");
    return receiver.downloads.constFirst();
}

void TestNvUpgradeHelper::writeUpdateInfoFile(const QByteArray &content) const
{
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), content);
}

QByteArray TestNvUpgradeHelper::updateInfoFile() const
{
    return Sandbox::readFile(NvUpgradeHelper::updateInfoFile());
}

QStringList TestNvUpgradeHelper::updateInfo() const
{
    return UpgradeFields::of(NvUpgradeHelper::instance()->updateInfo());
}

void TestNvUpgradeHelper::parameterTypesAreRegisteredUnderTheirNames()
{
    NvUpgradeHelper::instance();
    for (const char *name : {"checkInPraram", "checkOutParam", "downloadInPraram", "std::string"})
        QCOMPARE(QByteArray(QMetaType::typeName(QMetaType::type(name))), QByteArray(name));
}

void TestNvUpgradeHelper::instanceIsTheSameUntilReleased()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(helper);
    QVERIFY(checked().needupgrade);
    QCOMPARE(NvUpgradeHelper::instance(), helper);
    QVERIFY(NvUpgradeHelper::instance()->checkResult().needupgrade);

    NvUpgradeHelper::release();
    NvUpgradeHelper::release(); // nothing to delete
    QVERIFY(!NvUpgradeHelper::instance()->checkResult().needupgrade);
    QVERIFY(checked().needupgrade);
}

void TestNvUpgradeHelper::helperLivesInARunningThreadOfItsOwn()
{
    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(helper->thread() != QThread::currentThread());
    QVERIFY(helper->thread()->isRunning());
    QVERIFY(!helper->parent());
    QCOMPARE(helper->thread()->parent(), helper);
}

void TestNvUpgradeHelper::newHelperKnowsNothing()
{
    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(!helper->isDownloadRequested());
    QCOMPARE(UpgradeFields::of(helper->checkResult()), UpgradeFields::of(checkOutParam()));
    QCOMPARE(UpgradeFields::of(helper->downloadResult()), UpgradeFields::of(downloadOutParam()));
    QCOMPARE(updateInfo(), UpgradeFields::of(UpdateInfo()));
    QCOMPARE(NvUpgradeHelper::updateInfoFile(),
             m_feed->dataPath(QStringLiteral("Back_UpdateInfo.json")));
}

void TestNvUpgradeHelper::newHelperReadsUpdateInfoOnce()
{
    writeUpdateInfoFile(description("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QCOMPARE(updateInfo(), describedAs("7.9"));

    writeUpdateInfoFile(description("8.0"));
    QCOMPARE(updateInfo(), describedAs("7.9"));
    helper->reloadUpdateInfo();
    QCOMPARE(updateInfo(), describedAs("8.0"));

    QVERIFY(QFile::remove(NvUpgradeHelper::updateInfoFile()));
    if (Machine::makePipe(NvUpgradeHelper::updateInfoFile()))
        helper->reloadUpdateInfo(); // returns
    QCOMPARE(updateInfo(), describedAs("8.0"));
}

void TestNvUpgradeHelper::operationsStartTheThreadWhenItDoesNotRun_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("call");

    QTest::newRow("check") << Operation(askForCheck) << QStringLiteral("check_upgrade_c");
    QTest::newRow("download") << Operation(askForDownload) << QStringLiteral("download_package_c");
    QTest::newRow("stop") << Operation([](NvUpgradeHelper *helper) { helper->stop(); })
                          << QStringLiteral("stop");
}

void TestNvUpgradeHelper::operationsStartTheThreadWhenItDoesNotRun()
{
    QFETCH(Operation, operation);
    QFETCH(QString, call);
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    helper->thread()->quit();
    QVERIFY(helper->thread()->wait());

    operation(helper);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->callNames(), QStringList(call), patienceMs);
    QVERIFY(helper->thread()->isRunning());
}

void TestNvUpgradeHelper::destructionStartsTheThreadAndAsksTheLibraryToStop()
{
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    helper->thread()->quit();
    QVERIFY(helper->thread()->wait());
    bool running = false;
    connect(
        helper, &NvUpgradeHelper::s_stop, helper, [&] { running = helper->thread()->isRunning(); },
        Qt::DirectConnection);
    NvUpgradeHelper::release();
    QVERIFY2(running, "the request was made, and the thread ran by then");
}

void TestNvUpgradeHelper::destructionWaitsForARunningDownload()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("8192")},
                                    {QStringLiteral("download_delay"), QStringLiteral("250")}}));
    const Receiver receiver(NvUpgradeHelper::instance());
    askForDownload(NvUpgradeHelper::instance());
    QTRY_VERIFY_WITH_TIMEOUT(!receiver.percents.isEmpty(), patienceMs);
    QVERIFY(!QFile::exists((*m_feed)->target()));

    QElapsedTimer clock;
    clock.start();
    NvUpgradeHelper::release();
    QCOMPARE(QFileInfo((*m_feed)->target()).size(), qint64(64 * 1024));
    QVERIFY2(clock.elapsed() < 20000, "the wait is over when the library's call has returned");
}

void TestNvUpgradeHelper::destructionFollowsAnIdleThreadAtOnce()
{
    QElapsedTimer clock;
    clock.start();
    for (int count = 0; count < 20; ++count) {
        NvUpgradeHelper::instance();
        NvUpgradeHelper::release();
    }
    QVERIFY(clock.elapsed() < 10000);
}

void TestNvUpgradeHelper::idleHelperIsReleased_data()
{
    QTest::addColumn<Operation>("use");
    QTest::newRow("never made") << Operation(nullptr);
    QTest::newRow("never asked") << Operation([](NvUpgradeHelper *) {});
    QTest::newRow("check answered") << Operation(askForCheck);
    QTest::newRow("everything answered") << Operation([](NvUpgradeHelper *helper) {
        askForCheck(helper);
        askForDownload(helper);
        helper->stop();
    });
}

void TestNvUpgradeHelper::idleHelperIsReleased()
{
    QFETCH(Operation, use);
    m_feed->writeSmallUpgrade(version);
    QPointer<NvUpgradeHelper> helper;
    if (use) {
        helper = NvUpgradeHelper::instance();
        use(helper);
    }
    QTRY_VERIFY_WITH_TIMEOUT(NvUpgradeHelper::releaseIfIdle(), patienceMs);
    QVERIFY(!helper);
}

void TestNvUpgradeHelper::helperInsideACallIsNotReleased_data()
{
    QTest::addColumn<Operation>("ask");
    QTest::newRow("check") << Operation(askForCheck);
    QTest::newRow("download") << Operation(askForDownload);
}

void TestNvUpgradeHelper::helperInsideACallIsNotReleased()
{
    QFETCH(Operation, ask);
    const QString call = QString::fromLatin1(QTest::currentDataTag());
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), call}}));
    const QPointer<NvUpgradeHelper> helper = NvUpgradeHelper::instance();
    ask(helper);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 1, patienceMs);
    QVERIFY(!NvUpgradeHelper::releaseIfIdle());
    QVERIFY(helper);
    QCOMPARE(NvUpgradeHelper::instance(), helper);

    ::stop();
    QTRY_VERIFY_WITH_TIMEOUT(NvUpgradeHelper::releaseIfIdle(), patienceMs);
    QVERIFY(!helper);
}

void TestNvUpgradeHelper::helperWithAWaitingRequestIsNotReleased()
{
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), QStringLiteral("download")}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    askForCheck(helper);
    askForDownload(helper);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 1, patienceMs);
    QVERIFY(!NvUpgradeHelper::releaseIfIdle());

    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 2, patienceMs);
    ::stop();
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads, QList<bool>({false}), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(NvUpgradeHelper::releaseIfIdle(), patienceMs);
}

void TestNvUpgradeHelper::requestReachesTheLibraryByteForByte_data()
{
    QTest::addColumn<Operation>("ask");
    QTest::addColumn<QByteArray>("json");

    QTest::newRow("check") << Operation(askForCheck)
                           << QByteArray(
                                  R"({"brand":"Norvane","name":"M\"\u00f6\\bel","nvid":"20260417",)"
                                  R"("pid":"846","platform":"win_x64","version":"7.2.1.4"})"
                                  "\n");
    QTest::newRow("download") << Operation(askForDownload)
                              << QByteArray(
                                     R"({"path":"C:\\Users\\Zo\u00eb\\\"offer\".json","pid":"846",)"
                                     R"("version":"8.0.0.1"})"
                                     "\n");
}

void TestNvUpgradeHelper::requestReachesTheLibraryByteForByte()
{
    QFETCH(Operation, ask);
    ask(NvUpgradeHelper::instance());
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 1, patienceMs);
    const QJsonObject call = m_feed->calls().constFirst();
    QTEST(call.value(QLatin1String("json")).toString().toUtf8(), "json");
    QCOMPARE(call.value(QLatin1String("capacity")).toInt(), 1024);
}

void TestNvUpgradeHelper::check_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QStringList>("result");

    const auto errorOfLength = [](int length) -> QByteArray {
        const QByteArray head = R"({"errcode":"12","errmsg":")";
        return head + QByteArray(length - head.size() - 2, 'x') + "\"}";
    };
    const QStringList nothing = fields("0||0|0||0||{check}");
    QTest::newRow("offer") << QByteArray(
                                  R"({"errcode":"0","errmsg":"fine","result":{"needupgrade":"1",)"
                                  R"("upgradeVersion":"9","packageSize":"7","path":"ö"}})")
                           << fields("0|fine|1|0|9|7|ö|{check}");
    QTest::newRow("numbers for numerals")
        << QByteArray(R"({"errcode":0,"errmsg":7,"result":{"needupgrade":1,"forceupgrade":0,)"
                      R"("upgradeVersion":8,"packageSize":25165824,"path":false}})")
        << fields("0|7|1|0|8|25165824|false|{check}");
    QTest::newRow("error") << QByteArray(
                                  R"({"errcode":"12","errmsg":"no","result":{"needupgrade":"1"}})")
                           << fields("12|no|0|0||0||{check}");
    QTest::newRow("no JSON") << QByteArray("service not available") << nothing;
    QTest::newRow("fits with the closing zero")
        << errorOfLength(1023) << fields("12|" + QByteArray(1023 - 28, 'x') + "|0|0||0||{check}");
    QTest::newRow("one character too many") << errorOfLength(1024) << nothing;
    QTest::newRow("far too many characters") << errorOfLength(100'000) << nothing;
}

void TestNvUpgradeHelper::check()
{
    QFETCH(QByteArray, answer);
    QFETCH(QStringList, result);
    m_feed->writeSmallUpgrade(version);
    checked();
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QStringList stored = answered(helper->checkResult());
    QVERIFY(stored.contains(version));

    QVERIFY((*m_feed)->writeCheckAnswer(answer));
    QCOMPARE(answered(checked()), result);
    // A failed check is not stored, a successful one without its request.
    if (result.constFirst() == QLatin1String("0")) {
        stored = result;
        stored.last().clear();
    }
    QCOMPARE(answered(helper->checkResult()), stored);
}

void TestNvUpgradeHelper::download_data()
{
    QTest::addColumn<QByteArray>("answer");
    QTest::addColumn<QStringList>("result");

    QTest::newRow("package")
        << QByteArray(R"({"errcode":"0","result":{"version":"9","downloaded":"1","path":"ö"}})")
        << fields("0||9|1|ö|{download}");
    QTest::newRow("error")
        << QByteArray(R"({"errcode":"12","errmsg":"disk full","result":{"downloaded":"1"}})")
        << fields("12|disk full||0||{download}");
    QTest::newRow("no JSON") << QByteArray("done") << fields("0|||0||{download}");
}

void TestNvUpgradeHelper::download()
{
    QFETCH(QByteArray, answer);
    QFETCH(QStringList, result);
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeDownloadAnswer(answer));
    QCOMPARE(downloaded(), result.constFirst() == QLatin1String("0"));
    QCOMPARE(answered(NvUpgradeHelper::instance()->downloadResult()), result);
    QVERIFY(!NvUpgradeHelper::instance()->isDownloadRequested());
}

void TestNvUpgradeHelper::resultsArriveInTheGuiThread()
{
    m_feed->writeSmallUpgrade(version);
    const Receiver receiver(NvUpgradeHelper::instance());
    askForCheck(NvUpgradeHelper::instance());
    askForDownload(NvUpgradeHelper::instance());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads, QList<bool>({true}), patienceMs);
    QCOMPARE(receiver.checks.size(), 1);
    QVERIFY(receiver.allInOwnThread);
}

void TestNvUpgradeHelper::progressReachesTheGuiUnchangedAndInOrder_data()
{
    QTest::addColumn<QString>("callbackThread");
    QTest::addColumn<int>("odd");
    QTest::newRow("from the library's own thread") << QStringLiteral("own") << -1;
    QTest::newRow("from the calling thread") << QStringLiteral("caller") << 250;
}

void TestNvUpgradeHelper::progressReachesTheGuiUnchangedAndInOrder()
{
    QFETCH(QString, callbackThread);
    QFETCH(int, odd);
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("16384")},
                                    {QStringLiteral("odd_progress"), QString::number(odd)},
                                    {QStringLiteral("callback_thread"), callbackThread}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    std::atomic<QThread *> emittingThread{nullptr};
    connect(
        helper, &NvUpgradeHelper::s_DownProgress, helper,
        [&] { emittingThread = QThread::currentThread(); }, Qt::DirectConnection);

    askForDownload(helper);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads.size(), 1, patienceMs);
    QCOMPARE(receiver.percents, QList<int>({odd, 0, 25, 50, 75, 100}));
    QCOMPARE(receiver.order.constLast(), QStringLiteral("download"));
    QVERIFY(receiver.allInOwnThread);
    QVERIFY(emittingThread != QThread::currentThread());
    QCOMPARE(emittingThread == helper->thread(), callbackThread == QLatin1String("caller"));
}

void TestNvUpgradeHelper::progressAfterTheDownloadIsDropped()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("late_progress"), QStringLiteral("77")}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    askForDownload(helper);
    helper->stop(); // the library reports once more before it returns from this
    askForCheck(helper);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 1, patienceMs);
    QCOMPARE(receiver.percents, QList<int>({0, 100}));
}

void TestNvUpgradeHelper::isDownloadRequestedUntilJustBeforeFinish()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    std::atomic<bool> requestedInProgress{true};
    std::atomic<bool> requestedAtFinish{true};
    connect(
        helper, &NvUpgradeHelper::s_DownProgress, helper,
        [&] { requestedInProgress = requestedInProgress && helper->isDownloadRequested(); },
        Qt::DirectConnection);
    connect(
        helper, &NvUpgradeHelper::s_DownFinish, helper,
        [&] { requestedAtFinish = helper->isDownloadRequested(); }, Qt::DirectConnection);

    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("download_delay"), QStringLiteral("50")}}));
    askForCheck(helper);
    QVERIFY(!helper->isDownloadRequested());
    askForDownload(helper);
    QVERIFY(helper->isDownloadRequested());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads.size(), 1, patienceMs);
    QVERIFY(requestedInProgress);
    QVERIFY(!requestedAtFinish);
    QVERIFY(!helper->isDownloadRequested());
}

void TestNvUpgradeHelper::requestsRunOneAtATimeInTheirOrder()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("check_delay"), QStringLiteral("20")},
                                    {QStringLiteral("download_delay"), QStringLiteral("20")}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    helper->checkUpgrade(sampleCheck("1"));
    askForDownload(helper);
    helper->checkUpgrade(sampleCheck("2"));
    helper->stop();
    helper->checkUpgrade(sampleCheck("3"));
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 3, patienceMs);

    QCOMPARE(receiver.order, fields("check 1|progress|progress|download|check 2|check 3"));
    QCOMPARE(m_feed->callNames(),
             fields("check_upgrade_c|download_package_c|check_upgrade_c|stop|check_upgrade_c"));
    const QList<QJsonObject> calls = m_feed->calls();
    for (const QJsonObject &call : calls)
        QCOMPARE(call.value(QLatin1String("overlapping")).toInt(), 0);
}

void TestNvUpgradeHelper::stopReachesTheLibraryAfterTheCallInProgress()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("8192")},
                                    {QStringLiteral("download_delay"), QStringLiteral("10")}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    askForDownload(helper);
    QTRY_VERIFY_WITH_TIMEOUT(!receiver.percents.isEmpty(), patienceMs);
    helper->stop();
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads, QList<bool>({true}), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->callNames(), fields("download_package_c|stop"), patienceMs);
}

void TestNvUpgradeHelper::checkTakesUpdateInfoOver_data()
{
    QTest::addColumn<QByteArray>("offered"); // content of the file "offer" in the sandbox
    QTest::addColumn<QByteArray>("answer");  // with the name of that file in place of %1
    QTest::addColumn<QByteArray>("kept");    // content of "Back_UpdateInfo.json" afterwards
    QTest::addColumn<QStringList>("info");

    const QByteArray naming = R"({"errcode":"0","result":{"path":"%1"}})";
    const QByteArray offer = description("9 für Größe");
    const QByteArray present = description("8.0") + QByteArray(100'000, ' ');
    QTest::newRow("replaced") << offer << naming << offer << describedAs("9 für Größe");
    QTest::newRow("missing members") << QByteArray(R"({"version":"9"})") << naming
                                     << QByteArray(R"({"version":"9"})") << fields("|||||||9");

    const auto unparsable = [&](const char *name, const QByteArray &content) {
        QTest::newRow(name) << content << naming << content << describedAs("7.9");
    };
    unparsable("empty", {});
    unparsable("words", "not an update");
    unparsable("cut off", offer.left(20));
    unparsable("bytes", QByteArray("\xff\x00\xfe", 3));
    unparsable("nested too deeply", QByteArray(50'000, '['));

    const auto readAgain = [&](const char *name, const QByteArray &path) {
        QTest::newRow(name) << offer << QByteArray(naming).replace("%1", path) << present
                            << describedAs("8.0");
    };
    readAgain("missing file", "/no such folder/offer.json");
    readAgain("no name", {});
    readAgain("a folder", "/");
    readAgain("a device", "/dev/null");
    readAgain("a name that no file can have", R"(/tmp\u0000/offer.json)");
    readAgain("the very file", "%2");
    QTest::newRow("failed check") << offer << QByteArray(naming).replace(R"("0")", R"("1")")
                                  << present << describedAs("7.9");
}

void TestNvUpgradeHelper::checkTakesUpdateInfoOver()
{
    QFETCH(QByteArray, offered);
    QFETCH(QByteArray, answer);
    writeUpdateInfoFile(description("7.9"));
    NvUpgradeHelper::instance();
    writeUpdateInfoFile(description("8.0") + QByteArray(100'000, ' '));

    const QString name = QStringLiteral("Überblick/Angebot für Zoë.json");
    m_feed->sandbox().writeFile(name, offered);
    answer.replace("%1", m_feed->sandbox().path(name).toUtf8());
    answer.replace("%2", NvUpgradeHelper::updateInfoFile().toUtf8());
    QVERIFY((*m_feed)->writeCheckAnswer(answer));
    checked();
    QTEST(updateInfoFile(), "kept");
    QTEST(updateInfo(), "info");
    QCOMPARE(QFileInfo(NvUpgradeHelper::updateInfoFile()).dir().entryList(QDir::Files).size(), 1);
}

void TestNvUpgradeHelper::offersDescriptionIsReadWhole()
{
    m_feed->writeSmallUpgrade(version);
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json.~tmp"), "left by a crash");
    checked();
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
    QCOMPARE(updateInfo(),
             QStringList({QStringLiteral("Norvane"), QStringLiteral("robin@mail.example"),
                          QStringLiteral("https://download.norvane.example/clipwright-full.exe"),
                          QStringLiteral("Faster export; new titles; »überarbeitete« Übergänge."),
                          QStringLiteral("What's new in Clipwright 8.0.0.1"),
                          QStringLiteral("20260417"), (*m_feed)->target(), version}));
}

void TestNvUpgradeHelper::fullDiskKeepsUpdateInfo()
{
    if (!Machine::FullDisk::isPossible)
        QSKIP("files cannot be kept from growing here");
    m_feed->writeSmallUpgrade(version);
    writeUpdateInfoFile(description("7.9"));
    NvUpgradeHelper::instance();
    const Machine::FullDisk disk(20);
    QVERIFY(checked().needupgrade);
    QCOMPARE(updateInfoFile(), description("7.9"));
    QCOMPARE(updateInfo(), describedAs("7.9"));
}

void TestNvUpgradeHelper::folderInPlaceOfUpdateInfoLeavesNoCopyBehind()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY(QDir().mkpath(NvUpgradeHelper::updateInfoFile()));
    QVERIFY(checked().needupgrade);
    QCOMPARE(QFileInfo(NvUpgradeHelper::updateInfoFile()).dir().entryList(QDir::Files),
             QStringList());
}

void TestNvUpgradeHelper::missingUpdateInfoFileLeavesUpdateInfoUnchanged()
{
    writeUpdateInfoFile(description("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(QFile::remove(NvUpgradeHelper::updateInfoFile()));
    helper->reloadUpdateInfo();
    QCOMPARE(updateInfo(), describedAs("7.9"));
    QVERIFY(!QFile::exists(NvUpgradeHelper::updateInfoFile()));
}

void TestNvUpgradeHelper::missingDataFolderIsMade()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper::instance();
    QVERIFY(QDir(m_feed->sandbox().path(QStringLiteral("ProgramData"))).removeRecursively());
    checked();
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
}

void TestNvUpgradeHelper::unusableDataFolderLosesNothingElse()
{
    m_feed->writeSmallUpgrade(version);
    m_feed->sandbox().writeFile(QStringLiteral("ProgramData"), "a file in the folder's place");
    QVERIFY(checked().needupgrade);
    QCOMPARE(updateInfo(), UpgradeFields::of(UpdateInfo()));
    QVERIFY(downloaded());
}

void TestNvUpgradeHelper::downloadTakesUpdateInfoOfTheLastStoredCheckOver()
{
    m_feed->writeSmallUpgrade(version);
    checked();
    // A failed check does not count, whatever it names.
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"1","result":{"path":"elsewhere"}})"));
    checked();
    QVERIFY((*m_feed)->writeUpdateInfo(QStringLiteral("8.0.0.2")));
    QVERIFY(downloaded());
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
    QCOMPARE(updateInfo().constLast(), QStringLiteral("8.0.0.2"));
}

void TestNvUpgradeHelper::downloadWithoutCheckReadsUpdateInfoAgain()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper::instance();
    writeUpdateInfoFile(description("7.9"));
    QVERIFY(downloaded());
    QCOMPARE(updateInfoFile(), description("7.9"));
    QCOMPARE(updateInfo(), describedAs("7.9"));
}

void TestNvUpgradeHelper::failedDownloadLeavesUpdateInfoAlone()
{
    m_feed->writeSmallUpgrade(version);
    checked();
    writeUpdateInfoFile(description("7.9"));
    QVERIFY((*m_feed)->writeDownloadAnswer(R"({"errcode":"12"})"));
    QVERIFY(!downloaded());
    QCOMPARE(updateInfoFile(), description("7.9"));
    QCOMPARE(updateInfo().constLast(), version);
}

QTEST_GUILESS_MAIN(TestNvUpgradeHelper)
#include "test_nvupgradehelper.moc"
