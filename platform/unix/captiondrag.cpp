#include "platform/captiondrag.h"

#include <QtGui/QMouseEvent>
#include <QtGui/QWindow>

namespace Platform {

namespace {

class CaptionDragFilter : public QObject
{
public:
    CaptionDragFilter(QWindow *window, IsCaption isCaption)
        : QObject(window)
        , m_isCaption(std::move(isCaption))
    {
        window->installEventFilter(this);
    }

    bool eventFilter(QObject *watched, QEvent *event) override
    {
        if (event->type() == QEvent::MouseButtonPress) {
            const auto *press = static_cast<QMouseEvent *>(event);
            if (press->button() == Qt::LeftButton && m_isCaption(press->globalPos()))
                return static_cast<QWindow *>(watched)->startSystemMove();
        }
        return false;
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

void enableCaptionDragging(QWindow *window, const IsCaption &isCaption)
{
    new CaptionDragFilter(window, isCaption); // goes with the window
}

} // namespace Platform
