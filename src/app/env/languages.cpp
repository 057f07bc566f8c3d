#include "app/env/languages.h"

#include "app/env/appenv.h"

#include <QtCore/QHash>

namespace Languages {

QString toLanguageCode(const QString &installerCode)
{
    const QHash<QString, QString> codes{
        {QStringLiteral("ENG"), QStringLiteral("en")},
        {QStringLiteral("SWE"), QStringLiteral("sv")},
        {QStringLiteral("CHT"), QStringLiteral("zh")},
        {QStringLiteral("ZHH"), QStringLiteral("zh")},
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
    };
    return codes.value(installerCode, codes.value(QStringLiteral("ENG")));
}

QString translatorFileName(const QString &requested)
{
    const QString code = requested.isEmpty() ? AppEnv::readProductInfo().language : requested;
    return QStringLiteral(":/Resources/lang/kuninstaller_") + toLanguageCode(code) +
           QStringLiteral(".qm");
}

} // namespace Languages
