#pragma once

#include <QtCore/QString>

class QWindow;

namespace Platform {

/// What the system tells the user while a window of the program keeps the session from ending, as
/// at log-off or shutdown. An empty text takes the earlier one back. Does nothing for a window that
/// has not been created yet (null). To be called in the GUI thread.
void setSessionEndReason(QWindow *window, const QString &reason);

} // namespace Platform
