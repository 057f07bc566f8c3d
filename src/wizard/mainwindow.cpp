#include "wizard/mainwindow.h"

#include "analytics/events.h"
#include "app/env/appenv.h"
#include "app/env/endpoints.h"
#include "platform/captiondrag.h"
#include "platform/sessionend.h"
#include "ui/look.h"
#include "ui/messagewindow.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QEventLoop>
#include <QtCore/QUrl>
#include <QtCore/QVariant>
#include <QtGui/QCloseEvent>
#include <QtGui/QDesktopServices>
#include <QtGui/QSessionManager>
#include <QtWidgets/QApplication>

namespace {

constexpr int captionHeight = 37;

const QLatin1String sourceUninstallAction("uninstall_action");

} // namespace

MainWindow::MainWindow(QWidget *parent)
    : BaseWindow(parent)
{
    setupUi(this);
    Look::mirrorMargins(*this);
    showFeedbackPage(sourceUninstallAction);
    resize(720, 480);

    m_overlay = new QWidget(this);
    m_overlay->setObjectName(QStringLiteral("overlay"));
    m_overlay->setStyleSheet(
        QStringLiteral("background-color: rgba(0, 0, 0, 127);\nborder-radius: 12px;"));
    m_overlay->hide();

    connect(optionPage->btnNext, &QPushButton::clicked, this, &MainWindow::btnNextClicked);
    connect(optionPage->btnContinue, &QPushButton::clicked, this, &MainWindow::btnContinueClicked);
    connect(upgradePage->btnCancel, &QPushButton::clicked, this, &MainWindow::btnCancelClicked);
    connect(uninstallPage, &UninstallPage::btnProductClicked, this, &MainWindow::btnProductClicked);

    const NvUpgradeHelper *helper = NvUpgradeHelper::instance();
    connect(helper, &NvUpgradeHelper::s_CheckFinish, this, &MainWindow::checkFinished);
    connect(helper, &NvUpgradeHelper::s_DownProgress, this, &MainWindow::downloadProgressed);
    connect(helper, &NvUpgradeHelper::s_DownFinish, this, &MainWindow::downloadFinished);

    m_installProcess = new QProcess(this);
    m_installProcess->setObjectName(QStringLiteral("installProcess"));
    connect(m_installProcess, &QProcess::started, this, &MainWindow::installStarted);
    connect(m_installProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &MainWindow::installFinished);
    connect(m_installProcess, &QProcess::errorOccurred, this, &MainWindow::installError);

    m_uninstallProcess = new QProcess(this);
    m_uninstallProcess->setObjectName(QStringLiteral("uninstallProcess"));
    connect(m_uninstallProcess, &QProcess::started, this, &MainWindow::uninstallStarted);
    connect(m_uninstallProcess, qOverload<int, QProcess::ExitStatus>(&QProcess::finished), this,
            &MainWindow::uninstallFinished);
    connect(m_uninstallProcess, &QProcess::errorOccurred, this, &MainWindow::uninstallError);

    // Discard their output; QProcess would buffer it without limit.
    for (QProcess *process : {m_installProcess, m_uninstallProcess}) {
        connect(process, &QProcess::readyReadStandardOutput, process,
                [process] { process->readAllStandardOutput(); });
        connect(process, &QProcess::readyReadStandardError, process,
                [process] { process->readAllStandardError(); });
    }

    connect(m_installProcess, &QProcess::stateChanged, this, [this](QProcess::ProcessState state) {
        Platform::setSessionEndReason(windowHandle(), state == QProcess::NotRunning
                                                          ? QString()
                                                          : upgradePage->lblTitle->text());
    });
    connect(
        qApp, &QGuiApplication::commitDataRequest, this,
        [this](QSessionManager &session) {
            if (refusesSessionEnd())
                session.cancel();
        },
        Qt::DirectConnection); // the answer is due when the signal returns

    // A page takes the keyboard as a whole: Tab then leads to its first control.
    connect(wizardPages, &QStackedWidget::currentChanged, this,
            [this] { wizardPages->currentWidget()->setFocus(); });
    optionPage->setFocus();

    Platform::enableCaptionDragging(
        this, [this](const QPoint &globalPos) { return isCaption(globalPos); });
}

