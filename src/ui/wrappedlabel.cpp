#include "ui/wrappedlabel.h"

#include "ui/look.h"
#include "ui/wordbreaks.h"

void WrappedLabel::setText(const QString &text)
{
    if (text == m_text)
        return; // else screen readers are told of a new name, and a broken word is cut off
    m_text = text;
    setAccessibleName(text);
    QLabel::setText(WordBreaks::joined(text));
}

void WrappedLabel::resizeEvent(QResizeEvent *event)
{
    QLabel::resizeEvent(event);
    keepWordsWhole();
    shrinkToMaximumHeight();
}

void WrappedLabel::keepWordsWhole()
{
    QString shown = WordBreaks::joined(m_text);
    // A word that is wider than the label is better broken than cut off.
    const QRect narrow(0, 0, 1, QWIDGETSIZE_MAX);
    if (shown != m_text && fontMetrics().boundingRect(narrow, Qt::TextWordWrap, shown).width() >
                               contentsRect().width())
        shown = m_text;
    if (shown != QLabel::text())
        QLabel::setText(shown);
}

void WrappedLabel::shrinkToMaximumHeight()
{
    // How tall a line is depends on the script and on the fonts that the system has for it.
    Look::shrinkLetters(*this, [this] { return heightForWidth(width()) <= maximumHeight(); });
}
