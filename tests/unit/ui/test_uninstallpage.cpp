#include "tests/support/linkcatcher.h"
#include "tests/support/lookapplied.h"
#include "tests/support/offlinemachine.h"
#include "tests/support/patience.h"
#include "tests/unit/ui/pagetest.h"
#include "ui/productitem.h"
#include "ui/uninstallpage.h"

#include <QtCore/QFile>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtTest/QSignalSpy>
#include <QtWidgets/QApplication>

class TestUninstallPage : public PageTest
{
    Q_OBJECT

private Q_SLOTS:
    void firstLook();
    void barAndTimeLeftFollowTheClock();
    void tickReadsTheClock();
    void runningProcessIsWaitedFor();
    void endedProcessStillTakesHalfAMinute();
    void successView();
    void jumpPageIsOpenedEvenWhenMissing();
    void failureView();
    void failureDuringARunStopsIt();
    void jumpingClockMakesNoSuccessOfAFailure();
    void doneTakesTheAddress_data();
    void doneTakesTheAddress();
    void onlyTheHintHasTheHintsColour();
    void offlineThereAreNoMoreProducts();
    void exitsReportTheResult_data();
    void exitsReportTheResult();
    void productClickOpensAndReports();
    void arrowFollowsTheButton();
    void arrowIsMirroredWithTheLayout();
    void runIsReadAloud();

private:
    void finishRun(UninstallPage &page);
};

namespace {

QList<QJsonObject> products()
{
    return objects(R"([{"pid": 5, "name": "One", "desc": "first", "url": "https://one.example/"},
                       {"name": "Two", "desc": "second"}])");
}

QString picture(const UninstallPage &page)
{
    return page.imgUninstall->styleSheet();
}

QString pictureNamed(const char *name)
{
    return ".QWidget{border-image: url(:/Resources/light/%1_2x.png);}"_s.arg(QLatin1String(name));
}

} // namespace

// A run of a process that ended long ago, seen at the end of the curve.
void TestUninstallPage::finishRun(UninstallPage &page)
{
    const LinkCatcher links;
    QProcess process;
    page.start(&process);
    page.showElapsed(30000);
    QTRY_VERIFY(page.edtEmail->isVisibleTo(&page));
}

void TestUninstallPage::firstLook()
{
    const UninstallPage page(nullptr, {});
    QCOMPARE(page.lblTitle->text(), "Thanks for your feedback! Uninstalling..."_s);
    QCOMPARE(page.label_2->text(), "Time remaining: About 15 seconds"_s);
    QCOMPARE(page.label_5->text(), "Please enter a valid email address."_s);
    QCOMPARE(page.btnSubscribe->text(), "Done"_s);
    QCOMPARE(page.btnSubscribe->objectName(), "SecondaryBtn"_s);
    QCOMPARE(page.label_3->text(), "More Apps You Might Like"_s);
    QCOMPARE(page.btnProduct->text(), "More Products"_s);
    QCOMPARE(page.edtEmail->placeholderText(), "Email address"_s);
    QCOMPARE(page.progressBar->value(), 0);
    QVERIFY(page.pnlSubscribe->isHidden());
    QVERIFY(page.label_5->isHidden());
    QVERIFY(!page.btnClose->isEnabled());
    QVERIFY(!page.btnProduct->isEnabled());
    QVERIFY(!page.isRunning());
}

void TestUninstallPage::tickReadsTheClock()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    QVERIFY(page.isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(page.progressBar->value() >= 2, 10000); // 600 ms by the curve
}

void TestUninstallPage::runningProcessIsWaitedFor()
{
    const LinkCatcher links;
    (*m_sandbox)->writeUninstaller(0, {{"end"_s, "hang"_s}});
    QProcess process;
    process.start((*m_sandbox)->installDir() + "/unins000.exe"_s, QStringList());
    QVERIFY(process.waitForStarted());
    UninstallPage page(nullptr, {});
    page.start(&process);
    page.showElapsed(29999);
    page.showElapsed(45000);
    QCOMPARE(page.progressBar->value(), 99);
    QVERIFY(page.isRunning());
    QVERIFY(AnalyticsRecord::events().isEmpty());

    // Killed while it hangs, not while the system loads it.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists((*m_sandbox)->uninstallerRecord()), patienceMs);
    process.kill();
    QVERIFY(process.waitForFinished());
    page.showElapsed(45100);
    QCOMPARE(page.progressBar->value(), 100);
    QVERIFY(!page.isRunning());
}

