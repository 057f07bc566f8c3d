#pragma once

#include "wizard/mainwindow.h"

#include <QtCore/QProcess>
#include <algorithm>

// What tests ask of the main window that it does not tell by itself.

/// The layer that dims the window while a dialog is open.
inline QWidget *overlay(const MainWindow &window)
{
    // The only direct child of the window that is a plain widget.
    const QList<QWidget *> children =
        window.findChildren<QWidget *>(QString(), Qt::FindDirectChildrenOnly);
    for (QWidget *child : children) {
        if (qstrcmp(child->metaObject()->className(), "QWidget") == 0)
            return child;
    }
    return nullptr;
}

/// Whether a program that the window has started is running.
inline bool isProcessRunning(const MainWindow &window)
{
    const QList<QProcess *> processes = window.findChildren<QProcess *>();
    return std::any_of(processes.begin(), processes.end(), [](const QProcess *process) {
        return process->state() != QProcess::NotRunning;
    });
}
