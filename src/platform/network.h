#pragma once

namespace Platform {

/// Whether the machine counts as connected to a network. Sends nothing over it.
bool isNetworkOnline();

} // namespace Platform
