// Stands in front of the maker's two libraries (LD_PRELOAD) and makes single calls of them fail in
// ways that their stand-ins, which do as they are told, do not. The environment variable
// FAULTY_CALLS says how: "call=fault" pairs, separated by commas.
//
//   slow     takes two seconds longer
//   never    never returns
//   garbage  the answer fills the buffer to its last character, without an end, with characters
//            that no text has; progress is reported in numbers that no progress has
//   late     progress is reported, from a thread of the library's own, until after the call
//
// Other calls go through to the stand-ins, which record them.

#include "data_api.h"
#include "nvupgrade.h"

#include <chrono>
#include <climits>
#include <cstdlib>
#include <dlfcn.h>
#include <string>
#include <thread>

namespace {

std::string faultOf(const std::string &call)
{
    const char *variable = std::getenv("FAULTY_CALLS");
    const std::string calls = std::string(",") + (variable ? variable : "") + ',';
    const std::size_t at = calls.find(',' + call + '=');
    if (at == std::string::npos)
        return {};
    const std::size_t from = at + call.size() + 2;
    return calls.substr(from, calls.find(',', from) - from);
}

/// Takes the time that the fault costs, and returns the fault.
std::string suffer(const char *call)
{
    std::string fault = faultOf(call);
    if (fault == "slow")
        std::this_thread::sleep_for(std::chrono::seconds(2));
    while (fault == "never")
        std::this_thread::sleep_for(std::chrono::hours(1));
    return fault;
}

template<typename Function>
Function *next(Function * /*same*/, const char *name)
{
    return reinterpret_cast<Function *>(dlsym(RTLD_NEXT, name));
}

void fillWithGarbage(wchar_t *buffer, int capacity)
{
    constexpr unsigned characters[] = {'{', '"',    0xD800,     0xDFFF,     0xFFFF, 0x110000,
                                       1,   0x7FFF, 0x7FFFFFFF, 0xFFFFFFFF, '\\',   0xFEFF};
    for (int i = 0; i < capacity; ++i)
        buffer[i] = static_cast<wchar_t>(characters[static_cast<std::size_t>(i) % 12]);
}

} // namespace

int data_init(const char *folder, const char *company)
{
    suffer("data_init");
    return next(&data_init, "data_init")(folder, company);
}

int data_event(const char *category, const char *action, const char *properties, int reserved)
{
    suffer("data_event");
    return next(&data_event, "data_event")(category, action, properties, reserved);
}

int data_stop(int milliseconds)
{
    suffer("data_stop");
    return next(&data_stop, "data_stop")(milliseconds);
}

int check_upgrade_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity)
{
    const std::string fault = suffer("check_upgrade_c");
    const int result = next(&check_upgrade_c, "check_upgrade_c")(jsonIn, jsonOut, outCapacity);
    if (fault == "garbage")
        fillWithGarbage(jsonOut, outCapacity);
    return result;
}

int download_package_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity,
                       nvupgrade_progress progress, void *context)
{
    const std::string fault = suffer("download_package_c");
    if (fault == "garbage") {
        for (const int percent : {-1, INT_MIN, 101, INT_MAX, 50, 0, 99, 100, -100})
            progress(percent, context);
        for (int i = 0; i < 2000; ++i)
            progress(i % 101, context);
    }
    if (fault == "late") {
        std::thread([=] {
            for (int i = 0; i < 3000; ++i) {
                progress(i % 101, context);
                std::this_thread::sleep_for(std::chrono::milliseconds(1));
            }
        }).detach();
    }
    const int result = next(&download_package_c, "download_package_c")(jsonIn, jsonOut, outCapacity,
                                                                       progress, context);
    if (fault == "garbage")
        fillWithGarbage(jsonOut, outCapacity);
    return result;
}

void stop()
{
    suffer("stop");
    next(&stop, "stop")();
}
