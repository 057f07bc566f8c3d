// The sample product: records beside itself that it was started, and with which arguments.

#include "record.h"

int main(int argc, char **argv)
{
    const std::filesystem::path program = std::filesystem::absolute(argv[0]);
    Sample::recordArguments(program.parent_path() / "launched.txt", argc, argv);
    return 0;
}
