#include "ui/productpage.h"

#include "analytics/events.h"
#include "config/content/configcontent.h"
#include "ui/look.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QVariant>

namespace {

const char productTypeProperty[] = "productType";

enum Tab { All = 1, Creativity = 2, Productivity = 3, Utility = 4 };

QStringList categoriesOf(int tab)
{
    const QString creativity = QStringLiteral("digital_creativity");
    const QString office = QStringLiteral("office_efficiency");
    const QString utilities = QStringLiteral("utilities");
    switch (tab) {
    case All:
        return {creativity, office, utilities};
    case Creativity:
        return {creativity};
    case Productivity:
        return {office};
    case Utility:
        return {utilities};
    default:
        return {};
    }
}

QString pageTypeOf(int tab)
{
    switch (tab) {
    case All:
        return QStringLiteral("allpage");
    case Creativity:
        return QStringLiteral("Creativity");
    case Productivity:
        return QStringLiteral("Productivity");
    case Utility:
        return QStringLiteral("Utility");
    default:
        return {};
    }
}

} // namespace

ProductPage::ProductPage(QWidget *parent)
    : ProductPage(parent, Config::jsonObjectList(Config::loadConfig(), QStringLiteral("apps")))
{
}

ProductPage::ProductPage(QWidget *parent, const QList<QJsonObject> &categories)
    : QWidget(parent)
{
    setupUi(this);
    setUpTabs();
    fillCatalogue(categories);

    for (QPushButton *tab : {btnAll, btnCreativity, btnProductivity, btnUtility})
        connect(tab, &QPushButton::toggled, this, &ProductPage::tabButtonClicked);
    connect(lstProduct, &QListWidget::itemClicked, this, &ProductPage::lstProductItemClicked);
    connect(btnClose, &QPushButton::clicked, this, &ProductPage::leave);
    btnAll->setChecked(true);
}

void ProductPage::setUpTabs()
{
    const QList<QPair<QPushButton *, int>> tabs{{btnAll, All},
                                                {btnCreativity, Creativity},
                                                {btnProductivity, Productivity},
                                                {btnUtility, Utility}};
    for (const auto &[button, tab] : tabs) {
        button->setObjectName(QStringLiteral("CheckableBtn"));
        button->setProperty(productTypeProperty, tab);
    }
}

void ProductPage::fillCatalogue(const QList<QJsonObject> &categories)
{
    for (const QJsonObject &category : categories) {
        const QString key = Config::jsonString(category, QStringLiteral("key"));
        if (!key.isEmpty())
            m_catalogue[key] += Config::jsonObjectList(category, QStringLiteral("list"));
    }
}

void ProductPage::setUninstallResult(bool success)
{
    m_uninstallResult = success;
}

QList<QJsonObject> ProductPage::productsIn(const QString &category) const
{
    return m_catalogue.value(category);
}

void ProductPage::tabButtonClicked(bool checked)
{
    if (!checked)
        return;
    m_currentTab = sender()->property(productTypeProperty).toInt();
    switch (m_currentTab) {
    case All:
        label_3->setText(tr("More Apps You Might Like"));
        break;
    case Creativity:
        label_3->setText(tr("Creativity"));
        break;
    case Productivity:
        label_3->setText(tr("Productivity"));
        break;
    case Utility:
        label_3->setText(tr("Utility"));
        break;
    default:
        break;
    }

    Look::sayStatus(*this, {label_3->text()});

    lstProduct->clear();
    QList<QJsonObject> products;
    const QStringList categories = categoriesOf(m_currentTab);
    for (const QString &category : categories)
        products += productsIn(category);
    lstProduct->addProducts(products);
    lstProduct->doItemsLayout();
}

void ProductPage::lstProductItemClicked(QListWidgetItem *item)
{
    ProductList::openProduct(item, pageTypeOf(m_currentTab));
}

void ProductPage::leave()
{
    Analytics::reportClickExit(QStringLiteral("moreproducts"), m_uninstallResult);
    QCoreApplication::quit();
}
