#pragma once

#include <QtCore/QMap>
#include <QtCore/QString>

/// What a setup leaves outside files, for example "HKEY_CLASSES_ROOT/NCPFile/path", and the state
/// of the machine, "System/Online". Where the system has a registry, this is the real one.
namespace SystemValues {

/// Where the system has a registry, the machine's state is its own and cannot be set.
void set(const QString &root, const QString &key, const QString &value);
void remove(const QString &root, const QString &key);

/// Removes whatever was set.
void clear(const QString &root);

/// What a program needs in its environment to see the values of the installation below root.
QMap<QString, QString> environment(const QString &root);

} // namespace SystemValues
