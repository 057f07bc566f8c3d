#include "platform/narrowtext.h"
#include "tests/support/feed.h"
#include "tests/support/patience.h"
#include "tests/support/testcase.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtCore/QPointer>
#include <QtCore/QThread>
#include <QtTest/QTest>
#include <atomic>
#include <nvupgrade.h>
#include <optional>

namespace {

using Operation = void (*)(NvUpgradeHelper *);

const auto version = QStringLiteral("8.0.0.1");

checkInPraram sampleCheck()
{
    return {"846",     "7.2.1.4", "Norvane", "Norvane Clipwright", "20260417", "robin@mail.example",
            "win_x64", "{check}"};
}

downloadInPraram sampleDownload()
{
    return {"846", "8.0.0.1", "offer.json", "{download}"};
}

QByteArray bytes(const std::string &text)
{
    return QByteArray::fromStdString(text);
}

QByteArray updateInfoOf(const QByteArray &infoVersion)
{
    return "{\"brand\":\"Norvane\",\"version\":\"" + infoVersion + "\"}\n";
}

bool isEmpty(const UpdateInfo &info)
{
    return info.brand.empty() && info.email.empty() && info.full_url.empty() &&
           info.whats_new_content.empty() && info.whats_new_title.empty() && info.nvid.empty() &&
           info.ok_path.empty() && info.version.empty();
}

/// What the helper's signals bring to the GUI thread.
class Receiver : public QObject
{
    Q_OBJECT

public:
    explicit Receiver(NvUpgradeHelper *helper)
    {
        connect(helper, &NvUpgradeHelper::s_CheckFinish, this, &Receiver::onCheckFinish);
        connect(helper, &NvUpgradeHelper::s_DownFinish, this, &Receiver::onDownFinish);
        connect(helper, &NvUpgradeHelper::s_DownProgress, this, &Receiver::onDownProgress);
    }

    QList<checkOutParam> checks;
    QList<bool> downloads;
    QList<int> percents;
    QStringList order;
    bool allInOwnThread = true;

private:
    void onCheckFinish(const checkOutParam &params)
    {
        note(QStringLiteral("check ") + QString::fromStdString(params.requestId));
        checks += params;
    }

    void onDownFinish(bool success)
    {
        note(QStringLiteral("download"));
        downloads += success;
    }

    void onDownProgress(int percent)
    {
        note(QStringLiteral("progress"));
        percents += percent;
    }

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
    void parameterTypesAreRegisteredUnderTheirNames_data();
    void parameterTypesAreRegisteredUnderTheirNames();
    void instanceIsTheSameUntilReleased();
    void releaseWithoutInstanceDoesNothing();
    void helperLivesInARunningThreadOfItsOwn();
    void newHelperKnowsNothing();
    void newHelperReadsUpdateInfoOnce();
    void operationsStartTheThreadWhenItDoesNotRun_data();
    void operationsStartTheThreadWhenItDoesNotRun();
    void destructionStartsTheThreadWhenItDoesNotRun();
    void destructionWaitsForARunningDownload();
    void destructionFollowsAnIdleThreadAtOnce();
    void idleHelperIsReleased_data();
    void idleHelperIsReleased();
    void helperInsideACallIsNotReleased_data();
    void helperInsideACallIsNotReleased();
    void helperWithAWaitingRequestIsNotReleased();

    // Check
    void checkRequestReachesTheLibraryByteForByte();
    void checkResultArrivesInTheGuiThread();
    void checkResultIsStoredWithoutItsRequestId();
    void invalidJsonIsEmittedAndStoredAsSuccessfulCheck();
    void errorCode12LeavesResultMembersUnread();
    void failedCheckIsEmittedButNotStored();
    void failedCheckLeavesUpdateInfoAlone();
    void checkReplacesUpdateInfoFile();
    void checkNamingMissingFileLeavesUpdateInfoFileButReadsItAgain_data();
    void checkNamingMissingFileLeavesUpdateInfoFileButReadsItAgain();
    void missingUpdateInfoFileLeavesUpdateInfoUnchanged();
    void unparsableUpdateInfoFileLeavesUpdateInfoUnchanged_data();
    void unparsableUpdateInfoFileLeavesUpdateInfoUnchanged();
    void missingMembersOfUpdateInfoAreEmpty();
    void answerLongerThanTheBufferIsNoJson_data();
    void answerLongerThanTheBufferIsNoJson();
    void numbersCountLikeNumerals();
    void fileNamesMayHoldLettersBeyondAscii();
    void missingDataFolderIsMade();
    void unusableDataFolderLosesNothingElse();
    void libraryWithoutAnswerFailsTheCheck();

