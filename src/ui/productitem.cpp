#include "ui/productitem.h"

#include "ui/picture.h"

ProductItem::ProductItem(const QString &iconPath, const QString &name, const QString &description,
                         QWidget *parent)
    : QWidget(parent)
{
    setupUi(this);
    bottomBar->hide();
    Look::showPicture(*imgIcon, iconPath);
    label_3->setText(name);
    label_4->setText(description);
}
