#include "tests/support/feed.h"
#include "tests/support/testcase.h"

#include <QtCore/QDir>
#include <QtCore/QElapsedTimer>
#include <QtCore/QFileInfo>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>
#include <algorithm>
#include <functional>
#include <future>
#include <nvupgrade.h>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace {

QString check(const std::wstring &request = L"{}", int capacity = 1024)
{
    std::vector<wchar_t> answer(static_cast<std::size_t>(capacity) + 1, L'#');
    check_upgrade_c(request.c_str(), answer.data(), capacity);
    if (answer.back() != L'#')
        qFatal("the answer is longer than its capacity");
    return QString::fromWCharArray(answer.data());
}

struct Progress
{
    std::vector<int> percents;
    std::thread::id thread;
    std::function<void(int)> react;
};

void collect(int percent, void *context)
{
    auto *progress = static_cast<Progress *>(context);
    if (!progress)
        return;
    progress->percents.push_back(percent);
    progress->thread = std::this_thread::get_id();
    if (progress->react)
        progress->react(percent);
}

QString download(Progress *progress = nullptr)
{
    std::vector<wchar_t> answer(1024);
    download_package_c(L"{}", answer.data(), 1024, progress ? collect : nullptr, progress);
    return QString::fromWCharArray(answer.data());
}

QString errcode(const QString &answer)
{
    return QJsonDocument::fromJson(answer.toUtf8())
        .object()
        .value(QLatin1String("errcode"))
        .toString();
}

} // namespace

class TestNvUpgradeStandin : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_feed.emplace(); }
    void cleanup() { m_feed.reset(); }

    void answersWhatTheFeedSays_data();
    void answersWhatTheFeedSays();
    void answerIsCutToTheCapacity_data();
    void answerIsCutToTheCapacity();
    void incompleteFeedIsAnError_data();
    void incompleteFeedIsAnError();
    void unwritableTargetIsAnError();
    void callsAreRecordedWithTheirRequests();
    void checkTakesTheOrderedTime();
    void downloadCopiesThePackageInChunksWithProgress();
    void emptyPackageIsComplete();
    void progressComesFromTheOrderedThread_data();
    void progressComesFromTheOrderedThread();
    void stopReportsProgressOnceMoreWhenOrdered();
    void stopEndsARunningDownload();
    void stopEndsACallThatNeverReturns_data();
    void stopEndsACallThatNeverReturns();
    void stopWithoutWorkLeavesTheNextCallAlone();
    void overlappingCallsAreCounted();

private:
    std::optional<Feed> m_feed;
};

void TestNvUpgradeStandin::answersWhatTheFeedSays_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::addColumn<QString>("answer");

    for (const char *content :
         {R"({"errcode":"0"})", "service not available\n", "", "Möbel, 日本語, 🎬"})
        QTest::addRow("\"%s\"", content) << QByteArray(content) << QString::fromUtf8(content);
    QTest::newRow("no UTF-8") << QByteArray("a\xff"
                                            "b")
                              << QStringLiteral("a\uFFFD");
    QTest::newRow("half a character") << QByteArray("a\xe2\x82") << QStringLiteral("a\uFFFD");
}

void TestNvUpgradeStandin::answersWhatTheFeedSays()
{
    QFETCH(QByteArray, content);
    QFETCH(QString, answer);
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeCheckAnswer(content));
    QVERIFY((*m_feed)->writeDownloadAnswer(content));
    QCOMPARE(check(), answer);
    QCOMPARE(download(), answer);
}

void TestNvUpgradeStandin::answerIsCutToTheCapacity_data()
{
    QTest::addColumn<int>("capacity");
    QTest::addColumn<QString>("answer");

    QTest::newRow("room enough") << 6 << QStringLiteral("12345");
    QTest::newRow("one too few") << 5 << QStringLiteral("1234");
    QTest::newRow("the closing zero alone") << 1 << QString();
}

