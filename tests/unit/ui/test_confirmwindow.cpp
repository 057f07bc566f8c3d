#include "tests/support/lookapplied.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"

#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestConfirmWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sizeAfterConstruction();
    void isAFramelessTranslucentWindowEvenWithAParent();
    void safeChoiceHasThePrimaryLook();
    void texts();
    void buttonsAnswer();
    void closeFromTheWindowSystemStaysAndCountsAsCancel();
    void ownCloseClosesSilently();
    void escapeIsTheSafeAnswer();
    void enterPressesTheFocusedButton();
    void checkBoxKeepsItsState();
};

void TestConfirmWindow::sizeAfterConstruction()
{
    const LookApplied look;
    ConfirmWindow window(nullptr);
    QCOMPARE(window.size(), QSize(320, 320));
    window.show();
    QCOMPARE(window.size(), QSize(320, 320));
}

void TestConfirmWindow::isAFramelessTranslucentWindowEvenWithAParent()
{
    QWidget parent;
    ConfirmWindow window(&parent);
    QCOMPARE(window.windowFlags(), Qt::Window | Qt::FramelessWindowHint);
    QVERIFY(window.isWindow());
    QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(window.metaObject()->superClass()->className(), "BaseWindow");
}

void TestConfirmWindow::safeChoiceHasThePrimaryLook()
{
    ConfirmWindow window(nullptr);
    QCOMPARE(window.btnCancel->objectName(), QStringLiteral("PrimaryBtn"));
    QCOMPARE(window.btnRemove->objectName(), QStringLiteral("SecondaryBtn"));
    QVERIFY(window.btnCancel->hasFocus() || window.focusWidget() == window.btnCancel);
}

void TestConfirmWindow::texts()
{
    ConfirmWindow window(nullptr);
    QCOMPARE(window.windowTitle(), QStringLiteral("ConfirmWindow"));
    QCOMPARE(window.lblConfirm->text(),
             QStringLiteral("Are you sure you want to remove Norvane Clipwright?"));
    QCOMPARE(window.checkBox->accessibleName(),
             QStringLiteral("Remove all the effect resource files"));
    QCOMPARE(window.btnRemove->text(), QStringLiteral("Remove"));
    QCOMPARE(window.btnCancel->text(), QStringLiteral("Cancel"));
}

void TestConfirmWindow::buttonsAnswer()
{
    ConfirmWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &ConfirmWindow::closed);
    QTest::mouseClick(window.btnCancel, Qt::LeftButton);
    QTest::mouseClick(window.btnRemove, Qt::LeftButton);
    QCOMPARE(closed, QList<QVariantList>({{0}, {1}}));
    QVERIFY(window.isVisible());
}

void TestConfirmWindow::closeFromTheWindowSystemStaysAndCountsAsCancel()
{
    ConfirmWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &ConfirmWindow::closed);
    window.windowHandle()->close();
    QCOMPARE(closed, QList<QVariantList>({{0}}));
    QVERIFY(window.isVisible());
}

void TestConfirmWindow::ownCloseClosesSilently()
{
    ConfirmWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &ConfirmWindow::closed);
    QVERIFY(window.close());
    QVERIFY(!window.isVisible());
    QVERIFY(closed.isEmpty());
}

void TestConfirmWindow::escapeIsTheSafeAnswer()
{
    ConfirmWindow window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QSignalSpy closed(&window, &ConfirmWindow::closed);
    QTest::keyClick(&window, Qt::Key_Escape);
    QCOMPARE(closed, QList<QVariantList>({{0}}));
}

void TestConfirmWindow::enterPressesTheFocusedButton()
{
    ConfirmWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &ConfirmWindow::closed);
    QTest::keyClick(window.btnCancel, Qt::Key_Return);
    QTest::keyClick(window.btnRemove, Qt::Key_Enter);
    QCOMPARE(closed, QList<QVariantList>({{0}, {1}}));
}

void TestConfirmWindow::checkBoxKeepsItsState()
{
    ConfirmWindow window(nullptr);
    QVERIFY(!window.checkBox->isChecked());
    window.show();
    QTest::keyClick(window.checkBox, Qt::Key_Space);
    window.close();
    window.show();
    QVERIFY(window.checkBox->isChecked());
}

QTEST_MAIN(TestConfirmWindow)
#include "test_confirmwindow.moc"
