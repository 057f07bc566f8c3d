#include "ui/basewindow.h"

#include "ui/look.h"

#include <QtCore/QCoreApplication>
#include <QtCore/QPointer>
#include <QtCore/QVariant>
#include <QtGui/QCloseEvent>
#include <QtGui/QPaintEvent>
#include <QtGui/QPainter>
#include <QtWidgets/QLayout>
#include <QtWidgets/QLineEdit>
#include <QtWidgets/QPlainTextEdit>
#include <QtWidgets/QStyle>
#include <QtWidgets/QStyleOption>

namespace {

/// The style sheet's borders and corners of windows lie in it.
constexpr int rim = 12;

/// Discards the repeats of a held key that presses what has the focus. They would answer the
/// question that the first press has opened, or open a link many times over.
class HeldKeyFilter : public QObject
{
public:
    /// Makes one for the application when it has none yet.
    static void install()
    {
        static QPointer<HeldKeyFilter> filter;
        if (!filter) {
            filter = new HeldKeyFilter(qApp);
            qApp->installEventFilter(filter);
        }
    }

protected:
    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() != QEvent::KeyPress && event->type() != QEvent::KeyRelease)
            return false;
        const auto *key = static_cast<QKeyEvent *>(event);
        if (event->type() == QEvent::KeyRelease) {
            m_releasedKey = key->key();
            m_releasedAt = key->timestamp();
            return false;
        }
        // The window's handle gets each key first and passes it on to the focused widget.
        return watched->isWidgetType() && isRepeat(*key) && presses(key->key(), watched);
    }

private:
    using QObject::QObject;

    bool isRepeat(const QKeyEvent &press) const
    {
        // X sends a repeat as a release and a press of the same time. Qt does not take them for one
        // when the press arrives only after it has handled the release.
        return press.isAutoRepeat() || (press.key() == m_releasedKey && press.timestamp() != 0 &&
                                        press.timestamp() == m_releasedAt);
    }

    static bool presses(int key, const QObject *focused)
    {
        switch (key) {
        case Qt::Key_Return:
        case Qt::Key_Enter:
            return !qobject_cast<const QPlainTextEdit *>(focused);
        case Qt::Key_Space:
        case Qt::Key_Select:
            return !qobject_cast<const QPlainTextEdit *>(focused) &&
                   !qobject_cast<const QLineEdit *>(focused);
        default:
            return false;
        }
    }

    int m_releasedKey = 0;
    ulong m_releasedAt = 0;
};

} // namespace

BaseWindow::BaseWindow(QWidget *parent)
    : QWidget(parent)
{
    HeldKeyFilter::install();
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint);
    setAttribute(Qt::WA_TranslucentBackground);
    // Selects the style sheet's pictures for this many pixels per unit. It is the same on every
    // display: the scale factor is set before the first window.
    setProperty("density", Look::pictureDensity(devicePixelRatioF()));
    // A child of a disabled window starts disabled. Its children would announce that to assistive
    // technology before they have names, and screen readers would keep them as nameless widgets.
    setEnabled(true);
}

void BaseWindow::growToTexts()
{
    // The style sheet sets the fonts, but only when a widget is polished.
    const QList<QWidget *> widgets = findChildren<QWidget *>();
    for (const QWidget *widget : widgets)
        widget->ensurePolished();
    const int wide = qMax(width(), layout()->minimumSize().width());
    resize(wide, qMax(height(), layout()->minimumHeightForWidth(wide)));
}

bool BaseWindow::refuseUsersClose(QCloseEvent *event)
{
    if (event->spontaneous())
        event->ignore();
    return event->spontaneous();
}

void BaseWindow::paintGround(QPainter &painter, const QRect &area) const
{
    // What moves is painted often, and the style would draw border and corners each time.
    const QRect plain = rect().adjusted(rim, rim, -rim, -rim);
    if (plain.contains(area)) {
        painter.fillRect(plain, palette().window()); // the style sheet's
        return;
    }
    QStyleOption option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_Widget, &option, &painter, this);
}

void BaseWindow::paintEvent(QPaintEvent *event)
{
    QPainter painter(this);
    paintGround(painter, event->rect());
}
