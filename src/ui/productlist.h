#pragma once

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtWidgets/QListWidget>

/// A list of product tiles. Each item keeps its product's record under Qt::UserRole, and its
/// product's name and description for screen readers. Keys click the current item as the mouse
/// does. A tile is made when its item first comes into view.
class ProductList : public QListWidget
{
    Q_OBJECT

public:
    explicit ProductList(QWidget *parent);

    /// Appends a tile for each product record, in order.
    void addProducts(const QList<QJsonObject> &products);

    /// The item's tile, owned by the list; made now if it was not in view yet.
    QWidget *itemWidget(QListWidgetItem *item);

    /// Opens the item's product in the browser, if it has a link, and reports the click.
    static void openProduct(const QListWidgetItem *item, const QString &pageType);

protected:
    void keyPressEvent(QKeyEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void scrollContentsBy(int dx, int dy) override;
    void updateGeometries() override;

private:
    void makeTilesInView();
};
