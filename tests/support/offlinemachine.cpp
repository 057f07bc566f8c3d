#include "tests/support/offlinemachine.h"

#include "platform/network.h"

namespace {

bool isOnline = true;

} // namespace

// The linker takes this definition, an object's, and leaves out the platform library's.
bool Platform::isNetworkOnline()
{
    return isOnline;
}

OfflineMachine::OfflineMachine()
{
    isOnline = false;
}

OfflineMachine::~OfflineMachine()
{
    isOnline = true;
}
