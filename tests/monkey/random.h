#pragma once

#include <QtCore/QVector>

#include <cstdint>
#include <random>

/// Draws that are the same for a seed everywhere, which the standard library's distributions are
/// not.
class Random
{
public:
    explicit Random(std::uint64_t seed)
        : m_engine(seed)
    {
    }

    /// From 0 to limit - 1.
    int below(int limit)
    {
        return static_cast<int>(m_engine() % static_cast<std::uint64_t>(limit));
    }

    bool oneIn(int limit) { return below(limit) == 0; }

    template<typename T>
    T oneOf(const QVector<T> &choices)
    {
        return choices.at(below(choices.size()));
    }

private:
    std::mt19937_64 m_engine;
};
