#pragma once

#include <cstddef>
#include <functional>

namespace Platform {

/// Limits where this process, which runs elevated, loads libraries from: its own folder and the
/// system's, neither the current folder nor PATH; and forgets the environment variables by which
/// Qt would load more. To be called first of all. Does what the running system offers.
void restrictLibraries();

/// Sets a policy of this process; false where the system does not know it.
using SetPolicy = std::function<bool(int policy, void *content, std::size_t size)>;
bool setSystemPolicy(int policy, void *content, std::size_t size);

/// Asks the system to follow no junction that was made without an administrator's rights, wherever
/// this process opens a file. Systems before Windows 10 22H2 do not know the request; then nothing
/// changes.
void distrustRedirections(const SetPolicy &setPolicy = setSystemPolicy);

} // namespace Platform
