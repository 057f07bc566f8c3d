#include "tests/component/wizard/wizardtest.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/testendpoints.h"

#include <QtGui/QWindow>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLayout>

class TestMainWindow : public WizardTest
{
    Q_OBJECT

private Q_SLOTS:
    void slotsAreInTheirOrder();
    void opensOnTheFeedbackPage();
    void pagesHaveTheirPlaces();
    void overlayCoversTheWindowWhileADialogIsOpen();
    void dialogGrowsToItsTexts();
    void closeIsRefusedOnlyByADisabledAction();
    void offerOpensItsLink_data();
    void offerOpensItsLink();
    void offerWithoutAProductIdKeepsThePlaceEmpty();
    void captionIsTheTopStripOutsideButtons();
    void pageTakesTheKeyboard();
};

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
    QCOMPARE(window().size(), QSize(720, 480));
    QCOMPARE(window().windowTitle(), "Norvane Clipwright Uninstaller"_s);
    QCOMPARE(window().windowFlags(), Qt::Window | Qt::FramelessWindowHint);
    QCOMPARE(page(), window().optionPage);
    QCOMPARE(AnalyticsRecord::texts(),
             QStringList("DoUninstall/UninstallPopUp source=uninstall_action"_s));
}

void TestMainWindow::pagesHaveTheirPlaces()
{
    const LookApplied look;
    const QWidget *const pages[] = {window().optionPage, window().upgradePage,
                                    window().uninstallPage, window().productPage};
    QCOMPARE(window().wizardPages->count(), 4);
    for (int i = 0; i < 4; ++i) {
        QCOMPARE(window().wizardPages->widget(i), pages[i]);
        window().wizardPages->setCurrentIndex(i);
        QCoreApplication::processEvents();
        QCOMPARE(window().size(), QSize(720, 480)); // no page is too large for it
    }
}

void TestMainWindow::overlayCoversTheWindowWhileADialogIsOpen()
{
    const LookApplied look;
    window().move(40, 30);
    const QWidget *layer = overlay(window());
    QVERIFY(layer->isHidden());
    QCOMPARE(layer->styleSheet(), "background-color: rgba(0, 0, 0, 127);\nborder-radius: 12px;"_s);

    bool wasAsked = false;
    answerQuestion([&](ConfirmWindow &dialog) {
        QVERIFY(layer->isVisible());
        QCOMPARE(layer->geometry(), window().rect());
        QCOMPARE(window().childAt(10, 10), layer); // above the pages
        QCOMPARE(dialog.geometry().center(), window().geometry().center());
        QVERIFY(dialog.isModal());
        wasAsked = true;
        Q_EMIT dialog.closed(0);
    });
    QVERIFY(wasAsked);
    QVERIFY(layer->isHidden());
    QVERIFY(!window().findChild<ConfirmWindow *>());
}

void TestMainWindow::dialogGrowsToItsTexts()
{
    const LookApplied look("ConfirmWindow QCheckBox { font-size: 60px; }"_s);
    int missing = -1;
    answerQuestion([&missing](ConfirmWindow &dialog) {
        missing = dialog.layout()->minimumHeightForWidth(dialog.width()) - dialog.height();
        Q_EMIT dialog.closed(0);
    });
    QCOMPARE(missing, 0);
}

void TestMainWindow::closeIsRefusedOnlyByADisabledAction()
{
    window().upgradePage->btnCancel->setEnabled(false); // as while an installer runs
    closeFromTheWindowSystem();
    QVERIFY(window().isVisible());
    window().close(); // the program's own request is always granted
    QVERIFY(!window().isVisible());

    window().upgradePage->btnCancel->setEnabled(true);
    window().show();
    closeFromTheWindowSystem();
    QVERIFY(!window().isVisible());
}

