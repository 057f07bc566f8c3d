#include "sandbox/programs/process.h"

#include <cstdlib>

namespace Sample {

Invocation invocation(int argc, char **argv)
{
    return {std::filesystem::absolute(argv[0]), {argv + 1, argv + argc}};
}

void crash()
{
    std::abort();
}

void removeItself(const std::filesystem::path &program)
{
    std::error_code ignored;
    std::filesystem::remove(program, ignored);
}

} // namespace Sample
