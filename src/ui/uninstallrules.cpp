#include "ui/uninstallrules.h"

#include <QtCore/QRegularExpression>

namespace UninstallRules {

int progressValue(qint64 elapsedMs, int range)
{
    const auto t = static_cast<double>(elapsedMs);
    const double r = range;
    if (elapsedMs < 15000)
        return static_cast<int>(r * 0.5 * t / 15000);
    if (elapsedMs < 25000)
        return static_cast<int>(r * 0.5 + (t - 15000) * (r * 0.2) / 10000);
    return static_cast<int>(r * 0.7 + (t - 25000) * (r * 0.3) / 5000);
}

int secondsLeft(int value, int range, qint64 elapsedMs)
{
    const double perMillisecond = static_cast<double>(value) / static_cast<double>(elapsedMs);
    return qRound((range - value) / perMillisecond / 1000);
}

bool isValidEmail(const QString &address)
{
    // \A and \z, because $ would let a line end pass behind the address.
    static const QRegularExpression pattern(
        QStringLiteral("\\A[A-Za-z0-9]+([_\\.][A-Za-z0-9]+)*"
                       "@([A-Za-z0-9\\-]+\\.)+[A-Za-z]{2,6}\\z"));
    return pattern.match(address).hasMatch();
}

int spokenStep(qint32 secondsLeft)
{
    constexpr qint32 step = 10;
    return secondsLeft / step + (secondsLeft % step > 0 ? 1 : 0);
}

} // namespace UninstallRules
