#include "tests/support/literals.h"
#include "tests/support/testcase.h"
#include "ui/wrappedlabel.h"

#include <QtGui/QAccessible>
#include <QtGui/QFontInfo>
#include <QtTest/QTest>

class TestWrappedLabel : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void textIsReadAsItWasSet();
    void wordTooWideForTheLabelIsBroken();
    void tallTextShrinksToTheHeightAllowed();
};

namespace {

const QString question = QString::fromUtf8("Norvane Clipwright를 제거하시겠습니까?");

QString shownText(const QLabel &label)
{
    return label.text();
}

} // namespace

void TestWrappedLabel::textIsReadAsItWasSet()
{
    WrappedLabel label;
    label.setText(question);
    QCOMPARE(label.text(), question);
    QCOMPARE(QAccessible::queryAccessibleInterface(&label)->text(QAccessible::Name), question);
    QVERIFY(shownText(label).contains(QChar(0x2060)));
}

void TestWrappedLabel::wordTooWideForTheLabelIsBroken()
{
    WrappedLabel label;
    label.setWordWrap(true);
    label.setText(question);
    label.resize(400, 100);
    label.show();
    QVERIFY(shownText(label) != question);
    label.resize(30, 100);
    QCOMPARE(shownText(label), question);
    label.setText(question);
    QCOMPARE(shownText(label), question);
    label.resize(400, 100);
    QVERIFY(shownText(label) != question);
}

void TestWrappedLabel::tallTextShrinksToTheHeightAllowed()
{
    WrappedLabel label;
    label.setStyleSheet("font-size: 20px"_s);
    label.setWordWrap(true);
    label.setText("First\nsecond"_s);
    label.show();
    const int needed = label.heightForWidth(400);
    label.setMaximumHeight(needed);
    label.resize(400, needed);
    QCOMPARE(QFontInfo(label.font()).pixelSize(), 20);

    label.setMaximumHeight(needed - 2);
    label.resize(401, needed - 2);
    QVERIFY(label.heightForWidth(401) <= needed - 2);
    QVERIFY(QFontInfo(label.font()).pixelSize() < 20);

    label.setMaximumHeight(2); // no letters that cannot be read
    label.resize(400, 2);
    QCOMPARE(QFontInfo(label.font()).pixelSize(), 10);
}

QTEST_MAIN(TestWrappedLabel)
#include "test_wrappedlabel.moc"
