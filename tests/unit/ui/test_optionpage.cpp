#include "tests/support/lookapplied.h"
#include "tests/support/patience.h"
#include "tests/unit/ui/pagetest.h"
#include "ui/optionpage.h"

#include <QtWidgets/QRadioButton>

class TestOptionPage : public PageTest
{
    Q_OBJECT

private Q_SLOTS:
    void emptyListLeavesNothingToChoose();
    void reasonsFollowTheList();
    void homepageEntryFillsHeaderAndIsNoReason();
    void buttonsAreNamedForTheirLook();
    void tabLeadsThroughTheReasons();
    void longReasonIsBroken();
    void firstChoiceEnablesContinue();
    void reasonShowsWhatBelongsToIt_data();
    void reasonShowsWhatBelongsToIt();
    void textBoxFollowsTheChoice();
    void textBoxIsScrolledIntoView();
    void bannerFollowsTheChoice();
    void pictureThatCannotBeReadLeavesADarkGround_data();
    void pictureThatCannotBeReadLeavesADarkGround();
    void textIsCutAtItsLimit();
    void textPropertyFollowsTheText();
    void typedTextIsDarkerThanTheHint();
    void buttonsRaiseTheirEvents();
    void cancelQuits();
    void descriptionIsSentOnlyWhileItsBoxShows();
    void markupInTextsIsShownAsItStands();
    void mistypedEntriesAreHarmless();
};

namespace {

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

QRadioButton *reason(const OptionPage &page, const QString &title)
{
    const QList<QRadioButton *> all = reasons(page);
    for (QRadioButton *button : all) {
        if (button->text() == title)
            return button;
    }
    return nullptr;
}

} // namespace

void TestOptionPage::emptyListLeavesNothingToChoose()
{
    const OptionPage page(nullptr, {});
    QVERIFY(page.findChildren<QRadioButton *>().isEmpty());
    QVERIFY(!page.btnContinue->isEnabled());
    QVERIFY(page.btnCancel->isEnabled());
    QCOMPARE(page.lblTitle->text(), "Can you tell me why you want to uninstall?"_s);
    QVERIFY(page.label->text().startsWith("Hello there,\n\nI am Arlen, an engineer"_s));
    QVERIFY(page.label->text().endsWith("Hope to meet you again.\n\nThank you!"_s));
}

void TestOptionPage::reasonsFollowTheList()
{
    const OptionPage page(nullptr, objects(R"([{"title": "C", "sort": 3}, {"title": "A", "sort": 1},
                                               {"title": "B", "sort": 2}, {"title": "A"}])"));
    QString titles;
    const QList<QRadioButton *> all = reasons(page);
    for (const QRadioButton *button : all)
        titles += button->text();
    QCOMPARE(titles, "CABA"_s);
    QCOMPARE(page.findChildren<QRadioButton *>().size(), 4); // the form's samples are gone
}

void TestOptionPage::homepageEntryFillsHeaderAndIsNoReason()
{
    const OptionPage page(nullptr, objects(allTypes));
    QCOMPARE(page.lblTitle->text(), "Why?"_s);
    QCOMPARE(page.accessibleName(), "Why?"_s);
    QCOMPARE(page.label->text(), "Hi"_s);
    QCOMPARE(page.pnlLeft->styleSheet(),
             ".QWidget{border-image: url(:/Resources/light/Option0_2x.png);}"_s);
    QVERIFY(!reason(page, "Why?"_s));
}

void TestOptionPage::buttonsAreNamedForTheirLook()
{
    const OptionPage page(nullptr, objects(allTypes));
    QCOMPARE(page.btnCancel->objectName(), "SecondaryBtn"_s);
    QCOMPARE(page.btnContinue->objectName(), "QuatenaryBtn"_s);
    QCOMPARE(page.btnNext->objectName(), "PrimaryBtn"_s);
    QVERIFY(page.btnNext->isHidden());
    QVERIFY(page.pnlTextEdit->isHidden());
    QCOMPARE(page.textEdit->placeholderText(), "Please describe the problem you encountered."_s);
}

