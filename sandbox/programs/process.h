#pragma once

#include <filesystem>
#include <string>
#include <vector>

/// What the sample programs need of the system.
namespace Sample {

struct Invocation
{
    std::filesystem::path program;
    std::vector<std::string> arguments; ///< UTF-8, without the program
};

Invocation invocation(int argc, char **argv);

/// Ends the process; to its parent process that looks like a crash.
[[noreturn]] void crash();

/// Removes the file of the running program from its folder.
void removeItself(const std::filesystem::path &program);

} // namespace Sample
