#include "tests/support/linkcatcher.h"
#include "tests/support/patience.h"
#include "tests/unit/ui/pagetest.h"
#include "ui/productitem.h"
#include "ui/productpage.h"
#include "ui/tabbutton.h"

#include <QtGui/QAccessible>
#include <QtGui/QFontInfo>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QScrollBar>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOptionButton>

#include <algorithm>

/// The product page, its list and its tiles.
class TestProducts : public PageTest
{
    Q_OBJECT

private Q_SLOTS:
    void tileShowsItsProductAsItStands();
    void screenReadersGetNameAndDescription();
    void keysClickTheCurrentProduct();
    void tilesAreMadeAsTheyComeIntoView();
    void tilesAreMadeWhenTheListIsShownAgain();
    void tabsAreNamedAndNumbered();
    void onlyTooLongTabTextGetsSmallerLetters();
    void tabShowsItsCategory_data();
    void tabShowsItsCategory();
    void changingTabRebuildsTheListOnce();
    void everyCategoryIsKept();
    void oddCatalogues_data();
    void oddCatalogues();
    void clickOpensAndReports_data();
    void clickOpensAndReports();
    void closingReportsTheResult();
};

namespace {

// Not in the order of the tabs, on purpose.
const char catalogue[] = R"([
  {"key": "utilities", "list": [{"name": "U1", "pid": 1234, "url": ""}]},
  {"key": "games", "list": [{"name": "G1"}]},
  {"key": "digital_creativity", "list": [{"name": "D1", "pid": 1, "url": "https://d1.example/?a=b c"},
                                         {"name": "D2"}]},
  {"key": "office_efficiency", "list": [{"name": "O1"}]}
])";

QString names(const ProductPage &page)
{
    QStringList names;
    for (int row = 0; row < page.lstProduct->count(); ++row) {
        const auto *tile =
            qobject_cast<ProductItem *>(page.lstProduct->itemWidget(page.lstProduct->item(row)));
        names += tile->label_3->text();
    }
    return names.join(QLatin1Char(' '));
}

QList<QPushButton *> tabs(const ProductPage &page)
{
    return {page.btnAll, page.btnCreativity, page.btnProductivity, page.btnUtility};
}

} // namespace

void TestProducts::tileShowsItsProductAsItStands()
{
    const ProductItem item("/a/pid_5.png"_s, "<b>A & B</b>"_s, "<img src=x>"_s);
    QCOMPARE(item.windowTitle(), "ProductItem"_s);
    QCOMPARE(item.imgIcon->styleSheet(), ".QWidget{border-image: url(/a/pid_5.png);}"_s);
    QCOMPARE(item.label_3->text(), "<b>A & B</b>"_s);
    QCOMPARE(item.label_4->text(), "<img src=x>"_s);
    QCOMPARE(item.label_3->textFormat(), Qt::PlainText);
    QCOMPARE(item.label_4->textFormat(), Qt::PlainText);
    QVERIFY(!item.imgButton->isVisibleTo(&item));
}

void TestProducts::screenReadersGetNameAndDescription()
{
    ProductList list(nullptr);
    list.addProducts(objects(R"([{"name": "One"}, {"name": "Two", "desc": "Does two"}])"));
    list.show();
    QAccessibleInterface *view = QAccessible::queryAccessibleInterface(&list);
    QVERIFY(view);
    QCOMPARE(view->childCount(), 2);
    QCOMPARE(view->child(1)->text(QAccessible::Name), "Two"_s);
    QCOMPARE(view->child(1)->text(QAccessible::Description), "Does two"_s);
}

void TestProducts::keysClickTheCurrentProduct()
{
    ProductList list(nullptr);
    list.addProducts(objects(R"([{"name": "One"}, {"name": "Two"}])"));
    list.show();
    int clicks = 0;
    connect(&list, &QListWidget::itemClicked, this, [&clicks] { ++clicks; });
    QTest::keyClick(&list, Qt::Key_Return); // there is no current one
    QCOMPARE(clicks, 0);
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Down); // moves, as in any list
    QCOMPARE(list.currentRow(), 1);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        QTest::keyClick(&list, key);
    QCOMPARE(clicks, 3);
}

void TestProducts::tilesAreMadeWhenTheListIsShownAgain()
{
    ProductList list(nullptr);
    list.show();
    list.hide();
    list.addProducts(objects(R"([{"name": "One"}])"));
    QVERIFY(list.visualItemRect(list.item(0)).isValid()); // the rows have their places already
    QCOMPARE(list.findChildren<ProductItem *>().size(), 0);
    list.show();
    QCOMPARE(list.findChildren<ProductItem *>().size(), 1);
}

