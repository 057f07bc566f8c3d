#pragma once

#include <QtWidgets/QWidget>

/// A panel at the window's leading edge that is filled with a picture. It keeps the window's
/// rounded corners whatever the picture, and on the right side in a right-to-left interface.
///
/// Without meta-object of its own on purpose: style sheets that address plain QWidgets exactly, as
/// those of pictures do, must still find it.
class BannerPanel : public QWidget
{
public:
    using QWidget::QWidget;

protected:
    void paintEvent(QPaintEvent *event) override;
};
