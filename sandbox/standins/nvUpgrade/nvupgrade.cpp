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
//                     check_delay      milliseconds that a check takes
//                     download_delay   milliseconds that each chunk takes
//                     never_return     "check" or "download": waits for stop(), for good without it
//                     callback_thread  "own", a thread started for the download, or "caller"
//
// Every call is appended to calls.jsonl in the same folder, in order, as one JSON line: "call" and,
// where it has them, "capacity", "json" (the request as it came) and "overlapping" (how many calls
// were in progress already).

#include "nvupgrade.h"

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
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <thread>
#include <vector>

namespace fs = std::filesystem;

namespace {

constexpr char32_t replacement = 0xFFFD;

bool isSurrogate(char32_t character)
{
    return character >= 0xD800 && character <= 0xDFFF;
}

void appendUtf8(std::string &text, char32_t character)
{
    const auto byte = [&](char32_t bits) { text += static_cast<char>(bits); };
    if (character < 0x80) {
        byte(character);
    } else if (character < 0x800) {
        byte(0xC0 | character >> 6);
        byte(0x80 | (character & 0x3F));
    } else if (character < 0x10000) {
        byte(0xE0 | character >> 12);
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    } else {
        byte(0xF0 | character >> 18);
        byte(0x80 | (character >> 12 & 0x3F));
        byte(0x80 | (character >> 6 & 0x3F));
        byte(0x80 | (character & 0x3F));
    }
}

/// wchar_t holds UTF-16 on one system and UTF-32 on the other; pairs of surrogates are put
/// together in either.
std::string utf8FromWide(const wchar_t *wide)
{
    std::string text;
    for (; *wide; ++wide) {
        auto character = static_cast<char32_t>(*wide);
        if (isSurrogate(character)) {
            const auto next = static_cast<char32_t>(wide[1]);
            if (character < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
                character = 0x10000 + ((character - 0xD800) << 10) + (next - 0xDC00);
                ++wide;
            } else {
                character = replacement;
            }
        }
        appendUtf8(text, character <= 0x10FFFF ? character : replacement);
    }
    return text;
}

void appendWide(std::wstring &text, char32_t character)
{
    if (sizeof(wchar_t) == 2 && character >= 0x10000) {
        text += static_cast<wchar_t>(0xD800 + ((character - 0x10000) >> 10));
        text += static_cast<wchar_t>(0xDC00 + ((character - 0x10000) & 0x3FF));
    } else {
        text += static_cast<wchar_t>(character);
    }
}

std::wstring wideFromUtf8(const std::string &text)
{
    std::wstring wide;
    for (std::size_t at = 0; at < text.size();) {
        const auto first = static_cast<unsigned char>(text[at++]);
        if (first < 0x80) {
            appendWide(wide, first);
            continue;
        }
        const int following = first >= 0xF0 ? 3 : first >= 0xE0 ? 2 : first >= 0xC0 ? 1 : 0;
        constexpr char32_t smallest[] = {0x110000, 0x80, 0x800, 0x10000};
        char32_t character = first & (0x3Fu >> following);
        bool complete = first < 0xF8;
        for (int count = 0; count < following && complete; ++count) {
            complete = at < text.size() && (static_cast<unsigned char>(text[at]) & 0xC0) == 0x80;
            if (complete)
                character = character << 6 | (static_cast<unsigned char>(text[at++]) & 0x3Fu);
        }
        const bool valid = complete && character >= smallest[following] && character <= 0x10FFFF &&
                           !isSurrogate(character);
        appendWide(wide, valid ? character : replacement);
    }
    return wide;
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

class Orders
{
public:
    explicit Orders(const fs::path &file)
    {
        std::ifstream in(file);
        for (std::string line; std::getline(in, line);) {
            const std::size_t separator = line.find('=');
            if (separator != std::string::npos)
                m_values[line.substr(0, separator)] = line.substr(separator + 1);
        }
    }

    std::string text(const std::string &key, const std::string &missing = {}) const
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? missing : found->second;
    }

    long long number(const std::string &key, long long missing) const
    {
        const auto found = m_values.find(key);
        return found == m_values.end() ? missing : std::strtoll(found->second.c_str(), nullptr, 10);
    }

private:
    std::map<std::string, std::string> m_values;
};

std::string errorAnswer(const char *code, const char *message)
{
    return std::string(R"({"errcode":")") + code + R"(","errmsg":")" + message + "\"}\n";
}

std::string stoppedAnswer()
{
    return errorAnswer("-2", "stopped");
}

/// A file's text; nothing when it cannot be read.
std::optional<std::string> fileText(const fs::path &file)
{
    std::ifstream in(file, std::ios::binary);
    if (!in)
        return {};
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
    bool pause(long long milliseconds)
    {
        std::unique_lock lock(m_mutex);
        return !m_changed.wait_for(lock, std::chrono::milliseconds(milliseconds),
                                   [this] { return m_stopped; });
    }

    void waitForStop()
    {
        std::unique_lock lock(m_mutex);
        m_changed.wait(lock, [this] { return m_stopped; });
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
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    writer["emitUTF8"] = true;
    const std::string line = Json::writeString(writer, call) + '\n';
    const std::lock_guard lock(recordMutex);
    std::ofstream(feedFolder() / "calls.jsonl", std::ios::binary | std::ios::app) << line;
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

std::string checkAnswer(const fs::path &feed)
{
    const Orders orders(feed / "orders.txt");
    if (orders.text("never_return") == "check") {
        work.waitForStop();
        return stoppedAnswer();
    }
    if (!work.pause(orders.number("check_delay", 0)))
        return stoppedAnswer();
    return fileText(feed / "check.json").value_or(errorAnswer("-1", "no answer in the feed"));
}

/// Copies the package. Returns the error to answer; nothing when the target is complete.
std::optional<std::string> copyPackage(const fs::path &package, const fs::path &target,
                                       const Orders &orders,
                                       const std::function<void(int)> &progress)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(package, error);
    std::ifstream in(package, std::ios::binary);
    if (error || !in)
        return errorAnswer("-1", "no package in the feed");
    std::ofstream out(target, std::ios::binary);
    std::vector<char> chunk(
        static_cast<std::size_t>(std::max(1LL, orders.number("chunk", 1024LL * 1024))));
    const long long delay = orders.number("download_delay", 0);

    int reported = 0;
    if (const long long odd = orders.number("odd_progress", reported); odd != reported)
        progress(static_cast<int>(odd));
    progress(reported);
    for (std::uintmax_t copied = 0; copied < size;) {
        if (!work.pause(delay))
            return stoppedAnswer();
        in.read(chunk.data(), static_cast<std::streamsize>(chunk.size()));
        if (in.gcount() == 0 || !out.write(chunk.data(), in.gcount()))
            return errorAnswer("-3", "cannot copy the package");
        copied += static_cast<std::uintmax_t>(in.gcount());
        const int percent = static_cast<int>(copied * 100 / size);
        if (percent != reported)
            progress(reported = percent);
    }
    if (!out.flush())
        return errorAnswer("-3", "cannot copy the package");
    return {};
}

std::string downloadAnswer(const fs::path &feed, const std::function<void(int)> &progress)
{
    const Orders orders(feed / "orders.txt");
    if (orders.text("never_return") == "download") {
        work.waitForStop();
        return stoppedAnswer();
    }
    const std::string named = orders.text("target");
    const fs::path target = named.empty() ? feed / "downloaded" : fs::u8path(named);
    fs::path part = target;
    part += ".part";

    std::optional<std::string> failure;
    const auto copy = [&] { failure = copyPackage(feed / "package", part, orders, progress); };
    if (orders.text("callback_thread") == "caller")
        copy();
    else
        std::thread(copy).join();

    // Whoever finds the target finds it whole.
    std::error_code error;
    if (failure) {
        fs::remove(part, error);
        return *failure;
    }
    fs::rename(part, target, error);
    if (error)
        return errorAnswer("-3", "cannot copy the package");
    return fileText(feed / "download.json").value_or(errorAnswer("-1", "no answer in the feed"));
}

} // namespace

int check_upgrade_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity)
{
    return perform("check_upgrade_c", jsonIn, jsonOut, outCapacity, checkAnswer);
}

int download_package_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity,
                       nvupgrade_progress progress, void *context)
{
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
    work.stop();
}
