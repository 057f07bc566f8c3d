// The sample product: records beside itself that it was started, and with which arguments.

#include "record.h"

int main(int argc, char **argv)
{
    const auto [program, arguments] = Sample::invocation(argc, argv);
    Sample::recordArguments(program.parent_path() / "launched.txt", arguments);
    return 0;
}
