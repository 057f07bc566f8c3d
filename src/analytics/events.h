#pragma once

#include <QtCore/QString>

/// One function per usage event. Names and texts are agreed with the receiving side, odd ones
/// included.
namespace Analytics {

/// What the feedback page shows when one of its events is raised.
struct FeedbackState
{
    QString optionValue;    ///< the chosen option's code in decimal, empty when none is chosen
    QString description;    ///< the free text, empty when its box is not shown
    bool hasAction = false; ///< the option's action button is shown
    QString source;         ///< why the page is being shown
    QString actionName;     ///< "Coupon" or "Upgrade", empty when no action button is shown
};

/// The feedback page is shown; source says why.
void reportUninstallPopUp(const QString &source);

/// The feedback page's buttons, and the choice of an option that comes with an offer.
void reportRetainClick(const FeedbackState &state);
void reportUninstallCancel(const FeedbackState &state);
void reportUninstallContinue(const FeedbackState &state);
void reportFeedbackClick(const FeedbackState &state);

/// The last question was answered.
void reportUninstallReConfirm(bool remove, bool deleteAll);

/// The uninstaller's run ended.
void reportUninstallResult(bool success);

/// The user submitted the address field, empty or not, after a successful run.
void reportSubscribe(const QString &email);

/// The user asked for the maker's other products.
void reportClickMore(bool success);

/// A recommended product was clicked; url may be empty.
void reportRecommend(const QString &url, int pid, const QString &pageType);

/// The user closed a page, which ends the program.
void reportClickExit(const QString &pageSource, bool success);

/// The update installer ended well; the user started the new version.
void reportUpgradeCompleted();
void reportUpgradeLaunchClick();

} // namespace Analytics
