#include "analytics/events.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtCore/QJsonDocument>
#include <QtTest/QTest>

#include <functional>

using Report = std::function<void()>;
Q_DECLARE_METATYPE(Report)

class TestEvents : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void catalogue_data();
    void catalogue();
};

void TestEvents::catalogue_data()
{
    using namespace Analytics;
    QTest::addColumn<QString>("action");
    QTest::addColumn<QString>("properties");
    QTest::addColumn<Report>("report");
    const auto row = [](const char *action, const char *properties, const Report &report) {
        QTest::addRow("%s %s", action, properties)
            << QString::fromUtf8(action) << QString::fromUtf8(properties) << report;
    };

    FeedbackState none;
    none.source = QStringLiteral("upgrade_cancel");
    row("DoUninstall/UninstallCancel",
        R"({"MsgCode": "", "Msgdetail": "", "isoption": "0", "source": "upgrade_cancel",
            "RetainActionName": ""})",
        [none] { reportUninstallCancel(none); });

    FeedbackState coupon;
    coupon.optionValue = QStringLiteral("57");
    coupon.description = QStringLiteral("too dear");
    coupon.hasAction = true;
    coupon.source = QStringLiteral("uninstall_action");
    coupon.actionName = QStringLiteral("Coupon");
    const char *couponProperties =
        R"({"MsgCode": "57", "Msgdetail": "too dear", "isoption": "1",
            "source": "uninstall_action", "RetainActionName": "Coupon"})";
    row("DoUninstall/RetainClick", couponProperties, [coupon] { reportRetainClick(coupon); });
    row("DoUninstall/UninstallContinue", couponProperties,
        [coupon] { reportUninstallContinue(coupon); });
    row("DoUninstall/PopUp_FeedbackClick", couponProperties,
        [coupon] { reportFeedbackClick(coupon); });

    row("DoUninstall/UninstallPopUp", R"({"source": "uninstall_action"})",
        [] { reportUninstallPopUp(QStringLiteral("uninstall_action")); });
    row("DoUninstall/UninstallReConfirm", R"({"ButtonClick": "Remove", "is_delete_all": "1"})",
        [] { reportUninstallReConfirm(true, true); });
    row("DoUninstall/UninstallReConfirm", R"({"ButtonClick": "Cancel", "is_delete_all": "0"})",
        [] { reportUninstallReConfirm(false, false); });
    row("DoUninstall/UninstallCompleted", R"({"result": "success"})",
        [] { reportUninstallResult(true); });
    row("DoUninstall/UninstallCompleted", R"({"result": "failure"})",
        [] { reportUninstallResult(false); });
    row("DoUninstall/UninstallCompleted",
        R"({"ButtonClick": "Subscribe", "result": "success", "email": "a@b.cd"})",
        [] { reportSubscribe(QStringLiteral("a@b.cd")); });
    row("DoUninstall/UninstallCompleted", R"({"ButtonClick": "Click_more", "result": "failure"})",
        [] { reportClickMore(false); });
    row("DoUninstall/ReCommend",
        R"({"Clickurl": "https://a.example/", "pid": "-1", "pagetype": "allpage"})", [] {
            reportRecommend(QStringLiteral("https://a.example/"), -1, QStringLiteral("allpage"));
        });
    row("DoUninstall/Click_exit", R"({"pagesource": "moreproducts", "result": "success"})",
        [] { reportClickExit(QStringLiteral("moreproducts"), true); });
    row("DoRetain/UpgradeCompleted", "{}", [] { reportUpgradeCompleted(); });
    row("DoRetain/UpgradeSuccess_launchclick", "{}", [] { reportUpgradeLaunchClick(); });
}

void TestEvents::catalogue()
{
    QFETCH(QString, action);
    QFETCH(QString, properties);
    QFETCH(Report, report);
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    report();
    const AnalyticsRecord::Event expected{action.section(QLatin1Char('/'), 0, 0),
                                          action.section(QLatin1Char('/'), 1),
                                          QJsonDocument::fromJson(properties.toUtf8()).object()};
    QCOMPARE(AnalyticsRecord::events(), {expected});
}

QTEST_GUILESS_MAIN(TestEvents)
#include "test_events.moc"
