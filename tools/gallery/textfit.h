#pragma once

#include <QtCore/QRect>
#include <QtCore/QString>

class QWidget;

namespace Gallery {

/// Where a widget shows its text, in its own coordinates.
QRect textRoom(const QWidget &widget);

/// Says what room, in pixels, the text that a widget shows needs and has. Empty when it fits, and
/// for typed texts, which scroll.
QString textMisfit(const QWidget &widget);

} // namespace Gallery