void TestUninstallPage::endedProcessStillTakesHalfAMinute()
{
    const LinkCatcher links;
    UninstallPage page(nullptr, {});
    QProcess process; // ended before the first tick
    page.start(&process);
    for (const int elapsedMs : {3100, 29900}) {
        page.showElapsed(elapsedMs);
        QVERIFY(!page.progressBar->isHidden());
    }
    QVERIFY(page.isRunning());
    QVERIFY(AnalyticsRecord::events().isEmpty());
    page.showElapsed(30000);
    QVERIFY(!page.isRunning());
    QCOMPARE(AnalyticsRecord::events().size(), 1);
}

void TestUninstallPage::successView()
{
    const LinkCatcher links;
    UninstallPage page(nullptr, {});
    page.show();
    QVERIFY(QTest::qWaitForWindowActive(&page));
    QProcess process;
    page.start(&process);
    // The view follows half a second after the end. Timers fire in the order of their deadlines,
    // however late on a busy machine.
    QList<bool> isShown;
    const auto lookAfter = [&](int ms) {
        QTimer::singleShot(ms, Qt::PreciseTimer, &page,
                           [&] { isShown += page.pnlSubscribe->isVisible(); });
    };
    lookAfter(450);
    page.showElapsed(30000);
    lookAfter(550);
    QCOMPARE(page.progressBar->value(), 100);
    QCOMPARE(page.label_2->text(), "Time remaining: About 0 seconds"_s);
    QCOMPARE(lastEvent(), R"(UninstallCompleted {"result":"success"})"_s);
    QVERIFY(page.pnlSubscribe->isHidden());
    QVERIFY(!page.btnClose->isEnabled());

    QCOMPARE(picture(page), pictureNamed("Uninstalling"));

    QTRY_COMPARE(isShown, (QList<bool>{false, true}));
    QCOMPARE(picture(page), pictureNamed("UninstallSuccess"));
    QVERIFY(page.progressBar->isHidden());
    QVERIFY(page.edtEmail->isVisible());
    QVERIFY(page.edtEmail->hasFocus());
    QCOMPARE(page.lblTitle->text(), "Successfully uninstalled"_s);
    QCOMPARE(page.label_2->text(), "Subscribe to get the latest updates"_s);
    QVERIFY(page.btnClose->isEnabled());
    QVERIFY(page.btnProduct->isEnabled());
    QCOMPARE(AnalyticsRecord::events().size(), 1);
}

void TestUninstallPage::jumpPageIsOpenedEvenWhenMissing()
{
    LinkCatcher links;
    const auto run = [] {
        UninstallPage page(nullptr, {});
        QProcess process;
        page.start(&process);
        page.showElapsed(30000);
    };
    run();
    (*m_sandbox)->removeSystemValue("HKEY_LOCAL_MACHINE/SOFTWARE/Norvane/846/UninstallJumpPage"_s);
    run();
    QCOMPARE(links.links(),
             QList<QUrl>({QUrl("https://www.norvane.example/clipwright/goodbye"_s), QUrl()}));
}

void TestUninstallPage::failureView()
{
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    page.fail();
    QVERIFY(!page.isRunning());
    QCOMPARE(picture(page), pictureNamed("UninstallFailed"));
    QVERIFY(page.progressBar->isHidden());
    QVERIFY(page.pnlSubscribe->isVisible());
    QVERIFY(page.edtEmail->isHidden());
    QVERIFY(page.widget->isHidden());
    QCOMPARE(page.lblTitle->text(), "Uninstall Failed"_s);
    QCOMPARE(page.label_2->text(),
             "Your uninstallation encountered errors. Please try uninstalling again."_s);
    QCOMPARE(page.accessibleName(),
             page.lblTitle->text() + QLatin1Char(' ') + page.label_2->text());
    QCOMPARE(page.btnSubscribe->text(), "Close"_s);
    QVERIFY(page.btnClose->isEnabled());
    QVERIFY(page.btnProduct->isEnabled());
    QCOMPARE(AnalyticsRecord::events().size(), 1);
    QCOMPARE(lastEvent(), R"(UninstallCompleted {"result":"failure"})"_s);
}

void TestUninstallPage::failureDuringARunStopsIt()
{
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    page.showElapsed(10000);
    page.fail();
    QTest::qWait(250); // two ticks' time
    QCOMPARE(page.label_2->text(),
             "Your uninstallation encountered errors. Please try uninstalling again."_s);
}

void TestUninstallPage::jumpingClockMakesNoSuccessOfAFailure()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    page.failAfter(50);
    page.showElapsed(60000); // the machine slept meanwhile
    QVERIFY(page.isRunning());
    QTRY_COMPARE(page.lblTitle->text(), "Uninstall Failed"_s);
    QCOMPARE(AnalyticsRecord::events().size(), 1);
    QCOMPARE(lastEvent(), R"(UninstallCompleted {"result":"failure"})"_s);
}

