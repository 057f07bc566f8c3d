// The wizard on its uninstall page while an uninstaller runs that never ends. Runs until it is
// killed. Prints the progress bar's place in the window.

#include "analytics/session.h"
#include "tests/support/lookapplied.h"
#include "tests/support/sandbox.h"
#include "wizard/mainwindow.h"

#include <QtCore/QProcess>
#include <QtCore/QTextStream>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

int main(int argc, char **argv)
{
    const QApplication application(argc, argv);
    const Sandbox sandbox;
    const LookApplied look;
    Analytics::initAnalytics();

    MainWindow window(nullptr);
    window.wizardPages->setCurrentWidget(window.uninstallPage);
    window.show();
    QProcess process;
    window.uninstallPage->start(&process);
    QTimer::singleShot(0, &window, [&window] {
        const QProgressBar *bar = window.uninstallPage->progressBar;
        const QPoint place = bar->mapTo(&window, QPoint());
        QTextStream(stdout) << place.x() << ' ' << place.y() << ' ' << bar->width() << ' '
                            << bar->height() << '\n';
    });
    return QApplication::exec();
}
