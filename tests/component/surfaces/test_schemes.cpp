#include "tests/support/interfacelanguage.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "tools/gallery/contrast.h"
#include "tools/gallery/controls.h"
#include "tools/gallery/surfaces.h"
#include "ui/systemlook.h"

#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QProxyStyle>
#include <QtWidgets/QWidget>

#include <algorithm>

// High-contrast schemes, and the mark of the focus.
/// What every surface needs to be shown.
struct EnglishInScheme
{
    explicit EnglishInScheme(const Platform::ContrastScheme &scheme)
        : look(SystemLook::rules({}, scheme, true))
    {
    }

    const Sandbox sandbox;
    const LookApplied look;
    const LinkCatcher links;
    const InterfaceLanguage language{*sandbox.operator->(), "ENG"_s};
};

class TestSchemes : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void schemeColoursEveryText_data();
    void schemeColoursEveryText();
    void schemeColoursEveryBorder_data();
    void schemeColoursEveryBorder();
    void schemeColoursEveryControl_data();
    void schemeColoursEveryControl();
    void onlyOurOwnMarkShowsTheFocus();
};

namespace {

constexpr double leastRatio = 7;

// Also of the blended edges of strokes.
bool isClose(const QColor &one, const QColor &other)
{
    return qAbs(one.red() - other.red()) + qAbs(one.green() - other.green()) +
               qAbs(one.blue() - other.blue()) <
           64;
}

QStringList notOfTheScheme(const QString &where, const QList<Gallery::Contrast> &texts,
                           const Platform::ContrastScheme &scheme)
{
    const QList<QPair<QColor, QColor>> pairs{{scheme.text, scheme.window},
                                             {scheme.buttonText, scheme.button},
                                             {scheme.highlightedText, scheme.highlight},
                                             {scheme.disabledText, scheme.window},
                                             {scheme.disabledText, scheme.button}};
    QStringList list;
    for (const Gallery::Contrast &text : texts) {
        if (text.ratio < leastRatio || std::none_of(
                                           pairs.begin(), pairs.end(),
                                           [&text](const QPair<QColor, QColor> &pair) {
                                               return isClose(text.ink, pair.first) &&
                                                      isClose(text.ground, pair.second);
                                           }))
            list += "%1: %2 \"%3\" is %4 on %5"_s.arg(where, text.widget, text.text,
                                                      text.ink.name(), text.ground.name());
    }
    return list;
}

int pixelsOf(const QColor &colour, QWidget &window)
{
    const QImage image = window.grab().toImage();
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y) == colour;
    }
    return count;
}

/// Counts the system's own marks of the focus.
class FocusMarks : public QProxyStyle
{
public:
    void drawPrimitive(PrimitiveElement element, const QStyleOption *option, QPainter *painter,
                       const QWidget *widget) const override
    {
        if (element == PE_FrameFocusRect)
            drawnOn += QLatin1String(widget ? widget->metaObject()->className() : "nothing");
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }

    mutable QStringList drawnOn;
};

} // namespace

void TestSchemes::schemeColoursEveryText_data()
{
    QTest::addColumn<QString>("name");
    const QStringList names = Gallery::contrastSchemes().keys();
    for (const QString &name : names)
        QTest::newRow(qPrintable(name)) << name;
}

void TestSchemes::schemeColoursEveryText()
{
    QFETCH(const QString, name);
    const Platform::ContrastScheme scheme = Gallery::contrastSchemes().value(name);
    const EnglishInScheme english(scheme);
    QStringList complaints;
    const QList<Gallery::Surface> surfaces = Gallery::surfaces();
    for (const Gallery::Surface &surface : surfaces) {
        const std::unique_ptr<QWidget> window = surface.show();
        const QList<Gallery::Contrast> texts = Gallery::measureContrast(*window);
        complaints += notOfTheScheme(surface.name, texts, scheme);
    }
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

void TestSchemes::schemeColoursEveryBorder_data()
{
    schemeColoursEveryText_data();
}

void TestSchemes::schemeColoursEveryBorder()
{
    QFETCH(const QString, name);
    const Platform::ContrastScheme scheme = Gallery::contrastSchemes().value(name);
    const EnglishInScheme english(scheme);
    const QList<Gallery::Surface> surfaces = Gallery::surfaces();
    for (const Gallery::Surface &surface : surfaces) {
        const std::unique_ptr<QWidget> window = surface.show();
        const QImage image = window->grab().toImage();
        const QPoint middle = image.rect().center();
        for (const QPoint &edge : {QPoint(middle.x(), 0), QPoint(middle.x(), image.height() - 1),
                                   QPoint(0, middle.y()), QPoint(image.width() - 1, middle.y())})
            QVERIFY2(image.pixelColor(edge) == scheme.text, qPrintable(surface.name));
        if (surface.name != "splash"_s)
            continue;
        const QImage turning = image.copy(QRect(middle - QPoint(20, 20), QSize(40, 40)));
        int most = 0;
        for (int y = 0; y < turning.height(); ++y) {
            for (int x = 0; x < turning.width(); ++x) {
                const QColor colour = turning.pixelColor(x, y);
                QCOMPARE(colour.saturation(), 0); // black and white, as are the schemes
                most = qMax(most, qAbs(colour.value() - scheme.window.value()));
            }
        }
        QVERIFY(most > 200);
    }
}

void TestSchemes::schemeColoursEveryControl_data()
{
    schemeColoursEveryText_data();
}

void TestSchemes::schemeColoursEveryControl()
{
    QFETCH(const QString, name);
    const Platform::ContrastScheme scheme = Gallery::contrastSchemes().value(name);
    const LookApplied look(SystemLook::rules({}, scheme, true));
    QStringList complaints;
    QHash<QString, int> highlighted;
    const QList<Gallery::Control> controls = Gallery::controls();
    for (const Gallery::Control &control : controls) {
        const std::unique_ptr<QWidget> window = control.show();
        const QString where = control.name + QLatin1Char(' ') + control.state;
        const QList<Gallery::Contrast> texts = Gallery::measureContrast(*window);
        complaints += notOfTheScheme(where, texts, scheme);

        const int pixels = pixelsOf(scheme.highlight, *window);
        if (control.state == "normal"_s)
            highlighted[control.name] = pixels;
        else if (control.state == "focus"_s && pixels == highlighted[control.name])
            complaints += where + " is not marked"_s;
        else if (control.state == "disabled"_s && pixelsOf(scheme.disabledText, *window) == 0)
            complaints += where + " looks enabled"_s;
    }
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

// Last, because it changes the application's style.
void TestSchemes::onlyOurOwnMarkShowsTheFocus()
{
    auto *style = new FocusMarks; // the application owns it
    QApplication::setStyle(style);
    const LookApplied look;
    const QList<Gallery::Control> controls = Gallery::controls();
    for (const Gallery::Control &control : controls) {
        const std::unique_ptr<QWidget> window = control.show();
        window->setAttribute(Qt::WA_KeyboardFocusChange); // as after a press of Tab
        window->grab();
    }
    QCOMPARE(style->drawnOn, QStringList());
}

QTEST_MAIN(TestSchemes)
#include "test_schemes.moc"
