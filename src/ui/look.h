#pragma once

#include <QtCore/QString>
#include <QtCore/QStringList>

#include <functional>

class QAbstractButton;
class QLineEdit;
class QPlainTextEdit;
class QWidget;

/// Small pieces of the look that the style sheet cannot give by itself.
namespace Look {

/// Makes the letters of a widget smaller until its text fits, but not smaller than 10 pixels: those
/// cannot be read. The function is asked again after each step.
void shrinkLetters(QWidget &widget, const std::function<bool()> &fits);

/// Widget style sheet that fills a plain QWidget with a picture. Any path is safe to pass: it
/// cannot end the rule and add another. A path with control characters gives no picture. The whole
/// picture is decoded, whatever it takes: showPicture() judges what came from outside.
QString pictureStyle(const QString &path);

/// Which of the style sheet's pictures a window of so many pixels per unit shows: 1, 2 or 3.
int pictureDensity(qreal devicePixelRatio);

/// Applies the style sheet again after a property that its rules select on has changed.
void refreshStyle(QWidget *widget);

/// Text for a button that shows it letter by letter: no ampersand is taken for a shortcut.
QString buttonText(const QString &text);

/// Gives a radio button or check box a text that is broken into lines of at most width pixels,
/// which buttons do not do by themselves. Screen readers get it in one piece.
void setWrappedText(QAbstractButton *button, const QString &text, int width);

/// Gives an edit a hint in the style sheet's colour: later releases of Qt 5.15 halve its opacity,
/// which makes it too faint to read.
void setHint(QLineEdit *edit, const QString &text);
void setHint(QPlainTextEdit *edit, const QString &text);

/// Swaps the left and right margins of the layouts in a window that is read from right to left,
/// which the framework does not do.
void mirrorMargins(QWidget &window);

/// Tells screen readers what a page shows now. While there is nothing to do on it, the page itself
/// has the focus, and screen readers read a new name of the focused widget at once: keep it short.
void sayStatus(QWidget &page, const QStringList &texts);

} // namespace Look
