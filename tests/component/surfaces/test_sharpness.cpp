#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/testcase.h"
#include "ui/basewindow.h"

#include <QtCore/QDir>
#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtTest/QTest>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QWidget>

// Runs once for each scale factor.
class TestSharpness : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void everyPictureHasADenseSibling();
    void pictureOfAWidgetIsShownPixelByPixel();
    void buttonIsShownPixelByPixel_data();
    void buttonIsShownPixelByPixel();
};

namespace {

// Rounding of coordinates may blend an edge by a little.
constexpr int likeness = 4;

const int scale = qMax(1, qEnvironmentVariableIntValue("QT_SCALE_FACTOR"));

int worstDifference(const QImage &one, const QImage &other)
{
    int worst = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QRgb a = one.pixel(x, y);
            const QRgb b = other.pixel(x, y);
            worst = qMax(worst, qAbs(qRed(a) - qRed(b)));
            worst = qMax(worst, qAbs(qGreen(a) - qGreen(b)));
            worst = qMax(worst, qAbs(qBlue(a) - qBlue(b)));
        }
    }
    return worst;
}

QImage onWhite(const QImage &image)
{
    QImage opaque(image.size(), QImage::Format_RGB32);
    opaque.fill(Qt::white);
    QPainter painter(&opaque);
    QImage flat = image;
    flat.setDevicePixelRatio(1);
    painter.drawImage(0, 0, flat);
    return opaque;
}

QImage shown(BaseWindow &window, QWidget &child)
{
    window.setFocusPolicy(Qt::StrongFocus);
    window.setFocus(); // and not the button
    window.resize(400, 300);
    child.move(20, 20);
    window.show();
    return onWhite(window.grab(child.geometry()).toImage());
}

} // namespace

void TestSharpness::everyPictureHasADenseSibling()
{
    const QDir folder(":/Resources/light"_s);
    const QStringList names = folder.entryList({"*_2x.png"_s});
    QVERIFY(names.size() > 20);
    for (const QString &name : names) {
        // The splash draws its picture by itself, from one that is dense enough for all.
        if (name == "loading_2x.png"_s) {
            QCOMPARE(QImage(folder.filePath(name)).width(), 3 * 40);
            continue;
        }
        const bool isButton = name.contains("yBtn_"_s);
        const QString sibling = QString(name).replace("_2x"_s, isButton ? "_3x"_s : "_2x@3x"_s);
        const QImage two(folder.filePath(name));
        const QImage three(folder.filePath(sibling));
        QVERIFY2(!three.isNull(), qPrintable(sibling));
        QCOMPARE(three.width(), two.width() * 3 / 2);
    }
}

void TestSharpness::pictureOfAWidgetIsShownPixelByPixel()
{
    const LookApplied look;
    BaseWindow window(nullptr);
    QWidget picture(&window);
    picture.setFixedSize(320, 200);
    picture.setStyleSheet(".QWidget{border-image: url(:/Resources/light/Uninstalling_2x.png);}"_s);
    const QImage image = shown(window, picture);
    const QString density = scale == 3 ? "_2x@3x"_s : "_2x"_s;
    QImage expected = onWhite(QImage(":/Resources/light/Uninstalling%1.png"_s.arg(density)));
    if (scale == 1)
        expected = expected.scaled(320, 200, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    QCOMPARE(image.size(), expected.size());
    QVERIFY2(worstDifference(image, expected) <= likeness,
             qPrintable(QString::number(worstDifference(image, expected))));
}

void TestSharpness::buttonIsShownPixelByPixel_data()
{
    QTest::addColumn<QString>("look");
    QTest::newRow("primary") << "PrimaryBtn"_s;
    QTest::newRow("secondary") << "SecondaryBtn"_s;
}

void TestSharpness::buttonIsShownPixelByPixel()
{
    QFETCH(const QString, look);
    const LookApplied applied;
    BaseWindow window(nullptr);
    QPushButton button(&window);
    button.setObjectName(look);
    button.setFixedSize(96, 40);
    const QImage image = shown(window, button);
    const QString density = scale == 1 ? QString() : "_%1x"_s.arg(scale);
    const QImage expected =
        onWhite(QImage(":/Resources/light/%1_normal%2.png"_s.arg(look, density)));
    QCOMPARE(image.size(), expected.size());
    QVERIFY2(worstDifference(image, expected) <= likeness,
             qPrintable(QString::number(worstDifference(image, expected))));
}

QTEST_MAIN(TestSharpness)
#include "test_sharpness.moc"
