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
    // All rows before the first tile: each new row makes the view go through all its tiles.
    const int first = count();
    for (const QJsonObject &product : products) {
        auto *item = new QListWidgetItem;
        item->setSizeHint(QSize(168, 148));
        item->setData(Qt::UserRole, product);
        item->setData(Qt::AccessibleTextRole, nameOf(product));
        item->setData(Qt::AccessibleDescriptionRole, descriptionOf(product));
        addItem(item);
    }
    for (int i = 0; i < products.size(); ++i) {
        const QJsonObject &product = products.at(i);
        // Created with its final parent, so that it is polished only once.
        setItemWidget(item(first + i),
                      new ProductItem(Config::productIconPath(product), nameOf(product),
                                      descriptionOf(product), viewport()));
    }
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
