#pragma once

#include "ui_uninstallpage.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtWidgets/QWidget>

class QListWidgetItem;
class QProcess;
class QTimer;

/// Shown while the setup uninstaller runs. Its bar moves by the clock, so that a run is always
/// shown for at least half a minute; afterwards it waits for the process. Then success with a
/// subscription box, or failure when the owner says so.
class UninstallPage : public QWidget, public Ui::UninstallPage
{
    Q_OBJECT

public:
    /// Fills the product list from the configuration document.
    explicit UninstallPage(QWidget *parent = nullptr);
    UninstallPage(QWidget *parent, const QList<QJsonObject> &recommended);

    /// Starts clock and bar. The process is polled for its state, not owned; null counts as ended.
    void start(QProcess *process);

    /// Shows the failure view.
    void fail();

    /// Shows it after so many milliseconds. Until then the run cannot succeed, even when the clock
    /// jumps to its end.
    void failAfter(int milliseconds);

    /// True from start() until the run was seen to end.
    bool isRunning() const;

    /// Whether the success view is shown.
    bool hasSucceeded() const;

    /// Brings bar and time left to where they stand elapsedMs after the start.
    void showElapsed(qint64 elapsedMs);

    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    /// The user wants the maker's other products.
    void btnProductClicked();

protected:
    void showEvent(QShowEvent *event) override;

private Q_SLOTS:
    void timerTimeout();
    void lstProductItemClicked(QListWidgetItem *item);

private:
    void endRun(int range);
    void succeed();
    void stopClock();
    void showTimeLeft(qint64 elapsedMs);
    void sayState();
    void subscribe();
    void more();
    void leave();
    void setPicture(const char *name);
    void setArrow(const char *state);
    void placeArrow();

    QElapsedTimer m_clock;
    QTimer *m_tickTimer;
    qint32 m_remaining = 0;
    int m_saidStep = -1; ///< of the time left that was last told to screen readers
    QProcess *m_process = nullptr;
    bool m_isFailing = false; ///< fail() is on its way
    QWidget *imgArrow;
};
