#include "ui/upgradepage.h"

#include "ui/look.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>

UpgradePage::UpgradePage(QWidget *parent)
    : QWidget(parent)
{
    setupUi(this);
    btnCancel->setObjectName(QStringLiteral("SecondaryBtn"));
    btnClose->hide();
    btnCancel->installEventFilter(this);

    connect(progressBar, &QProgressBar::valueChanged, this, &UpgradePage::showProgressText);
    connect(btnClose, &QPushButton::clicked, qApp, &QCoreApplication::quit);
}

void UpgradePage::showUpgrading()
{
    lblTitle->setText(tr("Upgrading, please wait..."));
    if (progressBar->value() == 0)
        label_2->setText(QStringLiteral("0%"));
    else
        progressBar->setValue(0);
    btnCancel->setText(tr("Cancel"));
    btnCancel->setAccessibleDescription(QString());
    imgUpgrade->setStyleSheet(
        Look::pictureStyle(QStringLiteral(":/Resources/light/Upgrading_2x.png")));
    progressBar->show();
    sayState();
}

void UpgradePage::showCompleted()
{
    lblTitle->setText(tr("Upgrade completed"));
    label_2->setText(tr("The new version is more stable and faster!"));
    btnCancel->setText(tr("Launch"));
    imgUpgrade->setStyleSheet(
        Look::pictureStyle(QStringLiteral(":/Resources/light/UpgradeSuccess_2x.png")));
    progressBar->hide();
    btnClose->show();
    sayState();
    btnCancel->setAccessibleDescription(accessibleName()); // it takes the keyboard from the page
    btnCancel->setFocus();
}

bool UpgradePage::isActionDisabled() const
{
    // By itself, not with the whole window, which is disabled while an answer is awaited.
    return !btnCancel->isEnabledTo(this);
}

bool UpgradePage::eventFilter(QObject *watched, QEvent *event)
{
    // A disabled button passes the focus to no other widget, and screen readers fall silent.
    if (event->type() == QEvent::EnabledChange && isActionDisabled() && !window()->focusWidget())
        setFocus();
    return QWidget::eventFilter(watched, event);
}

void UpgradePage::showProgressText()
{
    label_2->setText(progressBar->text());
    constexpr int percentASaying = 10;
    const int step = progressBar->value() / percentASaying;
    if (step != m_saidStep) {
        m_saidStep = step;
        sayState();
    }
}

void UpgradePage::sayState()
{
    Look::sayStatus(*this, {lblTitle->text(), label_2->text()});
}
