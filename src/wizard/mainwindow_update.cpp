// The update run: the offer's check, the download, the maker's update installer, their outcome.

#include "wizard/mainwindow.h"

#include "analytics/events.h"
#include "app/env/appenv.h"
#include "platform/narrowtext.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QFile>
#include <QtCore/QTimer>
#include <QtCore/QUuid>

namespace {

constexpr int maxProgressBeforeInstalled = 99;
constexpr int completedDelayMs = 500;
constexpr int skinNumber = 0;

const QLatin1String sourceUpgradeFailure("upgrade_failure");
const QLatin1String sourceUpgradeCancel("upgrade_cancel");

// An answer's text, in the encoding of requests.
std::string utf8(const std::string &answered)
{
    return Platform::fromNarrow(answered).toStdString();
}

// The installer reads its switches with the quotes in them.
QString quotedSwitch(const char *format, const QString &value)
{
    return QString::fromLatin1(format).arg(value, 0, QLatin1Char(' '));
}

QStringList installerArguments(const UpdateInfo &update)
{
    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    return {quotedSwitch("/CFGPATH=\"%1\"", NvUpgradeHelper::updateInfoFile()),
            quotedSwitch("/NEWVER=\"%1\"", QString::fromStdString(update.version)),
            quotedSwitch("/LANG=\"%1\"", product.language),
            quotedSwitch("/SKIN=\"%1\"", QString::number(skinNumber)),
            quotedSwitch("/CURVER=\"%1\"", product.version),
            quotedSwitch("/INSTALLPATH=\"%1\"", AppEnv::installDirOrDefault()),
            quotedSwitch("/PRODUCTNAME=\"%1\"", AppEnv::productName()),
            quotedSwitch("/SOURCE=\"%1\"", QStringLiteral("Uninstaller"))};
}

} // namespace

void MainWindow::sendUpgradeCheck()
{
    setEnabled(false);
    const AppEnv::ProductInfo product = AppEnv::readProductInfo();
    const AppEnv::AccountInfo account = AppEnv::readAccountInfo();

    checkInPraram request;
    request.pid = product.productId.toStdString();
    request.version = product.version.toStdString();
    request.brand = AppEnv::brandName().toStdString();
    request.name = AppEnv::productName().toStdString();
    request.nvid = account.uid.toStdString();
    request.email = account.email.toStdString();
    request.platform = "win_x64";
    request.requestId = QUuid::createUuid().toString().toStdString();
    NvUpgradeHelper::instance()->checkUpgrade(request);
}

void MainWindow::checkFinished(const checkOutParam &result)
{
    if (!isVisible())
        return; // closed since the helper sent this; the program is ending
    if (result.errcode != 0) {
        showMessage(tr("Failed to check update!"));
        setEnabled(true);
        return;
    }
    if (!result.needupgrade) {
        showMessage(tr("You are already the latest version!"));
        setEnabled(true);
        return;
    }

    setEnabled(true);
    downloadInPraram request;
    request.pid = AppEnv::readProductInfo().productId.toStdString();
    request.version = utf8(result.upgradeVersion);
    request.path = utf8(result.path);
    NvUpgradeHelper::instance()->downloadPackage(request);
    upgradePage->showUpgrading();
    wizardPages->setCurrentWidget(upgradePage);
}

void MainWindow::downloadProgressed(int percent)
{
    // The bar is full only when the installer has finished, and then stays so: a report may be
    // late.
    if (upgradePage->progressBar->value() <= maxProgressBeforeInstalled)
        upgradePage->progressBar->setValue(qMin(percent, maxProgressBeforeInstalled));
}

void MainWindow::downloadFinished(bool success)
{
    // A result of a download that the user has left, or that was sent before the window closed:
    // the installer would start, and be killed when the window is destroyed.
    if (wizardPages->currentWidget() != upgradePage || !isVisible())
        return;
    if (!success) {
        failUpgrade(tr("Failed to download the update."));
        return;
    }
    upgradePage->progressBar->setValue(maxProgressBeforeInstalled);
    const QString installer = AppEnv::updateInstallerPath();
    if (!QFile::exists(installer)) {
        failUpgrade(tr("Install failed."));
        return;
    }
    upgradePage->btnCancel->setEnabled(false); // also keeps the user from closing the window
    m_installProcess->start(installer,
                            installerArguments(NvUpgradeHelper::instance()->updateInfo()),
                            QIODevice::ReadWrite);
}

void MainWindow::installStarted() {}

void MainWindow::installFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    if (exitCode == 0 && exitStatus != QProcess::CrashExit) {
        upgradePage->progressBar->setValue(100);
        QTimer::singleShot(completedDelayMs, upgradePage, &UpgradePage::showCompleted);
        Analytics::reportUpgradeCompleted();
    } else {
        failUpgrade(tr("Install failed."));
    }
    upgradePage->btnCancel->setEnabled(true);
}

void MainWindow::installError(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return; // a crash is reported again through finished()
    failUpgrade(tr("Install failed."));
    upgradePage->btnCancel->setEnabled(true);
}

void MainWindow::failUpgrade(const QString &message)
{
    showMessage(message);
    showFeedbackPage(sourceUpgradeFailure);
}

void MainWindow::btnCancelClicked()
{
    if (NvUpgradeHelper::instance()->isDownloadRequested()) {
        showFeedbackPage(sourceUpgradeCancel);
        return;
    }
    QProcess::startDetached(AppEnv::productExePath(), {});
    Analytics::reportUpgradeLaunchClick();
    close();
}
