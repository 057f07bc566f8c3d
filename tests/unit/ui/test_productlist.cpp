#include "tests/support/testcase.h"
#include "ui/productlist.h"

#include <QtGui/QAccessible>
#include <QtTest/QTest>

class TestProductList : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void screenReadersGetNameAndDescription();
    void otherKeysMoveAsInAnyList();
    void keysWithoutACurrentItemDoNothing();
};

namespace {

QList<QJsonObject> products(int count)
{
    QList<QJsonObject> products;
    for (int i = 0; i < count; ++i) {
        products += QJsonObject({{QLatin1String("name"), QStringLiteral("App %1").arg(i)},
                                 {QLatin1String("desc"), QStringLiteral("Does %1").arg(i)}});
    }
    return products;
}

} // namespace

void TestProductList::screenReadersGetNameAndDescription()
{
    ProductList list(nullptr);
    list.addProducts(products(2));
    list.show();
    QAccessibleInterface *view = QAccessible::queryAccessibleInterface(&list);
    QVERIFY(view);
    QCOMPARE(view->childCount(), 2);
    QCOMPARE(view->child(1)->text(QAccessible::Name), QStringLiteral("App 1"));
    QCOMPARE(view->child(1)->text(QAccessible::Description), QStringLiteral("Does 1"));
}

void TestProductList::otherKeysMoveAsInAnyList()
{
    ProductList list(nullptr);
    list.addProducts(products(3));
    list.show();
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Down);
    QCOMPARE(list.currentRow(), 1);
}

void TestProductList::keysWithoutACurrentItemDoNothing()
{
    ProductList list(nullptr);
    list.addProducts(products(1));
    int clicks = 0;
    connect(&list, &QListWidget::itemClicked, this, [&clicks] { ++clicks; });
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(clicks, 0);
    list.setCurrentRow(0);
    QTest::keyClick(&list, Qt::Key_Return);
    QCOMPARE(clicks, 1);
}

QTEST_MAIN(TestProductList)
#include "test_productlist.moc"
