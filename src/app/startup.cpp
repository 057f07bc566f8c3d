#include "app/startup.h"

#include "analytics/session.h"
#include "app/env/languages.h"
#include "config/download/configdownloader.h"
#include "net/knetworkproxymgr.h"
#include "ui/splashwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QEventLoop>
#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QIcon>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>

#include <chrono>
#include <cstdlib>
#include <thread>

namespace {

constexpr int loadingLimitMs = 10000;
constexpr int splashGoodbyeMs = 50;
constexpr unsigned long farewellMs = 500;
constexpr std::chrono::seconds endLimit(8); // the pause, what the library may take, and some

//: "LTR" for languages that are written from left to right, "RTL" for the others. The framework
//: asks for it when a catalogue is installed and mirrors the whole interface accordingly.
[[maybe_unused]] const char *const layoutDirection =
    QT_TRANSLATE_NOOP("QGuiApplication", "QT_LAYOUT_DIRECTION");

QIcon programIcon()
{
    QIcon icon;
    for (const int size : {16, 24, 32, 48, 64, 128, 256})
        icon.addFile(QStringLiteral(":/Resources/light/app_icon_%1.png").arg(size));
    return icon;
}

void centreOn(const QRect &screen, QWidget &window)
{
    window.move((screen.width() - window.width()) / 2, (screen.height() - window.height()) / 2);
}

// Fetches the configuration while the splash turns, for as long as its limit and the user allow.
void loadConfiguration(SplashWindow &splash)
{
    ConfigDownloader downloader;
    QTimer timer;
    QEventLoop loop;
    QObject::connect(&downloader, &ConfigDownloader::finished, &loop, &QEventLoop::quit);
    QObject::connect(&timer, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&splash, &SplashWindow::closed, &loop, [&splash, &timer, &loop] {
        splash.hide();
        timer.stop();
        loop.quit();
    });

    downloader.start();
    timer.setSingleShot(true);
    timer.setTimerType(Qt::PreciseTimer); // a coarse one may be half a second early
    timer.start(loadingLimitMs);
    loop.exec();
    if (timer.isActive())
        timer.stop();
    else
        downloader.abort(); // the limit struck, or the user closed the splash
}

// The last words. Nothing is shown any more: a library that never returns from here on must not
// leave a process behind that nobody sees and that no later copy gets past.
void sayGoodbye()
{
    std::thread([] {
        std::this_thread::sleep_for(endLimit);
        std::_Exit(EXIT_SUCCESS);
    }).detach();

    QThread::msleep(farewellMs);
    Analytics::stopAnalytics();
}

int runWizard(const QRect &screen, SplashWindow &splash, QApplication &application)
{
    QTranslator translator;
    const bool isLoaded =
        translator.load(Languages::translatorFileName(QString()), QString(), QString(), QString());
    Q_UNUSED(isLoaded) // without a catalogue the source texts show
    QCoreApplication::installTranslator(&translator);

    // Not before: nobody sees an icon of the splash, and the pictures take time to unpack.
    QApplication::setWindowIcon(programIcon());
    MainWindow window(nullptr);
    centreOn(screen, window);
    window.show();

    QObject::connect(
        &application, &QCoreApplication::aboutToQuit, &application,
        [&window] {
            if (window.isVisible())
                window.hide();
            sayGoodbye();
        },
        Qt::DirectConnection);
    QTimer::singleShot(splashGoodbyeMs, &splash, &QWidget::close);
    return QApplication::exec();
}

} // namespace

namespace Startup {

void beginSession()
{
    KNetworkProxyMgr::instance()->loadSettings();
    Analytics::initAnalytics();
    Analytics::sendBaseInfo();
}

int run(QApplication &application)
{
    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    SplashWindow splash(nullptr);
    centreOn(screen, splash);
    splash.show();

    loadConfiguration(splash);
    if (splash.isVisible())
        return runWizard(screen, splash, application);

    sayGoodbye();
    return 0;
}

} // namespace Startup
