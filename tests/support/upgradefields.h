#pragma once

#include "upgrade/upgradetypes.h"

#include <QtCore/QString>
#include <QtCore/QStringList>

/// The fields of a record of the upgrade library as texts, in their order, so that a record is
/// compared as a whole.
namespace UpgradeFields {

inline QString text(const std::string &field)
{
    return QString::fromStdString(field);
}

inline QString text(std::int32_t field)
{
    return QString::number(field);
}

template<typename... Field>
QStringList list(const Field &...field)
{
    return {text(field)...};
}

inline QStringList of(const checkOutParam &check)
{
    return list(check.errcode, check.errmsg, check.needupgrade, check.forceupgrade,
                check.upgradeVersion, check.packageSize, check.path, check.requestId);
}

inline QStringList of(const downloadOutParam &download)
{
    return list(download.errcode, download.errmsg, download.version, download.downloaded,
                download.path, download.requestId);
}

inline QStringList of(const UpdateInfo &info)
{
    return list(info.brand, info.email, info.full_url, info.whats_new_content, info.whats_new_title,
                info.nvid, info.ok_path, info.version);
}

} // namespace UpgradeFields
