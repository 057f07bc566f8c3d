#include "tests/support/interfacelanguage.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "tools/gallery/contrast.h"
#include "tools/gallery/controls.h"
#include "tools/gallery/surfaces.h"

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

// Measured as painted, not computed from the style sheet: texts also stand on pictures.
class TestContrast : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void ratioIsThatOfTheGuidelines();
    void everyTextOfThePagesIsReadable();
    void everyTextOfTheControlsIsReadable();
};

namespace {

constexpr double leastRatio = 4.5;

QStringList tooFaint(const QString &where, const QList<Gallery::Contrast> &texts)
{
    QStringList list;
    for (const Gallery::Contrast &text : texts) {
        if (text.ratio < leastRatio)
            list += "%1: %2 \"%3\" has %4 (%5 on %6)"_s.arg(where, text.widget, text.text)
                        .arg(text.ratio, 0, 'f', 2)
                        .arg(text.ink.name(), text.ground.name());
    }
    return list;
}

} // namespace

void TestContrast::ratioIsThatOfTheGuidelines()
{
    QCOMPARE(Gallery::contrastRatio(Qt::black, Qt::white), 21.0);
    QCOMPARE(Gallery::contrastRatio(Qt::white, Qt::black), 21.0);
    QCOMPARE(Gallery::contrastRatio(Qt::red, Qt::red), 1.0);
    // The grey that is just readable on white.
    QCOMPARE(qRound(100 * Gallery::contrastRatio(QColor(0x767676), Qt::white)), 454);
}

void TestContrast::everyTextOfThePagesIsReadable()
{
    const Sandbox sandbox;
    const LookApplied look;
    const LinkCatcher links;
    const InterfaceLanguage language(*sandbox.operator->(), "ENG"_s);
    QStringList complaints;
    int measured = 0;
    const QList<Gallery::Surface> surfaces = Gallery::surfaces();
    for (const Gallery::Surface &surface : surfaces) {
        const std::unique_ptr<QWidget> window = surface.show();
        const QList<Gallery::Contrast> texts = Gallery::measureContrast(*window);
        measured += texts.size();
        complaints += tooFaint(surface.name, texts);
    }
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
    QVERIFY(measured > 200);
}

void TestContrast::everyTextOfTheControlsIsReadable()
{
    const LookApplied look;
    QStringList complaints;
    const QList<Gallery::Control> controls = Gallery::controls();
    for (const Gallery::Control &control : controls) {
        const std::unique_ptr<QWidget> window = control.show();
        complaints += tooFaint(control.name + QLatin1Char(' ') + control.state,
                               Gallery::measureContrast(*window));
    }
    QVERIFY2(complaints.isEmpty(), complaints.join(QLatin1Char('\n')).toUtf8().constData());
}

QTEST_MAIN(TestContrast)
#include "test_contrast.moc"
