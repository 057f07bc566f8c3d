#pragma once

class QNetworkAccessManager;

namespace Net {

/// The access manager of the whole process, made on first use. It belongs to the application
/// object, which must exist, and goes with it. It speaks HTTP and nothing else: requests of other
/// schemes fail. GUI thread only.
QNetworkAccessManager *sharedAccessManager();

} // namespace Net
