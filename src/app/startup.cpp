#include "app/startup.h"

#include "analytics/session.h"
#include "app/env/languages.h"
#include "app/loading.h"
#include "config/download/configdownloader.h"
#include "net/knetworkproxymgr.h"
#include "platform/processend.h"
#include "ui/splashwindow.h"
#include "wizard/mainwindow.h"

#include <QtCore/QThread>
#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QIcon>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>

#include <chrono>
#include <cstdlib>
#include <system_error>
#include <thread>

namespace {

constexpr int splashPauseMs = 50;
constexpr unsigned long endPauseMs = 500;
// The pause, the 3 seconds that the analytics library may take, and a margin.
constexpr std::chrono::seconds endLimit(8);

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

// A hung library must not leave an invisible process that holds the instance lock, neither now nor
// after the main routine has returned.
void limitEnd()
{
    try {
        std::thread([] {
            std::this_thread::sleep_for(endLimit);
            Platform::endProcess(EXIT_SUCCESS);
        }).detach();
    } catch (const std::system_error &) {
        qWarning("No thread can be started that limits the end of the program.");
    }
}

// When the user's session ends, even by force, aboutToQuit() is emitted from within the event loop.
// Going on from there would kill an uninstaller that still runs, and record events after the stop.
void endSession()
{
    limitEnd();
    QThread::msleep(endPauseMs);
    Analytics::stopAnalytics();
    if (QThread::currentThread()->loopLevel() > 0)
        Platform::endProcess(EXIT_SUCCESS);
}

int runWizard(const QRect &screen, SplashWindow &splash, QApplication &application)
{
    QTranslator translator;
    const bool isLoaded =
        translator.load(Languages::translatorFileName(QString()), QString(), QString(), QString());
    Q_UNUSED(isLoaded) // without a catalogue the source texts show
    QCoreApplication::installTranslator(&translator);

    // Not before the splash, which shows no icon: the pictures take time to unpack.
    QApplication::setWindowIcon(programIcon());
    MainWindow window(nullptr);
    centreOn(screen, window);
    window.show();

    const QMetaObject::Connection atEnd = QObject::connect(
        &application, &QCoreApplication::aboutToQuit, &application,
        [&window] {
            if (window.isVisible())
                window.hide();
            endSession();
        },
        Qt::DirectConnection);
    // By itself, Qt would first ask the splash to close as the user does, which it refuses, and
    // go on without a window.
    QObject::connect(&application, &QGuiApplication::lastWindowClosed, &window,
                     [] { QCoreApplication::exit(0); });
    QTimer::singleShot(splashPauseMs, &splash, &QWidget::close);
    const int exitCode = QApplication::exec();
    QObject::disconnect(atEnd); // the window goes
    return exitCode;
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
    // The main window decides; by itself, Qt would ask every window to close.
    QGuiApplication::setFallbackSessionManagementEnabled(false);

    const QRect screen = QGuiApplication::primaryScreen()->geometry();
    SplashWindow splash(nullptr);
    centreOn(screen, splash);
    splash.show();

    {
        ConfigDownloader downloader;
        QTimer limit;
        QObject::connect(&application, &QCoreApplication::aboutToQuit, &downloader, endSession,
                         Qt::DirectConnection);
        loadConfiguration(downloader, limit, splash);
    }
    if (splash.isVisible())
        return runWizard(screen, splash, application);

    endSession();
    return 0;
}

} // namespace Startup
