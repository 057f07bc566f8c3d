#include "tests/support/analyticsrecord.h"
#include "tests/support/linkcatcher.h"
#include "tests/support/offlinemachine.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/testcase.h"
#include "ui/productitem.h"
#include "ui/uninstallpage.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QFile>
#include <QtCore/QJsonDocument>
#include <QtCore/QProcess>
#include <QtTest/QSignalSpy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>

class TestUninstallPage : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();

    void firstLook();
    void recommendedProductsAreListed();
    void barFollowsTheClock();
    void tickReadsTheClock();
    void timeLeftNeverRises();
    void timeLeftIsEmptyWhileTheBarIsAtZero();
    void runningProcessIsWaitedFor();
    void endedProcessStillTakesHalfAMinute();
    void successView();
    void jumpPageIsOpenedEvenWhenMissing();
    void failureView();
    void failureDuringARunStopsIt();
    void jumpingClockMakesNoSuccessOfAFailure();
    void offlineHidesMoreProducts();
    void doneRefusesAWrongAddress();
    void doneTrimsAndSendsTheAddress();
    void doneSendsAnEmptyAddress();
    void doneQuitsOffline();
    void closeAfterFailureQuits();
    void moreReportsTheResult_data();
    void moreReportsTheResult();
    void leavingReportsTheResult_data();
    void leavingReportsTheResult();
    void productClickOpensAndReports();
    void keysClickProductsToo();
    void arrowFollowsTheButton();
    void arrowIsMirroredWithTheLayout();
    void runIsReadAloud();
    void failureIsReadAloud();

private:
    void finishRun(UninstallPage &page);

    std::unique_ptr<Sandbox> m_sandbox;
};

namespace {

QList<QJsonObject> products()
{
    return {QJsonDocument::fromJson(R"({"pid": 5, "name": "One", "desc": "first",
                                        "url": "https://one.example/"})")
                .object(),
            QJsonDocument::fromJson(R"({"name": "Two", "desc": "second"})").object()};
}

QJsonObject properties(const char *json)
{
    return QJsonDocument::fromJson(json).object();
}

QJsonObject lastProperties()
{
    return AnalyticsRecord::events().constLast().properties;
}

QString resultText(bool success)
{
    return success ? QStringLiteral("success") : QStringLiteral("failure");
}

QString arrow(const char *state)
{
    return QStringLiteral(".QWidget{border-image: url(:/Resources/light/Arrow_%1_2x.png);}")
        .arg(QLatin1String(state));
}

} // namespace

void TestUninstallPage::init()
{
    m_sandbox = std::make_unique<Sandbox>();
    AnalyticsRecord::restart();
}

void TestUninstallPage::cleanup()
{
    m_sandbox.reset();
}

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
    QCOMPARE(page.lblTitle->text(), QStringLiteral("Thanks for your feedback! Uninstalling..."));
    QCOMPARE(page.label_2->text(), QStringLiteral("Time remaining: About 15 seconds"));
    QCOMPARE(page.label_5->text(), QStringLiteral("Please enter a valid email address."));
    QCOMPARE(page.btnSubscribe->text(), QStringLiteral("Done"));
    QCOMPARE(page.btnSubscribe->objectName(), QStringLiteral("SecondaryBtn"));
    QCOMPARE(page.label_3->text(), QStringLiteral("More Apps You Might Like"));
    QCOMPARE(page.btnProduct->text(), QStringLiteral("More Products"));
    QCOMPARE(page.edtEmail->placeholderText(), QStringLiteral("Email address"));
    QCOMPARE(page.progressBar->value(), 0);
    QVERIFY(page.pnlSubscribe->isHidden());
    QVERIFY(page.label_5->isHidden());
    QVERIFY(!page.btnClose->isEnabled());
    QVERIFY(!page.btnProduct->isEnabled());
    QVERIFY(!page.isRunning());
}

void TestUninstallPage::recommendedProductsAreListed()
{
    const UninstallPage page(nullptr, products());
    QCOMPARE(page.lstProduct->count(), 2);
    QListWidgetItem *item = page.lstProduct->item(0);
    QCOMPARE(item->sizeHint(), QSize(168, 148));
    QCOMPARE(item->data(Qt::UserRole).toJsonObject(), products().at(0));
    const auto *tile = qobject_cast<ProductItem *>(page.lstProduct->itemWidget(item));
    QVERIFY(tile);
    QCOMPARE(tile->label_3->text(), QStringLiteral("One"));
    QCOMPARE(tile->label_4->text(), QStringLiteral("first"));
}