    // Download
    void downloadRequestReachesTheLibraryByteForByte();
    void downloadResultIsStoredWithItsRequestId();
    void progressReachesTheGuiUnchangedAndInOrder_data();
    void progressReachesTheGuiUnchangedAndInOrder();
    void isDownloadRequestedUntilJustBeforeFinish();
    void failedDownloadFinishesWithFalse();
    void downloadWithInvalidJsonFinishesWithTrue();
    void downloadTakesUpdateInfoOfTheLastStoredCheck();
    void downloadWithoutCheckReadsUpdateInfoAgain();

    // Several
    void requestsRunOneAtATimeInTheirOrder();
    void stopReachesTheLibraryAfterTheCallInProgress();

private:
    /// Sends one request and waits for its finish.
    checkOutParam check(const checkInPraram &params = sampleCheck());
    bool download(const downloadInPraram &params = sampleDownload());

    QByteArray updateInfoFile() const;

    std::optional<Feed> m_feed;
};

void TestNvUpgradeHelper::cleanup()
{
    NvUpgradeHelper::release();
    m_feed.reset();
}

checkOutParam TestNvUpgradeHelper::check(const checkInPraram &params)
{
    const Receiver receiver(NvUpgradeHelper::instance());
    NvUpgradeHelper::instance()->checkUpgrade(params);
    if (!QTest::qWaitFor([&] { return !receiver.checks.isEmpty(); }, patienceMs))
        qFatal("the check did not finish");
    return receiver.checks.constFirst();
}

bool TestNvUpgradeHelper::download(const downloadInPraram &params)
{
    const Receiver receiver(NvUpgradeHelper::instance());
    NvUpgradeHelper::instance()->downloadPackage(params);
    if (!QTest::qWaitFor([&] { return !receiver.downloads.isEmpty(); }, patienceMs))
        qFatal("the download did not finish");
    return receiver.downloads.constFirst();
}

QByteArray TestNvUpgradeHelper::updateInfoFile() const
{
    return Sandbox::readFile(NvUpgradeHelper::updateInfoFile());
}

void TestNvUpgradeHelper::parameterTypesAreRegisteredUnderTheirNames_data()
{
    QTest::addColumn<QByteArray>("name");
    for (const char *name : {"checkInPraram", "checkOutParam", "downloadInPraram", "std::string"})
        QTest::newRow(name) << QByteArray(name);
}

void TestNvUpgradeHelper::parameterTypesAreRegisteredUnderTheirNames()
{
    QFETCH(QByteArray, name);
    NvUpgradeHelper::instance();
    const int type = QMetaType::type(name.constData());
    QVERIFY(type != QMetaType::UnknownType);
    QCOMPARE(QByteArray(QMetaType::typeName(type)), name);
}

void TestNvUpgradeHelper::instanceIsTheSameUntilReleased()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(helper);
    QCOMPARE(NvUpgradeHelper::instance(), helper);
    QCOMPARE(bytes(check().upgradeVersion), version.toUtf8());
    QCOMPARE(bytes(NvUpgradeHelper::instance()->checkResult().upgradeVersion), version.toUtf8());

    NvUpgradeHelper::release();
    QVERIFY(NvUpgradeHelper::instance()->checkResult().upgradeVersion.empty());
    QCOMPARE(bytes(check().upgradeVersion), version.toUtf8());
}

void TestNvUpgradeHelper::releaseWithoutInstanceDoesNothing()
{
    NvUpgradeHelper::release();
    NvUpgradeHelper::release();
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
    QCOMPARE(helper->checkResult().errcode, 0);
    QVERIFY(helper->checkResult().path.empty());
    QCOMPARE(helper->downloadResult().errcode, 0);
    QVERIFY(!helper->downloadResult().downloaded);
    QVERIFY(isEmpty(helper->updateInfo()));
    QCOMPARE(NvUpgradeHelper::updateInfoFile(),
             m_feed->dataPath(QStringLiteral("Back_UpdateInfo.json")));
}

