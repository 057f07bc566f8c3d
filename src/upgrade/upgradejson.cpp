#include "upgrade/upgradejson.h"

#include <QtCore/QtGlobal>
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <exception>
#include <json/json.h>
#include <limits>

namespace UpgradeJson {

namespace {

std::string line(const Json::Value &request)
{
    QT_WARNING_PUSH
    QT_WARNING_DISABLE_DEPRECATED
    return Json::FastWriter().write(request);
    QT_WARNING_POP
}

/// Whether every number is finite. Older parsers refuse a numeral beyond the range of a double;
/// since 1.9.6 they read it as infinity.
bool isFinite(const Json::Value &value)
{
    if (value.isDouble())
        return std::isfinite(value.asDouble());
    return std::all_of(value.begin(), value.end(), isFinite);
}

std::optional<Json::Value> parsed(const std::string &json)
{
    constexpr bool collectComments = false;
    Json::Value root;
    try {
        QT_WARNING_PUSH
        QT_WARNING_DISABLE_DEPRECATED
        if (Json::Reader().parse(json, root, collectComments) && isFinite(root))
            return root;
        QT_WARNING_POP
    } catch (const std::exception &) {
        return {}; // nested too deeply
    }
    return {};
}

std::string text(const Json::Value &object, const char *member)
{
    if (!object.isObject())
        return {};
    const Json::Value value = object.get(member, Json::Value());
    return value.isConvertibleTo(Json::stringValue) ? value.asString() : std::string();
}

/// The number that the text starts with, 0 when it starts with none. Unlike that of atoi(), the
/// result is defined for every text: a number that does not fit becomes the nearest that does, so
/// that no error code can turn into 0.
std::int32_t number(const std::string &text)
{
    using Limits = std::numeric_limits<std::int32_t>;
    return static_cast<std::int32_t>(std::clamp<long long>(std::strtoll(text.c_str(), nullptr, 10),
                                                           Limits::min(), Limits::max()));
}

std::int32_t number(const Json::Value &object, const char *member)
{
    return number(text(object, member));
}

bool flag(const Json::Value &object, const char *member)
{
    return number(object, member) != 0;
}

/// Fills what the answers have in common. Returns the answer's "result", null when there is none
/// to read.
template<typename Result>
Json::Value readOutcome(const std::string &json, Result &result)
{
    const std::optional<Json::Value> root = parsed(json);
    if (!root)
        return {};
    result.errcode = number(*root, "errcode");
    result.errmsg = text(*root, "errmsg");
    return result.errcode == 0 && root->isObject() ? root->get("result", {}) : Json::Value();
}

} // namespace

std::string checkRequest(const checkInPraram &params)
{
    Json::Value request(Json::objectValue);
    request["pid"] = params.pid;
    request["version"] = params.version;
    request["brand"] = params.brand;
    request["name"] = params.name;
    request["nvid"] = params.nvid;
    request["platform"] = params.platform;
    return line(request);
}

std::string downloadRequest(const downloadInPraram &params)
{
    Json::Value request(Json::objectValue);
    request["pid"] = params.pid;
    request["version"] = params.version;
    request["path"] = params.path;
    return line(request);
}

checkOutParam checkAnswer(const std::string &json)
{
    checkOutParam answer;
    const Json::Value result = readOutcome(json, answer);
    if (result.isObject()) {
        answer.needupgrade = flag(result, "needupgrade");
        answer.forceupgrade = flag(result, "forceupgrade");
        answer.upgradeVersion = text(result, "upgradeVersion");
        answer.packageSize = number(result, "packageSize");
        answer.path = text(result, "path");
    }
    return answer;
}

downloadOutParam downloadAnswer(const std::string &json)
{
    downloadOutParam answer;
    const Json::Value result = readOutcome(json, answer);
    if (result.isObject()) {
        answer.version = text(result, "version");
        answer.downloaded = flag(result, "downloaded");
        answer.path = text(result, "path");
    }
    return answer;
}

std::optional<UpdateInfo> updateInfo(const std::string &json)
{
    const std::optional<Json::Value> root = parsed(json);
    if (!root)
        return {};
    UpdateInfo info;
    info.brand = text(*root, "brand");
    info.email = text(*root, "email");
    info.full_url = text(*root, "full_url");
    info.whats_new_content = text(*root, "whats_new_content");
    info.whats_new_title = text(*root, "whats_new_title");
    info.nvid = text(*root, "nvid");
    info.ok_path = text(*root, "ok_path");
    info.version = text(*root, "version");
    return info;
}

} // namespace UpgradeJson