void TestUninstallPage::barFollowsTheClock()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    page.showElapsed(20000);
    QCOMPARE(page.progressBar->value(), 60);
    page.showElapsed(29999);
    QCOMPARE(page.progressBar->value(), 99);
}

void TestUninstallPage::tickReadsTheClock()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    QVERIFY(page.isRunning());
    QTRY_VERIFY_WITH_TIMEOUT(page.progressBar->value() >= 2, 10000); // 600 ms by the curve
}

void TestUninstallPage::timeLeftNeverRises()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    page.showElapsed(15000);
    QCOMPARE(page.label_2->text(), QStringLiteral("Time remaining: About 15 seconds"));
    page.showElapsed(20000);
    QCOMPARE(page.label_2->text(), QStringLiteral("Time remaining: About 13 seconds"));
    page.showElapsed(10000); // 20 seconds by itself
    QCOMPARE(page.label_2->text(), QStringLiteral("Time remaining: About 13 seconds"));
}

void TestUninstallPage::timeLeftIsEmptyWhileTheBarIsAtZero()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    page.showElapsed(100);
    QCOMPARE(page.label_2->text(), QString());
}

void TestUninstallPage::runningProcessIsWaitedFor()
{
    const LinkCatcher links;
    (*m_sandbox)->writeUninstaller(0, {{QStringLiteral("end"), QStringLiteral("hang")}});
    QProcess process;
    process.start((*m_sandbox)->installDir() + QStringLiteral("/unins000.exe"), QStringList());
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
    QElapsedTimer clock;
    clock.start();
    page.showElapsed(30000);
    QCOMPARE(page.progressBar->value(), 100);
    QCOMPARE(page.label_2->text(), QStringLiteral("Time remaining: About 0 seconds"));
    QCOMPARE(lastProperties(), properties(R"({"result": "success"})"));
    QVERIFY(page.pnlSubscribe->isHidden());
    QVERIFY(!page.btnClose->isEnabled());

    QTRY_VERIFY(page.pnlSubscribe->isVisible()); // half a second later
    const qint64 elapsed = clock.elapsed();
    QVERIFY2(elapsed >= 450 && elapsed < 4000, QByteArray::number(elapsed).constData());
    QVERIFY(page.progressBar->isHidden());
    QVERIFY(page.edtEmail->isVisible());
    QVERIFY(page.edtEmail->hasFocus());
    QCOMPARE(page.lblTitle->text(), QStringLiteral("Successfully uninstalled"));
    QCOMPARE(page.label_2->text(), QStringLiteral("Subscribe to get the latest updates"));
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
    (*m_sandbox)
        ->removeSystemValue(
            QStringLiteral("HKEY_LOCAL_MACHINE/SOFTWARE/Norvane/846/UninstallJumpPage"));
    run();
    QCOMPARE(links.links(),
             QList<QUrl>(
                 {QUrl(QStringLiteral("https://www.norvane.example/clipwright/goodbye")), QUrl()}));
}

void TestUninstallPage::failureView()
{
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    page.fail();
    QVERIFY(!page.isRunning());
    QVERIFY(page.progressBar->isHidden());
    QVERIFY(page.pnlSubscribe->isVisible());
    QVERIFY(page.edtEmail->isHidden());
    QVERIFY(page.widget->isHidden());
    QCOMPARE(page.lblTitle->text(), QStringLiteral("Uninstall Failed"));
    QCOMPARE(
        page.label_2->text(),
        QStringLiteral("Your uninstallation encountered errors. Please try uninstalling again."));
    QCOMPARE(page.btnSubscribe->text(), QStringLiteral("Close"));
    QVERIFY(page.btnClose->isEnabled());
    QVERIFY(page.btnProduct->isEnabled());
    QCOMPARE(AnalyticsRecord::events().size(), 1);
    QCOMPARE(lastProperties(), properties(R"({"result": "failure"})"));
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
    QCOMPARE(
        page.label_2->text(),
        QStringLiteral("Your uninstallation encountered errors. Please try uninstalling again."));
}

void TestUninstallPage::jumpingClockMakesNoSuccessOfAFailure()
{
    UninstallPage page(nullptr, {});
    QProcess process;
    page.start(&process);
    page.failAfter(50);
    page.showElapsed(60000); // the machine slept meanwhile
    QVERIFY(page.isRunning());
    QTRY_COMPARE(page.lblTitle->text(), QStringLiteral("Uninstall Failed"));
    QCOMPARE(AnalyticsRecord::events().size(), 1);
    QCOMPARE(lastProperties(), properties(R"({"result": "failure"})"));
}

