#include "tests/support/literals.h"
#include "tests/support/testcase.h"
#include "ui/bannerpanel.h"
#include "ui/basewindow.h"
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
    void contrastBorderCoversThePicture_data();
    void contrastBorderCoversThePicture();
};

namespace {

void addDirections()
{
    QTest::addColumn<Qt::LayoutDirection>("direction");
    QTest::newRow("left to right") << Qt::LeftToRight;
    QTest::newRow("right to left") << Qt::RightToLeft;
}

/// A red panel, 100 by 200 pixels, as the window shows it; mirrored where that is right to left.
QImage leftToRight(QWidget &window, Qt::LayoutDirection direction)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath("square.png"_s);
    QImage square(20, 20, QImage::Format_ARGB32);
    square.fill(Qt::red);
    square.save(file);

    window.setAttribute(Qt::WA_TranslucentBackground);
    window.setLayoutDirection(direction);
    window.resize(100, 200);
    BannerPanel panel(&window);
    panel.resize(100, 200);
    panel.setStyleSheet(Look::pictureStyle(file));
    QImage image(window.size(), QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    window.render(&image, QPoint(), QRegion(), QWidget::DrawChildren);
    return image.mirrored(direction == Qt::RightToLeft, false);
}

} // namespace

void TestBannerPanel::outerCornersAreRounded_data()
{
    addDirections();
}

void TestBannerPanel::outerCornersAreRounded()
{
    QFETCH(Qt::LayoutDirection, direction);
    QWidget window;
    const QImage image = leftToRight(window, direction);
    for (int y : {0, 199}) {
        QCOMPARE(image.pixelColor(0, y).alpha(), 0);
        QCOMPARE(image.pixelColor(99, y), QColor(Qt::red));
    }
    QCOMPARE(image.pixelColor(50, 100), QColor(Qt::red));
    QCOMPARE(image.pixelColor(0, 100), QColor(Qt::red));

    // The circle, of 12 pixels, and its smooth edge.
    QCOMPARE(image.pixelColor(2, 2).alpha(), 0);
    const int edge = image.pixelColor(3, 3).alpha();
    QVERIFY(edge > 0 && edge < 255);
    QCOMPARE(image.pixelColor(4, 4), QColor(Qt::red));
}

void TestBannerPanel::contrastBorderCoversThePicture_data()
{
    addDirections();
}

void TestBannerPanel::contrastBorderCoversThePicture()
{
    QFETCH(Qt::LayoutDirection, direction);
    BaseWindow window(nullptr);
    QCOMPARE(leftToRight(window, direction).pixelColor(0, 100), QColor(Qt::red));
    window.setContrastColour(Qt::green);
    const QImage image = leftToRight(window, direction);
    // Two pixels wide on all sides.
    for (const QPoint &border : {QPoint(0, 100), QPoint(1, 100), QPoint(98, 100), QPoint(99, 100),
                                 QPoint(50, 0), QPoint(50, 1), QPoint(50, 198), QPoint(50, 199)})
        QCOMPARE(image.pixelColor(border), QColor(Qt::green));
    for (const QPoint &inside : {QPoint(2, 100), QPoint(97, 100), QPoint(50, 2), QPoint(50, 197)})
        QCOMPARE(image.pixelColor(inside), QColor(Qt::red));
    QCOMPARE(image.pixelColor(2, 2).alpha(), 0);
    QVERIFY(image.pixelColor(4, 4).green() > 200);
}

QTEST_MAIN(TestBannerPanel)
#include "test_bannerpanel.moc"
