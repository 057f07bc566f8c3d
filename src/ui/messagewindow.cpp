#include "ui/messagewindow.h"

#include <QtWidgets/QShortcut>

MessageWindow::MessageWindow(QWidget *parent)
    : BaseWindow(parent)
{
    setupUi(this);
    btnOk->setObjectName(QStringLiteral("SecondaryBtn"));
    resize(320, 168);

    connect(btnOk, &QPushButton::clicked, this, &MessageWindow::closed);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            &MessageWindow::closed);
    btnOk->setFocus();
}

void MessageWindow::closeEvent(QCloseEvent *event)
{
    if (refuseUsersClose(event))
        Q_EMIT closed();
}
