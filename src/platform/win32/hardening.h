#pragma once

namespace Platform {

/// Limits where this process, which runs elevated, loads libraries from: its own folder and the
/// system's, neither the current folder nor PATH; and forgets the environment variables by which
/// Qt would load more. To be called first of all. Does what the running system offers.
void restrictLibraries();

} // namespace Platform
