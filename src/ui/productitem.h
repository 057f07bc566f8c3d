#pragma once

#include "ui_productitem.h"

#include <QtWidgets/QWidget>

/// The tile of one product: icon, name and one-line description.
class ProductItem : public QWidget, public Ui::ProductItem
{
    Q_OBJECT

public:
    ProductItem(const QString &iconPath, const QString &name, const QString &description,
                QWidget *parent = nullptr);
};
