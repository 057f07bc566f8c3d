#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>
#include <memory>

class QWidget;

namespace Gallery {

/// One thing that can be clicked or typed into, in one of its states.
struct Control
{
    QString name;
    QString state; ///< "normal", "hover", "pressed", "focus" or "disabled"

    /// Makes a small window that holds the control alone, in this state.
    std::function<std::unique_ptr<QWidget>()> show;
};

/// Every look that the style sheet knows, in every state.
QList<Control> controls();

} // namespace Gallery
