#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/systemlook.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QGlyphRun>
#include <QtGui/QRawFont>
#include <QtGui/QTextLayout>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QStyle>

#ifdef Q_OS_WIN
#include <windows.h>
#endif

class TestSystemLook : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void languageNamesItsFonts_data();
    void languageNamesItsFonts();
    void lettersHaveTheLanguagesForms();
    void animationsAreOffWhenTheUserWantsNone();
    void signsAreBlackOrWhiteAsTheText();
    void ownSchemeIsApplied();
    void ownChoiceOfAnimationsIsApplied();
};

namespace {

QString familyOf(const QLabel &label)
{
    QTextLayout layout(label.text(), label.font());
    layout.beginLayout();
    layout.createLine();
    layout.endLayout();
    return layout.glyphRuns().value(0).rawFont().familyName();
}

} // namespace

void TestSystemLook::languageNamesItsFonts_data()
{
    QTest::addColumn<QString>("language");
    QTest::addColumn<QStringList>("first");
    QTest::newRow("Japanese") << "ja"_s
                              << QStringList{"Segoe UI"_s, "Yu Gothic UI"_s, "Meiryo UI"_s};
    QTest::newRow("Korean") << "ko"_s << QStringList{"Segoe UI"_s, "Malgun Gothic"_s};
    QTest::newRow("Chinese") << "zh"_s << QStringList{"Segoe UI"_s, "Microsoft JhengHei UI"_s};
    QTest::newRow("German") << "de"_s << QStringList{"Segoe UI"_s, "Noto Sans"_s};
}

void TestSystemLook::languageNamesItsFonts()
{
    QFETCH(const QString, language);
    QFETCH(const QStringList, first);
    const LookApplied look(SystemLook::rules(language, {}, true));
    QLabel label;
    label.ensurePolished();
    QCOMPARE(label.font().families().mid(0, first.size()), first);
}

void TestSystemLook::lettersHaveTheLanguagesForms()
{
    const QHash<QString, QString> fonts{{"ja"_s, "Noto Sans CJK JP"_s},
                                        {"ko"_s, "Noto Sans CJK KR"_s},
                                        {"zh"_s, "Noto Sans CJK TC"_s}};
    if (!Machine::hasEveryFont)
        QSKIP("the tests' fonts have no Chinese characters");
    int size = 14; // of its own for each language, because the framework keeps what it has found
    for (auto font = fonts.begin(); font != fonts.end(); ++font) {
        const LookApplied look(SystemLook::rules(font.key(), {}, true));
        QLabel label(QString(QChar(0x76F4))); // drawn differently in each of these countries
        label.setStyleSheet("font-size: %1px"_s.arg(++size));
        label.ensurePolished();
        QCOMPARE(familyOf(label), font.value());
    }
}

void TestSystemLook::animationsAreOffWhenTheUserWantsNone()
{
    for (const bool areOn : {true, false}) {
        const LookApplied look(SystemLook::rules({}, {}, areOn));
        const QPushButton button;
        button.ensurePolished();
        QCOMPARE(button.style()->styleHint(QStyle::SH_Widget_Animation_Duration, nullptr, &button) >
                     0,
                 areOn);
    }
}

void TestSystemLook::signsAreBlackOrWhiteAsTheText()
{
    const auto signs = [](int lightness) {
        Platform::ContrastScheme scheme;
        scheme.text = QColor(lightness, lightness, lightness);
        const QString rules = SystemLook::rules({}, scheme, true);
        return QRegularExpression("Contrast_close_(\\w+)"_s).match(rules).captured(1);
    };
    QCOMPARE(signs(127), "black"_s);
    QCOMPARE(signs(128), "white"_s);
}

void TestSystemLook::ownSchemeIsApplied()
{
    const Sandbox sandbox;
    QVERIFY(!SystemLook::rules().contains("#0a0b0c"_s));
#ifdef Q_OS_WIN
    QSKIP("a scheme cannot be turned on for one program");
#else
    for (const char *role :
         {"Text", "Button", "ButtonText", "Highlight", "HighlightedText", "DisabledText"})
        sandbox->setSystemValue("HighContrast/"_s + QLatin1String(role), "#ffffff"_s);
    sandbox->setSystemValue("HighContrast/Window"_s, "#0a0b0c"_s);
    QVERIFY(!SystemLook::rules().contains("#0a0b0c"_s));
    sandbox->setSystemValue("HighContrast/On"_s, "true"_s);
    QVERIFY(SystemLook::rules().contains("background: #0a0b0c;"_s));
    QVERIFY(!SystemLook::rules().contains(QLatin1Char('@') + "window"_s));
    QVERIFY(!SystemLook::rules().contains("animation"_s));
#endif
}

void TestSystemLook::ownChoiceOfAnimationsIsApplied()
{
    const Sandbox sandbox;
    QVERIFY(!SystemLook::rules().contains("animation"_s));
#ifdef Q_OS_WIN
    const auto setAnimations = [](bool areOn) {
        return SystemParametersInfoW(SPI_SETCLIENTAREAANIMATION, 0,
                                     reinterpret_cast<void *>(std::uintptr_t(areOn)), 0) != 0;
    };
    QVERIFY(setAnimations(false));
    const QString rules = SystemLook::rules();
    QVERIFY(setAnimations(true));
#else
    sandbox->setSystemValue("System/Animations"_s, "false"_s);
    const QString rules = SystemLook::rules();
#endif
    QVERIFY(rules.contains("animation"_s));
}

QTEST_MAIN(TestSystemLook)
#include "test_systemlook.moc"
