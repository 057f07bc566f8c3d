#include "tests/monkey/heldlibrary.h"

#include "tests/monkey/controlledclock.h"

#include <algorithm>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <nvupgrade.h>
#include <optional>
#include <thread>

namespace {

struct State
{
    HeldLibrary::Call call = HeldLibrary::Call::None;
    int entered = 0;
    int running = 0;
    int mostRunning = 0;
    std::optional<int> progress;
    std::optional<std::string> answer;
};

std::mutex mutex;
std::condition_variable changed;
State state;

int perform(HeldLibrary::Call call, wchar_t *jsonOut, int outCapacity, nvupgrade_progress progress,
            void *context)
{
    std::unique_lock lock(mutex);
    state.call = call;
    ++state.entered;
    state.mostRunning = std::max(state.mostRunning, ++state.running);
    changed.notify_all();
    while (!state.answer) {
        changed.wait(lock, [] { return state.progress || state.answer; });
        if (!state.progress)
            continue;
        const int percent = *state.progress;
        lock.unlock();
        if (progress)
            progress(percent, context);
        lock.lock();
        state.progress.reset();
        changed.notify_all();
    }
    // A longer answer is cut at the buffer's end, as by the real library.
    const std::size_t length =
        std::min(state.answer->size(), static_cast<std::size_t>(outCapacity) - 1);
    std::transform(state.answer->begin(),
                   state.answer->begin() + static_cast<std::ptrdiff_t>(length), jsonOut,
                   [](char character) { return static_cast<unsigned char>(character); });
    jsonOut[length] = L'\0';
    state.answer.reset();
    state.call = HeldLibrary::Call::None;
    --state.running;
    return 0;
}

} // namespace

int check_upgrade_c(const wchar_t * /*jsonIn*/, wchar_t *jsonOut, int outCapacity)
{
    return perform(HeldLibrary::Call::Check, jsonOut, outCapacity, nullptr, nullptr);
}

int download_package_c(const wchar_t * /*jsonIn*/, wchar_t *jsonOut, int outCapacity,
                       nvupgrade_progress progress, void *context)
{
    return perform(HeldLibrary::Call::Download, jsonOut, outCapacity, progress, context);
}

void stop() {}

namespace HeldLibrary {

void reset()
{
    const std::lock_guard lock(mutex);
    state = State();
}

bool waitForCalls(int count, std::chrono::seconds limit)
{
    // Measured in real time: the caller's clock may stand still.
    const auto end = ControlledClock::realTime() + limit;
    const auto areThere = [count] {
        const std::lock_guard lock(mutex);
        return state.entered >= count;
    };
    while (!areThere()) {
        if (ControlledClock::realTime() > end)
            return false;
        std::this_thread::sleep_for(std::chrono::microseconds(50));
    }
    return true;
}

Call current()
{
    const std::lock_guard lock(mutex);
    return state.call;
}

int mostAtATime()
{
    const std::lock_guard lock(mutex);
    return state.mostRunning;
}

void reportProgress(int percent)
{
    std::unique_lock lock(mutex);
    state.progress = percent;
    changed.notify_all();
    changed.wait(lock, [] { return !state.progress; });
}

void answer(const std::string &json)
{
    const std::lock_guard lock(mutex);
    state.answer = json;
    changed.notify_all();
}

} // namespace HeldLibrary
