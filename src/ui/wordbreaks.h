#pragma once

#include <QtCore/QString>

/// Where lines may end in languages whose words the framework does not know: it breaks Korean
/// between any two syllables and Japanese between any two letters.
namespace WordBreaks {

/// The text with a word joiner (U+2060) wherever a line must not end. Korean then breaks at blanks,
/// Japanese in front of a phrase: where hiragana end, as they do in inflections and particles.
/// Texts in other scripts come back as they are. For display only: not for what is sent, stored,
/// copied or read aloud.
QString joined(const QString &text);

} // namespace WordBreaks
