// Stand-in for the maker's upgrade library. The environment variable NVUPGRADE_FEED names a folder
// that says what to answer:
//
//   check.json      the answer to a check, as it is (UTF-8); it need not be JSON
//   download.json   the answer after a complete download, likewise
//   package         what a download copies
//   orders.txt      "key=value" lines, all optional:
//                     target           file into which the package goes, "downloaded" beside it
//                     chunk            bytes copied at a time, 1048576
//                     odd_progress     a number that is reported first, whatever it means
//                     late_progress    a number that stop() reports to the last download, over or
//                                      not, and then once more without its context
//                     check_delay      milliseconds that a check takes
//                     download_delay   milliseconds that each chunk takes
//                     finish_when      file without which a download does not finish
//                     never_return     "check" or "download": returns only after stop()
//                     callback_thread  "own", a thread started for the download, or "caller"
//
// Every call is appended to calls.jsonl in the same folder, in order, as one JSON line: "call" and,
// where it has them, "capacity", "json" (the request as it came) and "overlapping" (how many calls
// were in progress already).

#include "nvupgrade.h"

#include "sandbox/programs/instructions.h"
#include "sandbox/standins/jsonline.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <json/json.h>
#include <locale>
#include <mutex>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

namespace fs = std::filesystem;

namespace {

/// wchar_t holds UTF-16 on one system and UTF-32 on the other.
using Unit = std::conditional_t<sizeof(wchar_t) == sizeof(char16_t), char16_t, char32_t>;
using Utf8 = std::codecvt<Unit, char, std::mbstate_t>;

const Utf8 &utf8()
{
    return std::use_facet<Utf8>(std::locale::classic());
}

/// Text that is no UTF-8 ends in a replacement character where it goes wrong.
std::wstring wideFromUtf8(const std::string &text)
{
    std::basic_string<Unit> wide(text.size(), Unit());
    std::mbstate_t state{};
    const char *read = nullptr;
    Unit *end = nullptr;
    const auto outcome = utf8().in(state, text.data(), text.data() + text.size(), read, wide.data(),
                                   wide.data() + wide.size(), end);
    std::wstring result(wide.data(), end);
    if (outcome != Utf8::ok)
        result += L'\xFFFD';
    return result;
}

std::string utf8FromWide(const std::wstring &wide)
{
    const std::basic_string<Unit> units(wide.begin(), wide.end());
    std::string text(units.size() * 4, '\0');
    std::mbstate_t state{};
    const Unit *read = nullptr;
    char *end = nullptr;
    utf8().out(state, units.data(), units.data() + units.size(), read, text.data(),
               text.data() + text.size(), end);
    text.resize(static_cast<std::size_t>(end - text.data()));
    return text;
}

fs::path feedFolder()
{
#if defined(_WIN32)
    const wchar_t *folder = _wgetenv(L"NVUPGRADE_FEED");
#else
    const char *folder = std::getenv("NVUPGRADE_FEED");
#endif
    return folder ? fs::path(folder) : fs::path();
}

Sample::Instructions ordersIn(const fs::path &feed)
{
    return Sample::readInstructions(feed / "orders.txt");
}

long long number(const Sample::Instructions &orders, const char *key, long long missing)
{
    const std::string digits = Sample::value(orders, key);
    return digits.empty() ? missing : std::strtoll(digits.c_str(), nullptr, 10);
}

std::string errorAnswer(const char *code, const char *message)
{
    return std::string(R"({"errcode":")") + code + R"(","errmsg":")" + message + "\"}\n";
}

std::string stoppedAnswer()
{
    return errorAnswer("-2", "stopped");
}

std::string copyFailedAnswer()
{
    return errorAnswer("-3", "cannot copy the package");
}

std::string answerIn(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return errorAnswer("-1", "no answer in the feed");
    return std::string(std::istreambuf_iterator<char>(in), {});
}

/// What stop() ends: the calls in progress.
class Work
{
public:
    int begin()
    {
        const std::lock_guard lock(m_mutex);
        if (m_running == 0)
            m_stopped = false;
        return m_running++;
    }

    void end()
    {
        const std::lock_guard lock(m_mutex);
        --m_running;
    }

    void stop()
    {
        {
            const std::lock_guard lock(m_mutex);
            m_stopped = true;
        }
        m_changed.notify_all();
    }

