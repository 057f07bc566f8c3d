#pragma once

#include <QtCore/QByteArray>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>

// What every fuzz target has: the two functions that libFuzzer calls. The plain replayer, built by
// every compiler, calls them as well.

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

namespace Fuzz {

inline QByteArray bytes(const std::uint8_t *data, std::size_t size)
{
    return QByteArray(reinterpret_cast<const char *>(data), static_cast<int>(size));
}

/// Aborts, which the fuzzer takes for a crash, when the condition is false.
inline void require(bool condition, const char *what)
{
    if (condition)
        return;
    std::fprintf(stderr, "not true: %s\n", what);
    std::abort();
}

} // namespace Fuzz