void TestNvUpgradeStandin::answerIsCutToTheCapacity()
{
    QFETCH(int, capacity);
    QVERIFY((*m_feed)->writeCheckAnswer("12345"));
    QTEST(check(L"{}", capacity), "answer");
}

void TestNvUpgradeStandin::incompleteFeedIsAnError_data()
{
    QTest::addColumn<QString>("feed");
    QTest::newRow("not named") << QString();
    QTest::newRow("missing") << QStringLiteral("no such folder");
    QTest::newRow("empty") << QStringLiteral("feed");
}

void TestNvUpgradeStandin::incompleteFeedIsAnError()
{
    QFETCH(QString, feed);
    if (feed.isEmpty())
        qunsetenv("NVUPGRADE_FEED");
    else
        qputenv("NVUPGRADE_FEED", QFile::encodeName(m_feed->sandbox().path(feed)));
    QCOMPARE(errcode(check()), QStringLiteral("-1"));
    QCOMPARE(errcode(download()), QStringLiteral("-1"));
    QVERIFY(!QFile::exists((*m_feed)->target()));
}

void TestNvUpgradeStandin::unwritableTargetIsAnError()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    const QString target = m_feed->sandbox().path(QStringLiteral("no such folder/package"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("target"), target}}));
    QCOMPARE(errcode(download()), QStringLiteral("-3"));
    QVERIFY(!QFile::exists(target));
}

void TestNvUpgradeStandin::callsAreRecordedWithTheirRequests()
{
    check(L"{\"name\":\"M\u00f6bel \\\"x\\\" \U0001F3AC\"}\n");
    download();
    stop();
    const QList<QJsonObject> calls = m_feed->calls();
    QCOMPARE(m_feed->callNames(),
             QStringList({QStringLiteral("check_upgrade_c"), QStringLiteral("download_package_c"),
                          QStringLiteral("stop")}));
    QCOMPARE(calls.at(0).value(QLatin1String("json")).toString(),
             QStringLiteral("{\"name\":\"Möbel \\\"x\\\" 🎬\"}\n"));
    QCOMPARE(calls.at(0).value(QLatin1String("capacity")).toInt(), 1024);
    QCOMPARE(calls.at(1).value(QLatin1String("json")).toString(), QStringLiteral("{}"));
}

void TestNvUpgradeStandin::checkTakesTheOrderedTime()
{
    QVERIFY((*m_feed)->writeCheckAnswer("{}"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("check_delay"), QStringLiteral("80")}}));
    QElapsedTimer clock;
    clock.start();
    QCOMPARE(check(), QStringLiteral("{}"));
    QVERIFY(clock.elapsed() >= 80);
}

void TestNvUpgradeStandin::downloadCopiesThePackageInChunksWithProgress()
{
    QVERIFY((*m_feed)->writeUpgrade(QStringLiteral("8.0.0.1")));
    QVERIFY((*m_feed)->writeOrders({}));
    Progress progress;
    QCOMPARE(download(&progress).toUtf8(), (*m_feed)->downloadAnswer(QStringLiteral("8.0.0.1")));

    QCOMPARE(QFileInfo((*m_feed)->target()).size(), qint64(SampleFeed::defaultPackageBytes));
    QVERIFY(Sandbox::readFile((*m_feed)->target()) == Sandbox::readFile((*m_feed)->packageFile()));
    QCOMPARE(progress.percents.size(), std::size_t(25)); // the start, and 24 chunks of 1 MiB
    QCOMPARE(progress.percents.front(), 0);
    QCOMPARE(progress.percents.back(), 100);
    QVERIFY(std::is_sorted(progress.percents.begin(), progress.percents.end()));
}

void TestNvUpgradeStandin::emptyPackageIsComplete()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writePackage(0));
    QCOMPARE(errcode(download()), QStringLiteral("0"));
    QCOMPARE(QFileInfo((*m_feed)->target()).size(), qint64(0));
}

