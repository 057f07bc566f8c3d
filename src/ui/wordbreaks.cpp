#include "ui/wordbreaks.h"

#include <algorithm>

namespace WordBreaks {

namespace {

constexpr QChar wordJoiner(0x2060);

bool isHangul(QChar letter)
{
    return letter.script() == QChar::Script_Hangul;
}

bool isHiragana(QChar letter)
{
    return letter.script() == QChar::Script_Hiragana;
}

bool isKana(QChar letter)
{
    return isHiragana(letter) || letter.script() == QChar::Script_Katakana;
}

// "O" and "go" in front of a word make it polite and belong to it.
bool isHonorific(const QString &text, int index)
{
    return (text.at(index) == QChar(0x304A) || text.at(index) == QChar(0x3054)) &&
           index + 1 < text.size() && text.at(index + 1).script() == QChar::Script_Han;
}

// A single kana between two other letters is a particle or an ending in the middle of a compound
// verb, such as the "mi" of "yomikomi".
bool isParticle(QChar kana)
{
    static const QString particles = QString::fromUtf8("\u3092\u306F\u304C\u306B\u3067\u3068\u3082"
                                                       "\u306E\u3078\u3084");
    return particles.contains(kana);
}

// Between a letter and the next, neither of them a blank.
bool mayBreakJapanese(const QString &text, int index)
{
    const QChar letter = text.at(index);
    const QChar next = text.at(index + 1);
    if (!letter.isLetterOrNumber() || !next.isLetterOrNumber())
        return true; // the framework knows punctuation
    if (!isHiragana(letter) || isHonorific(text, index))
        return false;
    if (isHiragana(next))
        return isHonorific(text, index + 1);
    const bool isSingle = index == 0 || !isHiragana(text.at(index - 1));
    return !isSingle || isParticle(letter);
}

} // namespace

QString joined(const QString &text)
{
    const bool isKorean = std::any_of(text.begin(), text.end(), isHangul);
    if (!isKorean && std::none_of(text.begin(), text.end(), isKana))
        return text;

    QString result;
    for (int i = 0; i < text.size(); ++i) {
        result += text.at(i);
        if (i + 1 == text.size() || text.at(i) == QLatin1Char('\n') || text.at(i + 1).isSpace())
            continue;
        // A name in Latin letters has a blank behind it, but no end before its particle.
        const bool mayBreak = text.at(i).isSpace() ? !isHiragana(text.at(i + 1))
                                                   : !isKorean && mayBreakJapanese(text, i);
        if (!mayBreak)
            result += wordJoiner;
    }
    return result;
}

} // namespace WordBreaks