void TestNvUpgradeHelper::newHelperReadsUpdateInfoOnce()
{
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));

    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("8.0"));
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));
    helper->reloadUpdateInfo();
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("8.0"));
}

void TestNvUpgradeHelper::operationsStartTheThreadWhenItDoesNotRun_data()
{
    QTest::addColumn<Operation>("operation");
    QTest::addColumn<QString>("call");

    QTest::newRow("checkUpgrade") << Operation([](NvUpgradeHelper *helper) {
        helper->checkUpgrade(sampleCheck());
    }) << QStringLiteral("check_upgrade_c");
    QTest::newRow("downloadPackage")
        << Operation([](NvUpgradeHelper *helper) { helper->downloadPackage(sampleDownload()); })
        << QStringLiteral("download_package_c");
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

void TestNvUpgradeHelper::destructionStartsTheThreadWhenItDoesNotRun()
{
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    helper->thread()->quit();
    QVERIFY(helper->thread()->wait());
    std::atomic<bool> started{false};
    connect(
        helper->thread(), &QThread::started, helper->thread(), [&] { started = true; },
        Qt::DirectConnection);
    NvUpgradeHelper::release();
    QVERIFY(started);
}

void TestNvUpgradeHelper::destructionWaitsForARunningDownload()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("8192")},
                                    {QStringLiteral("download_delay"), QStringLiteral("250")}}));
    const Receiver receiver(NvUpgradeHelper::instance());
    NvUpgradeHelper::instance()->downloadPackage(sampleDownload());
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
    QTest::newRow("check answered")
        << Operation([](NvUpgradeHelper *helper) { helper->checkUpgrade(sampleCheck()); });
    QTest::newRow("everything answered") << Operation([](NvUpgradeHelper *helper) {
        helper->checkUpgrade(sampleCheck());
        helper->downloadPackage(sampleDownload());
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
    QTest::addColumn<QString>("call");
    QTest::newRow("check") << Operation([](NvUpgradeHelper *helper) {
        helper->checkUpgrade(sampleCheck());
    }) << QStringLiteral("check");
    QTest::newRow("download") << Operation([](NvUpgradeHelper *helper) {
        helper->downloadPackage(sampleDownload());
    }) << QStringLiteral("download");
}

void TestNvUpgradeHelper::helperInsideACallIsNotReleased()
{
    QFETCH(Operation, ask);
    QFETCH(QString, call);
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
    helper->checkUpgrade(sampleCheck());
    helper->downloadPackage(sampleDownload());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 1, patienceMs);
    QVERIFY(!NvUpgradeHelper::releaseIfIdle());

    QTRY_COMPARE_WITH_TIMEOUT(m_feed->calls().size(), 2, patienceMs);
    ::stop();
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads, QList<bool>({false}), patienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(NvUpgradeHelper::releaseIfIdle(), patienceMs);
}

void TestNvUpgradeHelper::checkRequestReachesTheLibraryByteForByte()
{
    checkInPraram params = sampleCheck();
    params.name = R"(M"ö\bel)";
    check(params);
    const QList<QJsonObject> calls = m_feed->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.at(0).value(QLatin1String("json")).toString().toUtf8(),
             QByteArray(R"({"brand":"Norvane","name":"M\"\u00f6\\bel","nvid":"20260417",)"
                        R"("pid":"846","platform":"win_x64","version":"7.2.1.4"})"
                        "\n"));
    QCOMPARE(calls.at(0).value(QLatin1String("capacity")).toInt(), 1024);
}

void TestNvUpgradeHelper::checkResultArrivesInTheGuiThread()
{
    m_feed->writeSmallUpgrade(version);
    const Receiver receiver(NvUpgradeHelper::instance());
    NvUpgradeHelper::instance()->checkUpgrade(sampleCheck());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 1, patienceMs);
    QVERIFY(receiver.allInOwnThread);

    const checkOutParam &result = receiver.checks.constFirst();
    QCOMPARE(result.errcode, 0);
    QVERIFY(result.needupgrade);
    QVERIFY(!result.forceupgrade);
    QCOMPARE(bytes(result.upgradeVersion), version.toUtf8());
    QCOMPARE(qint64(result.packageSize), SampleFeed::defaultPackageBytes);
    QCOMPARE(Platform::fromNarrow(result.path), (*m_feed)->updateInfoFile());
    QCOMPARE(bytes(result.requestId), QByteArray("{check}"));
}

