#include "platform/win32/hardening.h"

#include <cstdlib>
#include <windows.h>

namespace Platform {

namespace {

/// What a shared Qt would load plugins for, and any Qt the library of a test tool.
constexpr const char *loadingVariables[] = {
    "QT_LOAD_TESTABILITY",  "QT_PLUGIN_PATH",    "QT_QPA_PLATFORM_PLUGIN_PATH",
    "QT_QPA_PLATFORMTHEME", "QT_STYLE_OVERRIDE", "QT_QPA_GENERIC_PLUGINS",
    "QT_IM_MODULE"};

/// A function that older systems lack.
template<typename Function>
Function *kernelFunction(const char *name)
{
    return reinterpret_cast<Function *>(
        reinterpret_cast<void *>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
}

} // namespace

void restrictLibraries()
{
    SetDllDirectoryW(L""); // takes the current folder out of the search, on systems of any age
    const auto setDefaultDirectories =
        kernelFunction<BOOL WINAPI(DWORD)>("SetDefaultDllDirectories");
    if (setDefaultDirectories)
        setDefaultDirectories(LOAD_LIBRARY_SEARCH_APPLICATION_DIR | LOAD_LIBRARY_SEARCH_SYSTEM32);
    for (const char *variable : loadingVariables)
        _putenv_s(variable, "");
    _putenv_s("QT_ENABLE_REGEXP_JIT", "0"); // its code would lie in memory that can be written
}

bool setSystemPolicy(int policy, void *content, std::size_t size)
{
    const auto set = kernelFunction<BOOL WINAPI(int, void *, SIZE_T)>("SetProcessMitigationPolicy");
    return set && set(policy, content, size);
}

void distrustRedirections(const SetPolicy &setPolicy)
{
    // ProcessRedirectionTrustPolicy and its structure, which older headers lack.
    constexpr int redirectionTrust = 16;
    DWORD enforce = 1;
    setPolicy(redirectionTrust, &enforce, sizeof enforce);
}

} // namespace Platform
