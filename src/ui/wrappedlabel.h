#pragma once

#include <QtWidgets/QLabel>

/// A label of several lines that end between words in every language; see WordBreaks. Screen
/// readers get the text as it was set.
///
/// Without meta-object of its own on purpose: style sheets address it as the QLabel it is.
class WrappedLabel : public QLabel
{
public:
    using QLabel::QLabel;

    QString text() const { return m_text; }
    void setText(const QString &text);

protected:
    void resizeEvent(QResizeEvent *event) override;

private:
    void keepWordsWhole();
    void shrinkToMaximumHeight();

    QString m_text;
};
