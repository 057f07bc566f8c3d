#include "platform/registry.h"

#include <QtCore/QSettings>

namespace Platform {

QString registryText(const QString &key, const QString &value)
{
    return QSettings(key, QSettings::NativeFormat).value(value).toString();
}

} // namespace Platform
