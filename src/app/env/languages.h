#pragma once

#include <QtCore/QString>

/// The interface language: which translation catalogue belongs to the installer's language. The
/// configuration documents are chosen by another table, on purpose; see
/// Config::configLanguageCode().
namespace Languages {

/// Two-letter catalogue code for the installer's three-letter code, matched exactly; "en" for any
/// other.
QString toLanguageCode(const QString &installerCode);

/// Catalogue file for an installer code, or, for an empty one, for the installation's language.
QString translatorFileName(const QString &requested);

} // namespace Languages
