#include "platform/preferences.h"

#include "platform/unix/systemini.h"

namespace Platform {

namespace {

QColor schemeColour(const char *role)
{
    return {systemIniValue(QStringLiteral("HighContrast/") + QLatin1String(role)).toString()};
}

} // namespace

std::optional<ContrastScheme> contrastScheme()
{
    if (!systemIniValue(QStringLiteral("HighContrast/On")).toBool())
        return {};
    return ContrastScheme{schemeColour("Window"),      schemeColour("Text"),
                          schemeColour("Button"),      schemeColour("ButtonText"),
                          schemeColour("Highlight"),   schemeColour("HighlightedText"),
                          schemeColour("DisabledText")};
}

bool areAnimationsOn()
{
    const QVariant isOn = systemIniValue(QStringLiteral("System/Animations"));
    return !isOn.isValid() || isOn.toBool();
}

} // namespace Platform
