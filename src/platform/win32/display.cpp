#include "platform/display.h"

#include <QtCore/QLibrary>
#include <QtCore/QSysInfo>

#include <windows.h>

namespace Platform {

namespace {

QT_WARNING_PUSH
QT_WARNING_DISABLE_DEPRECATED

bool isWindows81OrLater()
{
    return QSysInfo::WindowsVersion >= QSysInfo::WV_WINDOWS8_1;
}

QT_WARNING_POP

BOOL CALLBACK measurePrimaryMonitor(HMONITOR monitor, HDC /*dc*/, LPRECT /*rect*/, LPARAM data)
{
    MONITORINFOEXW info = {};
    info.cbSize = sizeof info;
    GetMonitorInfoW(monitor, &info);
    if (info.dwFlags != MONITORINFOF_PRIMARY)
        return TRUE;

    auto &ratio = *reinterpret_cast<float *>(data);
    DEVMODEW mode = {};
    mode.dmSize = sizeof mode;
    EnumDisplaySettingsW(info.szDevice, ENUM_CURRENT_SETTINGS, &mode);
    ratio = static_cast<float>(static_cast<double>(mode.dmPelsWidth) /
                               (info.rcMonitor.right - info.rcMonitor.left));

    // Older systems do not virtualise coordinates per process: there the screen's DPI tells.
    if (!isWindows81OrLater()) {
        const HDC screen = GetDC(nullptr);
        ratio = static_cast<float>(GetDeviceCaps(screen, LOGPIXELSX) / 96.0);
        ReleaseDC(nullptr, screen);
    }
    return FALSE;
}

} // namespace

float primaryMonitorRatio()
{
    float ratio = 0.0F;
    EnumDisplayMonitors(nullptr, nullptr, measurePrimaryMonitor, reinterpret_cast<LPARAM>(&ratio));
    return ratio;
}

void enableDpiAwareness()
{
    if (!isWindows81OrLater())
        return;
    using SetProcessDpiAwarenessFunction = HRESULT(WINAPI *)(int);
    const auto setProcessDpiAwareness = reinterpret_cast<SetProcessDpiAwarenessFunction>(
        QLibrary::resolve(QStringLiteral("Shcore"), "SetProcessDpiAwareness"));
    constexpr int systemDpiAware = 1;
    if (setProcessDpiAwareness)
        setProcessDpiAwareness(systemDpiAware);
}

} // namespace Platform
