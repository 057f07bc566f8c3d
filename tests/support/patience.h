#pragma once

#include <QtCore/QList>

#include <functional>

/// Limit of a wait that normally ends at once. A child process may take seconds to load on a busy
/// machine, in an emulator or under a sanitizer.
constexpr int patienceMs = 30000;

/// QTRY_VERIFY and QTRY_COMPARE with that limit.
#define AWAIT(condition) QTRY_VERIFY_WITH_TIMEOUT(condition, patienceMs)
#define AWAIT_EQUAL(actual, expected) QTRY_COMPARE_WITH_TIMEOUT(actual, expected, patienceMs)

/// Runs the application's event loop, beginning with the action. Returns whether the application
/// quit by itself within patienceMs.
bool quitsAfter(const std::function<void()> &action);

/// The delays, in milliseconds, of this thread's pending QTimer::singleShot() calls.
QList<int> pendingDelays();
