#pragma once

#include "ui_productpage.h"

#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QMap>
#include <QtWidgets/QWidget>

class QListWidgetItem;

/// The last page: the maker's other products in three categories behind four tabs. Closing it ends
/// the application.
class ProductPage : public QWidget, public Ui::ProductPage
{
    Q_OBJECT

public:
    /// Takes the catalogue from the configuration document.
    explicit ProductPage(QWidget *parent = nullptr);
    ProductPage(QWidget *parent, const QList<QJsonObject> &categories);

    /// Whether the uninstallation succeeded; reported when the page is closed.
    void setUninstallResult(bool success);

    /// The catalogue's products in a category, also in one that no tab shows.
    QList<QJsonObject> productsIn(const QString &category) const;

private Q_SLOTS:
    void tabButtonClicked(bool checked);
    void lstProductItemClicked(QListWidgetItem *item);

private:
    void setUpTabs();
    void fillCatalogue(const QList<QJsonObject> &categories);
    void leave();

    int m_currentTab = 0;
    QMap<QString, QList<QJsonObject>> m_catalogue;
    bool m_uninstallResult = true;
};
