#include "platform/registry.h"

#include "platform/unix/systemini.h"

namespace Platform {

QString registryText(const QString &key, const QString &value)
{
    // QSettings takes backslashes in keys for trouble; its own separator is the slash.
    QString path = key + QLatin1Char('/') + value;
    path.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return systemIniValue(path).toString();
}

} // namespace Platform