void TestUninstallPage::offlineHidesMoreProducts()
{
    QProcess process;
    UninstallPage online(nullptr, {});
    online.start(&process);
    QVERIFY(online.btnProduct->isVisibleTo(&online));

    const OfflineMachine machine;
    UninstallPage offline(nullptr, {});
    offline.start(&process);
    QVERIFY(!offline.btnProduct->isVisibleTo(&offline));
}

void TestUninstallPage::doneRefusesAWrongAddress()
{
    UninstallPage page(nullptr, {});
    page.show();
    finishRun(page);
    QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    QTest::keyClicks(page.edtEmail, QStringLiteral("robin@mail"));
    QTest::mouseClick(page.btnSubscribe, Qt::LeftButton);
    QVERIFY(page.label_5->isVisible());
    QVERIFY(more.isEmpty());
    QCOMPARE(AnalyticsRecord::events().size(), 1); // the result alone
    QTest::keyClicks(page.edtEmail, QStringLiteral("."));
    QVERIFY(page.label_5->isHidden());
}

void TestUninstallPage::doneTrimsAndSendsTheAddress()
{
    UninstallPage page(nullptr, {});
    page.show();
    finishRun(page);
    QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    page.edtEmail->setText(QStringLiteral("  robin@mail.test \t"));
    QTest::mouseClick(page.btnSubscribe, Qt::LeftButton);
    QCOMPARE(more.size(), 1);
    QCOMPARE(AnalyticsRecord::events().constLast().action, QStringLiteral("UninstallCompleted"));
    const QJsonObject expected = properties(
        R"({"ButtonClick": "Subscribe", "result": "success", "email": "robin@mail.test"})");
    QCOMPARE(lastProperties(), expected);
}

void TestUninstallPage::doneSendsAnEmptyAddress()
{
    UninstallPage page(nullptr, {});
    page.show();
    finishRun(page);
    QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    QTest::keyClick(page.edtEmail, Qt::Key_Return);
    QCOMPARE(more.size(), 1);
    const QJsonObject expected =
        properties(R"({"ButtonClick": "Subscribe", "result": "success", "email": ""})");
    QCOMPARE(lastProperties(), expected);
}

void TestUninstallPage::doneQuitsOffline()
{
    const OfflineMachine machine;
    UninstallPage page(nullptr, {});
    page.show();
    finishRun(page);
    QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    QVERIFY(quitsAfter([&page] { page.btnSubscribe->click(); }));
    QVERIFY(more.isEmpty());
}

void TestUninstallPage::closeAfterFailureQuits()
{
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    page.fail();
    QVERIFY(quitsAfter([&page] { page.btnSubscribe->click(); }));
    QCOMPARE(AnalyticsRecord::events().size(), 1); // the result alone
}

void TestUninstallPage::moreReportsTheResult_data()
{
    QTest::addColumn<bool>("success");
    QTest::newRow("success") << true;
    QTest::newRow("failure") << false;
}

void TestUninstallPage::moreReportsTheResult()
{
    QFETCH(bool, success);
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    if (success)
        finishRun(page);
    else
        page.fail();
    QSignalSpy more(&page, &UninstallPage::btnProductClicked);
    QTest::mouseClick(page.btnProduct, Qt::LeftButton);
    QCOMPARE(more.size(), 1);
    QCOMPARE(AnalyticsRecord::events().constLast().action, QStringLiteral("UninstallCompleted"));
    QCOMPARE(lastProperties().value(QLatin1String("ButtonClick")).toString(),
             QStringLiteral("Click_more"));
    QCOMPARE(lastProperties().value(QLatin1String("result")).toString(), resultText(success));
    QCOMPARE(lastProperties().size(), 2); // no address
}

void TestUninstallPage::leavingReportsTheResult_data()
{
    moreReportsTheResult_data();
}

void TestUninstallPage::leavingReportsTheResult()
{
    QFETCH(bool, success);
    UninstallPage page(nullptr, {});
    page.show();
    QProcess process;
    page.start(&process);
    if (success)
        finishRun(page);
    else
        page.fail();
    QVERIFY(quitsAfter([&page] { page.btnClose->click(); }));
    QCOMPARE(AnalyticsRecord::events().constLast().action, QStringLiteral("Click_exit"));
    QCOMPARE(lastProperties().value(QLatin1String("pagesource")).toString(),
             QStringLiteral("uninstallprocess"));
    QCOMPARE(lastProperties().value(QLatin1String("result")).toString(), resultText(success));
}

