#pragma once

#include <chrono>
#include <string>

/// An upgrade library whose calls really block, on the thread that made them, until they are told
/// how to go on. It stands in for the one that the program is linked with. All functions are for
/// the thread that tells.
namespace HeldLibrary {

enum class Call { None, Check, Download };

/// Forgets what was; no call may be in progress.
void reset();

/// Calls that were entered so far; waits until there are that many. False: they did not come.
bool waitForCalls(int count, std::chrono::seconds limit);

/// The call that waits to be told.
Call current();

/// Most calls that were in progress at a time.
int mostAtATime();

/// The download in progress reports this; it has done so when the function returns.
void reportProgress(int percent);

/// The call in progress returns with this answer.
void answer(const std::string &json);

} // namespace HeldLibrary
