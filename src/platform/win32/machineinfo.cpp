#include "platform/machineinfo.h"

// clang-format off
#include <winsock2.h>
#include <windows.h>
// clang-format on

namespace Platform {

QString computerName()
{
    wchar_t name[255] = {};
    DWORD size = 255;
    GetComputerNameW(name, &size);
    return QString::fromWCharArray(name);
}

QString localIPv4(const QString &computerName)
{
    WSADATA data = {};
    if (WSAStartup(MAKEWORD(2, 0), &data) != 0)
        return {};
    QString text;
    const hostent *host = gethostbyname(computerName.toLocal8Bit().constData());
    if (host && host->h_addr_list[0]) {
        const auto *bytes = reinterpret_cast<const unsigned char *>(host->h_addr_list[0]);
        text =
            QStringLiteral("%1.%2.%3.%4").arg(bytes[0]).arg(bytes[1]).arg(bytes[2]).arg(bytes[3]);
    }
    WSACleanup();
    return text;
}

QString osVersion()
{
    // The documented functions name an older version to a program whose manifest does not list the
    // running one.
    using RtlGetNtVersionNumbers = void(WINAPI *)(DWORD *, DWORD *, DWORD *);
    DWORD major = 6;
    DWORD minor = 1;
    DWORD build = 0;
    if (const HMODULE ntdll = LoadLibraryW(L"ntdll.dll")) {
        const auto versionNumbers = reinterpret_cast<RtlGetNtVersionNumbers>(
            reinterpret_cast<void *>(GetProcAddress(ntdll, "RtlGetNtVersionNumbers")));
        if (versionNumbers)
            versionNumbers(&major, &minor, &build);
        FreeLibrary(ntdll);
    }
    return QStringLiteral("%1.%2").arg(major).arg(minor);
}

QString systemLanguageAbbrev()
{
    wchar_t abbreviation[4] = {};
    GetLocaleInfoW(LOCALE_SYSTEM_DEFAULT, LOCALE_SABBREVLANGNAME, abbreviation, 4);
    return QString::fromWCharArray(abbreviation);
}

} // namespace Platform
