#include "app/startup.h"
#include "tests/support/analyticsrecord.h"
#include "tests/support/literals.h"
#include "tests/support/machine.h"
#include "tests/support/patience.h"
#include "tests/support/sandbox.h"
#include "tests/support/scriptedserver.h"
#include "tests/support/testcase.h"
#include "tests/support/testendpoints.h"

#include <QtCore/QElapsedTimer>
#include <QtCore/QTimer>
#include <QtGui/QWindow>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <functional>

/// The sequence from the splash to the end of the session, run in this process.
class TestStartup : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sessionStopsHalfASecondAfterTheWindowIsHidden();
    void closedSplashEndsTheProgramAfterHalfASecond();
    void sessionStopsEvenWhenNoThreadCanBeStarted();
};

namespace {

/// Acts on a window of a class in the first event after it was shown, and keeps when it was hidden.
class Watch : public QObject
{
public:
    Watch(const char *className, const std::function<void(QWidget &)> &onShow)
        : m_className(className)
        , m_onShow(onShow)
    {
        qApp->installEventFilter(this);
    }

    QElapsedTimer sinceHidden;
    QString lastCallWhenHidden;

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (qstrcmp(watched->metaObject()->className(), m_className) != 0)
            return false;
        if (event->type() == QEvent::Show)
            QTimer::singleShot(0, watched,
                               [this, watched] { m_onShow(*static_cast<QWidget *>(watched)); });
        if (event->type() == QEvent::Hide && !sinceHidden.isValid()) {
            lastCallWhenHidden = AnalyticsRecord::calls().last().value("call"_s).toString();
            sinceHidden.start();
        }
        return false;
    }

private:
    const char *m_className;
    std::function<void(QWidget &)> m_onShow;
};

void verifyEnd(const Watch &watch)
{
    const qint64 elapsed = watch.sinceHidden.elapsed();
    QVERIFY(watch.lastCallWhenHidden != "data_stop"_s);
    QCOMPARE(AnalyticsRecord::calls().last().value("call"_s).toString(), "data_stop"_s);
    // Half a second, and the three that the library may take to stop.
    QVERIFY2(elapsed >= 500 && elapsed < 3500, QByteArray::number(elapsed).constData());
}

} // namespace

void TestStartup::sessionStopsHalfASecondAfterTheWindowIsHidden()
{
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    const ClosedPort service;
    TestEndpoints::setConfiguration(service.url());
    QList<int> delays;
    const Watch watch("MainWindow", [&delays](QWidget &) {
        delays = pendingDelays();
        QCoreApplication::quit();
    });
    QCOMPARE(Startup::run(*static_cast<QApplication *>(qApp)), 0);
    verifyEnd(watch);
    QCOMPARE(delays, QList<int>{50}); // to the splash's end
}

void TestStartup::closedSplashEndsTheProgramAfterHalfASecond()
{
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    ScriptedServer service;
    service.answer("/uninstall/cfg/v1/846-en.json"_s, ScriptedServer::Answer::ok().silent());
    TestEndpoints::setConfiguration(service.url());
    const Watch watch("SplashWindow", [](QWidget &splash) { splash.windowHandle()->close(); });
    QCOMPARE(Startup::run(*static_cast<QApplication *>(qApp)), 0);
    verifyEnd(watch);
    QVERIFY(!AnalyticsRecord::actions().contains("UninstallPopUp"_s)); // no main window
}

void TestStartup::sessionStopsEvenWhenNoThreadCanBeStarted()
{
    if (!Machine::refuseThreads()) // the last function: none can be started after it
        QSKIP("this system always starts another thread");
    QTest::ignoreMessage(QtWarningMsg,
                         "No thread can be started that limits the end of the program.");
    closedSplashEndsTheProgramAfterHalfASecond();
}

QTEST_MAIN(TestStartup)
#include "test_startup.moc"
