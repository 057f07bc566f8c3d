#include "ui/look.h"

#include <QtCore/QRegularExpression>
#include <QtWidgets/QStyle>
#include <QtWidgets/QWidget>

namespace Look {

QString pictureStyle(const QString &path)
{
    // The style-sheet parser reads only these characters rightly in a bare url().
    static const QRegularExpression plain(QStringLiteral("\\A[A-Za-z0-9 /:._~-]+\\z"));
    if (plain.match(path).hasMatch())
        return QStringLiteral(".QWidget{border-image: url(") + path + QStringLiteral(");}");

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

} // namespace Look
