#pragma once

#include <QtCore/QString>
#include <string>

namespace Platform {

/// Narrow text in the user's locale to wide text. Text that the locale cannot read gives "". The
/// locale of other threads does not change, nor that of this one after the call.
std::wstring wideFromNarrow(const std::string &narrow);

/// Wide text to narrow text in the system's ANSI code page (UTF-8 where there is none).
std::string narrowFromWide(const std::wstring &wide);

/// Narrow text in that code page, as the system reads it in a file name.
QString fromNarrow(const std::string &narrow);

} // namespace Platform
