#include "tests/support/testcase.h"
#include "ui/productitem.h"

#include <QtTest/QTest>

class TestProductItem : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void tileShowsItsProduct();
    void textsAreShownAsTheyStand();
};

void TestProductItem::tileShowsItsProduct()
{
    const ProductItem item(QStringLiteral("/a/pid_5.png"), QStringLiteral("Name"),
                           QStringLiteral("What it does"));
    QCOMPARE(item.windowTitle(), QStringLiteral("ProductItem"));
    QCOMPARE(item.imgIcon->styleSheet(),
             QStringLiteral(".QWidget{border-image: url(/a/pid_5.png);}"));
    QCOMPARE(item.label_3->text(), QStringLiteral("Name"));
    QCOMPARE(item.label_4->text(), QStringLiteral("What it does"));
    QVERIFY(item.label_4->wordWrap());
    QVERIFY(item.imgIcon->minimumSize() == QSize(40, 40));
    QVERIFY(!item.imgButton->isVisibleTo(&item));
}

void TestProductItem::textsAreShownAsTheyStand()
{
    const ProductItem item(QString(), QStringLiteral("<b>A & B</b>"),
                           QStringLiteral("<img src=x>"));
    QCOMPARE(item.label_3->textFormat(), Qt::PlainText);
    QCOMPARE(item.label_4->textFormat(), Qt::PlainText);
}

QTEST_MAIN(TestProductItem)
#include "test_productitem.moc"
