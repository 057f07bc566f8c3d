#include "sandbox/programs/process.h"

#include <cstdlib>
#include <string>

// clang-format off
#include <windows.h>
#include <shellapi.h>
// clang-format on

namespace Sample {

// The narrow arguments have lost the letters that the code page lacks.
Invocation invocation(int /*argc*/, char ** /*argv*/)
{
    int count = 0;
    LPWSTR *const wide = CommandLineToArgvW(GetCommandLineW(), &count);
    Invocation invocation;
    if (!wide)
        return invocation;
    invocation.program = std::filesystem::absolute(wide[0]);
    for (int i = 1; i < count; ++i)
        invocation.arguments.push_back(std::filesystem::path(wide[i]).u8string());
    LocalFree(wide);
    return invocation;
}

// Without the dialog that the system may show on a real one.
void crash()
{
    TerminateProcess(GetCurrentProcess(), EXCEPTION_ACCESS_VIOLATION);
    std::abort();
}

// The file of a running program may be moved, not removed.
void removeItself(const std::filesystem::path &program)
{
    const std::string name = "removed-" + std::to_string(GetCurrentProcessId());
    std::error_code ignored;
    std::filesystem::rename(program, std::filesystem::temp_directory_path(ignored) / name, ignored);
}

} // namespace Sample
