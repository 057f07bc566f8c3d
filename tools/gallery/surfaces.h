#pragma once

#include <QtCore/QList>
#include <QtCore/QString>

#include <functional>
#include <memory>

class QWidget;

/// Everything that the program can show: each window, page, dialog and state once, made from the
/// real widgets. What looks at the interface as a whole (the gallery, the walks over every
/// language) goes through this list.
namespace Gallery {

struct Surface
{
    QString name; ///< fit for a file name

    /// Makes the window in this state, shown and laid out. It does not change any more by itself.
    std::function<std::unique_ptr<QWidget>()> show;
};

/// The surfaces in the order in which a user may meet them. Texts and products come from the
/// installed translator and the configuration document, so both must be there before.
QList<Surface> surfaces();

} // namespace Gallery
