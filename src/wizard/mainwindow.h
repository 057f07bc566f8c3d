#pragma once

#include "ui/basewindow.h"
#include "ui_mainwindow.h"

#include <QtCore/QProcess>

class QEventLoop;
struct checkOutParam;

/// The wizard's window. It owns the pages, decides every move between them, shows the modal
/// dialogs over a dimming layer, and owns the two processes that it may start: the product's setup
/// uninstaller and the update installer. GUI thread only.
class MainWindow : public BaseWindow, public Ui::MainWindow
{
    Q_OBJECT

public:
    explicit MainWindow(QWidget *parent);
    ~MainWindow() override;

    /// Whether the window is dragged by this point (global coordinates): its top strip, outside
    /// buttons.
    bool isCaption(const QPoint &globalPos) const;

    /// Whether the user's session must not end now: a child process works on the product, or its
    /// outcome is still to be recorded.
    bool refusesSessionEnd() const;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void closeEvent(QCloseEvent *event) override;
    bool nativeEvent(const QByteArray &eventType, void *message, long *result) override;

private Q_SLOTS:
    void btnNextClicked();
    void btnContinueClicked();
    void btnCancelClicked();
    void btnProductClicked();
    void installStarted();
    void installFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void installError(QProcess::ProcessError error);
    void uninstallStarted();
    void uninstallFinished(int exitCode, QProcess::ExitStatus exitStatus);
    void uninstallError(QProcess::ProcessError error);

private:
    void showFeedbackPage(const QString &source);
    void showMessage(const QString &text);
    void openRedirectLink();

    void sendUpgradeCheck();
    void checkFinished(const checkOutParam &result);
    void downloadProgressed(int percent);
    void downloadFinished(bool success);
    void failUpgrade(const QString &message);

    /// Runs the loop, until an answer quits it, with the dimming layer shown.
    void waitOverDimmedWindow(QEventLoop &loop);
    void centre(BaseWindow &dialog) const;

    QWidget *m_overlay = nullptr;
    QProcess *m_installProcess = nullptr;
    QProcess *m_uninstallProcess = nullptr;
};
