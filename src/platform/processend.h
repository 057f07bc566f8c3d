#pragma once

namespace Platform {

/// Ends this process at once: no exit handler, no destructor and, on Windows, no library's detach
/// code runs, any of which may hang. Any thread.
[[noreturn]] void endProcess(int exitCode);

} // namespace Platform
