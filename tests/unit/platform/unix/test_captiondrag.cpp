#include "platform/captiondrag.h"
#include "tests/support/testcase.h"

#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QPushButton>

class TestCaptionDrag : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void leftPressAsksForTheCaption();
    void noMessageIsAnswered();
};

void TestCaptionDrag::leftPressAsksForTheCaption()
{
    QPushButton window;
    QSignalSpy clicks(&window, &QPushButton::clicked);
    QList<QPoint> asked;
    bool isCaption = false;
    Platform::enableCaptionDragging(&window, [&](const QPoint &globalPos) {
        asked += globalPos;
        return isCaption;
    });
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint place(20, 10);
    QTest::mouseMove(&window, place);
    QTest::mouseClick(&window, Qt::RightButton, {}, place);
    QVERIFY(asked.isEmpty());
    QTest::mouseClick(&window, Qt::LeftButton, {}, place);
    QCOMPARE(asked, {window.mapToGlobal(place)});
    QCOMPARE(clicks.size(), 1);
    isCaption = true;
    QTest::mouseClick(&window, Qt::LeftButton, {}, place);
    // The offscreen platform moves no windows, so that the press goes on to the window.
    QCOMPARE(clicks.size(), 2);
}

void TestCaptionDrag::noMessageIsAnswered()
{
    long result = 0;
    QVERIFY(!Platform::answerCaptionHitTest("xcb_generic_event_t", nullptr, &result,
                                            [](const QPoint &) { return true; }));
}

QTEST_MAIN(TestCaptionDrag)
#include "test_captiondrag.moc"
