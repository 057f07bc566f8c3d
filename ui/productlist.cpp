#include "ui/productlist.h"

#include "analytics/events.h"
#include "config/content/configcontent.h"
#include "ui/productitem.h"

#include <QtCore/QUrl>
#include <QtGui/QDesktopServices>
#include <QtGui/QKeyEvent>

ProductList::ProductList(QWidget *parent)
    : QListWidget(parent)
{
}

void ProductList::addProducts(const QList<QJsonObject> &products)
{
    for (const QJsonObject &product : products) {
        const QString name = Config::jsonString(product, QStringLiteral("name"));
        const QString description = Config::jsonString(product, QStringLiteral("desc"));
        auto *item = new QListWidgetItem(this);
        item->setSizeHint(QSize(168, 148));
        item->setData(Qt::UserRole, product);
        item->setData(Qt::AccessibleTextRole, name);
        item->setData(Qt::AccessibleDescriptionRole, description);
        setItemWidget(item, new ProductItem(Config::productIconPath(product), name, description));
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
    else if (!event->isAutoRepeat())
        Q_EMIT itemClicked(currentItem());
}
