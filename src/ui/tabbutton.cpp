#include "ui/tabbutton.h"

#include "ui/look.h"

#include <QtGui/QFontInfo>
#include <QtWidgets/QStyleOptionButton>

void TabButton::resizeEvent(QResizeEvent *event)
{
    QPushButton::resizeEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).width();
    int size = QFontInfo(font()).pixelSize();
    while (fontMetrics().horizontalAdvance(text()) > room && --size >= Look::leastFontSize)
        setStyleSheet(QStringLiteral("font-size: %1px").arg(size));
}
