#include "platform/captiondrag.h"

#include <QtGui/QCursor>

#include <windows.h>

namespace Platform {

bool answerCaptionHitTest(const QByteArray & /*eventType*/, void *message, long *result,
                          const IsCaption &isCaption)
{
    if (static_cast<const MSG *>(message)->message != WM_NCHITTEST || !isCaption(QCursor::pos()))
        return false;
    *result = HTCAPTION;
    return true;
}

void enableCaptionDragging(QObject * /*window*/, const IsCaption & /*isCaption*/) {}

} // namespace Platform