void TestProducts::tilesAreMadeAsTheyComeIntoView()
{
    constexpr int products = 500;
    QList<QJsonObject> list;
    for (int i = 0; i < products; ++i)
        list += {{"name"_s, QString::number(i)}};
    ProductPage page(nullptr, {});
    ProductList *shown = page.lstProduct;
    shown->addProducts(list);
    const auto tiles = [shown] { return shown->findChildren<ProductItem *>(); };
    const auto isAsIfAllWereMade = [&] {
        for (int row = 0; row < products; ++row) {
            const QRect place = shown->visualItemRect(shown->item(row));
            if (!place.intersects(shown->viewport()->rect()))
                continue;
            const QList<ProductItem *> all = tiles();
            if (std::none_of(all.begin(), all.end(), [&](const ProductItem *tile) {
                    return tile->isVisible() && tile->geometry() == place &&
                           tile->label_3->text() == QString::number(row);
                }))
                return false;
        }
        return true;
    };
    QCOMPARE(tiles().size(), 0);
    page.resize(720, 480);
    page.show();
    QCOMPARE(shown->visualItemRect(shown->item(0)).size(), QSize(168, 148));
    QVERIFY(isAsIfAllWereMade());
    QVERIFY(tiles().size() < 20);

    const QAccessibleInterface *view = QAccessible::queryAccessibleInterface(shown);
    QCOMPARE(view->childCount(), products);
    QCOMPARE(view->child(products - 1)->text(QAccessible::Name), QString::number(products - 1));

    shown->setCurrentRow(0);
    QTest::keyClick(shown, Qt::Key_PageDown);
    QVERIFY(isAsIfAllWereMade());
    QTest::keyClick(shown, Qt::Key_End);
    QCOMPARE(shown->currentRow(), products - 1);
    QVERIFY(isAsIfAllWereMade());
    shown->verticalScrollBar()->setValue(shown->verticalScrollBar()->maximum() / 2);
    QVERIFY(isAsIfAllWereMade());
    shown->verticalScrollBar()->setValue(0); // to those that have been there before
    QVERIFY(isAsIfAllWereMade());
    page.resize(720, 900);
    AWAIT(isAsIfAllWereMade());
    QVERIFY(tiles().size() < 100);

    page.btnCreativity->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QCOMPARE(tiles().size(), 0);
    shown->addProducts(list);
    AWAIT(isAsIfAllWereMade());

    page.hide();
    page.btnUtility->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    shown->addProducts(list);
    shown->doItemsLayout();
    page.show();
    QVERIFY(isAsIfAllWereMade());
}

void TestProducts::tabsAreNamedAndNumbered()
{
    const ProductPage page(nullptr, {});
    int number = 0;
    for (const QPushButton *tab : tabs(page)) {
        QCOMPARE(tab->objectName(), "CheckableBtn"_s);
        QCOMPARE(tab->property("productType"), QVariant(++number));
        QVERIFY(tab->isCheckable() && tab->autoExclusive());
        QCOMPARE(tab->isChecked(), number == 1);
    }
}

void TestProducts::onlyTooLongTabTextGetsSmallerLetters()
{
    const auto tabOf = [](int width) {
        auto tab = std::make_unique<TabButton>("Productivity"_s);
        QFont font = tab->font();
        font.setPixelSize(14);
        tab->setFont(font);
        tab->resize(width, 32);
        return tab;
    };
    const auto letterSize = [&tabOf](int width) {
        const auto tab = tabOf(width);
        tab->show();
        return QFontInfo(tab->font()).pixelSize();
    };
    const auto tab = tabOf(400);
    QStyleOptionButton option;
    option.initFrom(tab.get());
    const int frame =
        400 -
        tab->style()->subElementRect(QStyle::SE_PushButtonContents, &option, tab.get()).width();
    const int wide = tab->fontMetrics().horizontalAdvance(tab->text()) + frame;
    QCOMPARE(letterSize(400), 14);
    QCOMPARE(letterSize(wide), 14);
    QVERIFY(letterSize(wide - 1) < 14);
    QCOMPARE(letterSize(frame + 1), 10); // can still be read
}

void TestProducts::tabShowsItsCategory_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("pageType");
    const auto row = [](const char *title, int tab, const char *shown, const char *pageType) {
        QTest::newRow(title) << tab << QString::fromUtf8(title) << QString::fromUtf8(shown)
                             << QString::fromUtf8(pageType);
    };
    row("More Apps You Might Like", 0, "D1 D2 O1 U1", "allpage");
    row("Creativity", 1, "D1 D2", "Creativity");
    row("Productivity", 2, "O1", "Productivity");
    row("Utility", 3, "U1", "Utility");
}

