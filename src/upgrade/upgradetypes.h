#pragma once

#include <QtCore/QMetaType>
#include <cstdint>
#include <string>

// What is asked of the maker's upgrade library and what it answers. Texts are narrow:
// UTF-8 in requests, and as the library gave them, in the system's ANSI code page, in answers.
// "Praram" is part of the names, under which the types are known to the meta-type system.

/// Request of an update check.
struct checkInPraram
{
    std::string pid;     ///< product id
    std::string version; ///< installed product version
    std::string brand;
    std::string name;  ///< product name
    std::string nvid;  ///< the account's user id
    std::string email; ///< the account's address; not sent
    std::string platform;
    std::string requestId; ///< not sent; comes back in the result
};

/// Result of an update check.
struct checkOutParam
{
    std::int32_t errcode = 0; ///< 0: answered, though perhaps with nothing usable
    std::string errmsg;
    bool needupgrade = false;
    bool forceupgrade = false;
    std::string upgradeVersion;
    std::int32_t packageSize = 0; ///< as the library counts it
    std::string path;             ///< the update description file
    std::string requestId;
};

/// Request of a download.
struct downloadInPraram
{
    std::string pid;
    std::string version;   ///< the version to fetch
    std::string path;      ///< as in the check's result
    std::string requestId; ///< not sent; comes back in the result
};

/// Result of a download.
struct downloadOutParam
{
    std::int32_t errcode = 0; ///< 0: answered, though perhaps with nothing usable
    std::string errmsg;
    std::string version;
    bool downloaded = false;
    std::string path;
    std::string requestId;
};

/// What "Back_UpdateInfo.json" says of the update on offer. Texts are UTF-8.
struct UpdateInfo
{
    std::string brand;
    std::string email;
    std::string full_url;
    std::string whats_new_content;
    std::string whats_new_title;
    std::string nvid;
    std::string ok_path;
    std::string version;
};

Q_DECLARE_METATYPE(checkInPraram)
Q_DECLARE_METATYPE(checkOutParam)
Q_DECLARE_METATYPE(downloadInPraram)