void TestUninstallPage::barAndTimeLeftFollowTheClock()
{
    UninstallPage page(nullptr, {});
    page.start(nullptr);
    const auto shown = [&page](qint64 elapsedMs) -> QString {
        page.showElapsed(elapsedMs);
        return QString::number(page.progressBar->value()) + QLatin1Char(' ') + page.label_2->text();
    };
    QCOMPARE(shown(100), "0 "_s); // nothing to reckon with yet
    QCOMPARE(shown(15000), "50 Time remaining: About 15 seconds"_s);
    QCOMPARE(shown(20000), "60 Time remaining: About 13 seconds"_s);
    QCOMPARE(shown(10000), "33 Time remaining: About 13 seconds"_s); // 20 by itself: never rises
    QCOMPARE(shown(29999), "99 Time remaining: About 0 seconds"_s);
}

void TestUninstallPage::doneTakesTheAddress_data()
{
    QTest::addColumn<QString>("typed");
    QTest::addColumn<QString>("sent"); // null when the address is refused
    QTest::newRow("wrong") << "robin@mail" << QString();
    QTest::newRow("none") << ""
                          << "";
    QTest::newRow("with blanks") << "  robin@mail.test \t"
                                 << "robin@mail.test";
}

void TestUninstallPage::doneTakesTheAddress()
{
    QFETCH(const QString, typed);
    QFETCH(const QString, sent);
    for (const bool byKey : {false, true}) {
        UninstallPage page(nullptr, {});
        page.show();
        finishRun(page);
        const QSignalSpy more(&page, &UninstallPage::btnProductClicked);
        page.edtEmail->setText(typed);
        if (byKey)
            QTest::keyClick(page.edtEmail, Qt::Key_Return);
        else
            QTest::mouseClick(page.btnSubscribe, Qt::LeftButton);
        QCOMPARE(more.size(), sent.isNull() ? 0 : 1);
        QCOMPARE(page.label_5->isVisible(), sent.isNull());
        QCOMPARE(lastEvent(), sent.isNull() ? R"(UninstallCompleted {"result":"success"})"_s
                                            : R"(UninstallCompleted {"ButtonClick":"Subscribe",)"
                                              R"("email":"%1","result":"success"})"_s.arg(sent));
        QTest::keyClicks(page.edtEmail, "."_s); // another address, another chance
        QVERIFY(page.label_5->isHidden());
    }
}

void TestUninstallPage::onlyTheHintHasTheHintsColour()
{
    const LookApplied look;
    UninstallPage page(nullptr, {});
    page.edtEmail->ensurePolished();
    const auto colour = [&page] { return page.edtEmail->palette().color(QPalette::Text); };
    const QColor hint = colour();
    page.edtEmail->setText("x"_s);
    QVERIFY(colour() != hint);
    page.edtEmail->clear();
    QCOMPARE(colour(), hint);
}

void TestUninstallPage::offlineThereAreNoMoreProducts()
{
    UninstallPage online(nullptr, {});
    finishRun(online);
    QVERIFY(online.btnProduct->isVisibleTo(&online));

    const OfflineMachine machine;
    UninstallPage offline(nullptr, {});
    offline.show();
    finishRun(offline);
    QVERIFY(!offline.btnProduct->isVisibleTo(&offline));
    const QSignalSpy more(&offline, &UninstallPage::btnProductClicked);
    QVERIFY(quitsAfter([&offline] { offline.btnSubscribe->click(); }));
    QVERIFY(more.isEmpty());
}

void TestUninstallPage::exitsReportTheResult_data()
{
    QTest::addColumn<bool>("success");
    QTest::addColumn<QString>("result");
    QTest::newRow("success") << true << "success";
    QTest::newRow("failure") << false << "failure";
}

void TestUninstallPage::exitsReportTheResult()
{
    QFETCH(const bool, success);
    QFETCH(const QString, result);
    UninstallPage page(nullptr, {});
    page.show();
    page.start(nullptr);
    if (success)
        finishRun(page);
    else
        page.fail();
    const QString ended = R"(UninstallCompleted {"result":"%1"})"_s.arg(result);
    QCOMPARE(lastEvent(), ended);
    if (!success) { // Close asks for no address
        QVERIFY(quitsAfter([&page] { page.btnSubscribe->click(); }));
        QCOMPARE(AnalyticsRecord::events().size(), 1);
    }

    const QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    QTest::mouseClick(page.btnProduct, Qt::LeftButton);
    QCOMPARE(more.size(), 1);
    QCOMPARE(lastEvent(),
             R"(UninstallCompleted {"ButtonClick":"Click_more","result":"%1"})"_s.arg(result));

    QVERIFY(quitsAfter([&page] { page.btnClose->click(); }));
    QCOMPARE(lastEvent(),
             R"(Click_exit {"pagesource":"uninstallprocess","result":"%1"})"_s.arg(result));
}

