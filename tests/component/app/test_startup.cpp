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
#include <QtCore/QMutex>
#include <QtCore/QProcess>
#include <QtCore/QTimer>
#include <QtGui/QIcon>
#include <QtGui/QScreen>
#include <QtGui/QWindow>
#include <QtNetwork/QNetworkProxy>
#include <QtTest/QTest>
#include <QtWidgets/QApplication>
#include <algorithm>
#include <ctime>
#include <functional>

/// The sequence from the splash to the end of the session, run in this process.
class TestStartup : public TestCase
{
    Q_OBJECT

private Q_SLOTS:
    void sessionStopsHalfASecondAfterTheWindowIsHidden();
    void closedSplashEndsTheProgramAfterHalfASecond();
    void closedWindowEndsTheProgramWhileTheSplashStillShows();
    void sessionBeginsWithTheUsersProxyAndTheMachine();
    void processEndsWithTheUsersSession_data();
    void processEndsWithTheUsersSession();
    void sessionStopsEvenWhenNoThreadCanBeStarted();
};

#ifndef Q_OS_WIN // there, sleeping is the system's and cannot be replaced
namespace {

QMutex sleepsMutex;
QList<qint64> sleepsInMs; // that any thread has asked for

} // namespace

// Replaces the C library's function, by which QThread and std::this_thread sleep.
extern "C" int nanosleep(const timespec *duration, timespec *left)
{
    {
        const QMutexLocker lock(&sleepsMutex);
        sleepsInMs += duration->tv_sec * 1000 + duration->tv_nsec / 1000000;
    }
    return clock_nanosleep(CLOCK_MONOTONIC, 0, duration, left);
}
#endif

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
#ifndef Q_OS_WIN
    const QMutexLocker lock(&sleepsMutex);
    QVERIFY(sleepsInMs.contains(500));
    QVERIFY(sleepsInMs.contains(8000)); // before the process ends whatever the library does
#endif
}

// What a process of its own does: the user's session ends while a window is shown.
int endUsersSession(QApplication &application, const char *window)
{
    ScriptedServer service;
    auto answer = ScriptedServer::Answer::ok();
    const bool isLoading = qstrcmp(window, "SplashWindow") == 0;
    service.answer("/uninstall/cfg/v1/846-en.json"_s, isLoading ? answer.silent() : answer);
    TestEndpoints::setConfiguration(service.url());
    Startup::beginSession();
    const Watch watch(window, [&application](const QWidget &) {
        QMetaObject::invokeMethod(&application, "aboutToQuit");
        QCoreApplication::exit(1);
    });
    return Startup::run(application);
}

QPoint middleOfTheScreen(const QWidget &window)
{
    const QSize free = QGuiApplication::primaryScreen()->size() - window.size();
    return {free.width() / 2, free.height() / 2};
}

} // namespace

void TestStartup::sessionStopsHalfASecondAfterTheWindowIsHidden()
{
    const Sandbox sandbox;
    QVERIFY(sandbox->writeProductIni("DEU"_s));
    AnalyticsRecord::restart();
    const ClosedPort service;
    TestEndpoints::setConfiguration(service.url());
    QList<int> delays;
    QString translated;
    bool asksEveryWindow = true;
    const Watch watch("MainWindow", [&](QWidget &window) {
        delays = pendingDelays();
        translated = QCoreApplication::translate("SplashWindow", "Close");
        asksEveryWindow = QGuiApplication::isFallbackSessionManagementEnabled();
        QCoreApplication::quit();
        QCOMPARE(window.pos(), middleOfTheScreen(window));
    });
    QCOMPARE(Startup::run(*static_cast<QApplication *>(qApp)), 0);
    verifyEnd(watch);
    QCOMPARE(delays, QList<int>{50}); // to the splash's end
    QCOMPARE(translated, "Schließen"_s);
    QVERIFY(!asksEveryWindow);
    QList<int> sides;
    for (const QSize &size : QGuiApplication::windowIcon().availableSizes())
        sides += size.width();
    std::sort(sides.begin(), sides.end());
    QCOMPARE(sides, QList<int>({16, 24, 32, 48, 64, 128, 256}));
}

