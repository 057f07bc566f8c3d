#include "ui/uninstallpage.h"

#include "analytics/events.h"
#include "app/env/appenv.h"
#include "config/content/configcontent.h"
#include "platform/sessionend.h"
#include "ui/look.h"
#include "ui/uninstallrules.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QEvent>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtWidgets/QStyle>

#include <limits>

namespace {

constexpr int tickMs = 100;
constexpr int successDelayMs = 500;

} // namespace

UninstallPage::UninstallPage(QWidget *parent)
    : UninstallPage(parent, Config::recommendedList())
{
}

UninstallPage::UninstallPage(QWidget *parent, const QList<QJsonObject> &recommended)
    : QWidget(parent)
    , m_tickTimer(new QTimer(this))
{
    setupUi(this);
    btnSubscribe->setObjectName(QStringLiteral("SecondaryBtn"));
    label_5->hide();
    pnlSubscribe->hide();
    progressBar->setValue(0);

    btnClose->setEnabled(false);
    btnProduct->setEnabled(false);
    btnProduct->installEventFilter(this);
    imgArrow = new QWidget(btnProduct);
    imgArrow->setObjectName(QStringLiteral("imgArrow"));
    imgArrow->resize(24, 24);
    imgArrow->setAttribute(Qt::WA_TransparentForMouseEvents);
    setArrow("disabled");
    Look::sayStatus(*this, {lblTitle->text()});

    lstProduct->addProducts(recommended);
    Look::setHint(edtEmail, tr("Email address"));

    connect(m_tickTimer, &QTimer::timeout, this, &UninstallPage::timerTimeout);
    connect(lstProduct, &QListWidget::itemClicked, this, &UninstallPage::lstProductItemClicked);
    connect(btnClose, &QPushButton::clicked, this, &UninstallPage::leave);
    connect(btnSubscribe, &QPushButton::clicked, this, &UninstallPage::subscribe);
    connect(edtEmail, &QLineEdit::returnPressed, this, &UninstallPage::subscribe);
    connect(btnProduct, &QPushButton::clicked, this, &UninstallPage::more);
    connect(edtEmail, &QLineEdit::textChanged, this, [this] {
        Look::refreshStyle(edtEmail);
        label_5->hide();
    });
}

void UninstallPage::showEvent(QShowEvent *event)
{
    // Not with the hidden page: a picture is unpacked when its widget is polished.
    if (imgUninstall->styleSheet().isEmpty())
        setPicture("Uninstalling");
    QWidget::showEvent(event);
}

void UninstallPage::start(QProcess *process)
{
    m_clock.start();
    m_tickTimer->start(tickMs);
    m_remaining = std::numeric_limits<qint32>::max();
    m_process = process;
    btnProduct->setVisible(AppEnv::isNetworkOnline());
    Platform::setSessionEndReason(window()->windowHandle(), lblTitle->text());
}

void UninstallPage::fail()
{
    stopClock();
    progressBar->hide();
    pnlSubscribe->show();
    edtEmail->hide();
    widget->hide();
    setPicture("UninstallFailed");
    lblTitle->setText(tr("Uninstall Failed"));
    label_2->setText(tr("Your uninstallation encountered errors. Please try uninstalling again."));
    btnSubscribe->setText(tr("Close"));
    btnClose->setEnabled(true);
    btnProduct->setEnabled(true);
    sayState();
    Analytics::reportUninstallResult(false);
}

void UninstallPage::failAfter(int milliseconds)
{
    m_isFailing = true;
    QTimer::singleShot(milliseconds, this, &UninstallPage::fail);
}

bool UninstallPage::isRunning() const
{
    return m_tickTimer->isActive();
}

void UninstallPage::timerTimeout()
{
    showElapsed(m_clock.elapsed());
}

void UninstallPage::showElapsed(qint64 elapsedMs)
{
    const int range = progressBar->maximum() - progressBar->minimum();
    if (elapsedMs < UninstallRules::curveEndMs)
        progressBar->setValue(UninstallRules::progressValue(elapsedMs, range));
    else if (!m_isFailing && (!m_process || m_process->state() != QProcess::Running))
        endRun(range);
    showTimeLeft(elapsedMs);
}

