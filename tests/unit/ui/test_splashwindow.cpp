#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/splashwindow.h"
#include "ui/systemlook.h"

#include <QtCore/QThread>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestSplashWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void angleFollowsTheClock_data();
    void angleFollowsTheClock();
    void lateTicksDoNotSlowTheTurning();
    void turnedPictureIsSmooth();
    void onlyTheMiddleIsRepainted();
    void partsLookAsInTheWhole_data();
    void partsLookAsInTheWhole();
    void hidingStopsTheTurningForGood();
    void stoppedPictureIsNotTurned();
    void contrastColourIsThePictures();
    void tabLeadsToTheCloseButton();
    void screenReadersAreToldInTheUsersLanguage();
};

namespace {

// What the window shows in its middle.
QImage middleOf(SplashWindow &window)
{
    QImage image(window.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    window.render(&image);
    return image.copy((window.width() - 40) / 2, (window.height() - 40) / 2, 40, 40);
}

QSet<QRgb> coloursOf(const QImage &image)
{
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            colours += image.pixel(x, y);
    }
    return colours;
}

// Of any channel of any pixel.
int greatestDifference(const QImage &left, const QImage &right)
{
    int greatest = 0;
    const uchar *other = right.constBits();
    for (const uchar *byte = left.constBits(); byte != left.constBits() + left.sizeInBytes();
         ++byte)
        greatest = qMax(greatest, qAbs(*byte - *other++));
    return greatest;
}

} // namespace

void TestSplashWindow::angleFollowsTheClock_data()
{
    QTest::addColumn<qint64>("elapsedMs");
    QTest::addColumn<qreal>("degrees");
    QTest::newRow("start") << qint64(0) << 0.0;
    QTest::newRow("a quarter") << qint64(250) << 90.0;
    QTest::newRow("just before a turn") << qint64(999) << 359.64;
    QTest::newRow("a turn") << qint64(1000) << 0.0;
    QTest::newRow("the second turn") << qint64(1500) << 180.0;
    QTest::newRow("after a day") << qint64(86400750) << 270.0;
}

void TestSplashWindow::angleFollowsTheClock()
{
    QFETCH(qint64, elapsedMs);
    QTEST(SplashWindow::angleAt(elapsedMs), "degrees");
}

void TestSplashWindow::lateTicksDoNotSlowTheTurning()
{
    const LookApplied look;
    SplashWindow window(nullptr);
    window.show();
    const QImage before = middleOf(window);
    QThread::msleep(400); // a busy GUI thread: not one tick is handled
    QVERIFY(middleOf(window) != before);
}

// Between two pixels of the picture lies a colour that none of them has.
void TestSplashWindow::turnedPictureIsSmooth()
{
    const LookApplied look;
    SplashWindow window(nullptr);
    window.show();
    const QImage picture(":/Resources/light/loading_2x.png"_s);
    QImage upright(picture.size(), QImage::Format_ARGB32);
    upright.fill(Qt::white);
    QPainter(&upright).drawImage(0, 0, picture);
    const QSet<QRgb> colours = coloursOf(upright);
    QTRY_VERIFY(!colours.contains(coloursOf(middleOf(window))));
}

void TestSplashWindow::onlyTheMiddleIsRepainted()
{
    class Watch : public SplashWindow
    {
    public:
        using SplashWindow::SplashWindow;
        QList<QRect> painted;

    protected:
        void paintEvent(QPaintEvent *event) override
        {
            painted += event->rect();
            SplashWindow::paintEvent(event);
        }
    };
    Watch window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    QTRY_VERIFY(!window.painted.isEmpty());
    QTest::qWait(50);
    window.painted.clear();
    QTRY_VERIFY(window.painted.size() > 5);
    for (const QRect &rect : qAsConst(window.painted))
        QCOMPARE(rect, QRect(310, 190, 100, 100));
}

void TestSplashWindow::partsLookAsInTheWhole_data()
{
    QTest::addColumn<QString>("rules");
    QTest::newRow("plain") << QString();
    QTest::newRow("high contrast") << SystemLook::rules(
        {}, {{Qt::black, Qt::white, Qt::gray, Qt::yellow, Qt::cyan, Qt::red, Qt::green}}, true);
}

