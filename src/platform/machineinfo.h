#pragma once

#include <QtCore/QString>

namespace Platform {

/// The machine's own name; empty when the system does not tell.
QString computerName();

/// First IPv4 address that the machine's own name resolves to, as four decimal bytes joined by
/// dots; empty when it does not resolve. Blocks for as long as the system's resolver takes.
QString localIPv4(const QString &computerName);

/// Operating-system version as "major.minor".
QString osVersion();

/// Three-letter abbreviation of the system's language, for example "ENU".
QString systemLanguageAbbrev();

} // namespace Platform
