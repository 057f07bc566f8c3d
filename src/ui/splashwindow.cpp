#include "ui/splashwindow.h"

#include "app/env/languages.h"

#include <QtCore/QTimer>
#include <QtCore/QTranslator>
#include <QtGui/QPaintEvent>
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
    , m_picture(QStringLiteral(":/Resources/light/loading_2x.png"))
    , m_timer(new QTimer(this))
{
    setupUi(this);
    setWindowFlags(Qt::Tool | Qt::FramelessWindowHint); // no taskbar button of its own
    resize(720, 480);
    translateForScreenReaders();

    connect(m_timer, &QTimer::timeout, this, &SplashWindow::timerTimeout);
    connect(btnClose, &QPushButton::clicked, this, &SplashWindow::closed);
    connect(new QShortcut(Qt::Key_Escape, this), &QShortcut::activated, this,
            &SplashWindow::closed);

    setFocus(); // not the close button, or a key pressed by chance would end the program

    m_clock.start();
    m_timer->start(tickMs);
}

void SplashWindow::translateForScreenReaders()
{
    QTranslator catalogue;
    if (!catalogue.load(Languages::translatorFileName(QString())))
        return;
    const auto text = [&catalogue](const char *source) {
        return catalogue.translate("SplashWindow", source);
    };
    setAccessibleName(text("SplashWindow"));
    setAccessibleDescription(text("Loading"));
    btnClose->setAccessibleName(text("Close"));
}

qreal SplashWindow::angleAt(qint64 elapsedMs)
{
    return static_cast<qreal>(elapsedMs % turnMs) / turnMs * 360.0;
}

bool SplashWindow::isSpinning() const
{
    return m_timer->isActive();
}

void SplashWindow::setContrastColour(const QColor &colour)
{
    BaseWindow::setContrastColour(colour);
    QPainter painter(&m_picture);
    painter.setCompositionMode(QPainter::CompositionMode_SourceIn);
    painter.fillRect(m_picture.rect(), colour);
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
    QPainter painter(this);
    paintGround(painter, event->rect());

    const QRect place = centred(pictureSide);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    // By the clock and not by counting ticks, so that late ticks do not slow the turning.
    const QPointF centre = QRectF(place).center();
    painter.translate(centre);
    painter.rotate(angleAt(m_clock.isValid() ? m_clock.elapsed() : 0));
    painter.translate(-centre);
    painter.drawPixmap(place, m_picture);
}

QRect SplashWindow::centred(int side) const
{
    return {(width() - side) / 2, (height() - side) / 2, side, side};
}
