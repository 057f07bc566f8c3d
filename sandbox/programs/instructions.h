#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <utility>
#include <vector>

/// "key=value" lines in a file tell a sample program, or a stand-in for a library, what to do.
namespace Sample {

using Instructions = std::vector<std::pair<std::string, std::string>>;

inline Instructions readInstructions(const std::filesystem::path &file)
{
    Instructions instructions;
    std::ifstream stream(file);
    for (std::string line; std::getline(stream, line);) {
        const std::size_t equals = line.find('=');
        if (equals != std::string::npos)
            instructions.emplace_back(line.substr(0, equals), line.substr(equals + 1));
    }
    return instructions;
}

inline std::string value(const Instructions &instructions, const std::string &key)
{
    for (const auto &[name, text] : instructions) {
        if (name == key)
            return text;
    }
    return {};
}

} // namespace Sample
