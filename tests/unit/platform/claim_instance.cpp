// claim-instance NAME: prints "claimed" or "refused"; having claimed the name it stays until its
// standard input ends.

#include "platform/singleinstance.h"

#include <cstdio>

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const bool claimed = Platform::claimSingleInstance(argv[1]);
    std::puts(claimed ? "claimed" : "refused");
    std::fflush(stdout);
    while (claimed && std::getchar() != EOF) {
    }
    return 0;
}
