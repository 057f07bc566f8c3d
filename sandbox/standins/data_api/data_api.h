#pragma once

/// The interface of the maker's analytics library as this program calls it. Texts are UTF-8.
/// Calls come from one thread. The program ignores the results.

#if defined(_WIN32)
#if defined(DATA_API_BUILD)
#define DATA_API __declspec(dllexport)
#else
#define DATA_API __declspec(dllimport)
#endif
#else
#define DATA_API __attribute__((visibility("default")))
#endif

extern "C" {

/// Opens the session; folder is where the library keeps its files.
DATA_API int data_init(const char *folder, const char *company);

/// Describes machine and product, once per session. installTime is in seconds since the epoch,
/// timeZoneOffset in hours.
DATA_API int data_base_info(const char *property, int productId, const char *productVersion,
                            int timeZoneOffset, const char *localAddress,
                            const char *installLanguage, const char *platform,
                            const char *osVersion, int bitness, const char *systemLanguage,
                            int installTime, const char *reserved, const char *uid);

/// Queues one event; properties is the text of a JSON object.
DATA_API int data_event(const char *category, const char *action, const char *properties,
                        int reserved);

/// Hands over what is queued and closes the session; waits at most this many milliseconds.
DATA_API int data_stop(int milliseconds);
}