void TestOptionPage::tabLeadsThroughTheReasons()
{
    OptionPage page(nullptr, objects(allTypes));
    QCOMPARE(page.focusPolicy(), Qt::NoFocus);
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QVERIFY(reason(page, "Plain"_s)->hasFocus());
    reason(page, "Other"_s)->setChecked(true);
    QVERIFY(page.textEdit->hasFocus());
    reason(page, "Other"_s)->setFocus();
    QTest::keyClick(reason(page, "Other"_s), Qt::Key_Tab);
    QVERIFY(page.textEdit->hasFocus());
    QTest::keyClick(page.textEdit, Qt::Key_Tab);
    QVERIFY(page.btnContinue->hasFocus());

    QTest::mouseClick(reason(page, "Other"_s), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(page.btnContinue->hasFocus()); // nothing new was chosen
    QTest::mouseClick(reason(page, "Plain"_s), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(reason(page, "Plain"_s)->hasFocus());
}

void TestOptionPage::longReasonIsBroken()
{
    const OptionPage page(nullptr, {{{"title"_s, "word "_s.repeated(60)}}});
    const QRadioButton *shown = reasons(page).constFirst();
    const QStringList lines = shown->text().split(QLatin1Char('\n'));
    QVERIFY(lines.size() > 1);
    for (const QString &line : lines)
        QVERIFY(shown->fontMetrics().horizontalAdvance(line) <= 330);
}

void TestOptionPage::firstChoiceEnablesContinue()
{
    OptionPage page(nullptr, objects(allTypes));
    page.show();
    QVERIFY(!page.btnContinue->isEnabled());
    QTest::mouseClick(reason(page, "Plain"_s), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(page.btnContinue->isEnabled());

    page.btnContinue->setEnabled(false); // only the first choice enables it
    QTest::mouseClick(reason(page, "Other"_s), Qt::LeftButton, {}, QPoint(10, 10));
    QVERIFY(!page.btnContinue->isEnabled());
}

void TestOptionPage::reasonShowsWhatBelongsToIt_data()
{
    QTest::addColumn<QString>("title");
    QTest::addColumn<bool>("hasTextBox");
    QTest::addColumn<QString>("offer"); // empty without one
    QTest::addColumn<QVariant>("jump");
    QTest::addColumn<QVariant>("url");
    QTest::addColumn<QString>("event");
    const auto popUp = [](const char *properties) -> QString {
        return "PopUp_FeedbackClick "_s + QString::fromUtf8(properties);
    };
    QTest::newRow("plain") << "Plain" << false << "" << QVariant() << QVariant() << "no event";
    QTest::newRow("submit") << "Submit" << true << "" << QVariant() << QVariant() << "no event";
    QTest::newRow("upgrade")
        << "Upgrade" << false << "  Get it  " << QVariant(false) << QVariant()
        << popUp(R"({"MsgCode":"62","Msgdetail":"","RetainActionName":"Upgrade","isoption":"1",)"
                 R"("source":"upgrade_failure"})");
    QTest::newRow("jump")
        << "Jump" << false << "  30 % && more  " << QVariant(true)
        << QVariant("https://a.example/?p=%1"_s)
        << popUp(R"({"MsgCode":"63","Msgdetail":"","RetainActionName":"Coupon","isoption":"1",)"
                 R"("source":"upgrade_failure"})");
}

void TestOptionPage::reasonShowsWhatBelongsToIt()
{
    QFETCH(const QString, title);
    QFETCH(const QString, offer);
    OptionPage page(nullptr, objects(allTypes));
    page.setSource("upgrade_failure"_s);
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QRadioButton *chosen = reason(page, title);
    chosen->setChecked(true);
    QTEST(page.pnlTextEdit->isVisible(), "hasTextBox");
    QTEST(page.textEdit->hasFocus(), "hasTextBox");
    QCOMPARE(page.btnNext->isVisible(), !offer.isEmpty());
    if (!offer.isEmpty())
        QCOMPARE(page.btnNext->text(), offer);
    QTEST(page.btnNext->property("jump"), "jump");
    QTEST(page.btnNext->property("url"), "url");
    QTEST(lastEvent(), "event");

    reason(page, "Plain"_s)->setChecked(true);
    QVERIFY(page.btnNext->isHidden());
    QVERIFY(page.pnlTextEdit->isHidden());
    QVERIFY(AnalyticsRecord::actions().size() <= 1); // only the offer raised an event
}

void TestOptionPage::textBoxFollowsTheChoice()
{
    OptionPage page(nullptr, objects(allTypes));
    const QVBoxLayout *layout = page.scrollContentsLayout;
    QCOMPARE(layout->indexOf(page.pnlTextEdit), 5); // behind the reasons
    for (const QString &title : {"Other"_s, "Submit"_s, "Plain"_s, "Other"_s}) {
        QRadioButton *chosen = reason(page, title);
        chosen->setChecked(true);
        QCOMPARE(layout->indexOf(page.pnlTextEdit), layout->indexOf(chosen) + 1);
        QCOMPARE(layout->count(), 5 + 2); // reasons, box, spacer
    }
}

void TestOptionPage::textBoxIsScrolledIntoView()
{
    QList<QJsonObject> many;
    for (int i = 0; i < 20; ++i)
        many += object(R"({"title": "A", "extend": "{\"option_type\":\"submit\"}"})");
    OptionPage page(nullptr, many);
    page.resize(720, 480);
    page.show();
    const QWidget *view = page.scrollArea->viewport();
    const auto below = [&page, view] {
        const QPoint bottom = page.pnlTextEdit->mapTo(view, page.pnlTextEdit->rect().bottomLeft());
        return view->rect().bottom() - bottom.y();
    };
    reasons(page).at(15)->setChecked(true);
    QTRY_COMPARE(below(), 8);
}

void TestOptionPage::bannerFollowsTheChoice()
{
    const QString banner =
        m_sandbox->path("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"_s);
    m_sandbox->writeFile("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"_s,
                         Sandbox::readFile(":/Resources/light/loading_2x.png"_s));
    OptionPage page(nullptr, objects(R"([{"value": 7, "title": "A", "banner_title": "a",
                                          "banner_url": "http://a.example/b.png"},
                                         {"value": 8, "title": "B", "banner_title": "b"}])"));
    reason(page, "A"_s)->setChecked(true);
    QVERIFY(page.pnlLeft->styleSheet().contains(banner));
    QCOMPARE(page.label->text(), "a"_s);
    reason(page, "B"_s)->setChecked(true);
    QVERIFY(page.pnlLeft->styleSheet().contains(":/Resources/light/Option0_2x.png"_s));
    QCOMPARE(page.label->text(), "b"_s);
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
    m_sandbox->writeFile("Temp/Norvane Clipwright Uninstaller/Configs/Images/option_7.png"_s,
                         content);
    OptionPage page(nullptr, objects(R"([{"value": 7, "title": "A", "banner_title": "white",
                                          "banner_url": "http://a.example/b.png"}])"));
    reason(page, "A"_s)->setChecked(true);
    page.resize(700, 480);
    const QImage panel = page.pnlLeft->grab().toImage();
    QCOMPARE(panel.pixelColor(panel.width() / 2, panel.height() - 20), QColor(0x43, 0x36, 0xC9));
}

void TestOptionPage::textIsCutAtItsLimit()
{
    OptionPage page(nullptr, objects(allTypes));
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
    QTest::keyClicks(page.textEdit, "x"_s);
    QCOMPARE(page.textEdit->toPlainText().size(), 1000);
}

void TestOptionPage::textPropertyFollowsTheText()
{
    OptionPage page(nullptr, objects(allTypes));
    QCOMPARE(page.textEdit->property("text"), QVariant(QString()));
    page.textEdit->setPlainText("two\nlines"_s);
    QCOMPARE(page.textEdit->property("text"), QVariant("two\nlines"_s));
    page.textEdit->clear();
    QCOMPARE(page.textEdit->property("text"), QVariant(QString()));
}

void TestOptionPage::typedTextIsDarkerThanTheHint()
{
    const LookApplied look;
    OptionPage page(nullptr, objects(allTypes));
    page.textEdit->ensurePolished();
    const auto darkest = [&page] {
        const QImage box = page.textEdit->viewport()->grab().toImage();
        int gray = 255;
        for (int y = 0; y < box.height(); ++y) {
            for (int x = 0; x < box.width(); ++x)
                gray = qMin(gray, qGray(box.pixel(x, y)));
        }
        return gray;
    };
    const int hint = qGray(0x6B, 0x70, 0x85);
    QCOMPARE(darkest(), hint);
    page.textEdit->insertPlainText("MMM"_s);
    QCOMPARE(darkest(), qGray(0x1E, 0x20, 0x30));
    page.textEdit->clear();
    QCOMPARE(darkest(), hint);
}

void TestOptionPage::buttonsRaiseTheirEvents()
{
    OptionPage page(nullptr, objects(allTypes));
    page.setSource("uninstall_action"_s);
    page.show();
    reason(page, "Jump"_s)->setChecked(true);
    const auto event = [](const char *action) -> QString {
        return QString::fromLatin1(action) +
               R"( {"MsgCode":"63","Msgdetail":"","RetainActionName":"Coupon","isoption":"1",)"
               R"("source":"uninstall_action"})"_s;
    };
    QCOMPARE(lastEvent(), event("PopUp_FeedbackClick"));
    QTest::mouseClick(page.btnNext, Qt::LeftButton);
    QCOMPARE(lastEvent(), event("RetainClick"));
    QTest::mouseClick(page.btnContinue, Qt::LeftButton);
    QCOMPARE(lastEvent(), event("UninstallContinue"));
    QCOMPARE(AnalyticsRecord::events().size(), 3);
}

void TestOptionPage::cancelQuits()
{
    OptionPage page(nullptr, objects(allTypes));
    page.show();
    QVERIFY(quitsAfter([&page] { page.btnCancel->click(); }));
    QCOMPARE(lastEvent(), R"(UninstallCancel {"MsgCode":"","Msgdetail":"","RetainActionName":"",)"
                          R"("isoption":"0","source":""})"_s);
    QCOMPARE(AnalyticsRecord::events().size(), 1);
}

void TestOptionPage::descriptionIsSentOnlyWhileItsBoxShows()
{
    OptionPage page(nullptr, objects(allTypes));
    page.show();
    reason(page, "Submit"_s)->setChecked(true);
    page.textEdit->setPlainText("It \"broke\"\nläuft nicht"_s);
    page.btnContinue->click();
    QCOMPARE(lastProperty("Msgdetail"), "It \"broke\"\nläuft nicht"_s);
    reason(page, "Plain"_s)->setChecked(true);
    page.btnContinue->click();
    QCOMPARE(lastProperty("Msgdetail"), ""_s);
}

void TestOptionPage::markupInTextsIsShownAsItStands()
{
    OptionPage page(nullptr, objects(R"([
      {"title": "<b>Why</b>", "banner_title": "<img src=x>", "extend": "{\"option_type\":\"homepage\"}"},
      {"value": 1, "title": "<i>A & B</i>", "banner_title": "} * {color: red}",
       "extend": "{\"option_type\":\"jump\"}", "button_name": "<u>%1</u>"}])"));
    QCOMPARE(page.lblTitle->textFormat(), Qt::PlainText);
    QCOMPARE(page.label->textFormat(), Qt::PlainText);
    QCOMPARE(page.lblTitle->text(), "<b>Why</b>"_s);
    QRadioButton *button = reasons(page).constFirst();
    QCOMPARE(button->accessibleName(), "<i>A & B</i>"_s);
    button->setChecked(true);
    QCOMPARE(page.btnNext->text(), "  <u>%1</u>  "_s);
    QVERIFY(!page.pnlLeft->styleSheet().contains("red"_s));
}

void TestOptionPage::mistypedEntriesAreHarmless()
{
    OptionPage page(nullptr, objects(R"([{}, {"value": "x", "title": 5, "extend": 7},
        {"value": 1e300, "title": null, "banner_title": [], "extend": "{\"option_type\":\"submit\"}"}])"));
    const QList<QRadioButton *> all = reasons(page);
    QCOMPARE(all.size(), 3);
    for (QRadioButton *button : all)
        button->setChecked(true);
    page.btnContinue->click();
    QCOMPARE(lastProperty("MsgCode"), "-1"_s);
}

QTEST_MAIN(TestOptionPage)
#include "test_optionpage.moc"
