#include "platform/narrowtext.h"

namespace Platform {

// Narrow text is UTF-8 here whatever the locale says: a "C" locale must not lose letters. So no
// locale is switched, neither the process's nor the thread's.

std::wstring wideFromNarrow(const std::string &narrow)
{
    return QString::fromStdString(narrow).toStdWString();
}

std::string narrowFromWide(const std::wstring &wide)
{
    return QString::fromStdWString(wide).toStdString();
}

QString fromNarrow(const std::string &narrow)
{
    return QString::fromStdString(narrow);
}

} // namespace Platform
