#include "ui/splashwindow.h"

#include <QtCore/QTimer>
#include <QtGui/QPainter>
#include <QtWidgets/QShortcut>

namespace {

constexpr int tickMs = 10;
constexpr int turnMs = 1000;
constexpr int pictureSide = 40;
constexpr int repaintedSide = 100;

} // namespace

SplashWindow::SplashWindow(QWidget *parent)
    : BaseWindow(parent)
    , m_timer(new QTimer(this))
{
    setupUi(this);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint); // no taskbar button of its own
    resize(720, 480);

    connect(m_timer, &QTimer::timeout, this, &SplashWindow::timerTimeout);
    connect(btnClose, &QPushButton::clicked, this, &SplashWindow::closed);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            &SplashWindow::closed);

    setFocus(); // and not the close button: nobody asked for it yet

    m_clock.start();
    m_timer->start(tickMs);
}

qreal SplashWindow::angleAt(qint64 elapsedMs)
{
    return static_cast<qreal>(elapsedMs % turnMs) / turnMs * 360.0;
}

bool SplashWindow::isSpinning() const
{
    return m_timer->isActive();
}

void SplashWindow::timerTimeout()
{
    if (isVisible()) {
        update(centred(repaintedSide));
    } else {
        m_clock.invalidate();
        m_timer->stop();
    }
}

void SplashWindow::closeEvent(QCloseEvent *event)
{
    if (refuseUsersClose(event))
        Q_EMIT closed();
}

void SplashWindow::paintEvent(QPaintEvent *event)
{
    BaseWindow::paintEvent(event);

    const QRect place = centred(pictureSide);
    const QPixmap picture(QStringLiteral(":/Resources/light/loading_2x.png"));
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // By the clock and not by counting ticks, so that late ticks do not slow the turning.
    const QPointF centre = QRectF(place).center();
    painter.translate(centre);
    painter.rotate(angleAt(m_clock.isValid() ? m_clock.elapsed() : 0));
    painter.translate(-centre);
    painter.drawPixmap(place, picture);
}

QRect SplashWindow::centred(int side) const
{
    return {(width() - side) / 2, (height() - side) / 2, side, side};
}
