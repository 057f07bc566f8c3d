#pragma once

#include <QtWidgets/QPushButton>

/// A button that shows a picture and no text. It has the size that its form fixes and asks for no
/// other: a push button would measure a text that it does not have, and have fonts loaded for it,
/// which no splash needs before it can be seen.
///
/// Without meta-object of its own on purpose: style sheets address it as the QPushButton it is.
class IconButton : public QPushButton
{
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override { return minimumSize(); }
    QSize minimumSizeHint() const override { return minimumSize(); }
};
