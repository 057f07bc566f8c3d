#include "tests/support/literals.h"
#include "tests/support/testcase.h"
#include "ui/bannerpanel.h"
#include "ui/look.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>

class TestBannerPanel : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void outerCornersAreRounded_data();
    void outerCornersAreRounded();
};

void TestBannerPanel::outerCornersAreRounded_data()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

void TestBannerPanel::outerCornersAreRounded()
{
    QFETCH(Qt::LayoutDirection, direction);
    const QTemporaryDir folder;
    const QString file = folder.filePath("square.png"_s);
    QImage square(20, 20, QImage::Format_ARGB32);
    square.fill(Qt::red);
    QVERIFY(square.save(file));

    QWidget window;
    window.setAttribute(Qt::WA_TranslucentBackground);
    window.setLayoutDirection(direction);
    window.resize(100, 200);
    BannerPanel panel(&window);
    panel.resize(100, 200);
    panel.setStyleSheet(Look::pictureStyle(file));
    QImage image(window.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    window.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);

    const bool isMirrored = direction == Qt::RightToLeft;
    const int outer = isMirrored ? 99 : 0;
    const int inner = isMirrored ? 0 : 99;
    for (int y : {0, 199}) {
        QCOMPARE(image.pixelColor(outer, y).alpha(), 0);
        QCOMPARE(image.pixelColor(inner, y), QColor(Qt::red));
    }
    QCOMPARE(image.pixelColor(50, 100), QColor(Qt::red));
    QCOMPARE(image.pixelColor(outer, 100), QColor(Qt::red));
}

QTEST_MAIN(TestBannerPanel)
#include "test_bannerpanel.moc"
