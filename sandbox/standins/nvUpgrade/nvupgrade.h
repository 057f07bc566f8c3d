#pragma once

/// The interface of the maker's upgrade library as this program calls it. Requests and answers are
/// one-line JSON texts. An answer is cut to what the caller has room for, outCapacity characters
/// with the closing zero. The program ignores the results: errors stand in the answer.

#if defined(_WIN32)
#if defined(NVUPGRADE_BUILD)
#define NVUPGRADE_API __declspec(dllexport)
#else
#define NVUPGRADE_API __declspec(dllimport)
#endif
#else
#define NVUPGRADE_API __attribute__((visibility("default")))
#endif

extern "C" {

/// Called during a download, on a thread of the library's choosing.
using nvupgrade_progress = void (*)(int percent, void *context);

/// Asks whether there is an update. Blocks until answered.
NVUPGRADE_API int check_upgrade_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity);

/// Downloads the package of an update. Blocks until done; progress may be null.
NVUPGRADE_API int download_package_c(const wchar_t *jsonIn, wchar_t *jsonOut, int outCapacity,
                                     nvupgrade_progress progress, void *context);

/// Asks the library to stop its current work. Returns at once; may be called on any thread.
NVUPGRADE_API void stop();
}
