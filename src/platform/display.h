#pragma once

namespace Platform {

/// Physical pixels per logical pixel of the primary monitor, as an application that does not know
/// about DPI sees it. Call it before enableDpiAwareness(), which changes what is seen.
float primaryMonitorRatio();

/// Declares the process system-DPI-aware where the system has that state; else does nothing.
void enableDpiAwareness();

} // namespace Platform
