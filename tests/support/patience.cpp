#include "tests/support/patience.h"

#include <QtCore/QAbstractEventDispatcher>
#include <QtCore/QEvent>
#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

bool quitsAfter(const std::function<void()> &action)
{
    constexpr int stuck = 1;
    QTimer limit; // also the context: neither timer outlives this call
    QTimer::singleShot(0, &limit, action);
    QObject::connect(&limit, &QTimer::timeout, qApp, [] { QCoreApplication::exit(stuck); });
    limit.start(patienceMs);
    const int code = QApplication::exec();
    // A window that closed after quit() has asked once more, which would end the next loop.
    QCoreApplication::removePostedEvents(qApp, QEvent::Quit);
    return code != stuck;
}

QList<int> pendingDelays()
{
    // The framework hangs an object with one timer on the dispatcher for each such call.
    const QAbstractEventDispatcher *dispatcher = QAbstractEventDispatcher::instance();
    QList<int> delays;
    for (QObject *child : dispatcher->children()) {
        if (!child->inherits("QSingleShotTimer"))
            continue;
        for (const auto &timer : dispatcher->registeredTimers(child))
            delays += timer.interval;
    }
    return delays;
}