void TestUninstallPage::productClickOpensAndReports()
{
    const LinkCatcher links;
    UninstallPage page(nullptr, products());
    page.resize(720, 480);
    page.show();
    for (int row : {0, 1}) {
        const QRect place = page.lstProduct->visualItemRect(page.lstProduct->item(row));
        QTest::mouseClick(page.lstProduct->viewport(), Qt::LeftButton, {}, place.center());
    }
    QCOMPARE(links.links(), {QUrl(QStringLiteral("https://one.example/"))});
    const QList<AnalyticsRecord::Event> events = AnalyticsRecord::events();
    QCOMPARE(events.size(), 2);
    QCOMPARE(events.at(0).action, QStringLiteral("ReCommend"));
    const QJsonObject first = properties(
        R"({"Clickurl": "https://one.example/", "pid": "5", "pagetype": "uninstallprocess"})");
    QCOMPARE(events.at(0).properties, first);
    const QJsonObject second =
        properties(R"({"Clickurl": "", "pid": "-1", "pagetype": "uninstallprocess"})");
    QCOMPARE(events.at(1).properties, second);
}

void TestUninstallPage::keysClickProductsToo()
{
    const LinkCatcher links;
    UninstallPage page(nullptr, products());
    page.show();
    page.lstProduct->setCurrentRow(0);
    QTest::keyClick(page.lstProduct, Qt::Key_Return);
    QTest::keyClick(page.lstProduct, Qt::Key_Space);
    QCOMPARE(links.links().size(), 2);
    QCOMPARE(AnalyticsRecord::events().size(), 2);
}

void TestUninstallPage::arrowFollowsTheButton()
{
    UninstallPage page(nullptr, {});
    page.resize(720, 480);
    page.show();
    const QWidget *picture = page.btnProduct->findChild<QWidget *>();
    QVERIFY(picture);
    QCOMPARE(picture->size(), QSize(24, 24));
    QCOMPARE(picture->x(), page.btnProduct->width() - 24);
    QCOMPARE(picture->y(), 9);
    QCOMPARE(picture->styleSheet(), arrow("disabled"));

    const auto send = [&page](QEvent::Type type) {
        QEvent event(type);
        QApplication::sendEvent(page.btnProduct, &event);
    };
    send(QEvent::Leave); // nothing happens while the button is disabled
    QCOMPARE(picture->styleSheet(), arrow("disabled"));

    page.btnProduct->setEnabled(true);
    QCOMPARE(picture->styleSheet(), arrow("normal"));
    send(QEvent::Enter);
    QCOMPARE(picture->styleSheet(), arrow("hover"));
    QTest::mousePress(page.btnProduct, Qt::LeftButton);
    QCOMPARE(picture->styleSheet(), arrow("pressed"));
    QTest::mouseRelease(page.btnProduct, Qt::LeftButton);
    QCOMPARE(picture->styleSheet(), arrow("pressed")); // until the pointer leaves
    send(QEvent::Leave);
    QCOMPARE(picture->styleSheet(), arrow("normal"));
    page.btnProduct->setEnabled(false);
    QCOMPARE(picture->styleSheet(), arrow("normal"));
}

void TestUninstallPage::arrowIsMirroredWithTheLayout()
{
    QGuiApplication::setLayoutDirection(Qt::RightToLeft);
    UninstallPage page(nullptr, {});
    page.resize(720, 480);
    page.show();
    page.btnProduct->setEnabled(true);
    const QWidget *picture = page.btnProduct->findChild<QWidget *>();
    QCOMPARE(picture->x(), 0);
    QCOMPARE(picture->y(), 9);
    QCOMPARE(picture->styleSheet(), arrow("rtl_normal"));
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
    const QString uninstalling = QStringLiteral("Thanks for your feedback! Uninstalling...");
    const QString timeLeft = uninstalling + QStringLiteral(" Time remaining: About %1 seconds");
    QCOMPARE(read, (QStringList{uninstalling, timeLeft.arg(30), timeLeft.arg(20), timeLeft.arg(10),
                                timeLeft.arg(0)}));

    finishRun(page);
    const QString success =
        QStringLiteral("Successfully uninstalled Subscribe to get the latest updates");
    QCOMPARE(page.accessibleName(), success);
    // The box takes the keyboard; what is read with it says why.
    QCOMPARE(page.edtEmail->accessibleDescription(), success);
}

void TestUninstallPage::failureIsReadAloud()
{
    UninstallPage page(nullptr, products());
    page.fail();
    QCOMPARE(page.accessibleName(),
             QStringLiteral("Uninstall Failed Your uninstallation encountered errors. "
                            "Please try uninstalling again."));
}

QTEST_MAIN(TestUninstallPage)
#include "test_uninstallpage.moc"
