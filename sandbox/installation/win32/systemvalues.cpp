// Writes the machine's own registry. A key of the real product is never touched: what is written
// here carries a mark, and a key without it ends the process.

#include "sandbox/installation/systemvalues.h"

#include <QtCore/QSettings>
#include <QtCore/QStringList>

namespace SystemValues {

namespace {

const QString mark = QStringLiteral("ClipwrightSample");

QStringList ownKeys()
{
    return {QStringLiteral("HKEY_CLASSES_ROOT\\NCPFile"),
            QStringLiteral("HKEY_LOCAL_MACHINE\\SOFTWARE\\Norvane")};
}

struct Place
{
    QString key;
    QString value;
};

Place place(const QString &slashed)
{
    const int last = slashed.lastIndexOf(QLatin1Char('/'));
    QString key = slashed.left(last);
    return {key.replace(QLatin1Char('/'), QLatin1Char('\\')), slashed.mid(last + 1)};
}

QString ownKeyOf(const QString &key)
{
    const QStringList keys = ownKeys();
    for (const QString &own : keys) {
        if (key == own || key.startsWith(own + QLatin1Char('\\')))
            return own;
    }
    return {};
}

bool isMarked(const QSettings &settings)
{
    return settings.contains(mark);
}

void claim(const QString &key)
{
    QSettings settings(key, QSettings::NativeFormat);
    if (!isMarked(settings) && !settings.allKeys().isEmpty())
        qFatal("%s belongs to an installed product", qPrintable(key));
    settings.setValue(mark, QStringLiteral("written by a test"));
}

} // namespace

void set(const QString & /*root*/, const QString &key, const QString &value)
{
    const Place at = place(key);
    const QString own = ownKeyOf(at.key);
    if (own.isEmpty())
        return; // the machine's state cannot be set
    claim(own);
    QSettings(at.key, QSettings::NativeFormat).setValue(at.value, value);
}

void remove(const QString & /*root*/, const QString &key)
{
    const Place at = place(key);
    const QString own = ownKeyOf(at.key);
    if (!own.isEmpty() && isMarked(QSettings(own, QSettings::NativeFormat)))
        QSettings(at.key, QSettings::NativeFormat).remove(at.value);
}

void clear(const QString & /*root*/)
{
    const QStringList keys = ownKeys();
    for (const QString &key : keys) {
        QSettings settings(key, QSettings::NativeFormat);
        if (isMarked(settings))
            settings.clear();
    }
}

QMap<QString, QString> environment(const QString & /*root*/)
{
    return {};
}

} // namespace SystemValues
