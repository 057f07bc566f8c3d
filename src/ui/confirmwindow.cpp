#include "ui/confirmwindow.h"

#include "ui/look.h"

#include <QtWidgets/QShortcut>

namespace {

constexpr int checkBoxTextWidth = 210;

} // namespace

ConfirmWindow::ConfirmWindow(QWidget *parent)
    : BaseWindow(parent)
{
    setupUi(this);
    // The safe choice is the highlighted one.
    btnCancel->setObjectName(QStringLiteral("PrimaryBtn"));
    btnRemove->setObjectName(QStringLiteral("SecondaryBtn"));
    Look::setWrappedText(checkBox, checkBox->text(), checkBoxTextWidth);
    // The forms' minimum widths replace what longer texts need.
    for (QPushButton *button : {btnRemove, btnCancel})
        button->setMinimumWidth(qMax(button->minimumWidth(), button->sizeHint().width()));
    resize(320, 320);

    connect(btnCancel, &QPushButton::clicked, this, [this] { Q_EMIT closed(0); });
    connect(btnRemove, &QPushButton::clicked, this, [this] { Q_EMIT closed(1); });
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            [this] { Q_EMIT closed(0); });
    btnCancel->setFocus();
}

void ConfirmWindow::closeEvent(QCloseEvent *event)
{
    if (refuseUsersClose(event))
        Q_EMIT closed(0);
}
