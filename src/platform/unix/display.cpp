#include "platform/display.h"

namespace Platform {

float primaryMonitorRatio()
{
    // No coordinates are virtualised here: what an application sees are physical pixels.
    return 1.0F;
}

void enableDpiAwareness() {}

} // namespace Platform
