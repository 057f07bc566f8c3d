#include "platform/entry.h"

int main(int argc, char **argv)
{
    return programMain(argc, argv);
}
