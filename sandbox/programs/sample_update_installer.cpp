// The sample product's update installer. It does what the .txt file of its own name says: waits,
// fails, crashes or hangs on request, and otherwise "installs" by writing the new version into
// the product's ini file.

#include "record.h"

#include <sstream>

namespace fs = std::filesystem;

namespace {

// The text between the quotes of /KEY="text" among the arguments.
std::string switchText(const std::vector<std::string> &arguments, const std::string &key)
{
    const std::string head = "/" + key + "=\"";
    for (const std::string &argument : arguments) {
        if (argument.rfind(head, 0) == 0 && argument.back() == '"')
            return argument.substr(head.size(), argument.size() - head.size() - 1);
    }
    return {};
}

void setVersion(const fs::path &ini, const std::string &version)
{
    std::ifstream in(ini, std::ios::binary);
    std::ostringstream changed;
    for (std::string line; std::getline(in, line);)
        changed << (line.rfind("Version=", 0) == 0 ? "Version=" + version : line) << '\n';
    in.close();
    std::ofstream(ini, std::ios::binary | std::ios::trunc) << changed.str();
}

} // namespace

int main(int argc, char **argv)
{
    const auto [program, arguments] = Sample::invocation(argc, argv);
    fs::path orders = program;
    orders.replace_extension(".txt");
    const Sample::Instructions instructions = Sample::readInstructions(orders);
    Sample::recordArguments(fs::u8path(Sample::value(instructions, "record")), arguments);
    Sample::waitOrEnd(instructions);

    const int exitCode = std::atoi(Sample::value(instructions, "exit").c_str());
    if (exitCode == 0)
        setVersion(fs::u8path(Sample::value(instructions, "ini")), switchText(arguments, "NEWVER"));
    return exitCode;
}
