#include "ui/productlist.h"

#include "analytics/events.h"
#include "config/content/configcontent.h"
#include "ui/productitem.h"

#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtGui/QKeyEvent>

namespace {

QString nameOf(const QJsonObject &product)
{
    return Config::jsonString(product, QStringLiteral("name"));
}

QString descriptionOf(const QJsonObject &product)
{
    return Config::jsonString(product, QStringLiteral("desc"));
}

} // namespace

ProductList::ProductList(QWidget *parent)
    : QListWidget(parent)
{
}

void ProductList::addProducts(const QList<QJsonObject> &products)
{
    for (const QJsonObject &product : products) {
        auto *item = new QListWidgetItem;
        item->setSizeHint(QSize(168, 148));
        item->setData(Qt::UserRole, product);
        item->setData(Qt::AccessibleTextRole, nameOf(product));
        item->setData(Qt::AccessibleDescriptionRole, descriptionOf(product));
        addItem(item);
    }
}

QWidget *ProductList::itemWidget(QListWidgetItem *item)
{
    QWidget *tile = QListWidget::itemWidget(item);
    if (!tile) {
        const QJsonObject product = item->data(Qt::UserRole).toJsonObject();
        // Created with its final parent, so that it is polished only once.
        tile = new ProductItem(Config::productIconPath(product), nameOf(product),
                               descriptionOf(product), viewport());
        setItemWidget(item, tile);
    }
    return tile;
}

void ProductList::showEvent(QShowEvent *event)
{
    QListWidget::showEvent(event);
    makeTilesInView();
}

void ProductList::scrollContentsBy(int dx, int dy)
{
    QListWidget::scrollContentsBy(dx, dy);
    makeTilesInView();
}

void ProductList::updateGeometries()
{
    QListWidget::updateGeometries();
    makeTilesInView();
}

void ProductList::makeTilesInView()
{
    if (!isVisible())
        return;
    // All of them before the first tile: each new tile makes the view lay out its rows again.
    QList<QListWidgetItem *> inView;
    for (int row = 0; row < count(); ++row) {
        if (visualRect(model()->index(row, 0)).intersects(viewport()->rect()))
            inView += item(row);
    }
    for (QListWidgetItem *item : qAsConst(inView))
        itemWidget(item);
    executeDelayedItemsLayout(); // gives the new tiles their places
}

void ProductList::openProduct(const QListWidgetItem *item, const QString &pageType)
{
    const QJsonObject product = item->data(Qt::UserRole).toJsonObject();
    const QString link = Config::jsonString(product, QStringLiteral("url"));
    if (!link.isEmpty())
        QDesktopServices::openUrl(QUrl(link));
    Analytics::reportRecommend(link, product.value(QStringLiteral("pid")).toInt(-1), pageType);
}

void ProductList::keyPressEvent(QKeyEvent *event)
{
    const bool isClick = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter ||
                         event->key() == Qt::Key_Space;
    if (!isClick || !currentItem())
        QListWidget::keyPressEvent(event);
    else
        Q_EMIT itemClicked(currentItem());
}
