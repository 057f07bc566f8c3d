#include "tests/support/testcase.h"
#include "ui/messagewindow.h"

#include <QtGui/QWindow>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>

class TestMessageWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sizeAndLook();
    void okAnswers();
    void closeFromTheWindowSystemStaysAndAnswers();
    void ownCloseClosesSilently();
    void escapeAnswers();
    void messageIsShownAsPlainText();
};

void TestMessageWindow::sizeAndLook()
{
    MessageWindow window(nullptr);
    QCOMPARE(window.size(), QSize(320, 168));
    QCOMPARE(window.windowFlags(), Qt::Window | Qt::FramelessWindowHint);
    QCOMPARE(window.windowTitle(), QStringLiteral("MessageWindow"));
    QCOMPARE(window.lblMessage->text(), QStringLiteral("TextLabel"));
    QCOMPARE(window.btnOk->objectName(), QStringLiteral("SecondaryBtn"));
    QCOMPARE(window.btnOk->text(), QStringLiteral("OK"));
}

void TestMessageWindow::okAnswers()
{
    MessageWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &MessageWindow::closed);
    QTest::mouseClick(window.btnOk, Qt::LeftButton);
    QCOMPARE(closed.size(), 1);
    QVERIFY(window.isVisible());
    QTest::keyClick(window.btnOk, Qt::Key_Return);
    QCOMPARE(closed.size(), 2);
}

void TestMessageWindow::closeFromTheWindowSystemStaysAndAnswers()
{
    MessageWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &MessageWindow::closed);
    window.windowHandle()->close();
    QCOMPARE(closed.size(), 1);
    QVERIFY(window.isVisible());
}

void TestMessageWindow::ownCloseClosesSilently()
{
    MessageWindow window(nullptr);
    window.show();
    QSignalSpy closed(&window, &MessageWindow::closed);
    QVERIFY(window.close());
    QVERIFY(!window.isVisible());
    QVERIFY(closed.isEmpty());
}

void TestMessageWindow::escapeAnswers()
{
    MessageWindow window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QSignalSpy closed(&window, &MessageWindow::closed);
    QTest::keyClick(&window, Qt::Key_Escape);
    QCOMPARE(closed.size(), 1);
}

void TestMessageWindow::messageIsShownAsPlainText()
{
    MessageWindow window(nullptr);
    QCOMPARE(window.lblMessage->textFormat(), Qt::PlainText);
}

QTEST_MAIN(TestMessageWindow)
#include "test_messagewindow.moc"