void UninstallPage::endRun(int range)
{
    progressBar->setValue(range);
    stopClock();
    QTimer::singleShot(successDelayMs, this, &UninstallPage::succeed);
    Analytics::reportUninstallResult(true);
    QDesktopServices::openUrl(QUrl(AppEnv::uninstallJumpPage(Config::configProductId())));
}

void UninstallPage::showTimeLeft(qint64 elapsedMs)
{
    const int value = progressBar->value();
    if (value == 0) {
        label_2->setText(QString());
        return;
    }
    const int range = progressBar->maximum() - progressBar->minimum();
    m_remaining = qMin(m_remaining, UninstallRules::secondsLeft(value, range, elapsedMs));
    label_2->setText(tr("Time remaining: About %1 seconds").arg(m_remaining));
    const int step = UninstallRules::spokenStep(m_remaining);
    if (step != m_saidStep) {
        m_saidStep = step;
        sayState();
    }
}

void UninstallPage::sayState()
{
    Look::sayStatus(*this, {lblTitle->text(), label_2->text()});
}

void UninstallPage::succeed()
{
    progressBar->hide();
    pnlSubscribe->show();
    setPicture("UninstallSuccess");
    lblTitle->setText(tr("Successfully uninstalled"));
    label_2->setText(tr("Subscribe to get the latest updates"));
    sayState();
    edtEmail->setAccessibleDescription(accessibleName()); // it takes the keyboard from the page
    edtEmail->setFocus();
    btnClose->setEnabled(true);
    btnProduct->setEnabled(true);
}

void UninstallPage::stopClock()
{
    m_clock.invalidate();
    m_tickTimer->stop();
    Platform::setSessionEndReason(window()->windowHandle(), {});
}

void UninstallPage::subscribe()
{
    if (!hasSucceeded()) {
        QCoreApplication::quit();
        return;
    }
    const QString address = edtEmail->text().trimmed();
    if (!address.isEmpty() && !UninstallRules::isValidEmail(address)) {
        label_5->show();
        return;
    }
    Analytics::reportSubscribe(address);
    if (btnProduct->isVisibleTo(this))
        Q_EMIT btnProductClicked();
    else
        QCoreApplication::quit();
}

void UninstallPage::more()
{
    Analytics::reportClickMore(hasSucceeded());
    Q_EMIT btnProductClicked();
}

void UninstallPage::leave()
{
    Analytics::reportClickExit(QStringLiteral("uninstallprocess"), hasSucceeded());
    QCoreApplication::quit();
}

bool UninstallPage::hasSucceeded() const
{
    // Only that view shows the e-mail box.
    return edtEmail->isVisibleTo(this);
}

void UninstallPage::lstProductItemClicked(QListWidgetItem *item)
{
    ProductList::openProduct(item, QStringLiteral("uninstallprocess"));
}

void UninstallPage::setPicture(const char *name)
{
    imgUninstall->setStyleSheet(
        Look::pictureStyle(QStringLiteral(":/Resources/light/%1_2x.png").arg(QLatin1String(name))));
}

void UninstallPage::setArrow(const char *state)
{
    const QString direction =
        isRightToLeft() ? QStringLiteral("Arrow_rtl") : QStringLiteral("Arrow");
    imgArrow->setStyleSheet(Look::pictureStyle(
        QStringLiteral(":/Resources/light/%1_%2_2x.png").arg(direction, QLatin1String(state))));
}

void UninstallPage::placeArrow()
{
    QRect place = imgArrow->rect();
    place.moveTo(btnProduct->width() - imgArrow->width(),
                 (btnProduct->height() - imgArrow->height()) / 2 + 1);
    imgArrow->setGeometry(QStyle::visualRect(layoutDirection(), btnProduct->rect(), place));
}

bool UninstallPage::eventFilter(QObject *watched, QEvent *event)
{
    if (watched == btnProduct) {
        const bool enabled = btnProduct->isEnabled();
        switch (event->type()) {
        case QEvent::MouseButtonPress:
            if (enabled)
                setArrow("pressed");
            break;
        case QEvent::Enter:
            if (enabled)
                setArrow("hover");
            break;
        case QEvent::Leave:
        case QEvent::EnabledChange:
            if (enabled)
                setArrow("normal");
            break;
        case QEvent::Resize:
            placeArrow();
            break;
        default:
            break;
        }
    }
    return QWidget::eventFilter(watched, event);
}
