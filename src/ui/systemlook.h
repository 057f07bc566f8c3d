#pragma once

#include "platform/preferences.h"

#include <QtCore/QString>

/// What the style sheet cannot know: the installation's language, and what the user has set for
/// every program.
namespace SystemLook {

/// Rules to be appended to the style sheet, for this installation and machine.
QString rules();

/// The same for others: fonts for languages whose letters share code points
/// with another's, the colours of a high-contrast scheme, and no animations when they are turned
/// off.
QString rules(const QString &languageCode, const std::optional<Platform::ContrastScheme> &scheme,
              bool areAnimationsOn);

} // namespace SystemLook
