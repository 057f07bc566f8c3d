// Stand-in for the maker's analytics library: appends every call, in order, as one JSON line to
// data_api.jsonl in the folder of the session. What was written is on the disk when data_stop()
// returns.

#include "data_api.h"

#include "sandbox/standins/jsonline.h"

#include <cstdio>
#include <filesystem>
#include <json/json.h>
#include <string>

#if defined(_WIN32)
#include <io.h>
#else
#include <unistd.h>
#endif

namespace {

std::FILE *record = nullptr;

std::FILE *openRecord(const char *folder)
{
    const std::filesystem::path file = std::filesystem::u8path(folder) / "data_api.jsonl";
#if defined(_WIN32)
    return _wfopen(file.c_str(), L"ab");
#else
    return std::fopen(file.c_str(), "ab");
#endif
}

void flushToDisk(std::FILE *file)
{
    std::fflush(file);
#if defined(_WIN32)
    _commit(_fileno(file));
#else
    fsync(fileno(file));
#endif
}

int append(const Json::Value &call)
{
    if (!record)
        return -1;
    const std::string line = jsonLine(call);
    if (std::fwrite(line.data(), 1, line.size(), record) != line.size())
        return -1;
    // One write per line reaches the file at once, so that a reader sees whole lines even while
    // the program runs or after it was killed.
    return std::fflush(record) == 0 ? 0 : -1;
}

} // namespace

int data_init(const char *folder, const char *company)
{
    if (record)
        std::fclose(record);
    record = openRecord(folder);
    Json::Value call;
    call["call"] = "data_init";
    call["folder"] = folder;
    call["company"] = company;
    return append(call);
}

int data_base_info(const char *property, int productId, const char *productVersion,
                   int timeZoneOffset, const char *localAddress, const char *installLanguage,
                   const char *platform, const char *osVersion, int bitness,
                   const char *systemLanguage, int installTime, const char *reserved,
                   const char *uid)
{
    Json::Value call;
    call["call"] = "data_base_info";
    for (const Json::Value &argument :
         {Json::Value(property), Json::Value(productId), Json::Value(productVersion),
          Json::Value(timeZoneOffset), Json::Value(localAddress), Json::Value(installLanguage),
          Json::Value(platform), Json::Value(osVersion), Json::Value(bitness),
          Json::Value(systemLanguage), Json::Value(installTime), Json::Value(reserved),
          Json::Value(uid)})
        call["arguments"].append(argument);
    return append(call);
}

int data_event(const char *category, const char *action, const char *properties, int reserved)
{
    Json::Value call;
    call["call"] = "data_event";
    call["category"] = category;
    call["action"] = action;
    call["properties"] = properties; // the text as it came, so that its form can be judged
    call["reserved"] = reserved;
    return append(call);
}

int data_stop(int milliseconds)
{
    Json::Value call;
    call["call"] = "data_stop";
    call["milliseconds"] = milliseconds;
    const int result = append(call);
    if (record) {
        flushToDisk(record);
        std::fclose(record);
        record = nullptr;
    }
    return result;
}
