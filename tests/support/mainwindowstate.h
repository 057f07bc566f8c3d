#pragma once

#include "wizard/mainwindow.h"

#include <QtCore/QProcess>
#include <algorithm>

// Parts of the main window that its interface does not show.

/// The layer that dims the window while a dialog is open.
inline QWidget *overlay(const MainWindow &window)
{
    return window.findChild<QWidget *>(QStringLiteral("overlay"));
}

inline QProcess *installProcess(const MainWindow &window)
{
    return window.findChild<QProcess *>(QStringLiteral("installProcess"));
}

inline QProcess *uninstallProcess(const MainWindow &window)
{
    return window.findChild<QProcess *>(QStringLiteral("uninstallProcess"));
}

/// Whether a program that the window has started is running.
inline bool isProcessRunning(const MainWindow &window)
{
    const QList<QProcess *> processes = window.findChildren<QProcess *>();
    return std::any_of(processes.begin(), processes.end(), [](const QProcess *process) {
        return process->state() != QProcess::NotRunning;
    });
}
