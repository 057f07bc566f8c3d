#include "ui/bannerpanel.h"

#include <QtGui/QPainter>
#include <QtGui/QPainterPath>

namespace {

constexpr qreal cornerRadius = 12;

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
}
