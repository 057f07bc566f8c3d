#include "tests/support/analyticsrecord.h"
#include "tests/support/lookapplied.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/optionpage.h"

#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtTest/QTest>
#include <QtWidgets/QRadioButton>

class TestOptionPage : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void emptyListLeavesNothingToChoose();
    void sampleReasonsOfTheFormAreGone();
    void reasonsFollowTheList();
    void homepageEntryFillsHeaderAndIsNoReason();
    void buttonsAreNamedForTheirLook();
    void firstChoiceEnablesContinue();
    void submitReasonOpensTheTextBoxBelowIt();
    void secondChoiceMovesTheTextBox();
    void upgradeReasonShowsItsOffer();
    void jumpReasonShowsItsOfferAndKeepsItsLink();
    void plainReasonShowsNeither();
    void bannerFollowsTheChoice();
    void pictureThatCannotBeReadLeavesADarkGround_data();
    void pictureThatCannotBeReadLeavesADarkGround();
    void textIsCutAtItsLimit();
    void textPropertyFollowsTheText();
    void buttonsRaiseTheirEvents();
    void cancelQuits();
    void sourceGoesWithEveryEvent();
    void descriptionIsSentOnlyWhileItsBoxShows();
    void markupInTextsIsShownAsItStands();
    void mistypedEntriesAreHarmless();

private:
    std::unique_ptr<Sandbox> m_sandbox;
};

namespace {

QList<QJsonObject> options(const char *json)
{
    QList<QJsonObject> options;
    const QJsonArray elements = QJsonDocument::fromJson(json).array();
    for (const QJsonValue &element : elements)
        options += element.toObject();
    return options;
}

const char allTypes[] = R"([
  {"value": 56, "title": "Why?", "banner_title": "Hi", "extend": "{\"option_type\":\"homepage\"}"},
  {"value": 60, "title": "Plain", "banner_title": "plain", "extend": ""},
  {"value": 61, "title": "Submit", "banner_title": "submit", "extend": "{\"option_type\":\"submit\"}"},
  {"value": 62, "title": "Upgrade", "banner_title": "upgrade", "button_name": "Get it",
   "extend": "{\"option_type\":\"upgrade\"}"},
  {"value": 63, "title": "Jump", "banner_title": "jump", "button_name": "30 % & more",
   "banner_click_url": "https://a.example/?p=%1", "extend": "{\"option_type\":\"jump\",\"url\":\"x\"}"},
  {"value": 64, "title": "Other", "banner_title": "other", "extend": "{\"option_type\":\"submit\"}"}
])";

QList<QRadioButton *> reasons(const OptionPage &page)
{
    QList<QRadioButton *> buttons;
    for (int i = 0; i < page.scrollContentsLayout->count(); ++i) {
        auto *button = qobject_cast<QRadioButton *>(page.scrollContentsLayout->itemAt(i)->widget());
        if (button)
            buttons += button;
    }
    return buttons;
}

QRadioButton *reason(const OptionPage &page, const char *title)
{
    const QList<QRadioButton *> all = reasons(page);
    for (QRadioButton *button : all) {
        if (button->text() == QLatin1String(title))
            return button;
    }
    return nullptr;
}

QJsonObject lastProperties()
{
    return AnalyticsRecord::events().constLast().properties;
}

} // namespace

void TestOptionPage::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    AnalyticsRecord::restart();
}

void TestOptionPage::cleanup()
{
    m_sandbox.reset();
}

void TestOptionPage::emptyListLeavesNothingToChoose()
{
    const OptionPage page(nullptr, {});
    QVERIFY(page.findChildren<QRadioButton *>().isEmpty());
    QVERIFY(!page.btnContinue->isEnabled());
    QVERIFY(page.btnCancel->isEnabled());
    QCOMPARE(page.lblTitle->text(), QStringLiteral("Can you tell me why you want to uninstall?"));
    QVERIFY(
        page.label->text().startsWith(QStringLiteral("Hello there,\n\nI am Arlen, an engineer")));
    QVERIFY(page.label->text().endsWith(QStringLiteral("Hope to meet you again.\n\nThank you!")));
}

void TestOptionPage::sampleReasonsOfTheFormAreGone()
{
    const OptionPage page(nullptr, options(allTypes));
    const QList<QRadioButton *> all = page.findChildren<QRadioButton *>();
    QCOMPARE(all.size(), 5);
}

