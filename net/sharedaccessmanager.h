#pragma once

class QNetworkAccessManager;

namespace Net {

/// The access manager of the whole process, made on first use. It belongs to the application
/// object, which must exist, and goes with it. GUI thread only.
QNetworkAccessManager *sharedAccessManager();

} // namespace Net
