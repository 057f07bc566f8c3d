// The uninstaller run: last question, start of the product's own setup uninstaller, its outcome.

#include "wizard/mainwindow.h"

#include "analytics/events.h"
#include "app/env/appenv.h"
#include "ui/confirmwindow.h"

#include <QtCore/QEventLoop>

#include <optional>

namespace {

constexpr int removeAnswer = 1;
constexpr int noUninstallerDelayMs = 500;

} // namespace

void MainWindow::btnContinueClicked()
{
    ConfirmWindow confirm(this);
    confirm.setAttribute(Qt::WA_ShowModal);
    centre(confirm);
    confirm.show();

    // The first answer counts, with the box as it was then, whatever else was pressed at once.
    std::optional<int> answer;
    std::optional<bool> boxThen;
    QEventLoop loop;
    connect(&confirm, &ConfirmWindow::closed, &loop,
            [&answer, &boxThen, &confirm, &loop](int result) {
                if (!answer) {
                    answer = result;
                    boxThen = confirm.checkBox->isChecked();
                }
                loop.quit();
            });
    waitOverDimmedWindow(loop);
    confirm.close();

    const bool deleteAll = boxThen.value_or(confirm.checkBox->isChecked());
    Analytics::reportUninstallReConfirm(answer == removeAnswer, deleteAll);
    if (answer != removeAnswer) {
        close();
        return;
    }

    setEnabled(false);
    const QString program = AppEnv::findUninstaller();
    if (program.isEmpty()) {
        uninstallStarted();
        uninstallPage->failAfter(noUninstallerDelayMs);
        return;
    }
    QStringList arguments{QStringLiteral("/VERYSILENT"), QStringLiteral("/REINSTALL")};
    if (deleteAll)
        arguments += QStringLiteral("/DELRESOURCE");
    m_uninstallProcess->start(program, arguments, QIODevice::ReadWrite);
}

void MainWindow::uninstallStarted()
{
    setEnabled(true);
    uninstallPage->start(m_uninstallProcess);
    wizardPages->setCurrentWidget(uninstallPage);
}

void MainWindow::uninstallFinished(int exitCode, QProcess::ExitStatus exitStatus)
{
    // The page finds out about success by itself, because it shows every run for a while.
    if (exitCode != 0 || exitStatus == QProcess::CrashExit)
        uninstallPage->fail();
}

void MainWindow::uninstallError(QProcess::ProcessError error)
{
    if (error != QProcess::FailedToStart)
        return; // a crash is reported again through finished()
    uninstallStarted();
    uninstallPage->fail();
}
