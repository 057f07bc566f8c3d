#include "analytics/events.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>

#include <functional>

using Report = std::function<void()>;
Q_DECLARE_METATYPE(Report)
Q_DECLARE_METATYPE(AnalyticsRecord::Event)

class TestEvents : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void catalogue_data();
    void catalogue();
};

namespace {

AnalyticsRecord::Event recorded(const char *category, const char *action,
                                const QJsonObject &properties)
{
    return {QString::fromLatin1(category), QString::fromLatin1(action), properties};
}

QJsonObject object(std::initializer_list<QPair<const char *, const char *>> members)
{
    QJsonObject object;
    for (const auto &[key, value] : members)
        object.insert(QLatin1String(key), QString::fromUtf8(value));
    return object;
}

} // namespace

void TestEvents::catalogue_data()
{
    using namespace Analytics;
    QTest::addColumn<Report>("report");
    QTest::addColumn<AnalyticsRecord::Event>("expected");
    const auto row = [](const char *name, const Report &report,
                        const AnalyticsRecord::Event &expected) {
        QTest::newRow(name) << report << expected;
    };

    row(
        "pop-up", [] { reportUninstallPopUp(QStringLiteral("uninstall_action")); },
        recorded("DoUninstall", "UninstallPopUp", object({{"source", "uninstall_action"}})));

    FeedbackState none;
    none.source = QStringLiteral("upgrade_cancel");
    const QJsonObject noneProperties = object({{"MsgCode", ""},
                                               {"Msgdetail", ""},
                                               {"isoption", "0"},
                                               {"source", "upgrade_cancel"},
                                               {"RetainActionName", ""}});
    row(
        "cancel with no option chosen", [none] { reportUninstallCancel(none); },
        recorded("DoUninstall", "UninstallCancel", noneProperties));

    FeedbackState coupon;
    coupon.optionValue = QStringLiteral("57");
    coupon.description = QStringLiteral("too dear");
    coupon.hasAction = true;
    coupon.source = QStringLiteral("uninstall_action");
    coupon.actionName = QStringLiteral("Coupon");
    const QJsonObject couponProperties = object({{"MsgCode", "57"},
                                                 {"Msgdetail", "too dear"},
                                                 {"isoption", "1"},
                                                 {"source", "uninstall_action"},
                                                 {"RetainActionName", "Coupon"}});
    row(
        "retain click", [coupon] { reportRetainClick(coupon); },
        recorded("DoUninstall", "RetainClick", couponProperties));
    row(
        "continue", [coupon] { reportUninstallContinue(coupon); },
        recorded("DoUninstall", "UninstallContinue", couponProperties));
    row(
        "feedback click", [coupon] { reportFeedbackClick(coupon); },
        recorded("DoUninstall", "PopUp_FeedbackClick", couponProperties));

    row(
        "confirm: remove all", [] { reportUninstallReConfirm(true, true); },
        recorded("DoUninstall", "UninstallReConfirm",
                 object({{"ButtonClick", "Remove"}, {"is_delete_all", "1"}})));
    row(
        "confirm: cancel", [] { reportUninstallReConfirm(false, false); },
        recorded("DoUninstall", "UninstallReConfirm",
                 object({{"ButtonClick", "Cancel"}, {"is_delete_all", "0"}})));

    row(
        "run succeeded", [] { reportUninstallResult(true); },
        recorded("DoUninstall", "UninstallCompleted", object({{"result", "success"}})));
    row(
        "run failed", [] { reportUninstallResult(false); },
        recorded("DoUninstall", "UninstallCompleted", object({{"result", "failure"}})));
    row(
        "subscribe", [] { reportSubscribe(QStringLiteral("a@b.cd")); },
        recorded(
            "DoUninstall", "UninstallCompleted",
            object({{"ButtonClick", "Subscribe"}, {"result", "success"}, {"email", "a@b.cd"}})));
    row(
        "click more", [] { reportClickMore(false); },
        recorded("DoUninstall", "UninstallCompleted",
                 object({{"ButtonClick", "Click_more"}, {"result", "failure"}})));

    row(
        "recommend",
        [] {
            reportRecommend(QStringLiteral("https://a.example/"), -1, QStringLiteral("allpage"));
        },
        recorded(
            "DoUninstall", "ReCommend",
            object({{"Clickurl", "https://a.example/"}, {"pid", "-1"}, {"pagetype", "allpage"}})));
    row(
        "exit", [] { reportClickExit(QStringLiteral("moreproducts"), true); },
        recorded("DoUninstall", "Click_exit",
                 object({{"pagesource", "moreproducts"}, {"result", "success"}})));

    row(
        "upgrade completed", [] { reportUpgradeCompleted(); },
        recorded("DoRetain", "UpgradeCompleted", {}));
    row(
        "upgrade launched", [] { reportUpgradeLaunchClick(); },
        recorded("DoRetain", "UpgradeSuccess_launchclick", {}));
}

void TestEvents::catalogue()
{
    QFETCH(Report, report);
    QFETCH(AnalyticsRecord::Event, expected);
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    report();
    QCOMPARE(AnalyticsRecord::events(), {expected});
}

QTEST_GUILESS_MAIN(TestEvents)
#include "test_events.moc"
