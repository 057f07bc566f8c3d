#include "tests/support/literals.h"
#include "tests/support/testcase.h"
#include "ui/look.h"

#include <QtCore/QTemporaryDir>
#include <QtGui/QImage>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

class TestLook : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void plainPathsAreWrittenBare();
    void pictureIsShownWhateverItsName_data();
    void pictureIsShownWhateverItsName();
    void controlCharactersGiveNoPicture();
    void picturesAreAsDenseAsTheDisplay();
    void pathCannotAddARule();
    void ampersandsAreShown();
    void longTextIsBrokenIntoLines();
    void hintHasTheColourOfTheText();
};

namespace {

QColor centreOf(QWidget &widget)
{
    QImage image(widget.size(), QImage::Format_ARGB32);
    image.fill(Qt::white);
    widget.render(&image);
    return image.pixelColor(image.rect().center());
}

} // namespace

void TestLook::plainPathsAreWrittenBare()
{
    QCOMPARE(Look::pictureStyle(":/Resources/light/Option0_2x.png"_s),
             ".QWidget{border-image: url(:/Resources/light/Option0_2x.png);}"_s);
    QCOMPARE(Look::pictureStyle("C:/Temp/Norvane Clipwright Uninstaller/a.png"_s),
             ".QWidget{border-image: url(C:/Temp/Norvane Clipwright Uninstaller/a.png);}"_s);
}

void TestLook::pictureIsShownWhateverItsName_data()
{
    QTest::addColumn<QString>("name");
    for (const char *name :
         {"plain.png", "with blank.png", "open(paren.png", "closing)paren.png", "O'Brien.png",
          "bra{ce}s.png", "semi;colon.png", "per%20cent.png", "amper&sand.png", "at@2.png",
          "J\xC3\xB6rg.png", "\xE5\x8B\x95\xE7\x94\xBB.png",
#ifndef Q_OS_WIN // names that its file systems refuse
          "quo\"te.png", "back\\slash.png", "a.png);}*{background:blue"
#endif
         })
        QTest::newRow(name) << QString::fromUtf8(name);
}

void TestLook::pictureIsShownWhateverItsName()
{
    QFETCH(QString, name);
    const QTemporaryDir folder;
    const QString path = folder.filePath(name);
    QImage picture(8, 8, QImage::Format_ARGB32);
    picture.fill(Qt::red);
    QVERIFY(picture.save(path, "PNG"));

    QWidget window;
    window.resize(40, 40);
    QWidget panel(&window);
    panel.resize(40, 40);
    panel.setStyleSheet(Look::pictureStyle(path));
    QCOMPARE(centreOf(window), QColor(Qt::red));
}

void TestLook::controlCharactersGiveNoPicture()
{
    QCOMPARE(Look::pictureStyle("/a/line\nbreak.png"_s), QString());
    QCOMPARE(Look::pictureStyle(QString(QLatin1String("/a/\0.png", 7))), QString());
}

void TestLook::picturesAreAsDenseAsTheDisplay()
{
    QCOMPARE(Look::pictureDensity(1), 1);
    QCOMPARE(Look::pictureDensity(1.25), 2);
    QCOMPARE(Look::pictureDensity(2), 2);
    QCOMPARE(Look::pictureDensity(3), 3);
    QCOMPARE(Look::pictureDensity(4), 3); // the densest
}

void TestLook::pathCannotAddARule()
{
    QWidget panel;
    QLabel label(&panel);
    label.resize(40, 40);
    panel.setStyleSheet(Look::pictureStyle("/none/x.png);} * {background: blue"_s));
    QVERIFY(centreOf(label) != QColor(Qt::blue));
    panel.setStyleSheet(Look::pictureStyle("/none/x\");} * {background: blue"_s));
    QVERIFY(centreOf(label) != QColor(Qt::blue));
}

void TestLook::ampersandsAreShown()
{
    QCOMPARE(Look::buttonText("Q&A && more"_s), "Q&&A &&&& more"_s);
}

void TestLook::longTextIsBrokenIntoLines()
{
    QCheckBox box;
    Look::setWrappedText(&box, "Short"_s, 200);
    QCOMPARE(box.text(), "Short"_s);

    const QString text =
        "A very long text & more of it that no button could show in a single line"_s;
    Look::setWrappedText(&box, text, 200);
    const QStringList lines = box.text().split(QLatin1Char('\n'));
    QVERIFY(lines.size() >= 2);
    for (const QString &line : lines)
        QVERIFY(box.fontMetrics().horizontalAdvance(line) <= 200);
    QCOMPARE(lines.join(QLatin1Char(' ')), Look::buttonText(text));
    QCOMPARE(box.accessibleName(), text);

    // A word that fits no line is broken inside rather than cut off.
    Look::setWrappedText(&box, QString(80, QLatin1Char('W')), 200);
    QVERIFY(box.text().contains(QLatin1Char('\n')));
}

void TestLook::hintHasTheColourOfTheText()
{
    QLineEdit line;
    Look::setHint(&line, "Address"_s);
    QCOMPARE(line.placeholderText(), "Address"_s);
    QPlainTextEdit box;
    Look::setHint(&box, "Problem"_s);
    QCOMPARE(box.placeholderText(), "Problem"_s);
    for (QWidget *edit : {static_cast<QWidget *>(&line), static_cast<QWidget *>(&box)}) {
        for (const QColor colour : {Qt::red, Qt::blue}) {
            // As the style sheets of some versions of the framework set it.
            QPalette palette = edit->palette();
            palette.setColor(QPalette::Text, colour);
            palette.setColor(QPalette::PlaceholderText, Qt::gray);
            edit->setPalette(palette);
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
                QCOMPARE(edit->palette().color(group, QPalette::PlaceholderText), colour);
        }
    }
}

QTEST_MAIN(TestLook)
#include "test_look.moc"
