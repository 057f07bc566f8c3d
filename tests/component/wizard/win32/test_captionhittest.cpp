// The system asks the main window where its caption is.

#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "wizard/mainwindow.h"

#include <QtGui/QCursor>
#include <QtTest/QTest>
#include <optional>
#include <windows.h>

namespace {

class AskedWindow : public MainWindow
{
public:
    AskedWindow()
        : MainWindow(nullptr)
    {
    }

    /// The answer to a message, with the cursor over a place in the window; nothing when the
    /// window leaves the message to the system.
    std::optional<long> answer(UINT messageId, const QPoint &place)
    {
        QCursor::setPos(mapToGlobal(place));
        MSG message{};
        message.message = messageId;
        long result = HTNOWHERE;
        if (nativeEvent("windows_generic_MSG", &message, &result))
            return result;
        return {};
    }
};

} // namespace

class TestCaptionHitTest : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void topStripIsTheCaption();
};

void TestCaptionHitTest::topStripIsTheCaption()
{
    const Sandbox sandbox;
    const LookApplied look;
    AskedWindow window;
    window.show();
    QVERIFY(QTest::qWaitForWindowExposed(&window));
    const QPoint caption(360, 36);
    QCOMPARE(window.answer(WM_NCHITTEST, caption), std::optional<long>(HTCAPTION));
    QCOMPARE(window.answer(WM_NCHITTEST, QPoint(360, 37)), std::optional<long>());
    QCOMPARE(window.answer(WM_MOUSEMOVE, caption), std::optional<long>());
}

QTEST_MAIN(TestCaptionHitTest)
#include "test_captionhittest.moc"
