#pragma once

#include <QtCore/QString>

namespace Platform {

/// The text of a registry value, for example registryText("HKEY_CLASSES_ROOT\\Key", "path").
/// Empty when the key or the value is missing.
QString registryText(const QString &key, const QString &value);

} // namespace Platform
