#pragma once

#include <QtGui/QColor>

#include <optional>

namespace Platform {

/// Colours of a high-contrast scheme, by what they are for.
struct ContrastScheme
{
    QColor window;
    QColor text;
    QColor button;
    QColor buttonText;
    QColor highlight;
    QColor highlightedText;
    QColor disabledText;
};

/// The user's high-contrast scheme; nothing when none is turned on. May be called before any window
/// exists.
std::optional<ContrastScheme> contrastScheme();

/// Whether the user has animations turned on.
bool areAnimationsOn();

} // namespace Platform