void TestOptionPage::reasonsFollowTheList()
{
    const OptionPage page(nullptr, options(R"([{"title": "C", "sort": 3}, {"title": "A", "sort": 1},
                                               {"title": "B", "sort": 2}, {"title": "A"}])"));
    QStringList titles;
    const QList<QRadioButton *> all = reasons(page);
    for (const QRadioButton *button : all)
        titles += button->text();
    QCOMPARE(titles.join(QLatin1Char(' ')), QStringLiteral("C A B A"));
}

void TestOptionPage::homepageEntryFillsHeaderAndIsNoReason()
{
    const OptionPage page(nullptr, options(allTypes));
    QCOMPARE(page.lblTitle->text(), QStringLiteral("Why?"));
    QCOMPARE(page.label->text(), QStringLiteral("Hi"));
    QCOMPARE(page.pnlLeft->styleSheet(),
             QStringLiteral(".QWidget{border-image: url(:/Resources/light/Option0_2x.png);}"));
    QVERIFY(!reason(page, "Why?"));
}

void TestOptionPage::buttonsAreNamedForTheirLook()
{
    const OptionPage page(nullptr, options(allTypes));
    QCOMPARE(page.btnCancel->objectName(), QStringLiteral("SecondaryBtn"));
    QCOMPARE(page.btnContinue->objectName(), QStringLiteral("QuatenaryBtn"));
    QCOMPARE(page.btnNext->objectName(), QStringLiteral("PrimaryBtn"));
    QVERIFY(page.btnNext->isHidden());
    QVERIFY(page.pnlTextEdit->isHidden());
    QCOMPARE(page.textEdit->placeholderText(),
             QStringLiteral("Please describe the problem you encountered."));
}