void TestSplashWindow::partsLookAsInTheWhole()
{
    QFETCH(QString, rules);
    const LookApplied look(rules);
    SplashWindow window(nullptr);
    QTRY_VERIFY(!window.isSpinning()); // never shown
    window.show();
    const auto picture = [&window](const QRect &part) {
        QImage image(part.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        window.render(&image, {}, part);
        return image;
    };
    const auto worstOfParts = [&window, &picture] {
        const QImage whole = picture(window.rect());
        const QSize size(100, 100);
        const QPoint last(window.width() - size.width(), window.height() - size.height());
        int worst = 0;
        for (int inset = 0; inset <= 20; ++inset) {
            const QPoint near(inset, inset);
            for (const QPoint &corner : {near, last - near, last / 2 - near})
                worst = qMax(
                    worst, greatestDifference(picture({corner, size}), whole.copy({corner, size})));
        }
        return worst;
    };
    constexpr int rounding = 3; // of the corners' smooth edges, when they are clipped
    QVERIFY(worstOfParts() <= rounding);
    window.setEnabled(false);
    QVERIFY(worstOfParts() <= rounding);
    window.resize(800, 600);
    QVERIFY(worstOfParts() <= rounding);
    window.setStyleSheet("SplashWindow { background: blue; }"_s);
    QCOMPARE(picture({400, 200, 1, 1}).pixelColor(0, 0), QColor(Qt::blue));
}

void TestSplashWindow::hidingStopsTheTurningForGood()
{
    const LookApplied look;
    SplashWindow window(nullptr);
    window.show();
    QVERIFY(window.isSpinning());
    QCOMPARE(window.btnClose->text(), QString());
    QVERIFY(!window.btnClose->accessibleName().isEmpty());
    window.hide();
    QTRY_VERIFY(!window.isSpinning());
    window.show();
    const QImage before = middleOf(window);
    QTest::qWait(50);
    QVERIFY(!window.isSpinning());
    QCOMPARE(middleOf(window), before);
}

void TestSplashWindow::stoppedPictureIsNotTurned()
{
    const LookApplied look;
    SplashWindow window(nullptr);
    QTest::qWait(100); // not shown: stops at its first tick
    QVERIFY(!window.isSpinning());
    window.show();

    QImage expected(40, 40, QImage::Format_ARGB32);
    expected.fill(Qt::white);
    QPainter painter(&expected);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(expected.rect(), QPixmap(":/Resources/light/loading_2x.png"_s));
    painter.end();
    QCOMPARE(middleOf(window), expected);
}

void TestSplashWindow::contrastColourIsThePictures()
{
    const LookApplied look;
    SplashWindow window(nullptr);
    QTRY_VERIFY(!window.isSpinning()); // never shown
    window.setContrastColour(Qt::green);
    QCOMPARE(window.contrastColour(), QColor(Qt::green));
    const QImage middle = middleOf(window);
    QCOMPARE(middle.pixelColor(0, 0), QColor(Qt::white)); // outside the picture's ring
    bool isDrawn = false;
    for (int y = 0; y < middle.height(); ++y) {
        for (int x = 0; x < middle.width(); ++x) {
            const QColor colour = middle.pixelColor(x, y); // green on white
            QCOMPARE(colour.green(), 255);
            QCOMPARE(colour.red(), colour.blue());
            isDrawn = isDrawn || colour.red() < 50;
        }
    }
    QVERIFY(isDrawn);
}

void TestSplashWindow::tabLeadsToTheCloseButton()
{
    SplashWindow window(nullptr);
    window.show();
    window.activateWindow();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(!window.btnClose->hasFocus()); // a key that is pressed by chance closes nothing
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(window.btnClose->hasFocus());
}

// Without a translator: none is installed while the splash is shown.
void TestSplashWindow::screenReadersAreToldInTheUsersLanguage()
{
    const Sandbox sandbox;
    QVERIFY(sandbox->writeProductIni("DEU"_s));
    const SplashWindow window(nullptr);
    QCOMPARE(window.windowTitle(), "SplashWindow"_s);
    QCOMPARE(window.accessibleName(), "Norvane Clipwright deinstallieren"_s);
    QCOMPARE(window.accessibleDescription(), "Wird geladen"_s);
    QCOMPARE(window.btnClose->accessibleName(), "Schließen"_s);
}

QTEST_MAIN(TestSplashWindow)
#include "test_splashwindow.moc"
