// Eight bytes as one number, the first in memory in its low bits: a row of a tile's pixels, or
// characters of a text.
#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

static_assert(std::endian::native == std::endian::little);

inline constexpr std::uint64_t kEveryByte = 0x0101010101010101u;

inline std::uint64_t LoadEight(const void* from) {
    std::uint64_t bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

inline void StoreEight(void* to, std::uint64_t bytes) { std::memcpy(to, &bytes, sizeof bytes); }

/// So many times, one behind the other.
inline void FillEight(void* to, std::uint64_t bytes, std::ptrdiff_t count) {
    auto* place = static_cast<unsigned char*>(to);
    for (std::ptrdiff_t i = 0; i < count; ++i) StoreEight(place + 8 * i, bytes);
}

/// How many of the `count` bytes from `from` on are equal to `value`.
inline int RunOf(const unsigned char* from, int count, unsigned char value) {
    int run = 0;
    while (run + 8 <= count && LoadEight(from + run) == value * kEveryByte) run += 8;
    while (run < count && from[run] == value) ++run;
    return run;
}

/// 0xff in every byte that is not zero, 0 in the others. The low seven bits of a byte carry into
/// its high bit when any is set; the high bits are then spread downwards.
inline std::uint64_t SetBytes(std::uint64_t bytes) {
    constexpr std::uint64_t kHighBits = 0x80 * kEveryByte;
    const std::uint64_t high = (((bytes & ~kHighBits) + ~kHighBits) | bytes) & kHighBits;
    return (high - (high >> 7)) | high;
}

/// The lowest bit of each byte, that of the first byte lowest: eight bits.
inline std::uint64_t LowBits(std::uint64_t bytes) {
    return (bytes & kEveryByte) * 0x0102040810204080u >> 56;
}

/// Bytes side by side, by the vectors of GCC and Clang: a comparison gives 0xff or 0 in each.
using Eight = unsigned char __attribute__((vector_size(8)));
using Sixteen = unsigned char __attribute__((vector_size(16)));

template <typename Bytes = Eight>
Bytes BytesAt(const void* from) {
    Bytes bytes;
    std::memcpy(&bytes, from, sizeof bytes);
    return bytes;
}

/// What a comparison of sixteen bytes gives, and a bit for each, that of the first byte lowest.
using Truths = signed char __attribute__((vector_size(16)));
inline std::uint64_t BitsOf(Truths truths) {
#ifdef __SSE2__
    using Chars = char __attribute__((vector_size(16)));
    return static_cast<unsigned>(__builtin_ia32_pmovmskb128(reinterpret_cast<Chars>(truths)));
#else
    std::uint64_t halves[2];
    std::memcpy(halves, &truths, sizeof halves);
    return LowBits(halves[0]) | LowBits(halves[1]) << 8;
#endif
}

template <typename Bytes>
void PutBytes(void* to, Bytes bytes) {
    std::memcpy(to, &bytes, sizeof bytes);
}
