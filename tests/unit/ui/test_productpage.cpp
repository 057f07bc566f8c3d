#include "tests/support/analyticsrecord.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/productitem.h"
#include "ui/productpage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestProductPage : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void firstShowListsAllInOrder();
    void tabsAreNamedAndNumbered();
    void tabShowsItsCategory_data();
    void tabShowsItsCategory();
    void changingTabRebuildsTheListOnce();
    void sameKeysAreConcatenated();
    void unknownAndEmptyKeysAreNeverShown();
    void emptyCatalogueStillWorks();
    void clickOpensAndReports();
    void clickWithoutLinkIsReportedAlone();
    void closingReportsTheResult_data();
    void closingReportsTheResult();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

namespace {

QList<QJsonObject> categories(const char *json)
{
    QList<QJsonObject> categories;
    const QJsonArray elements = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &element : elements)
        categories += element.toObject();
    return categories;
}

// Not in the order of the tabs, on purpose.
const char catalogue[] = R"([
  {"key": "utilities", "list": [{"name": "U1", "pid": 1234, "url": ""}]},
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

} // namespace

void TestProductPage::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    AnalyticsRecord::restart();
}

void TestProductPage::cleanup()
{
    m_sandbox.reset();
}

void TestProductPage::firstShowListsAllInOrder()
{
    const ProductPage page(nullptr, categories(catalogue));
    QVERIFY(page.btnAll->isChecked());
    QCOMPARE(names(page), QStringLiteral("D1 D2 O1 U1"));
    QCOMPARE(page.label_3->text(), QStringLiteral("More Apps You Might Like"));
    QCOMPARE(page.lstProduct->item(0)->sizeHint(), QSize(168, 148));
    QCOMPARE(
        page.lstProduct->item(3)->data(Qt::UserRole).toJsonObject().value(QLatin1String("pid")),
        QJsonValue(1234));
}

void TestProductPage::tabsAreNamedAndNumbered()
{
    const ProductPage page(nullptr, {});
    int number = 0;
    for (const QPushButton *tab :
         {page.btnAll, page.btnCreativity, page.btnProductivity, page.btnUtility}) {
        QCOMPARE(tab->objectName(), QStringLiteral("CheckableBtn"));
        QCOMPARE(tab->property("productType"), QVariant(++number));
        QVERIFY(tab->isCheckable() && tab->autoExclusive());
    }
}

void TestProductPage::tabShowsItsCategory_data()
{
    QTest::addColumn<int>("tab");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("shown");
    QTest::addColumn<QString>("pageType");
    QTest::newRow("creativity") << 2 << "Creativity"
                                << "D1 D2"
                                << "Creativity";
    QTest::newRow("productivity") << 3 << "Productivity"
                                  << "O1"
                                  << "Productivity";
    QTest::newRow("utility") << 4 << "Utility"
                             << "U1"
                             << "Utility";
}

void TestProductPage::tabShowsItsCategory()
{
    QFETCH(int, tab);
    const LinkCatcher links;
    ProductPage page(nullptr, categories(catalogue));
    QPushButton *buttons[] = {page.btnAll, page.btnCreativity, page.btnProductivity,
                              page.btnUtility};
    buttons[tab - 1]->click();
    QTEST(page.label_3->text(), "title");
    QTEST(names(page), "shown");

    Q_EMIT page.lstProduct->itemClicked(page.lstProduct->item(0));
    QTEST(AnalyticsRecord::events()
              .constLast()
              .properties.value(QLatin1String("pagetype"))
              .toString(),
          "pageType");

    page.btnAll->click();
    QCOMPARE(names(page), QStringLiteral("D1 D2 O1 U1"));
}

void TestProductPage::changingTabRebuildsTheListOnce()
{
    ProductPage page(nullptr, categories(catalogue));
    QSignalSpy reset(page.lstProduct->model(), &QAbstractItemModel::modelReset);
    page.btnUtility->click();
    QCOMPARE(reset.size(), 1);
    QCOMPARE(names(page), QStringLiteral("U1"));
    page.btnUtility->click(); // a second click on the same tab changes nothing
    QCOMPARE(reset.size(), 1);
}

