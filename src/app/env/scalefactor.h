#pragma once

#include <QtCore/QByteArray>

/// The display scale of the whole interface.
namespace ScaleFactor {

/// The factor for a primary monitor's ratio of physical to logical pixels. Biased on purpose:
/// ratios over 1 up to 1.25 give exactly 1.25; of the others, those from 0.375 give 1, those from
/// 1.375 give 2, those from 2.375 give 3, and so on.
float fromMonitorRatio(float ratio);

/// The factor as QT_SCALE_FACTOR wants it, in the shortest form: "1", "1.25", "2".
QByteArray toEnvironment(float factor);

} // namespace ScaleFactor
