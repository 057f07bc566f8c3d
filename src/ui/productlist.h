#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtWidgets/QListWidget>

/// A list of product tiles. Each item keeps its product's record under Qt::UserRole. Keys click
/// the current item as the mouse does.
class ProductList : public QListWidget
{
    Q_OBJECT

public:
    explicit ProductList(QWidget *parent);

    /// Appends a tile for each product record, in order.
    void addProducts(const QList<QJsonObject> &products);

    /// Opens the item's product in the browser, if it has a link, and reports the click.
    static void openProduct(const QListWidgetItem *item, const QString &pageType);

protected:
    void keyPressEvent(QKeyEvent *event) override;
};
