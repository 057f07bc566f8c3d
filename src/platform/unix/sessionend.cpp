#include "platform/sessionend.h"

namespace Platform {

// Session managers of X ask programs, but take no reasons.
void setSessionEndReason(QWindow * /*window*/, const QString & /*reason*/) {}

} // namespace Platform
