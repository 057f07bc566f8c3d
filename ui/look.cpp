#include "ui/look.h"

#include <QtCore/QRegularExpression>
#include <QtGui/QImageReader>
#include <QtGui/QTextLayout>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace {

constexpr qint64 maxPixels = qint64(4) * 1024 * 1024;

/// A file of some kilobytes may hold a picture of gigabytes. Its head tells.
bool isEnormous(const QString &path)
{
    const QSize size = path.isEmpty() ? QSize() : QImageReader(path).size();
    return qint64(size.width()) * size.height() > maxPixels;
}

} // namespace

namespace Look {

QString pictureStyle(const QString &path)
{
    if (isEnormous(path))
        return {};

    // The style-sheet parser reads only these characters rightly in a bare url().
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9 /:._~-]+\\z"));
    if (plain.match(path).hasMatch())
        return QStringLiteral(".QWidget{border-image: url(") + path + QStringLiteral(");}");

    // Not even a quoted string can hold these.
    static const QRegularExpression unspeakable(QStringLiteral("[\\x00-\\x1F\\x7F]"));
    if (path.contains(unspeakable))
        return {};

    QString quoted = path;
    quoted.replace(QLatin1Char('\\'), QStringLiteral("\\\\"));
    quoted.replace(QLatin1Char('"'), QStringLiteral("\\\""));
    return QStringLiteral(".QWidget{border-image: url(\"") + quoted + QStringLiteral("\");}");
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
    QTextLayout layout(text, button->font());
    QTextOption option;
    option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
    layout.setTextOption(option);
    QStringList lines;
    layout.beginLayout();
    for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
        line.setLineWidth(width);
        lines += text.mid(line.textStart(), line.textLength()).trimmed();
    }
    layout.endLayout();

    button->setText(buttonText(lines.join(QLatin1Char('\n'))));
    button->setAccessibleName(text);
}

void sayStatus(QWidget &page, const QStringList &texts)
{
    page.setAccessibleName(texts.join(QLatin1Char(' ')).trimmed());
}

} // namespace Look
