#include "tests/support/testcase.h"
#include "ui/basewindow.h"
#include "ui/productlist.h"

#include <QtGui/QKeyEvent>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>

class TestBaseWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void heldKeyPressesOnce_data();
    void heldKeyPressesOnce();
    void heldKeyTypesAndMoves();
};

namespace {

// A key that is held for so long that it repeats three times.
void hold(QWidget &widget, Qt::Key key)
{
    const QString text = key == Qt::Key_Space ? QStringLiteral(" ") : QStringLiteral("\r");
    for (const bool isRepeat : {false, true, true, true}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text, isRepeat);
        QApplication::sendEvent(&widget, &press);
    }
    QKeyEvent release(QEvent::KeyRelease, key, Qt::NoModifier, text);
    QApplication::sendEvent(&widget, &release);
}

} // namespace

void TestBaseWindow::heldKeyPressesOnce_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
}

void TestBaseWindow::heldKeyPressesOnce()
{
    QFETCH(const Qt::Key, key);
    BaseWindow window(nullptr);
    QPushButton button(&window);
    button.setAutoDefault(true); // as every form has it: Return presses
    QLineEdit line(&window);
    ProductList list(&window);
    list.addProducts({QJsonObject()});
    list.setCurrentRow(0);
    int presses = 0;
    const auto count = [&presses] { ++presses; };
    connect(&button, &QPushButton::clicked, this, count);
    connect(&line, &QLineEdit::returnPressed, this, count);
    connect(&list, &QListWidget::itemClicked, this, count);

    hold(button, key);
    QCOMPARE(presses, 1);
    hold(list, key);
    QCOMPARE(presses, 2);
    hold(line, key);
    QCOMPARE(presses, key == Qt::Key_Space ? 2 : 3);
}

void TestBaseWindow::heldKeyTypesAndMoves()
{
    BaseWindow window(nullptr);
    QPlainTextEdit box(&window);
    hold(box, Qt::Key_Return);
    hold(box, Qt::Key_Space);
    QCOMPARE(box.toPlainText(), QStringLiteral("\n\n\n\n    "));
    QLineEdit line(&window);
    hold(line, Qt::Key_Space);
    QCOMPARE(line.text(), QStringLiteral("    "));
    ProductList list(&window);
    list.addProducts(QList<QJsonObject>{{}, {}, {}, {}, {}});
    list.setCurrentRow(0);
    hold(list, Qt::Key_Down);
    QCOMPARE(list.currentRow(), 4);
}

QTEST_MAIN(TestBaseWindow)
#include "test_basewindow.moc"
