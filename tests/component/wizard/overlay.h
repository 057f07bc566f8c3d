#pragma once

#include "wizard/mainwindow.h"

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
