#include "tests/support/analyticsrecord.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/mainwindowstate.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "tests/support/testendpoints.h"
#include "ui/confirmwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <QtWidgets/QRadioButton>

class TestMainWindow : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void slotsAreInTheirOrder();
    void opensOnTheFeedbackPage();
    void pagesHaveTheirPlaces();
    void dimmingLayerCoversTheWindowWhileADialogIsOpen();
    void closeFromTheWindowSystemIsAcceptedBeforeARun();
    void closeIsRefusedWhileAnInstallerRuns();
    void configuredLinkCarriesTheProductId();
    void emptyLinkLeadsToTheRedirectHost();
    void linkWithoutPlaceForTheIdIsOpenedAsItStands();
    void escapeThatBeginsAsThePlaceForTheIdIsTakenForIt();
    void captionIsTheTopStripOutsideButtons();
    void pageTakesTheKeyboard();

private:
    QRadioButton *reason(const MainWindow &window, const char *title) const;

    std::unique_ptr<Sandbox> m_sandbox;
};

namespace {

// Reasons of the built-in document: one whose offer has a link, one whose link is empty.
const char couponTitle[] = "The full version costs too much for me";
const char emptyLinkTitle[] = "I found it too hard to learn";

} // namespace

void TestMainWindow::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    AnalyticsRecord::restart();
    TestEndpoints::setRedirect(QStringLiteral("http://redirect.test.example:8080"));
}

void TestMainWindow::cleanup()
{
    m_sandbox.reset();
}

QRadioButton *TestMainWindow::reason(const MainWindow &window, const char *title) const
{
    const QList<QRadioButton *> reasons = window.optionPage->findChildren<QRadioButton *>();
    for (QRadioButton *reason : reasons) {
        if (reason->accessibleName() == QLatin1String(title))
            return reason;
    }
    return nullptr;
}

void TestMainWindow::slotsAreInTheirOrder()
{
    const QMetaObject &meta = MainWindow::staticMetaObject;
    QList<QByteArray> methods;
    for (int i = meta.methodOffset(); i < meta.methodCount(); ++i)
        methods += meta.method(i).methodSignature();
    QCOMPARE(methods,
             QList<QByteArray>({"btnNextClicked()", "btnContinueClicked()", "btnCancelClicked()",
                                "btnProductClicked()", "installStarted()",
                                "installFinished(int,QProcess::ExitStatus)",
                                "installError(QProcess::ProcessError)", "uninstallStarted()",
                                "uninstallFinished(int,QProcess::ExitStatus)",
                                "uninstallError(QProcess::ProcessError)"}));
}

void TestMainWindow::opensOnTheFeedbackPage()
{
    const MainWindow window(nullptr);
    QCOMPARE(window.size(), QSize(720, 480));
    QCOMPARE(window.windowTitle(), QStringLiteral("Norvane Clipwright Uninstaller"));
    QCOMPARE(window.windowFlags(), Qt::Window | Qt::FramelessWindowHint);
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    const AnalyticsRecord::Event popUp{
        QStringLiteral("DoUninstall"),
        QStringLiteral("UninstallPopUp"),
        {{QLatin1String("source"), QLatin1String("uninstall_action")}}};
    QCOMPARE(AnalyticsRecord::events(), {popUp});
}

void TestMainWindow::pagesHaveTheirPlaces()
{
    MainWindow window(nullptr);
    QCOMPARE(window.wizardPages->count(), 4);
    QCOMPARE(window.wizardPages->indexOf(window.optionPage), 0);
    QCOMPARE(window.wizardPages->indexOf(window.upgradePage), 1);
    QCOMPARE(window.wizardPages->indexOf(window.uninstallPage), 2);
    QCOMPARE(window.wizardPages->indexOf(window.productPage), 3);

    const LookApplied look;
    window.show();
    for (int page = 0; page < 4; ++page) {
        window.wizardPages->setCurrentIndex(page);
        QCoreApplication::processEvents();
        QCOMPARE(window.size(), QSize(720, 480)); // no page is too large for it
    }
}

void TestMainWindow::dimmingLayerCoversTheWindowWhileADialogIsOpen()
{
    const LookApplied look;
    MainWindow window(nullptr);
    window.move(40, 30);
    window.show();
    QWidget *layer = overlay(window);
    QVERIFY(layer);
    QVERIFY(layer->isHidden());
    QCOMPARE(layer->styleSheet(),
             QStringLiteral("background-color: rgba(0, 0, 0, 127);\nborder-radius: 12px;"));
    reason(window, "Other")->setChecked(true);

    bool isCovered = false;
    QPoint centre;
    bool isModal = false;
    QTimer::singleShot(0, &window, [&] {
        auto *dialog = window.findChild<ConfirmWindow *>();
        isCovered = layer->isVisible() && layer->geometry() == window.rect();
        centre = dialog->geometry().center();
        isModal = dialog->isModal();
        Q_EMIT dialog->closed(0);
    });
    window.optionPage->btnContinue->click();
    QVERIFY(isCovered);
    QCOMPARE(centre, window.geometry().center());
    QVERIFY(isModal);
    QVERIFY(layer->isHidden());
    QVERIFY(!window.findChild<ConfirmWindow *>());
}