void TestProducts::tabShowsItsCategory()
{
    QFETCH(const int, tab);
    const LinkCatcher links;
    ProductPage page(nullptr, objects(catalogue));
    QCOMPARE(names(page), "D1 D2 O1 U1"_s);
    tabs(page).at(tab)->click();
    QTEST(page.label_3->text(), "title");
    QTEST(page.accessibleName(), "title");
    QTEST(names(page), "shown");
    Q_EMIT page.lstProduct->itemClicked(page.lstProduct->item(0));
    QTEST(lastProperty("pagetype"), "pageType");
    page.btnAll->click();
    QCOMPARE(page.label_3->text(), "More Apps You Might Like"_s);
    QCOMPARE(names(page), "D1 D2 O1 U1"_s);
}

void TestProducts::changingTabRebuildsTheListOnce()
{
    ProductPage page(nullptr, objects(catalogue));
    const QSignalSpy reset(page.lstProduct->model(), &QAbstractItemModel::modelReset);
    page.btnUtility->click();
    QCOMPARE(reset.size(), 1);
    page.btnUtility->click(); // a second click on the same tab changes nothing
    QCOMPARE(reset.size(), 1);
}

void TestProducts::everyCategoryIsKept()
{
    const ProductPage page(nullptr, objects(catalogue));
    QCOMPARE(page.productsIn("games"_s), {object(R"({"name": "G1"})")});
    QCOMPARE(page.productsIn("utilities"_s).size(), 1);
    QCOMPARE(page.productsIn("none"_s).size(), 0);
}

void TestProducts::oddCatalogues_data()
{
    QTest::addColumn<QByteArray>("categories");
    QTest::addColumn<QString>("shown");
    QTest::newRow("none") << QByteArray("[]") << QString();
    QTest::newRow("one key twice") << QByteArray(R"([
        {"key": "utilities", "list": [{"name": "A"}]},
        {"key": "digital_creativity", "list": [{"name": "B"}]},
        {"key": "utilities", "list": [{"name": "C"}, {"name": "A"}]}])")
                                   << "B A C A";
    QTest::newRow("unknown, empty and mistyped") << QByteArray(R"([
        {"key": "games", "list": [{"name": "G"}]}, {"key": "", "list": [{"name": "E"}]},
        {"list": [{"name": "M"}]}, {"key": 4, "list": [{"name": "N"}]},
        {"key": "utilities", "list": {"name": "X"}}])")
                                                 << QString();
}

void TestProducts::oddCatalogues()
{
    QFETCH(const QByteArray, categories);
    ProductPage page(nullptr, objects(categories.constData()));
    QTEST(names(page), "shown");
    page.btnProductivity->click();
    QCOMPARE(page.label_3->text(), "Productivity"_s);
    QCOMPARE(names(page), QString());
    QVERIFY(page.btnClose->isEnabled());
}

void TestProducts::clickOpensAndReports_data()
{
    QTest::addColumn<int>("row");
    QTest::addColumn<QList<QUrl>>("links");
    QTest::addColumn<QString>("event");
    QTest::newRow("with link")
        << 0 << QList<QUrl>{QUrl("https://d1.example/?a=b c"_s)}
        << R"(ReCommend {"Clickurl":"https://d1.example/?a=b c","pagetype":"allpage","pid":"1"})";
    QTest::newRow("without id") << 1 << QList<QUrl>()
                                << R"(ReCommend {"Clickurl":"","pagetype":"allpage","pid":"-1"})";
    QTest::newRow("without link")
        << 3 << QList<QUrl>() << R"(ReCommend {"Clickurl":"","pagetype":"allpage","pid":"1234"})";
}

void TestProducts::clickOpensAndReports()
{
    QFETCH(const int, row);
    const LinkCatcher links;
    ProductPage page(nullptr, objects(catalogue));
    page.resize(720, 800);
    page.show();
    const QListWidgetItem *item = page.lstProduct->item(row);
    QTest::mouseClick(page.lstProduct->viewport(), Qt::LeftButton, {},
                      page.lstProduct->visualItemRect(item).center());
    QTEST(links.links(), "links");
    QTEST(lastEvent(), "event");
}

void TestProducts::closingReportsTheResult()
{
    ProductPage page(nullptr, {});
    for (const bool success : {true, false}) { // true until it is told otherwise
        if (!success)
            page.setUninstallResult(success);
        QVERIFY(quitsAfter([&page] { page.btnClose->click(); }));
        QCOMPARE(lastEvent(), R"(Click_exit {"pagesource":"moreproducts","result":"%1"})"_s.arg(
                                  success ? "success"_s : "failure"_s));
    }
}

QTEST_MAIN(TestProducts)
#include "test_products.moc"
