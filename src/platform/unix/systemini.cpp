#include "platform/unix/systemini.h"

#include <QtCore/QSettings>

namespace Platform {

QVariant systemIniValue(const QString &key)
{
    const QString fileName = qEnvironmentVariable("CLIPWRIGHT_SYSTEM_INI");
    if (fileName.isEmpty())
        return {};
    QSettings settings(fileName, QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    return settings.value(key);
}

} // namespace Platform
