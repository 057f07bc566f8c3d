#pragma once

#include "tests/support/sandbox.h"

#include <QtCore/QStringList>

/// The machine around the window: an installation whose programs are real processes, which end when
/// told to, and which may be missing or broken.
class World
{
public:
    enum class Program { Uninstaller, UpdateInstaller, Product };
    enum class Condition { Whole, Missing, Unstartable };

    World();
    ~World();

    Q_DISABLE_COPY(World)

    /// Everything in place, nothing recorded.
    void reset();

    void set(Program program, Condition condition);
    void setRegistered(bool isRegistered);
    void setOnline(bool isOnline);

    /// Ends the child that waits.
    void tellChild(int exitCode) const;

    /// What the programs recorded, a line for each start.
    QStringList record() const;

    /// An update description file.
    QString updateDescription() const;

private:
    QString recordFile() const;

    Sandbox m_sandbox;
    const QStringList m_programs; ///< by Program
    int m_lives = 0;
    int m_orders = -1;
};
