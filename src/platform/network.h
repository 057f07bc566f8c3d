#pragma once

namespace Platform {

/// Whether the machine counts as connected to a network. Asks nobody outside the machine.
bool isNetworkOnline();

} // namespace Platform
