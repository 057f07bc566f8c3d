#include "tools/gallery/contrast.h"

#include <QtGui/QImage>
#include <QtGui/QPainter>
#include <QtWidgets/QAbstractButton>
#include <QtWidgets/QApplication>
#include <QtWidgets/QLabel>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace Gallery {

namespace {

double linear(double channel)
{
    return channel <= 0.04045 ? channel / 12.92 : std::pow((channel + 0.055) / 1.055, 2.4);
}

double luminance(const QColor &colour)
{
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}

int difference(QRgb one, QRgb other)
{
    return std::abs(qRed(one) - qRed(other)) + std::abs(qGreen(one) - qGreen(other)) +
           std::abs(qBlue(one) - qBlue(other));
}

// On white, like the pages that show through where a window is translucent.
QImage painted(QWidget &window, const QRect &part)
{
    const QPixmap picture = window.grab(part);
    QImage opaque(picture.size(), QImage::Format_RGB32);
    opaque.setDevicePixelRatio(picture.devicePixelRatio());
    opaque.fill(Qt::white);
    QPainter(&opaque).drawPixmap(0, 0, picture);
    return opaque;
}

// Only the cores of strokes show the ink itself; their edges are blended.
Contrast compare(const QImage &with, const QImage &without)
{
    constexpr int visibleDifference = 48;
    Contrast result{{}, {}, {}, {}, 21.0};
    int most = 0;
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            const int here = difference(with.pixel(x, y), without.pixel(x, y));
            if (here > most) {
                most = here;
                result.ink = QColor(with.pixel(x, y));
            }
        }
    }
    if (most == 0)
        return {{}, {}, {}, {}, 1.0};
    for (int y = 0; y < with.height(); ++y) {
        for (int x = 0; x < with.width(); ++x) {
            if (difference(with.pixel(x, y), without.pixel(x, y)) <
                std::min(visibleDifference, most))
                continue;
            const QColor ground(without.pixel(x, y));
            const double ratio = contrastRatio(result.ink, ground);
            if (ratio <= result.ratio) {
                result.ratio = ratio;
                result.ground = ground;
            }
        }
    }
    return result;
}

} // namespace

double contrastRatio(const QColor &one, const QColor &other)
{
    const double first = luminance(one);
    const double second = luminance(other);
    return (std::max(first, second) + 0.05) / (std::min(first, second) + 0.05);
}

QHash<QString, Platform::ContrastScheme> contrastSchemes()
{
    return {{QStringLiteral("dark"),
             {Qt::black, Qt::white, Qt::black, Qt::white, 0x1AEBFF, Qt::black, 0x3FF23F}},
            {QStringLiteral("light"),
             {Qt::white, Qt::black, Qt::white, Qt::black, 0x37006E, Qt::white, 0x600000}}};
}

QString shownText(const QWidget &widget)
{
    if (const auto *label = qobject_cast<const QLabel *>(&widget))
        return label->text();
    if (const auto *button = qobject_cast<const QAbstractButton *>(&widget))
        return button->text();
    if (const auto *line = qobject_cast<const QLineEdit *>(&widget))
        return line->text().isEmpty() ? line->placeholderText() : line->text();
    if (const auto *box = qobject_cast<const QPlainTextEdit *>(&widget))
        return box->toPlainText().isEmpty() ? box->placeholderText() : box->toPlainText();
    return {};
}

QList<Contrast> measureContrast(QWidget &window)
{
    QList<Contrast> list;
    const QList<QWidget *> widgets = window.findChildren<QWidget *>();
    for (QWidget *widget : widgets) {
        const QString text = shownText(*widget);
        if (!widget->isVisible() || text.trimmed().isEmpty() || widget->visibleRegion().isEmpty())
            continue;
        const QRect part = QRect(widget->mapTo(&window, QPoint()), widget->size()) & window.rect();
        const QImage with = painted(window, part);
        const QString style = widget->styleSheet();
        widget->setStyleSheet(QStringLiteral("color: transparent;"));
        const QImage without = painted(window, part);
        widget->setStyleSheet(style);

        // Scrolled out of sight but for an edge that holds no text.
        if (with == without && widget->visibleRegion().boundingRect() != widget->rect())
            continue;

        Contrast measured = compare(with, without);
        measured.widget = QStringLiteral("%1 %2").arg(
            QString::fromLatin1(widget->metaObject()->className()), widget->objectName());
        measured.text = text;
        list.append(measured);
    }
    return list;
}

} // namespace Gallery
