#pragma once

#include <QtCore/QString>

class QWidget;

/// Small pieces of the look that the style sheet cannot give by itself.
namespace Look {

/// Widget style sheet that fills a plain QWidget with a picture. Any path is safe to pass: it
/// cannot end the rule and add another.
QString pictureStyle(const QString &path);

/// Applies the style sheet again after a property that its rules select on has changed.
void refreshStyle(QWidget *widget);

/// Text for a button that shows it letter by letter: no ampersand is taken for a shortcut.
QString buttonText(const QString &text);

} // namespace Look
