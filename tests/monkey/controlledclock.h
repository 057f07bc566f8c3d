#pragma once

#include <chrono>

/// Makes the monotonic clock of the GUI thread, which Qt's timers and QElapsedTimer read, stand
/// still until advance(). Other threads, and waiting for processes, use the real time.
namespace ControlledClock {

/// From now on the calling thread's monotonic time stands still.
void takeOver();

void advance(std::chrono::milliseconds time);

/// Milliseconds of real time, for limits on waiting.
std::chrono::milliseconds realTime();

} // namespace ControlledClock
