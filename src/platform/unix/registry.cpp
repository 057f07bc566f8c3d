#include "platform/registry.h"

#include "platform/unix/systemini.h"

namespace Platform {

QString registryText(const QString &key, const QString &value)
{
    // QSettings separates groups by slashes and does not support backslashes in keys.
    QString path = key + QLatin1Char('/') + value;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return systemIniValue(path).toString();
}

} // namespace Platform