void TestStartup::closedSplashEndsTheProgramAfterHalfASecond()
{
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    ScriptedServer service;
    service.answer("/uninstall/cfg/v1/846-en.json"_s, ScriptedServer::Answer::ok().silent());
    TestEndpoints::setConfiguration(service.url());
    const Watch watch("SplashWindow", [](QWidget &splash) {
        splash.windowHandle()->close();
        QCOMPARE(splash.pos(), middleOfTheScreen(splash));
    });
    QCOMPARE(Startup::run(*static_cast<QApplication *>(qApp)), 0);
    verifyEnd(watch);
    QVERIFY(!AnalyticsRecord::actions().contains("UninstallPopUp"_s)); // no main window
}

void TestStartup::closedWindowEndsTheProgramWhileTheSplashStillShows()
{
    const Sandbox sandbox;
    AnalyticsRecord::restart();
    const ClosedPort service;
    TestEndpoints::setConfiguration(service.url());
    bool splashShows = false;
    const Watch watch("MainWindow", [&splashShows](QWidget &window) {
        for (const QWidget *other : QApplication::topLevelWidgets())
            splashShows |= other->inherits("SplashWindow") && other->isVisible();
        window.windowHandle()->close(); // as the user does
        QTimer::singleShot(patienceMs, &window, [] { QCoreApplication::exit(-1); });
    });
    QCOMPARE(Startup::run(*qApp), 0);
    QVERIFY(splashShows);
    verifyEnd(watch);
}

void TestStartup::sessionBeginsWithTheUsersProxyAndTheMachine()
{
    const Sandbox sandbox;
    sandbox.writeFile("ProgramData/Norvane Clipwright/KConfig.ini"_s,
                      "[ProxyInfo]\nMode=2\nServer=proxy.invalid\nPort=8080\n");
    Startup::beginSession();
    QCOMPARE(QNetworkProxy::applicationProxy().hostName(), "proxy.invalid"_s);
    QNetworkProxy::setApplicationProxy(QNetworkProxy::NoProxy);
    QStringList calls;
    for (const QJsonObject &call : AnalyticsRecord::calls())
        calls += call.value("call"_s).toString();
    QCOMPARE(calls, QStringList({"data_init"_s, "data_base_info"_s}));
}

void TestStartup::processEndsWithTheUsersSession_data()
{
    QTest::addColumn<QString>("window");
    QTest::newRow("while loading") << "SplashWindow";
    QTest::newRow("in the wizard") << "MainWindow";
}

void TestStartup::processEndsWithTheUsersSession()
{
    QFETCH(const QString, window);
    const Sandbox sandbox;
    QProcess process;
    process.start(QCoreApplication::applicationFilePath(), {"--end-users-session"_s, window});
    QVERIFY(process.waitForFinished(patienceMs));
    QCOMPARE(process.exitStatus(), QProcess::NormalExit);
    QCOMPARE(process.exitCode(), 0);
    QCOMPARE(AnalyticsRecord::calls().last().value("call"_s).toString(), "data_stop"_s);
}

void TestStartup::sessionStopsEvenWhenNoThreadCanBeStarted()
{
    if (!Machine::refuseThreads()) // the last function: none can be started after it
        QSKIP("this system always starts another thread");
    QTest::ignoreMessage(QtWarningMsg,
                         "No thread can be started that limits the end of the program.");
    closedSplashEndsTheProgramAfterHalfASecond();
}

int main(int argc, char *argv[])
{
    QApplication application(argc, argv);
    if (QCoreApplication::arguments().contains("--end-users-session"_s))
        return endUsersSession(application, qPrintable(QCoreApplication::arguments().constLast()));
    TestStartup test;
    return QTest::qExec(&test, argc, argv);
}

#include "test_startup.moc"
