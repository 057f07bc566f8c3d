#include "tests/support/patience.h"

#include <QtCore/QTimer>
#include <QtWidgets/QApplication>

bool quitsAfter(const std::function<void()> &action)
{
    constexpr int stuck = 1;
    const QObject context; // no timer outlives this call
    QTimer::singleShot(0, &context, action);
    QTimer::singleShot(patienceMs, &context, [] { QCoreApplication::exit(stuck); });
    return QApplication::exec() != stuck;
}
