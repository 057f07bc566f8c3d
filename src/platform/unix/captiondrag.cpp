#include "platform/captiondrag.h"

#include <QtGui/QGuiApplication>
#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>

namespace Platform {

namespace {

class CaptionDragFilter : public QObject
{
public:
    CaptionDragFilter(QObject *window, IsCaption isCaption)
        : QObject(window)
        , m_isCaption(std::move(isCaption))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject * /*watched*/, QEvent *event) override
    {
        if (event->type() != QEvent::MouseButtonPress)
            return false;
        const auto *press = static_cast<QMouseEvent *>(event);
        if (press->button() != Qt::LeftButton || !m_isCaption(press->globalPos()))
            return false;
        QWindow *window = QGuiApplication::topLevelAt(press->globalPos());
        return window && window->startSystemMove();
    }

private:
    const IsCaption m_isCaption;
};

} // namespace

bool answerCaptionHitTest(const QByteArray & /*eventType*/, void * /*message*/, long * /*result*/,
                          const IsCaption & /*isCaption*/)
{
    return false;
}

void enableCaptionDragging(QObject *window, const IsCaption &isCaption)
{
    new CaptionDragFilter(window, isCaption); // goes with the window
}

} // namespace Platform
