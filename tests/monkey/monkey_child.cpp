// Stands for every program that the window may start. It records its arguments; without any it ends
// as a launched product does, otherwise it reads its exit code from the pipe of orders, 0 when the
// pipe is closed.

#include <cstdlib>
#include <fstream>
#include <string>

int main(int argc, char **argv)
{
    const char *record = std::getenv("MONKEY_RECORD");
    const char *orders = std::getenv("MONKEY_ORDERS");
    if (!record || !orders)
        return 2;
    std::string line = argc == 1 ? "launched" : "";
    for (int i = 1; i < argc; ++i)
        line += (i > 1 ? "|" : "") + std::string(argv[i]);
    std::ofstream(record, std::ios::app) << line + '\n' << std::flush;
    if (argc == 1)
        return 0;

    std::string exitCode;
    std::ifstream stream(orders);
    std::getline(stream, exitCode);
    return std::atoi(exitCode.c_str());
}