void TestProductPage::sameKeysAreConcatenated()
{
    const ProductPage page(nullptr, categories(R"([
        {"key": "utilities", "list": [{"name": "A"}]},
        {"key": "digital_creativity", "list": [{"name": "B"}]},
        {"key": "utilities", "list": [{"name": "C"}, {"name": "A"}]}])"));
    QCOMPARE(names(page), QStringLiteral("B A C A"));
}

void TestProductPage::unknownAndEmptyKeysAreNeverShown()
{
    ProductPage page(nullptr, categories(R"([
        {"key": "games", "list": [{"name": "G"}]}, {"key": "", "list": [{"name": "E"}]},
        {"list": [{"name": "M"}]}, {"key": 4, "list": [{"name": "N"}]},
        {"key": "utilities", "list": {"name": "X"}}])"));
    QCOMPARE(names(page), QString());
    for (QPushButton *tab :
         {page.btnCreativity, page.btnProductivity, page.btnUtility, page.btnAll}) {
        tab->click();
        QCOMPARE(names(page), QString());
    }
}

void TestProductPage::emptyCatalogueStillWorks()
{
    ProductPage page(nullptr, {});
    page.btnCreativity->click();
    QCOMPARE(page.label_3->text(), QStringLiteral("Creativity"));
    QCOMPARE(page.lstProduct->count(), 0);
    QVERIFY(page.btnClose->isEnabled());
}

void TestProductPage::clickOpensAndReports()
{
    const LinkCatcher links;
    ProductPage page(nullptr, categories(catalogue));
    page.resize(720, 480);
    page.show();
    const QRect place = page.lstProduct->visualItemRect(page.lstProduct->item(0));
    QTest::mouseClick(page.lstProduct->viewport(), Qt::LeftButton, {}, place.center());
    QCOMPARE(links.links(), {QUrl(QStringLiteral("https://d1.example/?a=b c"))});
    const AnalyticsRecord::Event event = AnalyticsRecord::events().constLast();
    QCOMPARE(event.action, QStringLiteral("ReCommend"));
    QCOMPARE(event.properties,
             QJsonObject({{QLatin1String("Clickurl"), QLatin1String("https://d1.example/?a=b c")},
                          {QLatin1String("pid"), QLatin1String("1")},
                          {QLatin1String("pagetype"), QLatin1String("allpage")}}));
}

void TestProductPage::clickWithoutLinkIsReportedAlone()
{
    const LinkCatcher links;
    const ProductPage page(nullptr, categories(catalogue));
    Q_EMIT page.lstProduct->itemClicked(page.lstProduct->item(3));
    QVERIFY(links.links().isEmpty());
    const AnalyticsRecord::Event event = AnalyticsRecord::events().constLast();
    QCOMPARE(event.action, QStringLiteral("ReCommend"));
    QCOMPARE(event.properties,
             QJsonObject({{QLatin1String("Clickurl"), QLatin1String("")},
                          {QLatin1String("pid"), QLatin1String("1234")},
                          {QLatin1String("pagetype"), QLatin1String("allpage")}}));
}

void TestProductPage::closingReportsTheResult_data()
{
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("result");
    QTest::newRow("success") << true << "success";
    QTest::newRow("failure") << false << "failure";
}

void TestProductPage::closingReportsTheResult()
{
    QFETCH(bool, success);
    QFETCH(QString, result);
    ProductPage page(nullptr, categories(catalogue));
    page.setUninstallResult(success);
    QVERIFY(quitsAfter([&page] { page.btnClose->click(); }));
    const AnalyticsRecord::Event event = AnalyticsRecord::events().constLast();
    QCOMPARE(event.action, QStringLiteral("Click_exit"));
    QCOMPARE(event.properties,
             QJsonObject({{QLatin1String("pagesource"), QLatin1String("moreproducts")},
                          {QLatin1String("result"), result}}));
}

QTEST_MAIN(TestProductPage)
#include "test_productpage.moc"
