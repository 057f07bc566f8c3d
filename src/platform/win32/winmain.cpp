// Hands the process's command line to the main routine. Ours, not Qt's own: arguments are narrowed
// to the ANSI code page here.

#include "platform/entry.h"
#include "platform/processend.h"
#include "platform/win32/hardening.h"

#include <vector>

// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

namespace {

std::vector<char> ansiFromWide(const wchar_t *wide)
{
    const int size = WideCharToMultiByte(CP_ACP, 0, wide, -1, nullptr, 0, nullptr, nullptr);
    std::vector<char> narrow(static_cast<std::size_t>(size) + 1); // terminated even if empty
    WideCharToMultiByte(CP_ACP, 0, wide, -1, narrow.data(), size, nullptr, nullptr);
    return narrow;
}

} // namespace

int WINAPI WinMain(HINSTANCE /*instance*/, HINSTANCE /*previous*/, LPSTR /*commandLine*/,
                   int /*show*/)
{
    Platform::restrictLibraries();
    Platform::distrustRedirections();
    int argc = 0;
    LPWSTR *const wideArguments = CommandLineToArgvW(GetCommandLineW(), &argc);
    if (!wideArguments)
        return -1;

    std::vector<std::vector<char>> arguments;
    arguments.reserve(static_cast<std::size_t>(argc));
    for (int i = 0; i < argc; ++i)
        arguments.push_back(ansiFromWide(wideArguments[i]));
    LocalFree(wideArguments);

    std::vector<char *> argv;
    for (std::vector<char> &argument : arguments)
        argv.push_back(argument.data());
    argv.push_back(nullptr);
    // Also ends the thread that limits the end, so that nothing that may hang can come after it.
    Platform::endProcess(programMain(argc, argv.data()));
}
