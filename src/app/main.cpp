#include "app/env/scalefactor.h"
#include "app/startup.h"
#include "net/knetworkproxymgr.h"
#include "platform/display.h"
#include "platform/entry.h"
#include "platform/processend.h"
#include "platform/singleinstance.h"
#include "ui/systemlook.h"
#include "upgrade/nvupgradehelper.h"

#include <QtCore/QFile>
#include <QtCore/QThread>
#include <QtGui/QFontDatabase>
#include <QtWidgets/QApplication>

#include <cstdlib>

namespace {

constexpr unsigned long secondCopyPauseMs = 100;

struct Outcome
{
    int exitCode;
    bool isUpgradeHelperReleased; ///< its thread has left the upgrade library and has ended
};

float computeScaleFactor()
{
    return ScaleFactor::fromMonitorRatio(Platform::primaryMonitorRatio());
}

Outcome runApplication(int argc, char **argv)
{
    // Under X, Qt would load OpenGL with the first window, which takes more than half of the start.
    QCoreApplication::setAttribute(Qt::AA_ForceRasterWidgets);
    QApplication application(argc, argv);
    Startup::beginSession();

    QFontDatabase::addApplicationFont(QStringLiteral(":/Resources/font/NotoSans-Bold.ttf"));
    QFile styleFile(QStringLiteral(":/Resources/styles_light.qss"));
    if (styleFile.open(QIODevice::ReadOnly)) {
        application.setStyleSheet(QString::fromUtf8(styleFile.readAll()) + SystemLook::rules());
        styleFile.close();
    }
    const int exitCode = Startup::run(application);
    KNetworkProxyMgr::release();
    return {exitCode, NvUpgradeHelper::releaseIfIdle()};
}

/// If the display goes away, Qt calls exit() from the event loop.
void endAtOnceWhileLibraryWorks()
{
    if (NvUpgradeHelper::isBusy())
        Platform::endProcess(EXIT_FAILURE);
}

} // namespace

int programMain(int argc, char **argv)
{
    if (!Platform::claimSingleInstance("Norvane Clipwright Uninstaller")) {
        QThread::msleep(secondCopyPauseMs);
        return 0;
    }

    qputenv("QT_SCALE_FACTOR", ScaleFactor::toEnvironment(computeScaleFactor()));
    // After the measurement, which must see the coordinates of a program that knows no DPI.
    Platform::enableDpiAwareness();

    // A stuck call of the upgrade library must not keep the process alive, nor may its thread run
    // on while globals are destroyed: those that exist by now. Later ones go before this is called.
    std::atexit(endAtOnceWhileLibraryWorks);
    const Outcome outcome = runApplication(argc, argv);
    if (!outcome.isUpgradeHelperReleased)
        Platform::endProcess(outcome.exitCode);
    return outcome.exitCode;
}
