#pragma once

#include "ui/basewindow.h"
#include "ui_confirmwindow.h"

/// The last question before the setup uninstaller is started. It never closes itself on a user's
/// close: it says so through closed() and its owner decides.
class ConfirmWindow : public BaseWindow, public Ui::ConfirmWindow
{
    Q_OBJECT

public:
    explicit ConfirmWindow(QWidget *parent);

Q_SIGNALS:
    /// 1: the user chose Remove. 0: Cancel, or the window system wants the window closed.
    void closed(int result);

protected:
    void closeEvent(QCloseEvent *event) override;
};
