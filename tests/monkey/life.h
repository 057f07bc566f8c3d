#pragma once

#include "tests/monkey/random.h"
#include "tests/monkey/world.h"
#include "wizard/mainwindow.h"

#include <QtCore/QObject>
#include <QtCore/QStringList>

#include <chrono>
#include <cstdint>
#include <memory>
#include <optional>

class ConfirmWindow;

/// One life of the main window, from its first page to the end of the program, in random steps.
/// Whenever the event loop, also that of a dialog, has nothing left to do, the rules are checked
/// and the next step is taken. What other processes and threads do, such as the end of a child or
/// an answer of the upgrade library, is done by a step and waited for, so that a seed always gives
/// the same life.
class Life : public QObject
{
    Q_OBJECT

public:
    Life(World &world, std::uint64_t seed, int maxSteps);
    ~Life() override;

    Q_DISABLE_COPY(Life)

    void live();

    /// What did not hold; empty when everything did.
    const QString &flaw() const { return m_flaw; }

    /// What was done.
    const QStringList &trace() const { return m_trace; }

    int steps() const { return m_steps; }
    int uninstallerStarts() const { return m_uninstallerStarts; }
    int installerStarts() const { return m_installerStarts; }
    int checks() const { return m_checks; }

    /// A number for all that was done and seen.
    std::uint64_t digest() const { return m_digest; }

    bool eventFilter(QObject *watched, QEvent *event) override;
    bool event(QEvent *event) override;

private:
    using Milliseconds = std::chrono::milliseconds;

    void watchHelper();
    void watchProcesses();
    void watchAnswer(ConfirmWindow *dialog);

    void rested();
    bool isSettled();

    void step();
    void click();
    void useMouseAnywhere();
    void pressKey();
    void type();
    void closeFromWindowSystem();
    void letTimePass();
    void endChild();
    void answerLibrary();
    void changeWorld();
    void resizeWindow();
    QWidget *target();
    void clickAt(QWidget *window, const QPoint &position);

    QString brokenRule();
    QString readEvents();
    QString flawOfRecord() const;
    bool isRunning() const;
    void fail(const QString &flaw);
    void note(const QString &text);
    void mix(const QString &text);
    void windUp();

    World &m_world;
    Random m_random;
    const int m_maxSteps;
    std::unique_ptr<MainWindow> m_window;
    QProcess *m_uninstaller = nullptr;
    QProcess *m_installer = nullptr;

    int m_steps = 0;
    bool m_isOver = false;
    int m_rests = 0;
    bool m_isAwaiting = false; ///< something that is not this thread's is on its way
    bool m_hasStepped = false;
    bool m_isChildTold = false;
    std::optional<Milliseconds> m_waitingSince;
    QString m_flaw;
    QStringList m_trace;
    std::uint64_t m_digest = 14695981039346656037U;

    // What was seen and done so far.
    int m_checks = 0;
    int m_downloads = 0;
    int m_answersTold = 0;
    int m_answersHeard = 0;
    int m_offersHeard = 0;
    int m_packagesHeard = 0;
    int m_removesConfirmed = 0;
    int m_cancelsConfirmed = 0;
    bool m_isResourceRemovalWanted = false;
    int m_uninstallerStarts = 0;
    int m_uninstallersStarted = 0;
    int m_installerStarts = 0;
    int m_installersStarted = 0;
    int m_uninstallResults = 0;
    int m_removeEvents = 0;
    int m_cancelEvents = 0;
    int m_launchEvents = 0;
    int m_eventsRead = 0;
};