void TestUninstallPage::productClickOpensAndReports()
{
    const LinkCatcher links;
    UninstallPage page(nullptr, products());
    page.resize(720, 480);
    page.show();
    QCOMPARE(page.lstProduct->count(), 2);
    const QStringList events{
        R"(ReCommend {"Clickurl":"https://one.example/","pagetype":"uninstallprocess","pid":"5"})"_s,
        R"(ReCommend {"Clickurl":"","pagetype":"uninstallprocess","pid":"-1"})"_s};
    for (int row : {0, 1}) {
        QListWidgetItem *item = page.lstProduct->item(row);
        QCOMPARE(item->data(Qt::UserRole).toJsonObject(), products().at(row));
        const auto *tile = qobject_cast<ProductItem *>(page.lstProduct->itemWidget(item));
        QVERIFY(tile);
        QCOMPARE(tile->label_3->text(), row == 0 ? "One"_s : "Two"_s);
        QCOMPARE(tile->label_4->text(), row == 0 ? "first"_s : "second"_s);
        QTest::mouseClick(page.lstProduct->viewport(), Qt::LeftButton, {},
                          page.lstProduct->visualItemRect(item).center());
        QCOMPARE(lastEvent(), events.at(row));
    }
    QCOMPARE(links.links(), {QUrl("https://one.example/"_s)});
}

void TestUninstallPage::arrowFollowsTheButton()
{
    UninstallPage page(nullptr, {});
    page.resize(720, 480);
    page.show();
    const QWidget *arrow = page.btnProduct->findChild<QWidget *>();
    QVERIFY(arrow);
    QCOMPARE(arrow->size(), QSize(24, 24));
    QCOMPARE(arrow->x(), page.btnProduct->width() - 24);
    QCOMPARE(arrow->y(), 9);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_disabled"));
    QCOMPARE(page.childAt(arrow->mapTo(&page, arrow->rect().center())), page.btnProduct);

    const auto send = [&page](QEvent::Type type) {
        QEvent event(type);
        QApplication::sendEvent(page.btnProduct, &event);
    };
    send(QEvent::Leave); // nothing happens while the button is disabled
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_disabled"));

    page.btnProduct->setEnabled(true);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_normal"));
    send(QEvent::Enter);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_hover"));
    QTest::mousePress(page.btnProduct, Qt::LeftButton);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_pressed"));
    QTest::mouseRelease(page.btnProduct, Qt::LeftButton);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_pressed")); // until the pointer leaves
    send(QEvent::Leave);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_normal"));
    page.btnProduct->setEnabled(false);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_normal"));
}

void TestUninstallPage::arrowIsMirroredWithTheLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    UninstallPage page(nullptr, {});
    page.resize(720, 480);
    page.show();
    page.btnProduct->setEnabled(true);
    const QWidget *arrow = page.btnProduct->findChild<QWidget *>();
    QCOMPARE(arrow->x(), 0);
    QCOMPARE(arrow->y(), 9);
    QCOMPARE(arrow->styleSheet(), pictureNamed("Arrow_rtl_normal"));
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

// A new name of the page, which has the keyboard, is what screen readers read aloud.
void TestUninstallPage::runIsReadAloud()
{
    UninstallPage page(nullptr, products());
    QStringList read{page.accessibleName()};
    page.start(nullptr);
    for (qint64 elapsedMs = 0; elapsedMs < 30000; elapsedMs += 100) {
        page.showElapsed(elapsedMs);
        if (page.accessibleName() != read.constLast())
            read += page.accessibleName();
    }
    const QString uninstalling = "Thanks for your feedback! Uninstalling..."_s;
    const QString timeLeft = uninstalling + " Time remaining: About %1 seconds"_s;
    QCOMPARE(read, (QStringList{uninstalling, timeLeft.arg(30), timeLeft.arg(20), timeLeft.arg(10),
                                timeLeft.arg(0)}));

    finishRun(page);
    const QString success = "Successfully uninstalled Subscribe to get the latest updates"_s;
    QCOMPARE(page.accessibleName(), success);
    // The box takes the keyboard; what is read with it says why.
    QCOMPARE(page.edtEmail->accessibleDescription(), success);
}

QTEST_MAIN(TestUninstallPage)
#include "test_uninstallpage.moc"
