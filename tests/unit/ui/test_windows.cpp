#include "tests/support/interfacelanguage.h"
#include "tests/support/literals.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "ui/productlist.h"
#include "ui/splashwindow.h"

#include <QtGui/QKeyEvent>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

#include <functional>
#include <memory>

/// What the dialogs and the splash have in common, and what they ask.
class TestWindows : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void ownerDecidesOnClosing_data();
    void ownerDecidesOnClosing();
    void groundIsTheStyleSheets_data();
    void groundIsTheStyleSheets();
    void buttonsAnswer_data();
    void buttonsAnswer();
    void confirmation();
    void longQuestionOfTheBoxIsBroken();
    void buttonsAreAsWideAsTheirTexts();
    void checkBoxKeepsItsState();
    void message();
    void heldKeyPressesOnce_data();
    void heldKeyPressesOnce();
    void heldKeyTypesAndMoves();
};

namespace {

const auto dialogFlags = Qt::Window | Qt::FramelessWindowHint;

// A window and the answers that it has given.
struct Asking
{
    std::unique_ptr<BaseWindow> window;
    QList<QPushButton *> buttons;
    std::shared_ptr<QStringList> answers = std::make_shared<QStringList>();
};

using Ask = std::function<Asking(QWidget *parent)>;

Asking confirmWindow(QWidget *parent)
{
    auto window = std::make_unique<ConfirmWindow>(parent);
    Asking asking{nullptr, {window->btnCancel, window->btnRemove}};
    QObject::connect(window.get(), &ConfirmWindow::closed, [answers = asking.answers](int answer) {
        *answers += QString::number(answer);
    });
    asking.window = std::move(window);
    return asking;
}

template<typename Window, typename Form, typename Button>
Asking closing(QWidget *parent, Button *Form::*button)
{
    auto window = std::make_unique<Window>(parent);
    Asking asking{nullptr, {window.get()->*button}};
    QObject::connect(window.get(), &Window::closed,
                     [answers = asking.answers] { *answers += "closed"_s; });
    asking.window = std::move(window);
    return asking;
}

Asking messageWindow(QWidget *parent)
{
    return closing<MessageWindow>(parent, &MessageWindow::btnOk);
}

Asking splashWindow(QWidget *parent)
{
    return closing<SplashWindow>(parent, &SplashWindow::btnClose);
}

// A key that is held for so long that it repeats four times.
void hold(QWidget &widget, Qt::Key key)
{
    const QString text = key == Qt::Key_Space ? " "_s : "\r"_s;
    for (const bool isRepeat : {false, true, true, true}) {
        QKeyEvent press(QEvent::KeyPress, key, Qt::NoModifier, text, isRepeat);
        QApplication::sendEvent(&widget, &press);
    }
    // X tells of a repeat by a release and a press of the same time.
    for (const bool isRelease : {true, false, true}) {
        QKeyEvent event(isRelease ? QEvent::KeyRelease : QEvent::KeyPress, key, Qt::NoModifier,
                        text);
        event.setTimestamp(4711);
        QApplication::sendEvent(&widget, &event);
    }
}

} // namespace

Q_DECLARE_METATYPE(Ask)

void TestWindows::ownerDecidesOnClosing_data()
{
    QTest::addColumn<Ask>("ask");
    QTest::addColumn<QString>("title");
    QTest::addColumn<Qt::WindowFlags>("flags");
    QTest::addColumn<QString>("dismissed");
    QTest::newRow("confirmation") << Ask(confirmWindow) << "ConfirmWindow" << dialogFlags << "0";
    QTest::newRow("message") << Ask(messageWindow) << "MessageWindow" << dialogFlags << "closed";
    QTest::newRow("splash") << Ask(splashWindow) << "SplashWindow"
                            << (Qt::Tool | Qt::FramelessWindowHint) << "closed";
}

void TestWindows::ownerDecidesOnClosing()
{
    QFETCH(const Ask, ask);
    QFETCH(const QString, dismissed);
    QWidget parent;
    parent.setEnabled(false); // as a window is during a check
    const Asking asking = ask(&parent);
    BaseWindow &window = *asking.window;
    QVERIFY(window.isEnabled());
    QTEST(window.windowTitle(), "title");
    QTEST(window.windowFlags(), "flags");
    QVERIFY(window.isWindow()); // also with a parent
    QVERIFY(window.testAttribute(Qt::WA_TranslucentBackground));
    QCOMPARE(window.metaObject()->superClass()->className(), "BaseWindow");

    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    window.windowHandle()->close(); // as the window system does
    QCOMPARE(*asking.answers, QStringList{dismissed});
    QVERIFY(window.isVisible());
    QTest::keyClick(&window, Qt::Key_Escape);
    QCOMPARE(*asking.answers, (QStringList{dismissed, dismissed}));
    QVERIFY(window.isVisible());

    QVERIFY(window.close());
    QVERIFY(!window.isVisible());
    QCOMPARE(asking.answers->size(), 2);
}

void TestWindows::groundIsTheStyleSheets_data()
{
    QTest::addColumn<Ask>("ask");
    QTest::newRow("confirmation") << Ask(confirmWindow);
    QTest::newRow("message") << Ask(messageWindow);
    QTest::newRow("splash") << Ask(splashWindow);
}

