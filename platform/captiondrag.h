#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPoint>
#include <functional>

class QWindow;

namespace Platform {

/// Tells whether a window can be dragged by this point (global coordinates).
using IsCaption = std::function<bool(const QPoint &globalPos)>;

/// For systems that ask a window where its caption is, from its nativeEvent().
/// Returns true, with *result filled, when the message was that question and the cursor is on the
/// caption.
bool answerCaptionHitTest(const QByteArray &eventType, void *message, long *result,
                          const IsCaption &isCaption);

/// For systems that do not ask: moves the window while it is dragged by its caption.
/// The window must outlive the application's event loop or be destroyed with it.
void enableCaptionDragging(QWindow *window, const IsCaption &isCaption);

} // namespace Platform
