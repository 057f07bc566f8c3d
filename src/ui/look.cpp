#include "ui/look.h"

#include "ui/wordbreaks.h"

#include <QtCore/QEvent>
#include <QtCore/QRegularExpression>
#include <QtCore/QtMath>
#include <QtGui/QFontInfo>
#include <QtGui/QTextLayout>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace Look {

namespace {

/// Keeps an edit's hint in the colour of its text, which the style sheet sets.
class HintColour : public QObject
{
public:
    explicit HintColour(QWidget *edit)
        : QObject(edit)
    {
        edit->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange) {
            auto *edit = static_cast<QWidget *>(watched);
            QPalette palette = edit->palette();
            for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
                palette.setBrush(group, QPalette::PlaceholderText,
                                 palette.brush(group, QPalette::Text));
            if (palette != edit->palette())
                edit->setPalette(palette);
        }
        return QObject::eventFilter(watched, event);
    }
};

template<typename Edit>
void giveHint(Edit *edit, const QString &text)
{
    new HintColour(edit);
    edit->setPlaceholderText(text);
}

} // namespace

QString pictureStyle(const QString &path)
{
    // A style sheet cannot hold these even in a quoted string.
    static const QRegularExpression controlCharacters(QStringLiteral("[\\x00-\\x1F\\x7F]"));
    if (path.contains(controlCharacters))
        return {};

    // The style-sheet parser accepts only these characters in a bare url().
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9 /:._~-]+\\z"));
    if (plain.match(path).hasMatch())
        return QStringLiteral(".QWidget{border-image: url(") + path + QStringLiteral(");}");

    QString quoted = path;
    quoted.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    quoted.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QStringLiteral(".QWidget{border-image: url(\"") + quoted + QStringLiteral("\");}");
}

int pictureDensity(qreal devicePixelRatio)
{
    return qMin(qCeil(devicePixelRatio), 3);
}

void refreshStyle(QWidget *widget)
{
    widget->style()->unpolish(widget);
    widget->style()->polish(widget);
}

QString buttonText(const QString &text)
{
    return QString(text).replace(QLatin1Char('&'), QStringLiteral("&&"));
}

void setWrappedText(QAbstractButton *button, const QString &text, int width)
{
    button->ensurePolished(); // the style sheet decides on the font
    const QString joined = WordBreaks::joined(text);
    QTextLayout layout(joined, button->font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines += joined.mid(line.textStart(), line.textLength()).trimmed().remove(QChar(0x2060));
    }
    layout.endLayout();

    button->setText(buttonText(lines.join(QLatin1Char('\n'))));
    button->setAccessibleName(text);
}

void setHint(QLineEdit *edit, const QString &text)
{
    giveHint(edit, text);
}

void setHint(QPlainTextEdit *edit, const QString &text)
{
    giveHint(edit, text);
}

void shrinkLetters(QWidget &widget, const std::function<bool()> &fits)
{
    constexpr int leastSize = 10;
    int size = QFontInfo(widget.font()).pixelSize();
    while (!fits() && --size >= leastSize)
        widget.setStyleSheet(QStringLiteral("font-size: %1px").arg(size));
}

void mirrorMargins(QWidget &window)
{
    if (!window.isRightToLeft())
        return;
    const QList<QLayout *> layouts = window.findChildren<QLayout *>();
    for (QLayout *layout : layouts) {
        const QMargins margins = layout->contentsMargins();
        if (margins.left() != margins.right())
            layout->setContentsMargins(margins.right(), margins.top(), margins.left(),
                                       margins.bottom());
    }
}

void sayStatus(QWidget &page, const QStringList &texts)
{
    page.setAccessibleName(texts.join(QLatin1Char(' ')).trimmed());
}

} // namespace Look
