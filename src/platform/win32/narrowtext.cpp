#include "platform/narrowtext.h"

#include <locale.h> // _create_locale()
#include <stdlib.h> // _mbstowcs_l()
#include <windows.h>

namespace Platform {

namespace {

/// The user's default locale, which no thread has to switch to.
class UserLocale
{
public:
    UserLocale() = default;

    ~UserLocale() { _free_locale(m_locale); }

    Q_DISABLE_COPY(UserLocale)

    operator _locale_t() const { return m_locale; }

private:
    const _locale_t m_locale = _create_locale(LC_ALL, "");
};

} // namespace

std::wstring wideFromNarrow(const std::string &narrow)
{
    const UserLocale locale;
    std::wstring wide(narrow.size(), L'\0');
    const std::size_t length = _mbstowcs_l(wide.data(), narrow.c_str(), wide.size(), locale);
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
