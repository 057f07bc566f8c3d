#include "platform/processend.h"

#include <cstdlib>

namespace Platform {

void endProcess(int exitCode)
{
    std::_Exit(exitCode);
}

} // namespace Platform
