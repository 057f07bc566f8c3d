#include "platform/captiondrag.h"
#include "tests/support/testcase.h"

#include <QtTest/QTest>
#include <QtWidgets/QWidget>

class TestCaptionDrag : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void leftPressAsksForTheCaption();
    void noMessageIsAnswered();
};

void TestCaptionDrag::leftPressAsksForTheCaption()
{
    QWidget window;
    QList<QPoint> asked;
    Platform::enableCaptionDragging(&window, [&](const QPoint &globalPos) {
        asked += globalPos;
        return false;
    });
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint place(20, 10);
    QTest::mouseMove(&window, place);
    QTest::mouseClick(&window, Qt::RightButton, {}, place);
    QVERIFY(asked.isEmpty());
    QTest::mouseClick(&window, Qt::LeftButton, {}, place);
    QCOMPARE(asked, {window.mapToGlobal(place)});
}

void TestCaptionDrag::noMessageIsAnswered()
{
    long result = 0;
    QVERIFY(!Platform::answerCaptionHitTest("xcb_generic_event_t", nullptr, &result,
                                            [](const QPoint &) { return true; }));
}

QTEST_MAIN(TestCaptionDrag)
#include "test_captiondrag.moc"
