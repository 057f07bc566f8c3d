// The sample product's update installer. It does what the .txt file of its own name says: waits,
// fails, crashes or hangs on request, and otherwise "installs" by writing the new version into
// the product's ini file.

#include "record.h"

#include <sstream>

namespace fs = std::filesystem;

namespace {

// The text between the quotes of /KEY="text" among the arguments.
std::string switchText(int argc, char **argv, const std::string &key)
{
    const std::string head = "/" + key + "=\"";
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.rfind(head, 0) == 0 && argument.back() == '"')
            return argument.substr(head.size(), argument.size() - head.size() - 1);
    }
    return {};
}

void setVersion(const fs::path &ini, const std::string &version)
{
    std::ifstream in(ini);
    std::ostringstream changed;
    for (std::string line; std::getline(in, line);)
        changed << (line.rfind("Version=", 0) == 0 ? "Version=" + version : line) << '\n';
    in.close();
    std::ofstream(ini, std::ios::trunc) << changed.str();
}

} // namespace

int main(int argc, char **argv)
{
    fs::path orders = fs::absolute(argv[0]);
    orders.replace_extension(".txt");
    const Sample::Instructions instructions = Sample::readInstructions(orders);
    Sample::recordArguments(fs::u8path(Sample::value(instructions, "record")), argc, argv);
    Sample::waitOrEnd(instructions);

    const int exitCode = std::atoi(Sample::value(instructions, "exit").c_str());
    if (exitCode == 0)
        setVersion(fs::u8path(Sample::value(instructions, "ini")),
                   switchText(argc, argv, "NEWVER"));
    return exitCode;
}
