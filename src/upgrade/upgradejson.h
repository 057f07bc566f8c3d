#pragma once

#include "upgrade/upgradetypes.h"

#include <optional>

/// The JSON texts exchanged with the upgrade library. Pure functions for any thread; any bytes are
/// a valid argument, none throws.
///
/// Members of an answer are read as text: numbers are expected as numerals inside JSON strings.
/// Bare numbers and booleans count as their text, for example "12" or "true"; what is missing, or
/// is an object or an array, counts as empty text.
namespace UpgradeJson {

/// One line with its line end.
std::string checkRequest(const checkInPraram &params);
std::string downloadRequest(const downloadInPraram &params);

/// requestId stays empty. Text that is no JSON gives a record of defaults, which reads as success.
checkOutParam checkAnswer(const std::string &json);
downloadOutParam downloadAnswer(const std::string &json);

/// The update description, or nothing when the text is no JSON.
std::optional<UpdateInfo> updateInfo(const std::string &json);

} // namespace UpgradeJson
