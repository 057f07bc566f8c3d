#include "ui/systemlook.h"

#include "app/env/appenv.h"
#include "app/env/languages.h"

#include <QtCore/QFile>
#include <QtCore/QHash>
#include <QtCore/QPair>
#include <QtCore/QVector>

namespace SystemLook {

namespace {

// Otherwise the system's own language decides which country's forms a Chinese character has.
QString fontRules(const QString &languageCode)
{
    const QHash<QString, QString> fonts{
        {QStringLiteral("ja"),
         QStringLiteral(R"("Yu Gothic UI", "Meiryo UI", "Noto Sans", "Noto Sans CJK JP")")},
        {QStringLiteral("ko"),
         QStringLiteral(R"("Malgun Gothic", "Noto Sans", "Noto Sans CJK KR")")},
        {QStringLiteral("zh"),
         QStringLiteral(R"("Microsoft JhengHei UI", "Noto Sans", "Noto Sans CJK TC")")},
    };
    const auto found = fonts.find(languageCode);
    return found == fonts.end()
               ? QString()
               : QStringLiteral("QWidget { font-family: \"Segoe UI\", %1; }\n").arg(*found);
}

QString contrastRules(const Platform::ContrastScheme &scheme)
{
    QFile file(QStringLiteral(":/Resources/styles_contrast.qss"));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    QString rules = QString::fromUtf8(file.readAll());
    rules.replace(QStringLiteral("@ink"), scheme.text.lightness() < 128 ? QStringLiteral("black")
                                                                        : QStringLiteral("white"));
    // Longer words first: none is to be taken for the beginning of another.
    const QVector<QPair<QString, QColor>> colours{
        {QStringLiteral("@highlighted-text"), scheme.highlightedText},
        {QStringLiteral("@highlight"), scheme.highlight},
        {QStringLiteral("@button-text"), scheme.buttonText},
        {QStringLiteral("@button"), scheme.button},
        {QStringLiteral("@disabled-text"), scheme.disabledText},
        {QStringLiteral("@window"), scheme.window},
        {QStringLiteral("@text"), scheme.text},
    };
    for (const auto &[word, colour] : colours)
        rules.replace(word, colour.name());
    return rules;
}

} // namespace

QString rules()
{
    return rules(Languages::toLanguageCode(AppEnv::readProductInfo().language),
                 Platform::contrastScheme(), Platform::areAnimationsOn());
}

QString rules(const QString &languageCode, const std::optional<Platform::ContrastScheme> &scheme,
              bool areAnimationsOn)
{
    QString rules = fontRules(languageCode);
    if (scheme)
        rules += contrastRules(*scheme);
    if (!areAnimationsOn)
        rules += QStringLiteral("QWidget { widget-animation-duration: 0; }\n");
    return rules;
}

} // namespace SystemLook
