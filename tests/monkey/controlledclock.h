#pragma once

#include <chrono>

/// Time that passes only when told to, for the GUI thread: what Qt's timers and elapsed-time clocks
/// of that thread read. Other threads, and waiting for processes, go by the real time.
namespace ControlledClock {

/// From now on the calling thread's monotonic time stands still.
void takeOver();

void advance(std::chrono::milliseconds time);

/// Milliseconds of real time, for limits on waiting.
std::chrono::milliseconds realTime();

} // namespace ControlledClock
