// The chance of the program.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

/// The numbers of the GNU C library's rand, draw for draw, from 0 to 2^31 - 1, without the lock
/// that it takes for each. Of one thread.
class Random {
public:
    Random() { Seed(1); }

    /// As srand: the same seed gives the same numbers. Until the first call it is 1.
    void Seed(std::uint32_t seed) {
        // The multiplier of Park and Miller, and their modulus.
        constexpr std::int64_t kFactor = 16807;
        constexpr std::int64_t kModulus = INT32_MAX;
        std::int64_t word = static_cast<std::int32_t>(seed ? seed : 1);
        for (std::uint32_t& each : state) {
            each = static_cast<std::uint32_t>(word);
            word = kFactor * word % kModulus;
            if (word < 0) word += kModulus;
        }
        front = kApart;
        rear = 0;
        for (std::size_t i = 0; i < 10 * state.size(); ++i) Next();
    }

    /// The sum of the third number back and the 31st, without its lowest bit.
    int Next() {
        const std::uint32_t sum = state[front] += state[rear];
        if (++front == state.size()) front = 0;
        if (++rear == state.size()) rear = 0;
        return static_cast<int>(sum >> 1);
    }

private:
    static constexpr std::size_t kApart = 3;

    std::array<std::uint32_t, 31> state;  ///< the last numbers, in a ring
    std::size_t front = kApart;           ///< the oldest, which the next one replaces
    std::size_t rear = 0;
};

/// What every draw of the program comes from.
inline Random vRandom;