void TestNvUpgradeHelper::checkResultIsStoredWithoutItsRequestId()
{
    m_feed->writeSmallUpgrade(version);
    QCOMPARE(bytes(check().requestId), QByteArray("{check}"));
    const checkOutParam stored = NvUpgradeHelper::instance()->checkResult();
    QVERIFY(stored.needupgrade);
    QCOMPARE(bytes(stored.upgradeVersion), version.toUtf8());
    QCOMPARE(Platform::fromNarrow(stored.path), (*m_feed)->updateInfoFile());
    QVERIFY(stored.requestId.empty());
}

void TestNvUpgradeHelper::invalidJsonIsEmittedAndStoredAsSuccessfulCheck()
{
    m_feed->writeSmallUpgrade(version);
    check();
    QVERIFY(NvUpgradeHelper::instance()->checkResult().needupgrade);

    QVERIFY((*m_feed)->writeCheckAnswer("service not available"));
    const checkOutParam result = check();
    QCOMPARE(result.errcode, 0);
    QVERIFY(result.errmsg.empty());
    QVERIFY(!result.needupgrade);
    QVERIFY(result.upgradeVersion.empty());
    QVERIFY(result.path.empty());
    QCOMPARE(bytes(result.requestId), QByteArray("{check}"));

    const checkOutParam stored = NvUpgradeHelper::instance()->checkResult();
    QVERIFY(!stored.needupgrade);
    QVERIFY(stored.upgradeVersion.empty());
    QVERIFY(stored.path.empty());
}

void TestNvUpgradeHelper::errorCode12LeavesResultMembersUnread()
{
    QVERIFY((*m_feed)->writeCheckAnswer(
        R"({"errcode":"12","errmsg":"no","result":{"needupgrade":"1","upgradeVersion":"8"}})"));
    const checkOutParam result = check();
    QCOMPARE(result.errcode, 12);
    QCOMPARE(bytes(result.errmsg), QByteArray("no"));
    QVERIFY(!result.needupgrade);
    QVERIFY(result.upgradeVersion.empty());
}

void TestNvUpgradeHelper::failedCheckIsEmittedButNotStored()
{
    m_feed->writeSmallUpgrade(version);
    check();
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"12"})"));
    checkInPraram params = sampleCheck();
    params.requestId = "{another}";
    const checkOutParam result = check(params);
    QCOMPARE(result.errcode, 12);
    QCOMPARE(bytes(result.requestId), QByteArray("{another}"));

    const checkOutParam stored = NvUpgradeHelper::instance()->checkResult();
    QCOMPARE(stored.errcode, 0);
    QCOMPARE(bytes(stored.upgradeVersion), version.toUtf8());
}

void TestNvUpgradeHelper::failedCheckLeavesUpdateInfoAlone()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper::instance();
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"1","result":{"path":")" +
                                        (*m_feed)->updateInfoFile().toUtf8() + "\"}}"));
    check();
    QCOMPARE(updateInfoFile(), updateInfoOf("7.9"));
    QVERIFY(isEmpty(NvUpgradeHelper::instance()->updateInfo()));
}

void TestNvUpgradeHelper::checkReplacesUpdateInfoFile()
{
    m_feed->writeSmallUpgrade(version);
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"),
                          updateInfoOf("7.9") + QByteArray(100'000, ' '));
    check();
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
    const UpdateInfo info = NvUpgradeHelper::instance()->updateInfo();
    QCOMPARE(bytes(info.brand), QByteArray("Norvane"));
    QCOMPARE(bytes(info.email), QByteArray("robin@mail.example"));
    QVERIFY(!info.full_url.empty());
    QVERIFY(!info.whats_new_content.empty());
    QCOMPARE(bytes(info.whats_new_title), QByteArray("What's new in Clipwright 8.0.0.1"));
    QCOMPARE(bytes(info.nvid), QByteArray("20260417"));
    QCOMPARE(QString::fromStdString(info.ok_path), (*m_feed)->target());
    QCOMPARE(bytes(info.version), version.toUtf8());
}

void TestNvUpgradeHelper::checkNamingMissingFileLeavesUpdateInfoFileButReadsItAgain_data()
{
    QTest::addColumn<QByteArray>("path");

    QTest::newRow("missing file") << QByteArray("/no such folder/offer.json");
    QTest::newRow("no name") << QByteArray();
    QTest::newRow("a folder") << QByteArray("/");
    QTest::newRow("a name that no file can have") << QByteArray("/tmp\\u0000/offer.json");
}

void TestNvUpgradeHelper::checkNamingMissingFileLeavesUpdateInfoFileButReadsItAgain()
{
    QFETCH(QByteArray, path);
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));

    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("8.0"));
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"0","result":{"path":")" + path + "\"}}"));
    QCOMPARE(check().errcode, 0);
    QCOMPARE(updateInfoFile(), updateInfoOf("8.0"));
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("8.0"));
}

