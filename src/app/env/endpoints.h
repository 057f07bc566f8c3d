#pragma once

#include <QtCore/QString>

/// The maker's hosts, fixed when the program is built: scheme, host and, if any, port, without a
/// trailing slash. Which set an executable has is decided by what it links.
namespace Endpoints {

/// Serves the configuration documents.
QString configuration();

/// Redirects product links that the configuration leaves empty.
QString redirect();

} // namespace Endpoints
