#pragma once

#include <QtCore/QByteArray>
#include <QtCore/QPoint>
#include <functional>

class QObject;

namespace Platform {

/// Tells whether a window can be dragged by this point (global coordinates).
using IsCaption = std::function<bool(const QPoint &globalPos)>;

/// For systems that ask a window where its caption is, from its nativeEvent().
/// Returns true, with *result filled, when the message was that question and the cursor is on the
/// caption.
bool answerCaptionHitTest(const QByteArray &eventType, void *message, long *result,
                          const IsCaption &isCaption);

/// For systems that do not ask: moves the window (a top-level widget) while it is dragged by its
/// caption. Presses that a child of the window takes do not drag.
void enableCaptionDragging(QObject *window, const IsCaption &isCaption);

} // namespace Platform
