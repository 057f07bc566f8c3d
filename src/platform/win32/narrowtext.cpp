#include "platform/narrowtext.h"

#include <clocale>
#include <cstdlib>
#include <windows.h>

namespace Platform {

std::wstring wideFromNarrow(const std::string &narrow)
{
    const char *current = std::setlocale(LC_ALL, nullptr);
    const std::string previous = current ? current : "C";
    std::setlocale(LC_ALL, "");
    std::wstring wide(narrow.size(), L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), narrow.c_str(), wide.size());
    std::setlocale(LC_ALL, previous.c_str());

    wide.resize(length == static_cast<std::size_t>(-1) ? 0 : length);
    return wide;
}

std::string narrowFromWide(const std::wstring &wide)
{
    const int wideLength = static_cast<int>(wide.size());
    const int length =
        WideCharToMultiByte(CP_ACP, 0, wide.data(), wideLength, nullptr, 0, nullptr, nullptr);
    std::string narrow(static_cast<std::size_t>(length), '\0');
    WideCharToMultiByte(CP_ACP, 0, wide.data(), wideLength, narrow.data(), length, nullptr,
                        nullptr);
    return narrow;
}

QString fromNarrow(const std::string &narrow)
{
    return QString::fromLocal8Bit(narrow.data(), static_cast<int>(narrow.size()));
}

} // namespace Platform
