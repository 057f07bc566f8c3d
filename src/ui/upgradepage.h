#pragma once

#include "ui_upgradepage.h"

#include <QtWidgets/QWidget>

/// Shown while a new version is downloaded and installed, and after that. It mirrors state; its
/// owner feeds the bar and handles the action button. Only its close button, seen in the completed
/// look, acts by itself: it quits the application.
class UpgradePage : public QWidget, public Ui::UpgradePage
{
    Q_OBJECT

public:
    explicit UpgradePage(QWidget *parent = nullptr);

    /// The look of a download that begins: the bar at zero.
    void showUpgrading();

    /// The look of an upgrade that succeeded.
    void showCompleted();

    /// True while the page must not be left: an update installer is running.
    bool isActionDisabled() const;

    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void showProgressText();
    void sayState();

    int m_saidStep = 0; ///< of the progress that was last told to screen readers
};
