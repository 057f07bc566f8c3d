#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/confirmwindow.h"
#include "ui/messagewindow.h"
#include "ui/productitem.h"
#include "ui/splashwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QTimer>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyle>

// The numbers of the forms, as they stand in the windows that the program shows.
class TestForms : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void numbers_data();
    void numbers();
    void rightToLeftIsTheMirrorImage();

private:
    const Sandbox m_sandbox;
};

namespace {

void row(const char *title, const QVariant &actual, const QVariant &expected)
{
    QTest::newRow(title) << actual << expected;
}

// Rows for a form by itself, before its class changes anything.
template<typename Form>
struct Design
{
    explicit Design(const char *title, QSize size)
    {
        form.setupUi(&widget);
        QTest::addRow("%s: size in the form", title) << QVariant(widget.size()) << QVariant(size);
    }

    QWidget widget;
    Form form;
};

QVariant asText(const QMargins &margins)
{
    return QStringLiteral("%1 %2 %3 %4")
        .arg(margins.left())
        .arg(margins.top())
        .arg(margins.right())
        .arg(margins.bottom());
}

void layoutRow(const char *title, const QLayout *layout, int spacing, const QMargins &margins)
{
    QTest::addRow("%s: spacing", title) << QVariant(layout->spacing()) << QVariant(spacing);
    QTest::addRow("%s: margins", title) << asText(layout->contentsMargins()) << asText(margins);
}

void spacerRow(const char *title, QLayoutItem *spacer, const QSize &size,
               Qt::Orientations expanding)
{
    QVERIFY(spacer && spacer->spacerItem());
    row(title, spacer->sizeHint(), size);
    QTest::addRow("%s: expands", title)
        << QVariant(int(spacer->expandingDirections())) << QVariant(int(expanding));
}

int interval(const QObject &owner)
{
    const QList<QTimer *> timers =
        owner.findChildren<QTimer *>(QString(), Qt::FindDirectChildrenOnly);
    return timers.size() == 1 ? timers.constFirst()->interval() : -1;
}

void mainWindowRows(const MainWindow &window)
{
    const Design<Ui::MainWindow> design("main window", {600, 400});
    row("main window: size", window.size(), QSize(720, 480));
    layoutRow("main window", window.layout(), 6, {});
    const QWidget *pages[] = {window.optionPage, window.upgradePage, window.uninstallPage,
                              window.productPage};
    for (int i = 0; i < 4; ++i)
        QTest::addRow("main window: page %d", i)
            << QVariant(window.wizardPages->indexOf(const_cast<QWidget *>(pages[i])))
            << QVariant(i);
}

void confirmationRows()
{
    const Design<Ui::ConfirmWindow> design("confirmation", {502, 418});
    row("confirmation: Remove, least size", design.form.btnRemove->minimumSize(), QSize(96, 40));
    row("confirmation: Cancel, least size", design.form.btnCancel->minimumSize(), QSize(96, 40));
    const ConfirmWindow window(nullptr);
    row("confirmation: size", window.size(), QSize(320, 320));
    layoutRow("confirmation", window.verticalLayout_2, 16, {0, 0, 0, 24});
    row("confirmation: picture, least size", window.imgConfirm->minimumSize(), QSize(0, 152));
    row("confirmation: picture, greatest size", window.imgConfirm->maximumSize(), QSize(320, 152));
    row("confirmation: texts, spacing", window.verticalLayout->spacing(), 16);
    row("confirmation: texts, left", window.verticalLayout->contentsMargins().left(), 40);
    row("confirmation: texts, right", window.verticalLayout->contentsMargins().right(), 40);
    spacerRow("confirmation: above the buttons", window.verticalSpacer, {20, 111}, Qt::Vertical);
    row("confirmation: buttons, spacing", window.horizontalLayout->spacing(), 20);
    spacerRow("confirmation: left of the buttons", window.horizontalSpacer, {40, 20},
              Qt::Horizontal);
    spacerRow("confirmation: right of the buttons", window.horizontalSpacer_2, {40, 20},
              Qt::Horizontal);
    row("confirmation: question, lines", window.lblConfirm->wordWrap(), true);
    row("confirmation: question, alignment", int(window.lblConfirm->alignment()),
        int(Qt::AlignCenter));
}

void messageRows()
{
    const Design<Ui::MessageWindow> design("message", {320, 168});
    const MessageWindow window(nullptr);
    row("message: size", window.size(), QSize(320, 168));
    layoutRow("message", window.verticalLayout, 6, {24, 40, 24, 24});
    spacerRow("message: above the button", window.verticalSpacer, {20, 50}, Qt::Vertical);
    row("message: lines", window.lblMessage->wordWrap(), true);
    row("message: alignment", int(window.lblMessage->alignment()), int(Qt::AlignCenter));
}

void feedbackRows(const OptionPage &page)
{
    const Design<Ui::OptionPage> design("feedback", {796, 650});
    row("feedback: sample reasons in the form", design.widget.findChildren<QRadioButton *>().size(),
        6);
    row("feedback: banner, least width", page.pnlLeft->minimumWidth(), 272);
    row("feedback: banner, greatest width", page.pnlLeft->maximumWidth(), 272);
    row("feedback: offer, least size", page.btnNext->minimumSize(), QSize(144, 40));
    row("feedback: Continue, least size", page.btnContinue->minimumSize(), QSize(120, 40));
    row("feedback: Cancel, least size", page.btnCancel->minimumSize(), QSize(120, 40));
    row("feedback: text box, greatest size", page.textEdit->maximumSize(), QSize(366, 52));
    const QLayout *reasons = page.scrollContentsLayout;
    spacerRow("feedback: below the reasons", reasons->itemAt(reasons->count() - 1), {20, 40},
              Qt::Vertical);
}

void uninstallRows(UninstallPage &page)
{
    row("uninstallation: arrow",
        page.btnProduct->findChild<QWidget *>(QStringLiteral("imgArrow"))->size(), QSize(24, 24));
    row("uninstallation: tile", page.lstProduct->item(0)->sizeHint(), QSize(168, 148));
    page.start(nullptr);
    row("uninstallation: tick", interval(page), 100);
}

void splashRows()
{
    const Design<Ui::SplashWindow> design("splash", {400, 300});
    const SplashWindow window(nullptr);
    row("splash: size", window.size(), QSize(720, 480));
    layoutRow("splash", window.verticalLayout, 6, {});
    const QMargins top = window.horizontalLayout->contentsMargins();
    row("splash: top row, spacing", window.horizontalLayout->spacing(), 6);
    row("splash: top row, left", top.left(), 24);
    row("splash: top row, top", top.top(), 8);
    row("splash: top row, right", top.right(), 8);
    spacerRow("splash: left of Close", window.horizontalSpacer, {40, 20}, Qt::Horizontal);
    spacerRow("splash: below Close", window.verticalSpacer, {20, 250}, Qt::Vertical);
    row("splash: tick", interval(window), 10);
}

void productRows(const ProductPage &page)
{
    const Design<Ui::ProductItem> itemDesign("tile", {400, 300});
    const ProductItem tile({}, {}, {});
    row("tile: icon, least size", tile.imgIcon->minimumSize(), QSize(40, 40));
    row("tile: name, least height", tile.label_3->minimumHeight(), 28);
    row("tile: name, alignment", int(tile.label_3->alignment()),
        int(Qt::AlignBottom | Qt::AlignHCenter));
    row("tile: description, greatest height", tile.label_4->maximumHeight(), 45);
    row("tile: description, alignment", int(tile.label_4->alignment()), int(Qt::AlignCenter));
    row("tile: description, lines", tile.label_4->wordWrap(), true);
    row("tile: bar, top", tile.bottomBar->layout()->contentsMargins().top(), 14);
    row("tile: button, least size", tile.imgButton->minimumSize(), QSize(64, 32));
    row("tile: arrow, greatest size", tile.imgArrow->maximumSize(), QSize(24, 24));

    const Design<Ui::ProductPage> pageDesign("products", {720, 541});
    for (const QPushButton *tab :
         {page.btnAll, page.btnCreativity, page.btnProductivity, page.btnUtility})
        QTest::addRow("products: tab %s, least height", qPrintable(tab->text()))
            << QVariant(tab->minimumHeight()) << QVariant(32);
    row("products: logo, least height", page.imgNV->minimumHeight(), 64);
    row("products: logo, greatest width", page.imgNV->maximumWidth(), 104);
    row("products: right column, least width", page.pnlProducts->minimumWidth(), 584);
    row("products: right column, greatest width", page.pnlProducts->maximumWidth(), 584);
    row("products: Close, least size", page.btnClose->minimumSize(), QSize(32, 32));
    row("products: Close, greatest size", page.btnClose->maximumSize(), QSize(32, 32));
    row("products: list, margins", asText(page.horizontalLayout_5->contentsMargins()),
        asText({8, 0, 1, 8}));
    row("products: item", page.lstProduct->item(0)->sizeHint(), QSize(168, 148));
}

// Where headings, lists and buttons stand, in a window of that direction; mirrored if it is read
// from right to left.
QStringList places(Qt::LayoutDirection direction)
{
    QApplication::setLayoutDirection(direction);
    MainWindow window(nullptr);
    window.show();
    QStringList list;
    const auto add = [&window, &list](const QWidget *widget) {
        const QRect place(widget->mapTo(&window, QPoint()), widget->size());
        const QRect read = QStyle::visualRect(window.layoutDirection(), window.rect(), place);
        list +=
            QStringLiteral("%1 %2 %3").arg(widget->objectName()).arg(read.x()).arg(read.width());
    };
    const auto show = [&window](QWidget *page) {
        window.wizardPages->setCurrentWidget(page);
        QCoreApplication::processEvents();
    };
    show(window.optionPage);
    add(window.optionPage->lblTitle);
    add(window.optionPage->scrollContents->findChild<QRadioButton *>());
    show(window.upgradePage);
    add(window.upgradePage->imgClipwright);
    show(window.uninstallPage);
    add(window.uninstallPage->label_3);
    add(window.uninstallPage->btnClose);
    show(window.productPage);
    add(window.productPage->label_3);
    add(window.productPage->btnAll);
    add(window.productPage->lstProduct);
    return list;
}

} // namespace

void TestForms::numbers_data()
{
    QTest::addColumn<QVariant>("actual");
    QTest::addColumn<QVariant>("expected");
    const MainWindow window(nullptr);
    mainWindowRows(window);
    confirmationRows();
    messageRows();
    feedbackRows(*window.optionPage);
    uninstallRows(*window.uninstallPage);
    splashRows();
    productRows(*window.productPage);
    const Design<Ui::UpgradePage> design("upgrade", {720, 541});
    row("upgrade: bar in the form", design.form.progressBar->value(), 24);
}

void TestForms::numbers()
{
    QFETCH(const QVariant, actual);
    QTEST(actual, "expected");
}

void TestForms::rightToLeftIsTheMirrorImage()
{
    const QStringList leftToRight = places(Qt::LeftToRight);
    QCOMPARE(places(Qt::RightToLeft), leftToRight);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

QTEST_MAIN(TestForms)
#include "test_forms.moc"
