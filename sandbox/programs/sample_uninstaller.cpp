// The sample product's setup uninstaller. It does what the .dat file beside it says: talks, waits,
// fails, crashes or hangs on request, and otherwise really deletes the files listed there, the
// effect resources only with "/DELRESOURCE". Folders that become empty go too.

#include "record.h"

#include <algorithm>
#include <iostream>

namespace fs = std::filesystem;

namespace {

void removeWithEmptyFolders(const fs::path &root, const fs::path &relative)
{
    std::error_code error;
    fs::remove(root / relative, error);
    for (fs::path folder = relative.parent_path(); !folder.empty(); folder = folder.parent_path()) {
        if (!fs::remove(root / folder, error) || error)
            break; // not empty yet
    }
}

} // namespace

int main(int argc, char **argv)
{
    const auto [program, arguments] = Sample::invocation(argc, argv);
    fs::path dat = program;
    dat.replace_extension(".dat");
    if (!fs::exists(dat)) {
        std::cerr << "no " << dat << '\n';
        return 2;
    }
    const Sample::Instructions instructions = Sample::readInstructions(dat);
    Sample::recordArguments(fs::u8path(Sample::value(instructions, "record")), arguments);
    Sample::speak(instructions);
    Sample::waitOrEnd(instructions);

    const int exitCode = std::atoi(Sample::value(instructions, "exit").c_str());
    if (exitCode != 0)
        return exitCode;

    const bool removeResources =
        std::find(arguments.begin(), arguments.end(), "/DELRESOURCE") != arguments.end();
    const fs::path root = program.parent_path();
    for (const auto &[key, text] : instructions) {
        if (key == "file" || (key == "resource" && removeResources))
            removeWithEmptyFolders(root, fs::u8path(text));
    }

    // Itself last, as setup uninstallers do.
    std::error_code ignored;
    fs::remove(dat, ignored);
    Sample::removeItself(program);
    fs::remove(root, ignored);
    return 0;
}
