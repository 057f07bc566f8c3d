#pragma once

#include "sandbox/programs/instructions.h"
#include "sandbox/programs/process.h"

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <thread>
#include <vector>

/// What the sample programs share: the common instructions, and a record of the arguments that
/// they received.
namespace Sample {

/// Writes the arguments of this start, and beside them a line for each start so far.
inline void recordArguments(const std::filesystem::path &file,
                            const std::vector<std::string> &arguments)
{
    std::ofstream stream(file, std::ios::binary | std::ios::trunc);
    for (const std::string &argument : arguments)
        stream << argument << '\n';
    std::filesystem::path starts = file;
    starts += ".starts";
    std::ofstream(starts, std::ios::binary | std::ios::app) << "started\n";
}

/// Writes "say" bytes to each of its two outputs.
inline void speak(const Instructions &instructions)
{
    const std::string line(1023, 'x');
    for (int said = std::atoi(value(instructions, "say").c_str()); said > 0; said -= 1024) {
        std::cout << line << '\n';
        std::cerr << line << '\n';
    }
    std::cout.flush();
}

/// Waits "delay" milliseconds, then, if "end" says so, hangs forever or crashes.
inline void waitOrEnd(const Instructions &instructions)
{
    std::this_thread::sleep_for(
        std::chrono::milliseconds(std::atoi(value(instructions, "delay").c_str())));
    const std::string end = value(instructions, "end");
    if (end == "crash")
        crash();
    while (end == "hang")
        std::this_thread::sleep_for(std::chrono::hours(1));
}

} // namespace Sample
