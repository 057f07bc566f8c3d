#include "sandbox/installation/systemvalues.h"

#include <QtCore/QFile>
#include <QtCore/QSettings>

namespace SystemValues {

namespace {

QString iniFile(const QString &root)
{
    return root + QStringLiteral("/system.ini");
}

} // namespace

void set(const QString &root, const QString &key, const QString &value)
{
    QSettings settings(iniFile(root), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.setValue(key, value);
}

void remove(const QString &root, const QString &key)
{
    QSettings settings(iniFile(root), QSettings::IniFormat);
    settings.setIniCodec("UTF-8");
    settings.remove(key);
}

void clear(const QString &root)
{
    QFile::remove(iniFile(root));
}

QMap<QString, QString> environment(const QString &root)
{
    return {{QStringLiteral("CLIPWRIGHT_SYSTEM_INI"), iniFile(root)}};
}

} // namespace SystemValues