void TestWindows::groundIsTheStyleSheets()
{
    QFETCH(const Ask, ask);
    const LookApplied look;
    const Asking asking = ask(nullptr);
    BaseWindow &window = *asking.window;
    QImage image(window.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    window.render(&image);
    QCOMPARE(image.pixelColor(0, 0).alpha(), 0); // outside the rounded corner
    QCOMPARE(image.pixelColor(image.width() / 2, image.height() - 1), QColor("#EBEBEB"_s));
    QCOMPARE(image.pixelColor(6, image.height() / 2), QColor(Qt::white));
}

void TestWindows::buttonsAnswer_data()
{
    QTest::addColumn<Ask>("ask");
    QTest::addColumn<QStringList>("answers");
    QTest::newRow("confirmation") << Ask(confirmWindow) << QStringList{"0"_s, "1"_s};
    QTest::newRow("message") << Ask(messageWindow) << QStringList{"closed"_s};
    QTest::newRow("splash") << Ask(splashWindow) << QStringList{"closed"_s};
}

void TestWindows::buttonsAnswer()
{
    QFETCH(const Ask, ask);
    QFETCH(const QStringList, answers);
    const Asking asking = ask(nullptr);
    asking.window->show();
    const auto pressAll = [&asking](const std::function<void(QPushButton *)> &press) {
        asking.answers->clear();
        for (QPushButton *button : asking.buttons)
            press(button);
        return *asking.answers;
    };
    QCOMPARE(pressAll([](QPushButton *button) { QTest::mouseClick(button, Qt::LeftButton); }),
             answers);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter, Qt::Key_Space})
        QCOMPARE(pressAll([key](QPushButton *button) { QTest::keyClick(button, key); }), answers);
    QVERIFY(asking.window->isVisible());
}

void TestWindows::confirmation()
{
    const LookApplied look;
    ConfirmWindow window(nullptr);
    QCOMPARE(window.lblConfirm->text(), "Are you sure you want to remove Norvane Clipwright?"_s);
    QCOMPARE(window.checkBox->accessibleName(), "Remove all the effect resource files"_s);
    QCOMPARE(window.btnRemove->text(), "Remove"_s);
    QCOMPARE(window.btnCancel->text(), "Cancel"_s);
    // The safe choice is the highlighted one.
    QCOMPARE(window.btnCancel->objectName(), "PrimaryBtn"_s);
    QCOMPARE(window.btnRemove->objectName(), "SecondaryBtn"_s);
    QCOMPARE(window.focusWidget(), window.btnCancel);
    window.show();
    QCOMPARE(window.size(), QSize(320, 320));
}

void TestWindows::longQuestionOfTheBoxIsBroken()
{
    const Sandbox sandbox;
    const InterfaceLanguage language(*sandbox.operator->(), "ESP"_s);
    const LookApplied look;
    const ConfirmWindow window(nullptr);
    const QStringList lines = window.checkBox->text().split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 1);
    for (const QString &line : lines)
        QVERIFY(window.checkBox->fontMetrics().horizontalAdvance(line) <= 210);
}

void TestWindows::buttonsAreAsWideAsTheirTexts()
{
    const LookApplied look("#PrimaryBtn, #SecondaryBtn { font-size: 40px; }"_s);
    const ConfirmWindow window(nullptr);
    for (const QPushButton *button : {window.btnRemove, window.btnCancel}) {
        QVERIFY(button->sizeHint().width() > 96); // the form's minimum
        QVERIFY(button->minimumWidth() >= button->sizeHint().width());
    }
}

void TestWindows::checkBoxKeepsItsState()
{
    ConfirmWindow window(nullptr);
    QVERIFY(!window.checkBox->isChecked());
    window.show();
    QTest::keyClick(window.checkBox, Qt::Key_Space);
    window.close();
    window.show();
    QVERIFY(window.checkBox->isChecked());
}

void TestWindows::message()
{
    const MessageWindow window(nullptr);
    QCOMPARE(window.lblMessage->text(), "TextLabel"_s);
    QCOMPARE(window.lblMessage->textFormat(), Qt::PlainText);
    QCOMPARE(window.btnOk->objectName(), "SecondaryBtn"_s);
    QCOMPARE(window.btnOk->text(), "OK"_s);
    QCOMPARE(window.focusWidget(), window.btnOk);
}

void TestWindows::heldKeyPressesOnce_data()
{
    QTest::addColumn<Qt::Key>("key");
    QTest::newRow("Return") << Qt::Key_Return;
    QTest::newRow("Enter") << Qt::Key_Enter;
    QTest::newRow("Space") << Qt::Key_Space;
}

void TestWindows::heldKeyPressesOnce()
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

    // Presses and releases of which no time is known are no repeats.
    presses = 0;
    QTest::keyClick(&button, key);
    QTest::keyClick(&button, key);
    QCOMPARE(presses, 2);
}

void TestWindows::heldKeyTypesAndMoves()
{
    BaseWindow window(nullptr);
    QPlainTextEdit box(&window);
    hold(box, Qt::Key_Return);
    hold(box, Qt::Key_Space);
    QCOMPARE(box.toPlainText(), "\n\n\n\n\n     "_s);
    QLineEdit line(&window);
    hold(line, Qt::Key_Space);
    QCOMPARE(line.text(), "     "_s);
    ProductList list(&window);
    list.addProducts(QList<QJsonObject>{{}, {}, {}, {}, {}, {}});
    list.setCurrentRow(0);
    hold(list, Qt::Key_Down);
    QCOMPARE(list.currentRow(), 5);
}

QTEST_MAIN(TestWindows)
#include "test_windows.moc"
