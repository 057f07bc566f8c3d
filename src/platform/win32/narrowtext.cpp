#include "platform/narrowtext.h"

#include <clocale>
#include <cstdlib>
#include <locale.h> // _configthreadlocale()
#include <windows.h>

namespace Platform {

namespace {

/// Gives the calling thread, and no other, the user's default locale for as long as it lives.
class UserLocale
{
public:
    UserLocale()
        : m_mode(_configthreadlocale(_ENABLE_PER_THREAD_LOCALE))
    {
        if (const char *current = std::setlocale(LC_ALL, nullptr))
            m_previous = current;
        std::setlocale(LC_ALL, "");
    }

    ~UserLocale()
    {
        std::setlocale(LC_ALL, m_previous.c_str());
        _configthreadlocale(m_mode);
    }

    Q_DISABLE_COPY(UserLocale)

private:
    const int m_mode;
    std::string m_previous = "C";
};

} // namespace

std::wstring wideFromNarrow(const std::string &narrow)
{
    const UserLocale locale;
    std::wstring wide(narrow.size(), L'\0');
    const std::size_t length = std::mbstowcs(wide.data(), narrow.c_str(), wide.size());
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
