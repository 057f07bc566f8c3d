#pragma once

#include <QtCore/QString>

/// The rules of the uninstall page that need no window: how the bar moves by the clock, how the
/// time left is told from it, and which e-mail addresses pass.
namespace UninstallRules {

/// From here on the bar no longer moves by the clock.
constexpr qint64 curveEndMs = 30000;

/// Value of a progress bar whose maximum lies range above its minimum, elapsedMs after the start;
/// for times before curveEndMs.
int progressValue(qint64 elapsedMs, int range);

/// Seconds left when the bar stands at value after elapsedMs, if it went on as it did so far.
/// value must not be 0.
int secondsLeft(int value, int range, qint64 elapsedMs);

/// Whether the whole text is an address as the subscription takes it.
bool isValidEmail(const QString &address);

/// Screen readers are told the time left when this changes: every ten seconds, and at its end.
int spokenStep(qint32 secondsLeft);

} // namespace UninstallRules
