#include "app/startup.h"

#include "analytics/session.h"
#include "wizard/mainwindow.h"

#include <QtCore/QThread>
#include <QtGui/QScreen>
#include <QtWidgets/QApplication>

namespace {

constexpr unsigned long farewellMs = 500;

void centreOn(const QRect &screen, QWidget &window)
{
    window.move((screen.width() - window.width()) / 2, (screen.height() - window.height()) / 2);
}

void endSession()
{
    QThread::msleep(farewellMs);
    Analytics::stopAnalytics();
}

} // namespace

namespace Startup {

void beginSession()
{
    Analytics::initAnalytics();
    Analytics::sendBaseInfo();
}

int run(QApplication &application)
{
    const QRect screen = QGuiApplication::primaryScreen()->geometry();

    MainWindow window(nullptr);
    centreOn(screen, window);
    window.show();

    QObject::connect(
        &application, &QCoreApplication::aboutToQuit, &application,
        [&window] {
            if (window.isVisible())
                window.hide();
            endSession();
        },
        Qt::DirectConnection);
    return QApplication::exec();
}

} // namespace Startup
