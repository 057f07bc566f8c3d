#include "tools/gallery/textfit.h"

#include "tools/gallery/contrast.h"

#include <QtGui/QTextDocument>
#include <QtWidgets/QCheckBox>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QPushButton>
#include <QtWidgets/QRadioButton>
#include <QtWidgets/QStyleOption>

namespace Gallery {

namespace {

// Typed texts scroll; only their hints must fit.
QString textToFit(const QWidget &widget)
{
    if (const auto *line = qobject_cast<const QLineEdit *>(&widget))
        return line->text().isEmpty() ? line->placeholderText() : QString();
    if (const auto *box = qobject_cast<const QPlainTextEdit *>(&widget))
        return box->toPlainText().isEmpty() ? box->placeholderText() : QString();
    return shownText(widget);
}

bool isWrapped(const QWidget &widget)
{
    const auto *label = qobject_cast<const QLabel *>(&widget);
    return (label && label->wordWrap()) || qobject_cast<const QPlainTextEdit *>(&widget);
}

} // namespace

QRect textRoom(const QWidget &widget)
{
    QStyleOptionButton option;
    option.initFrom(&widget);
    const QStyle *style = widget.style();
    if (qobject_cast<const QPushButton *>(&widget))
        return style->subElementRect(QStyle::SE_PushButtonContents, &option, &widget);
    if (qobject_cast<const QRadioButton *>(&widget))
        return style->subElementRect(QStyle::SE_RadioButtonContents, &option, &widget);
    if (qobject_cast<const QCheckBox *>(&widget))
        return style->subElementRect(QStyle::SE_CheckBoxContents, &option, &widget);
    if (const auto *label = qobject_cast<const QLabel *>(&widget)) {
        const int margin = label->margin();
        return label->contentsRect().adjusted(margin, margin, -margin, -margin);
    }
    if (qobject_cast<const QLineEdit *>(&widget)) {
        QStyleOptionFrame frame;
        frame.initFrom(&widget);
        return style->subElementRect(QStyle::SE_LineEditContents, &frame, &widget);
    }
    if (const auto *box = qobject_cast<const QPlainTextEdit *>(&widget)) {
        const int margin = static_cast<int>(box->document()->documentMargin());
        return box->viewport()->rect().adjusted(margin, 0, -margin, 0);
    }
    return widget.rect();
}

QString textMisfit(const QWidget &widget)
{
    const QString text = textToFit(widget);
    if (text.isEmpty())
        return {};
    const QRect room = textRoom(widget);
    const bool isButton = qobject_cast<const QAbstractButton *>(&widget);
    const int flags =
        (isWrapped(widget) ? Qt::TextWordWrap : 0) | (isButton ? Qt::TextShowMnemonic : 0);
    const QSize needed =
        widget.fontMetrics().boundingRect(QRect(0, 0, room.width(), 10000), flags, text).size();
    if (needed.width() <= room.width() && needed.height() <= room.height())
        return {};
    return QStringLiteral("needs %1x%2 and has %3x%4")
        .arg(needed.width())
        .arg(needed.height())
        .arg(room.width())
        .arg(room.height());
}

} // namespace Gallery
