#pragma once

#include <QtWidgets/QPushButton>

/// A button in a column of fixed width. A longer text gets smaller letters, down to those that can
/// still be read, and does not make the window wider.
///
/// Without meta-object of its own on purpose: style sheets address it as the QPushButton it is.
class TabButton : public QPushButton
{
public:
    using QPushButton::QPushButton;

    QSize sizeHint() const override { return {0, QPushButton::sizeHint().height()}; }
    QSize minimumSizeHint() const override { return {0, QPushButton::minimumSizeHint().height()}; }

protected:
    void resizeEvent(QResizeEvent *event) override;
};