void TestNvUpgradeHelper::missingUpdateInfoFileLeavesUpdateInfoUnchanged()
{
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    QVERIFY(QFile::remove(NvUpgradeHelper::updateInfoFile()));
    helper->reloadUpdateInfo();
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));

    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"0"})"));
    check();
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));
    QVERIFY(!QFile::exists(NvUpgradeHelper::updateInfoFile()));
}

void TestNvUpgradeHelper::unparsableUpdateInfoFileLeavesUpdateInfoUnchanged_data()
{
    QTest::addColumn<QByteArray>("content");

    QTest::newRow("empty") << QByteArray();
    QTest::newRow("words") << QByteArray("not an update");
    QTest::newRow("cut off") << updateInfoOf("8.0").left(20);
    QTest::newRow("bytes") << QByteArray("\xff\x00\xfe", 3);
    QTest::newRow("nested too deeply") << QByteArray(50'000, '[');
}

void TestNvUpgradeHelper::unparsableUpdateInfoFileLeavesUpdateInfoUnchanged()
{
    QFETCH(QByteArray, content);
    m_feed->writeSmallUpgrade(version);
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();

    m_feed->sandbox().writeFile(QStringLiteral("feed/UpdateInfo.json"), content);
    check();
    QCOMPARE(updateInfoFile(), content);
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));
}

void TestNvUpgradeHelper::missingMembersOfUpdateInfoAreEmpty()
{
    m_feed->writeSmallUpgrade(version);
    check();
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), R"({"version":"8.1"})");
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    helper->reloadUpdateInfo();
    UpdateInfo info = helper->updateInfo();
    QCOMPARE(bytes(info.version), QByteArray("8.1"));
    info.version.clear();
    QVERIFY(isEmpty(info));
}

void TestNvUpgradeHelper::answerLongerThanTheBufferIsNoJson_data()
{
    QTest::addColumn<int>("length");
    QTest::addColumn<int>("errcode");

    QTest::newRow("fits with the closing zero") << 1023 << 12;
    QTest::newRow("one too many") << 1024 << 0;
    QTest::newRow("far too many") << 100'000 << 0;
}

void TestNvUpgradeHelper::answerLongerThanTheBufferIsNoJson()
{
    QFETCH(int, length);
    QFETCH(int, errcode);
    QByteArray answer = R"({"errcode":"12","errmsg":")";
    answer += QByteArray(length - answer.size() - 2, 'x') + "\"}";
    QCOMPARE(answer.size(), length);
    QVERIFY((*m_feed)->writeCheckAnswer(answer));
    const checkOutParam result = check();
    QCOMPARE(result.errcode, errcode);
    QCOMPARE(result.errmsg.empty(), errcode == 0);
}

void TestNvUpgradeHelper::numbersCountLikeNumerals()
{
    QVERIFY((*m_feed)->writeCheckAnswer(
        R"({"errcode":0,"errmsg":7,"result":{"needupgrade":1,"forceupgrade":0,)"
        R"("upgradeVersion":8,"packageSize":25165824,"path":false}})"));
    const checkOutParam result = check();
    QCOMPARE(result.errcode, 0);
    QCOMPARE(bytes(result.errmsg), QByteArray("7"));
    QVERIFY(result.needupgrade);
    QVERIFY(!result.forceupgrade);
    QCOMPARE(bytes(result.upgradeVersion), QByteArray("8"));
    QCOMPARE(result.packageSize, 25165824);
    QCOMPARE(bytes(result.path), QByteArray("false"));
}

