#pragma once

#include "tests/support/sandbox.h"

#include <QtCore/QStringList>

/// What lies around the window: an installation whose programs are real, wait for orders, and may
/// be missing or broken.
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
    QString fileOf(Program program) const;

    Sandbox m_sandbox;
    int m_lives = 0;
    int m_orders = -1;
};
