#include "analytics/session.h"
#include "config/content/configcontent.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/literals.h"
#include "tests/support/machine.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/optionpage.h"
#include "ui/productpage.h"
#include "ui/uninstallpage.h"

#include <QtCore/QDir>
#include <QtCore/QJsonArray>
#include <QtCore/QJsonDocument>
#include <QtGui/QDesktopServices>
#include <QtTest/QTest>
#include <QtWidgets/QLabel>
#include <QtWidgets/QRadioButton>

/// What a configuration document can, and cannot, make the pages do.
class TestHostileDocument : public TestCase
{
    Q_OBJECT

public Q_SLOTS:
    void open(const QUrl &link) { m_opened += link.toString(); }

private Q_SLOTS:
    void init();
    void cleanup();

    void opensNothingWithoutAClick();
    void linksAreHandedOverAsTheyStand_data();
    void linksAreHandedOverAsTheyStand();
    void markupIsShownAsText();
    void namesOfPicturesStayInTheirFolder_data();
    void namesOfPicturesStayInTheirFolder();
    void referencesAreNoPictures_data();
    void referencesAreNoPictures();
    void plantedPictureIsNoRule();

private:
    std::unique_ptr<Sandbox> m_sandbox;
    QStringList m_opened;
};

namespace {

const char *const schemes[] = {"http", "https", "file", "javascript", "ms-settings", "norvane"};

QJsonObject object(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

QJsonObject product(const QString &link)
{
    return {{"pid"_s, 12}, {"url"_s, link}};
}

QJsonObject productWithIcon(const QString &link)
{
    return {{"pid"_s, 12}, {"icon"_s, link}};
}

} // namespace

void TestHostileDocument::init()
{
    m_sandbox = std::make_unique<Sandbox>(Sandbox::Content::Nothing);
    AnalyticsRecord::restart();
    m_opened.clear();
    for (const char *scheme : schemes)
        QDesktopServices::setUrlHandler(QLatin1String(scheme), this, "open");
}

void TestHostileDocument::cleanup()
{
    for (const char *scheme : schemes)
        QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
    m_sandbox.reset();
}

void TestHostileDocument::opensNothingWithoutAClick()
{
    const QString link = "file:///C:/Windows/System32/calc.exe"_s;
    OptionPage optionPage(nullptr, {object(R"({"value": 1, "title": "a", "button_name": "b",
                                      "banner_click_url": "file:///C:/a.exe",
                                      "banner_url": "file:///C:/a.png",
                                      "extend": "{\"option_type\":\"jump\",\"url\":\"file:///C:/\"}"})")});
    UninstallPage uninstallPage(nullptr, {product(link)});
    ProductPage productPage(nullptr,
                            {{{"key"_s, "utilities"_s}, {"list"_s, QJsonArray{product(link)}}}});
    for (QWidget *page :
         std::initializer_list<QWidget *>{&optionPage, &uninstallPage, &productPage})
        page->show();
    optionPage.findChild<QRadioButton *>()->setChecked(true);
    productPage.btnUtility->setChecked(true);
    QTest::qWait(50);
    QCOMPARE(m_opened, QStringList());
}

void TestHostileDocument::linksAreHandedOverAsTheyStand_data()
{
    QTest::addColumn<QString>("link");
    QTest::newRow("web") << "https://www.norvane.example/a?b=1"_s;
    QTest::newRow("program") << "file:///C:/Windows/System32/calc.exe"_s;
    QTest::newRow("share") << "file://share.example/a.exe"_s;
    QTest::newRow("script") << "javascript:alert(1)"_s;
    QTest::newRow("settings") << "ms-settings:privacy"_s;
    QTest::newRow("program's own scheme") << "norvane:remove"_s;
}

void TestHostileDocument::linksAreHandedOverAsTheyStand()
{
    QFETCH(QString, link);
    UninstallPage page(nullptr, {product(link)});
    Q_EMIT page.lstProduct->itemClicked(page.lstProduct->item(0));
    QCOMPARE(m_opened, QStringList(link));
    QCOMPARE(AnalyticsRecord::events().constLast().properties.value("Clickurl"_s),
             QJsonValue(link));
}

void TestHostileDocument::markupIsShownAsText()
{
    const QString markup = "<a href=\"file:///C:/\">a</a><img src=\"http://x.example/\">&amp;"_s;
    QJsonObject option = object(R"({"value": 1, "button_name": "<b>x</b>"})");
    option.insert("title"_s, markup);
    option.insert("banner_title"_s, markup);
    QJsonObject homepage = option;
    homepage.insert("extend"_s, "{\"option_type\":\"homepage\"}"_s);
    OptionPage optionPage(nullptr, {homepage, option});
    UninstallPage uninstallPage(nullptr, {{{"name"_s, markup}, {"desc"_s, markup}}});
    int shown = 0;
    for (QWidget *page : std::initializer_list<QWidget *>{&optionPage, &uninstallPage}) {
        page->show();
        const QList<QLabel *> labels = page->findChildren<QLabel *>();
        for (const QLabel *label : labels) {
            shown += label->text() == markup;
            QVERIFY2(label->textFormat() == Qt::PlainText, qPrintable(label->objectName()));
            QVERIFY(!label->openExternalLinks());
        }
        const QList<QWidget *> widgets = page->findChildren<QWidget *>();
        for (const QWidget *widget : widgets)
            QCOMPARE(widget->toolTip(), QString()); // which would show it as markup
    }
    QCOMPARE(shown, 4);
}

void TestHostileDocument::namesOfPicturesStayInTheirFolder_data()
{
    QTest::addColumn<QString>("link");
    QTest::addColumn<QString>("name");
    const auto row = [](const char *title, const char *link, const char *name) {
        QTest::newRow(title) << QString::fromLatin1(link) << QString::fromLatin1(name);
    };
    row("path parts", "https://h.example/../../../evil.png", "pid_12.png");
    row("path parts behind the dot", "https://h.example/a.png/../../evil", "pid_12.");
    row("path parts, encoded", "https://h.example/a.%2e%2e%2fevil", "pid_12.%2e%2e%2fevil");
    row("path parts, backslashes", "https://h.example/a.png\\..\\evil",
        QDir::separator() == QLatin1Char('\\') ? "pid_12." : "pid_12.\\evil");
    row("path parts in the query", "https://h.example/a.png?x=/../evil.exe", "pid_12.exe");
    row("two dots", "https://h.example/a..", "pid_12.");
    row("query", "https://h.example/a.png?size=2", "pid_12.png?size=2");
    row("stream", "https://h.example/a.png:stream", "pid_12.png:stream");
    row("device", "https://h.example/CON.png", "pid_12.png");
    row("device behind the dot", "https://h.example/a.NUL", "pid_12.NUL");
    row("drive", "C:/Windows/a.exe", "pid_12.exe");
    row("host alone", "https://h.example", "pid_12.example");
}

void TestHostileDocument::namesOfPicturesStayInTheirFolder()
{
    QFETCH(QString, link);
    QFETCH(QString, name);
    QCOMPARE(Config::productPicture(productWithIcon(link)).fileName, name);
    const QDir folder(Config::imagesDir());
    QCOMPARE(QDir::cleanPath(folder.filePath(name)), folder.path() + QLatin1Char('/') + name);
}

void TestHostileDocument::referencesAreNoPictures_data()
{
    QTest::addColumn<bool>("isReference");
    for (const char *suffix :
         {"lnk", "LNK", "lnk ", " lnk", "lnk\xC2\xA0", "lnk:stream", "lnk::$DATA", "ln\xE2\x84\xAA",
          "url", "website", "pif", "scf", "library-ms", "search-ms", "searchConnector-ms",
          "appref-ms", "theme", "contact"})
        QTest::newRow(suffix) << true;
    // Names that mean nothing to who only reads them, a file of the cache and no more.
    for (const char *suffix : {"png", "jpg", "exe", "dll", "ini", "svgz", "~tmp", "lnkx", "xlnk",
                               "png:lnk", "png::$DATA", "lnk~1", "NUL", ""})
        QTest::newRow(suffix) << false;
}

void TestHostileDocument::referencesAreNoPictures()
{
    QFETCH(bool, isReference);
    const QString link = "https://h.example/a."_s + QString::fromUtf8(QTest::currentDataTag());
    const Config::Picture picture = Config::productPicture(productWithIcon(link));
    QCOMPARE(picture.link, isReference ? QString() : link);
    QCOMPARE(picture.fileName.isEmpty(), isReference);
    QCOMPARE(Config::optionPicture({{"value"_s, 1}, {"banner_url"_s, link}}).fileName.isEmpty(),
             isReference);
    if (isReference)
        QCOMPARE(Config::productIconPath(productWithIcon(link)),
                 ":/Resources/light/ico_default_2x.png"_s);
}

void TestHostileDocument::plantedPictureIsNoRule()
{
    // The suffix of a link becomes a part of a style sheet, once such a file is there.
    const QString link = "https://h.example/a.png);}*{min-width:777px"_s;
    const QString file = Config::imagesDir() + QLatin1Char('/') +
                         Config::productPicture(productWithIcon(link)).fileName;
    QFile planted(file);
    if (!Machine::allowsAnyFileName)
        QSKIP("no file of this system can have such a name");
    QVERIFY(planted.open(QIODevice::WriteOnly));
    UninstallPage page(nullptr, {productWithIcon(link)});
    page.show();
    QCOMPARE(Config::productIconPath(productWithIcon(link)), file);
    const QList<QWidget *> widgets = page.findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        QVERIFY(widget->minimumWidth() != 777);
}

QTEST_MAIN(TestHostileDocument)
#include "test_hostiledocument.moc"
