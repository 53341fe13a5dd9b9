// The robot's one source of chance. Numbers are drawn by remainder, so that a seed gives the
// same run with every standard library.
#pragma once

#include <cstddef>
#include <cstdint>
#include <random>

class Chance {
public:
    explicit Chance(std::uint64_t seed) : engine(seed) {}

    /// 0 to n - 1; n is at least 1.
    int Below(int n) { return static_cast<int>(engine() % static_cast<std::uint64_t>(n)); }
    /// low to high, both included.
    int Roll(int low, int high) { return low + Below(high - low + 1); }
    bool OneIn(int n) { return Below(n) == 0; }
    /// An element of an array or vector that is not empty.
    template <typename List>
    auto& Pick(List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

private:
    std::mt19937_64 engine;
};