void TestMainWindow::closeFromTheWindowSystemIsAcceptedBeforeARun()
{
    MainWindow window(nullptr);
    window.show();
    window.windowHandle()->close();
    QVERIFY(!window.isVisible());
}

void TestMainWindow::closeIsRefusedWhileAnInstallerRuns()
{
    MainWindow window(nullptr);
    window.show();
    window.upgradePage->btnCancel->setEnabled(false);
    window.windowHandle()->close();
    QVERIFY(window.isVisible());
    window.close(); // the program's own request is always granted
    QVERIFY(!window.isVisible());
}

void TestMainWindow::configuredLinkCarriesTheProductId()
{
    const LinkCatcher links;
    MainWindow window(nullptr);
    window.show();
    reason(window, couponTitle)->setChecked(true);
    window.optionPage->btnNext->click();
    QCOMPARE(links.links(),
             {QUrl(QStringLiteral(
                 "https://www.norvane.example/clipwright/offer?pid=8461&m=uninstall"))});
    QCOMPARE(window.wizardPages->currentWidget(), window.optionPage);
    QVERIFY(window.isEnabled());
    QCOMPARE(AnalyticsRecord::actions().last(), QStringLiteral("RetainClick"));
}

void TestMainWindow::emptyLinkLeadsToTheRedirectHost()
{
    const LinkCatcher links;
    MainWindow window(nullptr);
    window.show();
    reason(window, emptyLinkTitle)->setChecked(true);
    window.optionPage->btnNext->click();
    QCOMPARE(links.links(),
             {QUrl(QStringLiteral("http://redirect.test.example:8080/go.php?pid=8461&m=c23"))});
}

void TestMainWindow::linkWithoutPlaceForTheIdIsOpenedAsItStands()
{
    const LinkCatcher links;
    MainWindow window(nullptr);
    window.show();
    reason(window, couponTitle)->setChecked(true);
    window.optionPage->btnNext->setProperty("url", QStringLiteral("https://a.example/b%20c"));
    window.optionPage->btnNext->click();
    QCOMPARE(links.links(), {QUrl(QStringLiteral("https://a.example/b%20c"))});
}

void TestMainWindow::escapeThatBeginsAsThePlaceForTheIdIsTakenForIt()
{
    const LinkCatcher links;
    MainWindow window(nullptr);
    window.show();
    reason(window, couponTitle)->setChecked(true);
    window.optionPage->btnNext->setProperty("url", QStringLiteral("https://a.example/b%1Fc"));
    window.optionPage->btnNext->click();
    QCOMPARE(links.links(), {QUrl(QStringLiteral("https://a.example/b8461Fc"))});
}

void TestMainWindow::captionIsTheTopStripOutsideButtons()
{
    const LookApplied look;
    MainWindow window(nullptr);
    window.show();
    const auto isCaption = [&window](int x, int y) {
        return window.isCaption(window.mapToGlobal(QPoint(x, y)));
    };
    QVERIFY(isCaption(10, 0));
    QVERIFY(isCaption(360, 36));
    QVERIFY(!isCaption(360, 37));
    QVERIFY(!isCaption(360, 300));
    QVERIFY(!window.isCaption(window.mapToGlobal(QPoint(10, -5)))); // nobody's

    window.wizardPages->setCurrentWidget(window.productPage);
    QCoreApplication::processEvents();
    const QPushButton *close = window.productPage->btnClose;
    const QPoint onButton = close->mapTo(&window, close->rect().center());
    QVERIFY(onButton.y() < 37);
    QVERIFY(!isCaption(onButton.x(), onButton.y()));
    QVERIFY(isCaption(onButton.x() - 60, onButton.y()));
}

void TestMainWindow::pageTakesTheKeyboard()
{
    MainWindow window(nullptr);
    window.show();
    QVERIFY(QTest::qWaitForWindowActive(&window));
    QVERIFY(window.optionPage->hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(qobject_cast<QRadioButton *>(QApplication::focusWidget()));

    // From the chosen reason through its text box to the buttons and around.
    reason(window, "Other")->setChecked(true);
    QVERIFY(window.optionPage->textEdit->hasFocus());
    QTest::keyClick(window.optionPage->textEdit, Qt::Key_Tab);
    QVERIFY(window.optionPage->btnContinue->hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(window.optionPage->btnCancel->hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    QVERIFY(qobject_cast<QRadioButton *>(QApplication::focusWidget()));
    window.wizardPages->setCurrentWidget(window.uninstallPage);
    QVERIFY(window.uninstallPage->hasFocus());
}

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