void TestMainWindow::offerOpensItsLink_data()
{
    QTest::addColumn<QString>("reason");
    QTest::addColumn<QString>("changedTo"); // the offer's link, unless null
    QTest::addColumn<QString>("opened");

    const auto coupon = "The full version costs too much for me"_s;
    QTest::newRow("with the product id")
        << coupon << QString()
        << "https://www.norvane.example/clipwright/offer?pid=8461&m=uninstall"_s;
    QTest::newRow("empty, to the redirect host")
        << "I found it too hard to learn"_s << QString()
        << "http://redirect.test.example:8080/go.php?pid=8461&m=c23"_s;
    QTest::newRow("without a place for the id") << coupon << "https://a.example/b%20c"_s
                                                << "https://a.example/b%20c"_s;
    QTest::newRow("with an escape that begins like that place")
        << coupon << "https://a.example/b%1Fc"_s
        << "https://a.example/b8461Fc"_s;
}

void TestMainWindow::offerOpensItsLink()
{
    QFETCH(QString, reason);
    QFETCH(QString, changedTo);
    QFETCH(QString, opened);
    TestEndpoints::setRedirect("http://redirect.test.example:8080"_s);
    const LinkCatcher links;
    chooseReason(reason);
    if (!changedTo.isNull())
        window().optionPage->btnNext->setProperty("url", changedTo);
    window().optionPage->btnNext->click();
    QCOMPARE(links.links(), {QUrl(opened)});
    QCOMPARE(page(), window().optionPage);
    QVERIFY(window().isEnabled());
    QCOMPARE(AnalyticsRecord::actions().last(), "RetainClick"_s);
}

void TestMainWindow::offerWithoutAProductIdKeepsThePlaceEmpty()
{
    feed().writeDataFile("Clipwright.ini"_s, {});
    const LinkCatcher links;
    chooseReason("The full version costs too much for me"_s);
    window().optionPage->btnNext->click();
    QCOMPARE(links.links(),
             {QUrl("https://www.norvane.example/clipwright/offer?pid=&m=uninstall"_s)});
}

void TestMainWindow::captionIsTheTopStripOutsideButtons()
{
    const LookApplied look;
    const auto isCaption = [this](int x, int y) {
        return window().isCaption(window().mapToGlobal(QPoint(x, y)));
    };
    QVERIFY(isCaption(10, 0));
    QVERIFY(isCaption(360, 36));
    QVERIFY(!isCaption(360, 37));
    QVERIFY(!isCaption(360, 300));
    QVERIFY(!isCaption(10, -5)); // outside the window

    window().wizardPages->setCurrentWidget(window().productPage);
    QCoreApplication::processEvents();
    const QPushButton *close = window().productPage->btnClose;
    const QPoint onButton = close->mapTo(&window(), close->rect().center());
    QVERIFY(onButton.y() < 37);
    QVERIFY(!isCaption(onButton.x(), onButton.y()));
    QVERIFY(isCaption(onButton.x() - 60, onButton.y()));
}

void TestMainWindow::pageTakesTheKeyboard()
{
    QVERIFY(QTest::qWaitForWindowActive(&window()));
    QVERIFY(window().optionPage->hasFocus());
    QTest::keyClick(&window(), Qt::Key_Tab);
    QVERIFY(qobject_cast<QRadioButton *>(QApplication::focusWidget()));

    // From the chosen reason through its text box to the buttons and around.
    chooseReason("Other"_s);
    QVERIFY(window().optionPage->textEdit->hasFocus());
    QTest::keyClick(window().optionPage->textEdit, Qt::Key_Tab);
    QVERIFY(window().optionPage->btnContinue->hasFocus());
    QTest::keyClick(&window(), Qt::Key_Tab);
    QVERIFY(window().optionPage->btnCancel->hasFocus());
    QTest::keyClick(&window(), Qt::Key_Tab);
    QVERIFY(qobject_cast<QRadioButton *>(QApplication::focusWidget()));
    window().wizardPages->setCurrentWidget(window().uninstallPage);
    QVERIFY(window().uninstallPage->hasFocus());
}

QTEST_MAIN(TestMainWindow)
#include "test_mainwindow.moc"
