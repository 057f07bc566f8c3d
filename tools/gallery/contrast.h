#pragma once

#include "platform/preferences.h"

#include <QtCore/QHash>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtGui/QColor>

class QWidget;

namespace Gallery {

/// A text and what it stands on, as painted.
struct Contrast
{
    QString widget; ///< class and object name
    QString text;
    QColor ink;
    QColor ground; ///< where the text is read worst
    double ratio;  ///< as WCAG defines it, 1 to 21
};

/// WCAG's contrast ratio of two opaque colours.
double contrastRatio(const QColor &one, const QColor &other);

/// High-contrast schemes as the system brings them along: "dark" and "light".
QHash<QString, Platform::ContrastScheme> contrastSchemes();

/// Measures every visible text of the window by painting it with and without its ink.
QList<Contrast> measureContrast(QWidget &window);

/// Whether the widget shows a text of its own, and which.
QString shownText(const QWidget &widget);

} // namespace Gallery
