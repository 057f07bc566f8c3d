#pragma once

#include <QtCore/QString>

/// Text in a test: "text"_s.
inline QString operator""_s(const char *text, std::size_t size)
{
    return QString::fromUtf8(text, static_cast<int>(size));
}
