#include "ui/tabbutton.h"

#include "ui/look.h"

#include <QtWidgets/QStyleOptionButton>

void TabButton::resizeEvent(QResizeEvent *event)
{
    QPushButton::resizeEvent(event);
    QStyleOptionButton option;
    initStyleOption(&option);
    const int room = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).width();
    Look::shrinkLetters(*this,
                        [this, room] { return fontMetrics().horizontalAdvance(text()) <= room; });
}
