#pragma once

#include <chrono>
#include <string>

/// An upgrade library whose calls block the calling thread until the test answers them. It replaces
/// the one that the program is linked with. The functions below are for the test's thread.
namespace HeldLibrary {

enum class Call { None, Check, Download };

/// Resets all counts; no call may be in progress.
void reset();

/// Waits until that many calls were entered since reset(). Returns false at the limit.
bool waitForCalls(int count, std::chrono::seconds limit);

/// The call that waits for its answer.
Call current();

/// The largest number of calls in progress at a time.
int mostAtATime();

/// Makes the download in progress report a percentage, and returns when it has.
void reportProgress(int percent);

/// Makes the call in progress return this answer.
void answer(const std::string &json);

} // namespace HeldLibrary