void TestNvUpgradeHelper::fileNamesMayHoldLettersBeyondAscii()
{
    const QByteArray content = updateInfoOf("8.0 für Größe");
    m_feed->sandbox().writeFile(QStringLiteral("Überblick/Angebot für Zoë.json"), content);
    const QString path = m_feed->sandbox().path(QStringLiteral("Überblick/Angebot für Zoë.json"));
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"result":{"path":")" + path.toUtf8() + "\"}}"));
    check();
    QCOMPARE(updateInfoFile(), content);
    QCOMPARE(bytes(NvUpgradeHelper::instance()->updateInfo().version), QByteArray("8.0 für Größe"));
}

void TestNvUpgradeHelper::missingDataFolderIsMade()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper::instance();
    QVERIFY(QDir(m_feed->sandbox().path(QStringLiteral("ProgramData"))).removeRecursively());
    check();
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
    QCOMPARE(bytes(NvUpgradeHelper::instance()->updateInfo().version), version.toUtf8());
}

void TestNvUpgradeHelper::unusableDataFolderLosesNothingElse()
{
    m_feed->writeSmallUpgrade(version);
    m_feed->sandbox().writeFile(QStringLiteral("ProgramData"), "a file in the folder's place");
    QCOMPARE(bytes(check().upgradeVersion), version.toUtf8());
    QVERIFY(isEmpty(NvUpgradeHelper::instance()->updateInfo()));
    QVERIFY(download());
}

void TestNvUpgradeHelper::libraryWithoutAnswerFailsTheCheck()
{
    QCOMPARE(check().errcode, -1);
    QVERIFY(!download());
    QCOMPARE(NvUpgradeHelper::instance()->downloadResult().errcode, -1);
}

void TestNvUpgradeHelper::downloadRequestReachesTheLibraryByteForByte()
{
    downloadInPraram params = sampleDownload();
    params.path = R"(C:\Users\Zoë\"offer".json)";
    download(params);
    const QList<QJsonObject> calls = m_feed->calls();
    QCOMPARE(calls.size(), 1);
    QCOMPARE(calls.at(0).value(QLatin1String("json")).toString().toUtf8(),
             QByteArray(R"({"path":"C:\\Users\\Zo\u00eb\\\"offer\".json","pid":"846",)"
                        R"("version":"8.0.0.1"})"
                        "\n"));
    QCOMPARE(calls.at(0).value(QLatin1String("capacity")).toInt(), 1024);
}

void TestNvUpgradeHelper::downloadResultIsStoredWithItsRequestId()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY(download());
    const downloadOutParam stored = NvUpgradeHelper::instance()->downloadResult();
    QCOMPARE(stored.errcode, 0);
    QVERIFY(stored.downloaded);
    QCOMPARE(bytes(stored.version), version.toUtf8());
    QCOMPARE(Platform::fromNarrow(stored.path), (*m_feed)->target());
    QCOMPARE(bytes(stored.requestId), QByteArray("{download}"));
    QCOMPARE(Sandbox::readFile((*m_feed)->target()), Sandbox::readFile((*m_feed)->packageFile()));
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

    helper->downloadPackage(sampleDownload());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads.size(), 1, patienceMs);
    QCOMPARE(receiver.percents, QList<int>({odd, 0, 25, 50, 75, 100}));
    QCOMPARE(receiver.order.constLast(), QStringLiteral("download"));
    QVERIFY(receiver.allInOwnThread);
    QVERIFY(emittingThread != QThread::currentThread());
    QCOMPARE(emittingThread == helper->thread(), callbackThread == QLatin1String("caller"));
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
    helper->checkUpgrade(sampleCheck());
    QVERIFY(!helper->isDownloadRequested());
    helper->downloadPackage(sampleDownload());
    QVERIFY(helper->isDownloadRequested());
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 1, patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads.size(), 1, patienceMs);
    QVERIFY(requestedInProgress);
    QVERIFY(!requestedAtFinish);
    QVERIFY(!helper->isDownloadRequested());
}

