#pragma once

#include "ui/basewindow.h"
#include "ui_messagewindow.h"

/// One message and an OK button. The owner puts the text into lblMessage. Like the confirmation
/// it never closes itself on a user's close.
class MessageWindow : public BaseWindow, public Ui::MessageWindow
{
    Q_OBJECT

public:
    explicit MessageWindow(QWidget *parent);

Q_SIGNALS:
    /// The user has read it, or the window system wants the window closed.
    void closed();

protected:
    void closeEvent(QCloseEvent *event) override;
};