MainWindow::~MainWindow()
{
    // ~QProcess() kills a process that still runs, and emits signals. It runs in ~QWidget(), when
    // the pages that the slots would touch are gone.
    m_installProcess->disconnect(this);
    m_uninstallProcess->disconnect(this);
}

bool MainWindow::isCaption(const QPoint &globalPos) const
{
    const QWidget *widget = QApplication::widgetAt(globalPos);
    return mapFromGlobal(globalPos).y() < captionHeight && widget &&
           !widget->inherits("QAbstractButton");
}

void MainWindow::resizeEvent(QResizeEvent *event)
{
    BaseWindow::resizeEvent(event);
    if (m_overlay)
        m_overlay->setGeometry(rect());
}

void MainWindow::closeEvent(QCloseEvent *event)
{
    // Between Remove and the uninstaller's start there is no page yet that shows the run.
    const bool isBusy = uninstallPage->isRunning() || upgradePage->isActionDisabled() ||
                        m_uninstallProcess->state() == QProcess::Starting;
    event->setAccepted(!event->spontaneous() || !isBusy);
}

bool MainWindow::refusesSessionEnd() const
{
    return uninstallPage->isRunning() || m_uninstallProcess->state() != QProcess::NotRunning ||
           m_installProcess->state() != QProcess::NotRunning;
}

bool MainWindow::nativeEvent(const QByteArray &eventType, void *message, long *result)
{
    return Platform::answerCaptionHitTest(
               eventType, message, result,
               [this](const QPoint &globalPos) { return isCaption(globalPos); }) ||
           BaseWindow::nativeEvent(eventType, message, result);
}

void MainWindow::btnNextClicked()
{
    if (optionPage->btnNext->property("jump").toBool())
        openRedirectLink();
    else if (NvUpgradeHelper::instance()->isDownloadRequested())
        wizardPages->setCurrentWidget(upgradePage);
    else
        sendUpgradeCheck();
}

void MainWindow::btnProductClicked()
{
    productPage->setUninstallResult(uninstallPage->hasSucceeded());
    wizardPages->setCurrentWidget(productPage);
}

void MainWindow::showFeedbackPage(const QString &source)
{
    Analytics::reportUninstallPopUp(source);
    optionPage->setSource(source);
    wizardPages->setCurrentWidget(optionPage);
}

void MainWindow::openRedirectLink()
{
    QString link = optionPage->btnNext->property("url").toString();
    if (link.isEmpty())
        link = Endpoints::redirect() + QStringLiteral("/go.php?pid=%1&m=c23");
    // A link without "%1" has no place for the id; QString::arg would only complain.
    if (link.contains(QLatin1String("%1")))
        link = link.arg(AppEnv::readProductInfo().productId, 0, QLatin1Char(' '));
    QDesktopServices::openUrl(QUrl(link, QUrl::TolerantMode));
}

void MainWindow::showMessage(const QString &text)
{
    MessageWindow message(this);
    message.lblMessage->setText(text);
    message.setAttribute(Qt::WA_ShowModal);
    message.setEnabled(true);
    centre(message);
    message.show();

    QEventLoop loop;
    connect(&message, &MessageWindow::closed, &loop, &QEventLoop::quit);
    waitOverDimmedWindow(loop);
}

void MainWindow::waitOverDimmedWindow(QEventLoop &loop)
{
    m_overlay->show();
    loop.exec();
    m_overlay->hide();
}

void MainWindow::centre(BaseWindow &dialog) const
{
    dialog.growToTexts();
    QRect place = dialog.rect();
    place.moveCenter(geometry().center());
    dialog.move(place.topLeft());
}
