#pragma once

#include <json/json.h>
#include <string>

/// One call as a line of UTF-8 with its line end.
inline std::string jsonLine(const Json::Value &call)
{
    Json::StreamWriterBuilder writer;
    writer["indentation"] = "";
    writer["emitUTF8"] = true;
    return Json::writeString(writer, call) + '\n';
}
