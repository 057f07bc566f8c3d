#pragma once

#include <functional>

/// How long a test waits for what is bound to come. A child program takes its time to load on a
/// busy machine, in an emulator or under a sanitizer.
constexpr int patienceMs = 30000;

/// Runs the application, and in it the action first; false when it has not quit by itself in all
/// that time.
bool quitsAfter(const std::function<void()> &action);
