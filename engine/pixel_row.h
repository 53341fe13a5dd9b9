// A row of a tile as one number: eight pixels of eight bits, the left one first in memory.
#pragma once

#include <cstdint>
#include <cstring>

inline constexpr std::uint64_t kEveryByte = 0x0101010101010101u;

inline std::uint64_t LoadRow(const unsigned char* from) {
    std::uint64_t row;
    std::memcpy(&row, from, sizeof row);
    return row;
}

inline void StoreRow(unsigned char* to, std::uint64_t row) { std::memcpy(to, &row, sizeof row); }

/// 0xff in every byte of `row` that is not zero, 0 in the others. The low seven bits of a byte
/// carry into its high bit when any is set; the high bits are then spread downwards.
inline std::uint64_t SetBytes(std::uint64_t row) {
    constexpr std::uint64_t kHighBits = 0x80 * kEveryByte;
    const std::uint64_t high = (((row & ~kHighBits) + ~kHighBits) | row) & kHighBits;
    return (high - (high >> 7)) | high;
}
