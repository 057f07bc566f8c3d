#pragma once

namespace Platform {

/// Claims the name for this process until the process ends, however it ends.
/// Returns false when a running process of this user session holds it already.
/// When the system cannot tell, the answer is true: a program that removes software must not be
/// locked out by a broken machine. May be called before any application object exists.
bool claimSingleInstance(const char *name);

} // namespace Platform
