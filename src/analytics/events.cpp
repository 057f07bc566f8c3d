#include "analytics/events.h"

#include "analytics/session.h"

#include <QtCore/QJsonObject>

namespace Analytics {

namespace {

const QLatin1String doUninstall("DoUninstall");
const QLatin1String doRetain("DoRetain");
const QLatin1String uninstallCompleted("UninstallCompleted");
const QLatin1String buttonClick("ButtonClick");
const QLatin1String resultKey("result");

QString resultText(bool success)
{
    return success ? QStringLiteral("success") : QStringLiteral("failure");
}

QString numberText(bool flag)
{
    return flag ? QStringLiteral("1") : QStringLiteral("0");
}

void reportFeedback(const QString &action, const FeedbackState &state)
{
    sendEvent(doUninstall, action,
              {{QLatin1String("MsgCode"), state.optionValue},
               {QLatin1String("Msgdetail"), state.description},
               {QLatin1String("isoption"), numberText(state.hasAction)},
               {QLatin1String("source"), state.source},
               {QLatin1String("RetainActionName"), state.actionName}});
}

} // namespace

void reportUninstallPopUp(const QString &source)
{
    sendEvent(doUninstall, QStringLiteral("UninstallPopUp"), {{QLatin1String("source"), source}});
}

void reportRetainClick(const FeedbackState &state)
{
    reportFeedback(QStringLiteral("RetainClick"), state);
}

void reportUninstallCancel(const FeedbackState &state)
{
    reportFeedback(QStringLiteral("UninstallCancel"), state);
}

void reportUninstallContinue(const FeedbackState &state)
{
    reportFeedback(QStringLiteral("UninstallContinue"), state);
}

void reportFeedbackClick(const FeedbackState &state)
{
    reportFeedback(QStringLiteral("PopUp_FeedbackClick"), state);
}

void reportUninstallReConfirm(bool remove, bool deleteAll)
{
    sendEvent(doUninstall, QStringLiteral("UninstallReConfirm"),
              {{buttonClick, remove ? QStringLiteral("Remove") : QStringLiteral("Cancel")},
               {QLatin1String("is_delete_all"), numberText(deleteAll)}});
}

void reportUninstallResult(bool success)
{
    sendEvent(doUninstall, uninstallCompleted, {{resultKey, resultText(success)}});
}

void reportSubscribe(const QString &email)
{
    sendEvent(doUninstall, uninstallCompleted,
              {{buttonClick, QStringLiteral("Subscribe")},
               {resultKey, resultText(true)},
               {QLatin1String("email"), email}});
}

void reportClickMore(bool success)
{
    sendEvent(doUninstall, uninstallCompleted,
              {{buttonClick, QStringLiteral("Click_more")}, {resultKey, resultText(success)}});
}

void reportRecommend(const QString &url, int pid, const QString &pageType)
{
    sendEvent(doUninstall, QStringLiteral("ReCommend"),
              {{QLatin1String("Clickurl"), url},
               {QLatin1String("pid"), QString::number(pid)},
               {QLatin1String("pagetype"), pageType}});
}

void reportClickExit(const QString &pageSource, bool success)
{
    sendEvent(doUninstall, QStringLiteral("Click_exit"),
              {{QLatin1String("pagesource"), pageSource}, {resultKey, resultText(success)}});
}

void reportUpgradeCompleted()
{
    sendEvent(doRetain, QStringLiteral("UpgradeCompleted"), {});
}

void reportUpgradeLaunchClick()
{
    sendEvent(doRetain, QStringLiteral("UpgradeSuccess_launchclick"), {});
}

} // namespace Analytics
