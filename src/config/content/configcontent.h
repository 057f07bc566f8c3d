#pragma once

#include <QtCore/QJsonDocument>
#include <QtCore/QJsonObject>
#include <QtCore/QList>
#include <QtCore/QString>
#include <QtCore/QStringList>

/// The per-language configuration document: where it and its pictures lie, how it is loaded, and
/// how it is read. It comes from outside, so every accessor takes any shape of it: what is missing
/// or mistyped is empty text, an empty list, -1 or the default picture. GUI thread only.
namespace Config {

/// Folder of the downloaded documents; made when missing.
QString configDir();

/// Folder of the downloaded pictures; made when missing.
QString imagesDir();

/// Two-letter code of the documents in the installation's language, "en" for unknown ones. This is
/// not the code of the interface's translations: the maker publishes documents by a table of its
/// own.
QString configLanguageCode();
QString configLanguageCode(const QString &installerCode);

/// The product id under which the maker publishes this product's documents.
QString configProductId();

/// Where the downloaded document lies, whether or not it exists.
QString configFilePath();

/// The document: the downloaded copy, else (only when there is no such file) the built-in one.
/// Kept for the life of the process once it could be read; empty when it could not.
QJsonObject loadConfig();

/// A document read from a file; null when the file cannot be opened or is not JSON.
QJsonDocument readDocument(const QString &fileName);

/// obj[key] when it is text, else empty; a number is not converted.
QString jsonString(const QJsonObject &obj, const QString &key);

/// The objects in the array obj[key], in order; other elements are skipped.
QList<QJsonObject> jsonObjectList(const QJsonObject &obj, const QString &key);

/// The option's extension: JSON held as text in its "extend".
QJsonObject extendObject(const QJsonObject &option);

/// Whether the option's type is one of types; an option without one has the type "".
bool hasOptionType(const QJsonObject &option, const QStringList &types);

/// The uninstall reasons of the document.
QList<QJsonObject> problemTypeList();

/// The products recommended while the uninstaller runs.
QList<QJsonObject> recommendedList();

/// Picture file for an option's banner: the downloaded one when it exists, else the default.
QString optionImagePath(const QJsonObject &option);

/// Picture file for a product's icon: the downloaded one when it exists, else the default.
QString productIconPath(const QJsonObject &product);

/// A picture that the document refers to; both are empty when it refers to none, or to one whose
/// suffix would make its file a reference to another (".lnk").
struct Picture
{
    QString link;     ///< where it is downloaded from
    QString fileName; ///< in imagesDir()
};

/// The banner of an option and the icon of a product.
Picture optionPicture(const QJsonObject &option);
Picture productPicture(const QJsonObject &product);

} // namespace Config
