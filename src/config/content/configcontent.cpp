#include "config/content/configcontent.h"

#include "app/env/appenv.h"

#include <QtCore/QFile>
#include <QtCore/QFileInfo>
#include <QtCore/QHash>
#include <QtCore/QJsonArray>
#include <QtCore/QTextStream>

namespace Config {

namespace {

/// Whether Windows, or Qt on it, takes a file of this suffix for a reference that it follows or
/// shows by what its content names, a network share for example. What stands behind a colon is no
/// part of the file's name there, nor is white space at its end.
bool isReference(const QString &suffix)
{
    const QStringList references{QStringLiteral("lnk"),       QStringLiteral("url"),
                                 QStringLiteral("website"),   QStringLiteral("pif"),
                                 QStringLiteral("scf"),       QStringLiteral("library-ms"),
                                 QStringLiteral("search-ms"), QStringLiteral("searchconnector-ms"),
                                 QStringLiteral("appref-ms"), QStringLiteral("theme"),
                                 QStringLiteral("contact")};
    return references.contains(suffix.section(QLatin1Char(':'), 0, 0).trimmed(),
                               Qt::CaseInsensitive);
}

/// The format takes the number and the suffix of the link, which give the picture its file name.
Picture picture(const QString &format, const QJsonValue &number, const QString &link)
{
    const QString suffix = QFileInfo(link).suffix();
    if (link.isEmpty() || number.toInt(-1) < 0 || isReference(suffix))
        return {};
    return {link, format.arg(number.toInt()).arg(suffix)};
}

QString picturePath(const Picture &picture, const QString &fallback)
{
    if (picture.fileName.isEmpty())
        return fallback;
    const QString path = imagesDir() + QLatin1Char('/') + picture.fileName;
    return QFile::exists(path) ? path : fallback;
}

/// Qt calls only a null document empty. One that holds `{}` or `[]` is empty here too, so that
/// neither is kept in place of a document that can be read later.
bool isEmpty(const QJsonDocument &document)
{
    return document.object().isEmpty() && document.array().isEmpty();
}

QList<QJsonObject> listOf(const QString &key)
{
    return jsonObjectList(loadConfig().value(key).toObject(), QStringLiteral("list"));
}

} // namespace

QString configDir()
{
    return AppEnv::ensuredFolder(AppEnv::uninstallerDataDir() + QStringLiteral("/Configs"));
}

QString imagesDir()
{
    return AppEnv::ensuredFolder(configDir() + QStringLiteral("/Images"));
}

QString configLanguageCode()
{
    return configLanguageCode(AppEnv::readProductInfo().language);
}

QString configLanguageCode(const QString &installerCode)
{
    const QHash<QString, QString> codes{
        {QStringLiteral("ENG"), QStringLiteral("en")},
        {QStringLiteral("CHS"), QStringLiteral("zh")},
        {QStringLiteral("CHT"), QStringLiteral("tw")},
        {QStringLiteral("ZHH"), QStringLiteral("tw")},
        {QStringLiteral("ESP"), QStringLiteral("es")},
        {QStringLiteral("DEU"), QStringLiteral("de")},
        {QStringLiteral("FRA"), QStringLiteral("fr")},
        {QStringLiteral("ITA"), QStringLiteral("it")},
        {QStringLiteral("JPN"), QStringLiteral("ja")},
        {QStringLiteral("KOR"), QStringLiteral("ko")},
        {QStringLiteral("PTG"), QStringLiteral("pt")},
        {QStringLiteral("RUS"), QStringLiteral("ru")},
        {QStringLiteral("ARG"), QStringLiteral("ar")},
        {QStringLiteral("NLD"), QStringLiteral("nl")},
        {QStringLiteral("PLK"), QStringLiteral("pl")},
        {QStringLiteral("ROM"), QStringLiteral("ro")},
        {QStringLiteral("IDN"), QStringLiteral("id")},
        {QStringLiteral("SWE"), QStringLiteral("sv")},
    };
    return codes.value(installerCode, codes.value(QStringLiteral("ENG")));
}

QString configProductId()
{
    return QStringLiteral("846");
}

QString configFilePath()
{
    return configDir() + QLatin1Char('/') + configLanguageCode() + QStringLiteral(".cfg");
}

QJsonObject loadConfig()
{
    static QJsonDocument document;
    if (isEmpty(document)) {
        QString fileName = configFilePath();
        if (!QFile::exists(fileName))
            fileName = QStringLiteral(":/Resources/cfg/%1.cfg").arg(configLanguageCode());
        document = readDocument(fileName);
    }
    return document.object();
}

QJsonDocument readDocument(const QString &fileName)
{
    QFile file(fileName);
    if (AppEnv::isSpecialFile(fileName) || !file.open(QIODevice::ReadOnly | QIODevice::Text))
        return {};
    QTextStream stream(&file);
    stream.setCodec("UTF-8");
    return QJsonDocument::fromJson(stream.readAll().toUtf8());
}

QString jsonString(const QJsonObject &obj, const QString &key)
{
    return obj.value(key).toString();
}

QList<QJsonObject> jsonObjectList(const QJsonObject &obj, const QString &key)
{
    QList<QJsonObject> objects;
    const QJsonArray elements = obj.value(key).toArray();
    for (const QJsonValue &element : elements) {
        if (element.isObject())
            objects.append(element.toObject());
    }
    return objects;
}

QJsonObject extendObject(const QJsonObject &option)
{
    return QJsonDocument::fromJson(jsonString(option, QStringLiteral("extend")).toUtf8()).object();
}

bool hasOptionType(const QJsonObject &option, const QStringList &types)
{
    return types.contains(jsonString(extendObject(option), QStringLiteral("option_type")));
}

QList<QJsonObject> problemTypeList()
{
    return listOf(QStringLiteral("problem_type"));
}

QList<QJsonObject> recommendedList()
{
    return listOf(QStringLiteral("recommended"));
}

QString optionImagePath(const QJsonObject &option)
{
    return picturePath(optionPicture(option), QStringLiteral(":/Resources/light/Option0_2x.png"));
}

QString productIconPath(const QJsonObject &product)
{
    return picturePath(productPicture(product),
                       QStringLiteral(":/Resources/light/ico_default_2x.png"));
}

Picture optionPicture(const QJsonObject &option)
{
    return picture(QStringLiteral("option_%1.%2"), option.value(QStringLiteral("value")),
                   jsonString(option, QStringLiteral("banner_url")));
}

Picture productPicture(const QJsonObject &product)
{
    return picture(QStringLiteral("pid_%1.%2"), product.value(QStringLiteral("pid")),
                   jsonString(product, QStringLiteral("icon")));
}

} // namespace Config