void TestOptionPage::firstChoiceEnablesContinue()
{
    OptionPage page(nullptr, options(allTypes));
    page.show();
    QVERIFY(!page.btnContinue->isEnabled());
    QTest::mouseClick(reason(page, "Plain"), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(page.btnContinue->isEnabled());

    page.btnContinue->setEnabled(false); // only the first choice enables it
    QTest::mouseClick(reason(page, "Other"), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(!page.btnContinue->isEnabled());
}

void TestOptionPage::submitReasonOpensTheTextBoxBelowIt()
{
    OptionPage page(nullptr, options(allTypes));
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    reason(page, "Submit")->setChecked(true);
    QVERIFY(page.pnlTextEdit->isVisible());
    QCOMPARE(page.scrollContentsLayout->indexOf(page.pnlTextEdit),
             page.scrollContentsLayout->indexOf(reason(page, "Submit")) + 1);
    QVERIFY(page.textEdit->hasFocus());
}

void TestOptionPage::secondChoiceMovesTheTextBox()
{
    OptionPage page(nullptr, options(allTypes));
    reason(page, "Other")->setChecked(true);
    reason(page, "Submit")->setChecked(true);
    QCOMPARE(page.scrollContentsLayout->indexOf(page.pnlTextEdit),
             page.scrollContentsLayout->indexOf(reason(page, "Submit")) + 1);
    QCOMPARE(page.scrollContentsLayout->count(), 5 + 2); // reasons, box, spacer
    reason(page, "Plain")->setChecked(true);
    QCOMPARE(page.scrollContentsLayout->indexOf(page.pnlTextEdit),
             page.scrollContentsLayout->indexOf(reason(page, "Plain")) + 1);
    QVERIFY(page.pnlTextEdit->isHidden());
}

void TestOptionPage::upgradeReasonShowsItsOffer()
{
    OptionPage page(nullptr, options(allTypes));
    reason(page, "Upgrade")->setChecked(true);
    QVERIFY(!page.btnNext->isHidden());
    QCOMPARE(page.btnNext->text(), QStringLiteral("  Get it  "));
    QCOMPARE(page.btnNext->property("jump"), QVariant(false));
    QCOMPARE(AnalyticsRecord::actions(), {QStringLiteral("PopUp_FeedbackClick")});
    QCOMPARE(lastProperties().value(QLatin1String("RetainActionName")),
             QJsonValue(QLatin1String("Upgrade")));
    QCOMPARE(lastProperties().value(QLatin1String("isoption")), QJsonValue(QLatin1String("1")));
    QCOMPARE(lastProperties().value(QLatin1String("MsgCode")), QJsonValue(QLatin1String("62")));
}

void TestOptionPage::jumpReasonShowsItsOfferAndKeepsItsLink()
{
    OptionPage page(nullptr, options(allTypes));
    reason(page, "Jump")->setChecked(true);
    QVERIFY(!page.btnNext->isHidden());
    QCOMPARE(page.btnNext->text(), QStringLiteral("  30 % && more  "));
    QCOMPARE(page.btnNext->property("jump"), QVariant(true));
    QCOMPARE(page.btnNext->property("url"), QVariant(QStringLiteral("https://a.example/?p=%1")));
    QCOMPARE(lastProperties().value(QLatin1String("RetainActionName")),
             QJsonValue(QLatin1String("Coupon")));
}

void TestOptionPage::plainReasonShowsNeither()
{
    OptionPage page(nullptr, options(allTypes));
    reason(page, "Jump")->setChecked(true);
    reason(page, "Plain")->setChecked(true);
    QVERIFY(page.btnNext->isHidden());
    QVERIFY(page.pnlTextEdit->isHidden());
    QCOMPARE(AnalyticsRecord::actions().size(), 1); // only the offer raised an event
}

void TestOptionPage::bannerFollowsTheChoice()
{
    const QString banner = m_sandbox->path(
        QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"));
    m_sandbox->writeFile(
        QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"), "x");
    OptionPage page(nullptr, options(R"([{"value": 7, "title": "A", "banner_title": "a",
                                          "banner_url": "http://a.example/b.png"},
                                         {"value": 8, "title": "B", "banner_title": "b"}])"));
    reason(page, "A")->setChecked(true);
    QVERIFY(page.pnlLeft->styleSheet().contains(banner));
    QCOMPARE(page.label->text(), QStringLiteral("a"));
    reason(page, "B")->setChecked(true);
    QVERIFY(
        page.pnlLeft->styleSheet().contains(QStringLiteral(":/Resources/light/Option0_2x.png")));
    QCOMPARE(page.label->text(), QStringLiteral("b"));
}

void TestOptionPage::pictureThatCannotBeReadLeavesADarkGround_data()
{
    QTest::addColumn<QByteArray>("content");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("text") << QByteArray("no picture");
    QTest::newRow("a page") << QByteArray("<html><body>Log in first</body></html>");
    QTest::newRow("the head of a picture") << QByteArray("\x89PNG\r\n\x1A\n");
}

void TestOptionPage::pictureThatCannotBeReadLeavesADarkGround()
{
    QFETCH(QByteArray, content);
    const LookApplied look;
    m_sandbox->writeFile(
        QStringLiteral("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"), content);
    OptionPage page(nullptr, options(R"([{"value": 7, "title": "A", "banner_title": "white",
                                          "banner_url": "http://a.example/b.png"}])"));
    reason(page, "A")->setChecked(true);
    page.resize(700, 480);
    const QImage panel = page.pnlLeft->grab().toImage();
    QCOMPARE(panel.pixelColor(panel.width() / 2, panel.height() - 20), QColor(0x43, 0x36, 0xC9));
}

void TestOptionPage::textIsCutAtItsLimit()
{
    OptionPage page(nullptr, options(allTypes));
    QString text;
    for (int i = 0; text.size() < 1500; ++i)
        text += QString::number(i) + QLatin1Char(' ');
    text.truncate(1500);
    page.textEdit->insertPlainText(text);
    QCOMPARE(page.textEdit->toPlainText(), text.left(1000));
    QCOMPARE(page.textEdit->textCursor().position(), 1000);
    QCOMPARE(page.textEdit->property("text"), QVariant(text.left(1000)));

    page.textEdit->setPlainText(text.left(1000)); // exactly the limit
    QCOMPARE(page.textEdit->toPlainText().size(), 1000);
    QTest::keyClicks(page.textEdit, QStringLiteral("x"));
    QCOMPARE(page.textEdit->toPlainText().size(), 1000);
}

void TestOptionPage::textPropertyFollowsTheText()
{
    OptionPage page(nullptr, options(allTypes));
    QCOMPARE(page.textEdit->property("text"), QVariant(QString()));
    page.textEdit->setPlainText(QStringLiteral("two\nlines"));
    QCOMPARE(page.textEdit->property("text"), QVariant(QStringLiteral("two\nlines")));
    page.textEdit->clear();
    QCOMPARE(page.textEdit->property("text"), QVariant(QString()));
}

void TestOptionPage::buttonsRaiseTheirEvents()
{
    OptionPage page(nullptr, options(allTypes));
    page.setSource(QStringLiteral("uninstall_action"));
    page.show();
    reason(page, "Jump")->setChecked(true);
    QTest::mouseClick(page.btnNext, Qt::LeftButton);
    QTest::mouseClick(page.btnContinue, Qt::LeftButton);
    QCOMPARE(AnalyticsRecord::actions(),
             QStringList({QStringLiteral("PopUp_FeedbackClick"), QStringLiteral("RetainClick"),
                          QStringLiteral("UninstallContinue")}));
    QCOMPARE(lastProperties(),
             QJsonObject({{QLatin1String("MsgCode"), QLatin1String("63")},
                          {QLatin1String("Msgdetail"), QLatin1String("")},
                          {QLatin1String("isoption"), QLatin1String("1")},
                          {QLatin1String("source"), QLatin1String("uninstall_action")},
                          {QLatin1String("RetainActionName"), QLatin1String("Coupon")}}));
}

void TestOptionPage::cancelQuits()
{
    OptionPage page(nullptr, options(allTypes));
    page.show();
    QVERIFY(quitsAfter([&page] { page.btnCancel->click(); }));
    QCOMPARE(AnalyticsRecord::actions(), {QStringLiteral("UninstallCancel")});
    QCOMPARE(lastProperties().value(QLatin1String("MsgCode")), QJsonValue(QLatin1String("")));
    QCOMPARE(lastProperties().value(QLatin1String("isoption")), QJsonValue(QLatin1String("0")));
}

void TestOptionPage::sourceGoesWithEveryEvent()
{
    OptionPage page(nullptr, options(allTypes));
    reason(page, "Upgrade")->setChecked(true);
    QCOMPARE(lastProperties().value(QLatin1String("source")), QJsonValue(QLatin1String("")));
    page.setSource(QStringLiteral("upgrade_failure"));
    page.btnContinue->click();
    QCOMPARE(lastProperties().value(QLatin1String("source")),
             QJsonValue(QLatin1String("upgrade_failure")));
}

void TestOptionPage::descriptionIsSentOnlyWhileItsBoxShows()
{
    OptionPage page(nullptr, options(allTypes));
    page.show();
    reason(page, "Submit")->setChecked(true);
    page.textEdit->setPlainText(QStringLiteral("It \"broke\"\nläuft nicht"));
    page.btnContinue->click();
    QCOMPARE(lastProperties().value(QLatin1String("Msgdetail")),
             QJsonValue(QStringLiteral("It \"broke\"\nläuft nicht")));
    reason(page, "Plain")->setChecked(true);
    page.btnContinue->click();
    QCOMPARE(lastProperties().value(QLatin1String("Msgdetail")), QJsonValue(QLatin1String("")));
}

void TestOptionPage::markupInTextsIsShownAsItStands()
{
    OptionPage page(nullptr, options(R"([
      {"title": "<b>Why</b>", "banner_title": "<img src=x>", "extend": "{\"option_type\":\"homepage\"}"},
      {"value": 1, "title": "<i>A & B</i>", "banner_title": "} * {color: red}",
       "extend": "{\"option_type\":\"jump\"}", "button_name": "<u>%1</u>"}])"));
    QCOMPARE(page.lblTitle->textFormat(), Qt::PlainText);
    QCOMPARE(page.label->textFormat(), Qt::PlainText);
    QCOMPARE(page.lblTitle->text(), QStringLiteral("<b>Why</b>"));
    QRadioButton *button = reasons(page).constFirst();
    QCOMPARE(button->accessibleName(), QStringLiteral("<i>A & B</i>"));
    button->setChecked(true);
    QCOMPARE(page.btnNext->text(), QStringLiteral("  <u>%1</u>  "));
    QVERIFY(!page.pnlLeft->styleSheet().contains(QStringLiteral("red")));
}

void TestOptionPage::mistypedEntriesAreHarmless()
{
    OptionPage page(nullptr, options(R"([{}, {"value": "x", "title": 5, "extend": 7},
        {"value": 1e300, "title": null, "banner_title": [], "extend": "{\"option_type\":\"submit\"}"}])"));
    const QList<QRadioButton *> all = reasons(page);
    QCOMPARE(all.size(), 3);
    for (QRadioButton *button : all)
        button->setChecked(true);
    page.btnContinue->click();
    QCOMPARE(lastProperties().value(QLatin1String("MsgCode")), QJsonValue(QLatin1String("-1")));
}

QTEST_MAIN(TestOptionPage)
#include "test_optionpage.moc"