void TestNvUpgradeStandin::progressComesFromTheOrderedThread_data()
{
    QTest::addColumn<SampleFeed::Orders>("orders");
    QTest::addColumn<bool>("own");

    const QString key = QStringLiteral("callback_thread");
    QTest::newRow("by default its own") << SampleFeed::Orders() << true;
    QTest::newRow("its own") << SampleFeed::Orders{{key, QStringLiteral("own")}} << true;
    QTest::newRow("the caller's") << SampleFeed::Orders{{key, QStringLiteral("caller")}} << false;
}

void TestNvUpgradeStandin::progressComesFromTheOrderedThread()
{
    QFETCH(SampleFeed::Orders, orders);
    QFETCH(bool, own);
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeOrders(orders));
    Progress progress;
    download(&progress);
    QCOMPARE(progress.thread != std::this_thread::get_id(), own);
}

void TestNvUpgradeStandin::stopReportsProgressOnceMoreWhenOrdered()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("late_progress"), QStringLiteral("77")}}));
    Progress progress;
    download(&progress);
    stop();
    QCOMPARE(progress.percents, std::vector<int>({0, 100, 77}));
    download(nullptr);
    stop(); // nothing to report to
    QCOMPARE(progress.percents.size(), std::size_t(3));
}

void TestNvUpgradeStandin::stopEndsARunningDownload()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("chunk"), QStringLiteral("1024")},
                                    {QStringLiteral("download_delay"), QStringLiteral("60000")}}));
    Progress progress;
    std::future<void> stopper;
    progress.react = [&](int) { stopper = std::async(std::launch::async, stop); };
    QCOMPARE(download(&progress), QStringLiteral("{\"errcode\":\"-2\",\"errmsg\":\"stopped\"}\n"));
    stopper.wait();
    QVERIFY(!QFile::exists((*m_feed)->target()));
    QVERIFY(!QFile::exists((*m_feed)->target() + QStringLiteral(".part")));
}

void TestNvUpgradeStandin::stopEndsACallThatNeverReturns_data()
{
    QTest::addColumn<QString>("call");
    QTest::newRow("check") << QStringLiteral("check");
    QTest::newRow("download") << QStringLiteral("download");
}

void TestNvUpgradeStandin::stopEndsACallThatNeverReturns()
{
    QFETCH(QString, call);
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), call}}));
    const bool isCheck = call == QLatin1String("check");
    QCOMPARE(errcode(isCheck ? download() : check()), QStringLiteral("0"));

    std::future<QString> answer =
        std::async(std::launch::async, [&] { return isCheck ? check() : download(); });
    // The call is recorded when it has begun, and from then on stop() ends it.
    QTRY_COMPARE(m_feed->calls().size(), 2);
    QVERIFY(answer.wait_for(std::chrono::milliseconds(20)) == std::future_status::timeout);
    stop();
    QCOMPARE(errcode(answer.get()), QStringLiteral("-2"));
}

void TestNvUpgradeStandin::stopWithoutWorkLeavesTheNextCallAlone()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    stop();
    QCOMPARE(errcode(check()), QStringLiteral("0"));
    stop();
    QCOMPARE(errcode(download()), QStringLiteral("0"));
}

void TestNvUpgradeStandin::overlappingCallsAreCounted()
{
    m_feed->writeSmallUpgrade(QStringLiteral("8"));
    QVERIFY((*m_feed)->writeOrders({{QStringLiteral("never_return"), QStringLiteral("download")}}));
    std::future<QString> answer = std::async(std::launch::async, [] { return download(); });
    QTRY_COMPARE(m_feed->calls().size(), 1);
    check();
    stop();
    answer.wait();
    const QList<QJsonObject> calls = m_feed->calls();
    QCOMPARE(calls.at(0).value(QLatin1String("overlapping")).toInt(), 0);
    QCOMPARE(calls.at(1).value(QLatin1String("overlapping")).toInt(), 1);
}

QTEST_GUILESS_MAIN(TestNvUpgradeStandin)
#include "test_nvupgrade_standin.moc"
