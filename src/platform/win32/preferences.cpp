#include "platform/preferences.h"

#include <windows.h>

namespace Platform {

namespace {

QColor systemColour(int index)
{
    const COLORREF colour = GetSysColor(index);
    return {GetRValue(colour), GetGValue(colour), GetBValue(colour)};
}

} // namespace

std::optional<ContrastScheme> contrastScheme()
{
    HIGHCONTRASTW highContrast = {};
    highContrast.cbSize = sizeof highContrast;
    if (!SystemParametersInfoW(SPI_GETHIGHCONTRAST, sizeof highContrast, &highContrast, 0) ||
        !(highContrast.dwFlags & HCF_HIGHCONTRASTON))
        return {};
    return ContrastScheme{systemColour(COLOR_WINDOW),    systemColour(COLOR_WINDOWTEXT),
                          systemColour(COLOR_BTNFACE),   systemColour(COLOR_BTNTEXT),
                          systemColour(COLOR_HIGHLIGHT), systemColour(COLOR_HIGHLIGHTTEXT),
                          systemColour(COLOR_GRAYTEXT)};
}

bool areAnimationsOn()
{
    BOOL isOn = TRUE;
    return !SystemParametersInfoW(SPI_GETCLIENTAREAANIMATION, 0, &isOn, 0) || isOn;
}

} // namespace Platform
