#include "ui/productitem.h"

#include "ui/look.h"

ProductItem::ProductItem(const QString &iconPath, const QString &name, const QString &description,
                         QWidget *parent)
    : QWidget(parent)
{
    setupUi(this);
    bottomBar->hide();
    imgIcon->setStyleSheet(Look::pictureStyle(iconPath));
    label_3->setText(name);
    label_4->setText(description);
}
