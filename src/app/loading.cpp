#include "app/loading.h"

#include "config/download/configdownloader.h"
#include "ui/splashwindow.h"

#include <QtCore/QEventLoop>
#include <QtCore/QTimer>

namespace {

constexpr int limitMs = 10000;

} // namespace

namespace Startup {

void loadConfiguration(ConfigDownloader &downloader, QTimer &limit, SplashWindow &splash)
{
    QEventLoop loop;
    QObject::connect(&downloader, &ConfigDownloader::finished, &loop, &QEventLoop::quit);
    QObject::connect(&limit, &QTimer::timeout, &loop, &QEventLoop::quit);
    QObject::connect(&splash, &SplashWindow::closed, &loop, [&splash, &limit, &loop] {
        splash.hide();
        limit.stop();
        loop.quit();
    });

    downloader.start();
    limit.setSingleShot(true);
    limit.setTimerType(Qt::PreciseTimer); // a coarse one may be half a second early
    limit.start(limitMs);
    loop.exec();
    if (limit.isActive())
        limit.stop();
    else
        downloader.abort();
}

} // namespace Startup
