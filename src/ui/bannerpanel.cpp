#include "ui/bannerpanel.h"

#include "ui/basewindow.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr qreal cornerRadius = 12;
constexpr qreal borderWidth = 2;

} // namespace

void BannerPanel::paintEvent(QPaintEvent * /*event*/)
{
    // The style sheet has painted the picture; clear it outside the rounded corners. The inner edge
    // stays straight because the rounded rectangle reaches beyond it.
    const bool isMirrored = layoutDirection() == Qt::RightToLeft;
    QRectF rounded = rect();
    if (isMirrored)
        rounded.setLeft(-2 * cornerRadius);
    else
        rounded.setRight(width() + 2 * cornerRadius);

    QPainterPath kept;
    kept.addRoundedRect(rounded, cornerRadius, cornerRadius);
    QPainterPath all;
    all.addRect(rect());

    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setCompositionMode(QPainter::CompositionMode_Clear);
    painter.fillPath(all.subtracted(kept), Qt::black);

    // The window's border, which the picture covers.
    const auto *shownBy = qobject_cast<const BaseWindow *>(window());
    if (!shownBy || !shownBy->contrastColour().isValid())
        return;
    constexpr qreal half = borderWidth / 2;
    const qreal inner = isMirrored ? half : width() - half;
    painter.setCompositionMode(QPainter::CompositionMode_SourceOver);
    painter.setPen(QPen(shownBy->contrastColour(), borderWidth));
    painter.drawRoundedRect(rounded.adjusted(half, half, -half, -half), cornerRadius - half,
                            cornerRadius - half);
    painter.drawLine(QPointF(inner, 0), QPointF(inner, height()));
}