void TestNvUpgradeHelper::failedDownloadFinishesWithFalse()
{
    m_feed->writeSmallUpgrade(version);
    check();
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    QVERIFY((*m_feed)->writeDownloadAnswer(
        R"({"errcode":"12","errmsg":"disk full","result":{"downloaded":"1"}})"));
    QVERIFY(!download());

    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const downloadOutParam stored = helper->downloadResult();
    QCOMPARE(stored.errcode, 12);
    QCOMPARE(bytes(stored.errmsg), QByteArray("disk full"));
    QVERIFY(!stored.downloaded);
    QCOMPARE(bytes(stored.requestId), QByteArray("{download}"));
    QVERIFY(!helper->isDownloadRequested());
    QCOMPARE(updateInfoFile(), updateInfoOf("7.9"));
    QCOMPARE(bytes(helper->updateInfo().version), version.toUtf8());
}

void TestNvUpgradeHelper::downloadWithInvalidJsonFinishesWithTrue()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeDownloadAnswer("done"));
    QVERIFY(download());
    const downloadOutParam stored = NvUpgradeHelper::instance()->downloadResult();
    QCOMPARE(stored.errcode, 0);
    QVERIFY(!stored.downloaded);
    QVERIFY(stored.version.empty());
}

void TestNvUpgradeHelper::downloadTakesUpdateInfoOfTheLastStoredCheck()
{
    m_feed->writeSmallUpgrade(version);
    check();
    // A failed check does not count, whatever it names.
    QVERIFY((*m_feed)->writeCheckAnswer(R"({"errcode":"1","result":{"path":"elsewhere"}})"));
    check();
    QVERIFY((*m_feed)->writeUpdateInfo(QStringLiteral("8.0.0.2")));
    QVERIFY(download());
    QCOMPARE(updateInfoFile(), Sandbox::readFile((*m_feed)->updateInfoFile()));
    QCOMPARE(bytes(NvUpgradeHelper::instance()->updateInfo().version), QByteArray("8.0.0.2"));
}

void TestNvUpgradeHelper::downloadWithoutCheckReadsUpdateInfoAgain()
{
    m_feed->writeSmallUpgrade(version);
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    m_feed->writeDataFile(QStringLiteral("Back_UpdateInfo.json"), updateInfoOf("7.9"));
    QVERIFY(download());
    QCOMPARE(updateInfoFile(), updateInfoOf("7.9"));
    QCOMPARE(bytes(helper->updateInfo().version), QByteArray("7.9"));
}

void TestNvUpgradeHelper::requestsRunOneAtATimeInTheirOrder()
{
    m_feed->writeSmallUpgrade(version);
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("check_delay"), QStringLiteral("20")},
                                    {QStringLiteral("download_delay"), QStringLiteral("20")}}));
    NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    const Receiver receiver(helper);
    checkInPraram params = sampleCheck();
    params.requestId = "1";
    helper->checkUpgrade(params);
    helper->downloadPackage(sampleDownload());
    params.requestId = "2";
    helper->checkUpgrade(params);
    helper->stop();
    params.requestId = "3";
    helper->checkUpgrade(params);
    QTRY_COMPARE_WITH_TIMEOUT(receiver.checks.size(), 3, patienceMs);

    QCOMPARE(receiver.order, QStringList({QStringLiteral("check 1"), QStringLiteral("progress"),
                                          QStringLiteral("progress"), QStringLiteral("download"),
                                          QStringLiteral("check 2"), QStringLiteral("check 3")}));
    QCOMPARE(m_feed->callNames(),
             QStringList({QStringLiteral("check_upgrade_c"), QStringLiteral("download_package_c"),
                          QStringLiteral("check_upgrade_c"), QStringLiteral("stop"),
                          QStringLiteral("check_upgrade_c")}));
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
    helper->downloadPackage(sampleDownload());
    QTRY_VERIFY_WITH_TIMEOUT(!receiver.percents.isEmpty(), patienceMs);
    helper->stop();
    QTRY_COMPARE_WITH_TIMEOUT(receiver.downloads, QList<bool>({true}), patienceMs);
    QTRY_COMPARE_WITH_TIMEOUT(m_feed->callNames().size(), 2, patienceMs);
    QCOMPARE(m_feed->callNames().constLast(), QStringLiteral("stop"));
}

QTEST_GUILESS_MAIN(TestNvUpgradeHelper)
#include "test_nvupgradehelper.moc"