    /// Returns false when the work was stopped before the time was over.
    bool pause(std::chrono::milliseconds time)
    {
        std::unique_lock lock(m_mutex);
        return !m_changed.wait_for(lock, time, [this] { return m_stopped; });
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    int m_running = 0;
    bool m_stopped = false;
};

Work work;
std::mutex recordMutex;

void record(const Json::Value &call)
{
    const std::lock_guard lock(recordMutex);
    std::ofstream(feedFolder() / "calls.jsonl", std::ios::binary | std::ios::app) << jsonLine(call);
}

/// One call that blocks, from its record to its answer.
int perform(const char *name, const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity,
            const std::function<std::string(const fs::path &)> &answerFrom)
{
    const int overlapping = work.begin();
    std::string answer = errorAnswer("-1", "no feed");
    const fs::path feed = feedFolder();
    std::error_code ignored;
    if (fs::is_directory(feed, ignored)) {
        Json::Value call;
        call["call"] = name;
        call["capacity"] = outCapacity;
        call["json"] = utf8FromWide(jsonIn);
        call["overlapping"] = overlapping;
        record(call);
        answer = answerFrom(feed);
    }
    work.end();

    if (outCapacity <= 0)
        return -1;
    const std::wstring wide = wideFromUtf8(answer);
    const std::size_t length = std::min(wide.size(), static_cast<std::size_t>(outCapacity) - 1);
    std::copy_n(wide.begin(), length, jsonOut);
    jsonOut[length] = L'\0';
    return 0;
}

/// Waits as long as a call is ordered to take. Returns false when stop() ended the wait.
bool takeTime(const Sample::Instructions &orders, const char *call, long long milliseconds)
{
    if (Sample::value(orders, "never_return") == call)
        return work.pause(std::chrono::hours(24 * 365));
    return work.pause(std::chrono::milliseconds(milliseconds));
}

std::string checkAnswer(const fs::path &feed)
{
    const Sample::Instructions orders = ordersIn(feed);
    return takeTime(orders, "check", number(orders, "check_delay", 0))
               ? answerIn(feed / "check.json")
               : stoppedAnswer();
}

/// Copies the package. Returns the error to answer; empty when the target is complete.
std::string copyPackage(const fs::path &package, const fs::path &target,
                        const Sample::Instructions &orders,
                        const std::function<void(int)> &progress)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(package, error);
    std::ifstream in(package, std::ios::binary);
    if (error || !in)
        return errorAnswer("-1", "no package in the feed");
    std::ofstream out(target, std::ios::binary);
    std::vector<char> chunk(static_cast<std::size_t>(number(orders, "chunk", 1024LL * 1024)));
    const std::chrono::milliseconds delay(number(orders, "download_delay", 0));

    if (!Sample::value(orders, "odd_progress").empty())
        progress(static_cast<int>(number(orders, "odd_progress", 0)));
    int reported = 0;
    progress(reported);
    for (std::uintmax_t copied = 0; copied < size;) {
        if (!work.pause(delay))
            return stoppedAnswer();
        in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        if (in.gcount() == 0 || !out.write(chunk.data(), in.gcount()))
            return copyFailedAnswer();
        copied += static_cast<std::uintmax_t>(in.gcount());
        const int percent = static_cast<int>(copied * 100 / size);
        if (percent != reported)
            progress(reported = percent);
    }
    const std::string awaited = Sample::value(orders, "finish_when");
    while (!awaited.empty() && !fs::exists(fs::u8path(awaited))) {
        if (!work.pause(std::chrono::milliseconds(100)))
            return stoppedAnswer();
    }
    return out.flush() ? std::string() : copyFailedAnswer();
}

std::string downloadAnswer(const fs::path &feed, const std::function<void(int)> &progress)
{
    const Sample::Instructions orders = ordersIn(feed);
    if (!takeTime(orders, "download", 0))
        return stoppedAnswer();
    const std::string named = Sample::value(orders, "target");
    const fs::path target = named.empty() ? feed / "downloaded" : fs::u8path(named);
    fs::path part = target;
    part += ".part";

    std::string failure;
    const auto copy = [&] { failure = copyPackage(feed / "package", part, orders, progress); };
    if (Sample::value(orders, "callback_thread") == "caller")
        copy();
    else
        std::thread(copy).join();

    // The target appears only when it is complete.
    std::error_code error;
    if (failure.empty())
        fs::rename(part, target, error);
    if (error)
        failure = copyFailedAnswer();
    if (!failure.empty()) {
        fs::remove(part, error);
        return failure;
    }
    return answerIn(feed / "download.json");
}

/// The callback of the last download.
std::mutex lastProgressMutex;
nvupgrade_progress lastProgress;
void *lastContext;

void reportLate(const Sample::Instructions &orders)
{
    if (Sample::value(orders, "late_progress").empty())
        return;
    const int percent = static_cast<int>(number(orders, "late_progress", 0));
    const std::lock_guard lock(lastProgressMutex);
    if (lastProgress) {
        lastProgress(percent, lastContext);
        lastProgress(percent, nullptr);
    }
}

} // namespace

int check_upgrade_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity)
{
    return perform("check_upgrade_c", jsonIn, jsonOut, outCapacity, checkAnswer);
}

int download_package_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity,
                       nvupgrade_progress progress, void *context)
{
    {
        const std::lock_guard lock(lastProgressMutex);
        lastProgress = progress;
        lastContext = context;
    }
    const auto report = [=](int percent) {
        if (progress)
            progress(percent, context);
    };
    return perform("download_package_c", jsonIn, jsonOut, outCapacity,
                   [&](const fs::path &feed) { return downloadAnswer(feed, report); });
}

void stop()
{
    Json::Value call;
    call["call"] = "stop";
    record(call);
    reportLate(ordersIn(feedFolder()));
    work.stop();
}
