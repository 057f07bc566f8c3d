#include "app/env/scalefactor.h"

#include <QtCore/QString>

#include <cmath>

namespace ScaleFactor {

float fromMonitorRatio(float ratio)
{
    if (!std::isfinite(ratio))
        return 1.0F; // a monitor without width
    if (ratio > 1.0F && ratio <= 1.25F)
        return 1.25F;
    return static_cast<float>(static_cast<int>(ratio + 0.625F));
}

QByteArray toEnvironment(float factor)
{
    return QStringLiteral("%1")
        .arg(static_cast<double>(factor), 0, 'g', -1, QLatin1Char(' '))
        .toUtf8();
}

} // namespace ScaleFactor
