#pragma once

#include <QtCore/QString>
#include <QtCore/QVariant>

namespace Platform {

/// This system has no registry. What the product's setup would have left there, whether the machine
/// counts as online, and what the user has set for every program is read from an ini file (UTF-8)
/// named by the environment variable CLIPWRIGHT_SYSTEM_INI, which the sandbox writes. Without the
/// variable every value is missing.
QVariant systemIniValue(const QString &key);

} // namespace Platform
