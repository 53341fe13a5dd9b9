// Cells that a text of tiles has held before, known again by their characters.
//
// What people paint consists of few different cells. To compare the characters of a cell with
// those of one that was read costs a fraction of reading its four numbers.
#pragma once

#include "engine/dtile.h"
#include "engine/eight_bytes.h"

#include <array>
#include <cstddef>
#include <cstdint>

class KnownCells {
public:
    /// The characters of four fields, with a blank between each two; of length 0 when they are none
    /// that can be known.
    struct Text {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        std::ptrdiff_t length = 0;
    };
    static constexpr std::ptrdiff_t kLook = 16;

    /// As many characters; kLook of any kind may be read there, and any length be asked for: only
    /// what was added is found, and Add is particular.
    static Text TextAt(const char* at, std::ptrdiff_t length);

    /// Null when it is not known.
    const Dtile* Find(const Text& text) const {
        const Entry& entry = entries[PlaceOf(text)];
        const bool same = entry.first == text.first && entry.second == text.second;
        return same && text.length > 0 ? &entry.tile : nullptr;
    }

    /// That these characters, among which are three that are no digits, read as the tile. Forgets
    /// another text in its place.
    void Add(const Text& text, const Dtile& tile);

private:
    struct Entry {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        Dtile tile;
    };
    static constexpr int kBits = 11;

    static std::size_t PlaceOf(const Text& text) {
        constexpr std::uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
        constexpr std::uint64_t kOdd = 0xc2b2ae3d27d4eb4f;
        return (text.first * kGoldenRatio ^ text.second * kOdd) >> (64 - kBits);
    }

    Entry entries[std::size_t{1} << kBits];
};

inline KnownCells::Text KnownCells::TextAt(const char* at, std::ptrdiff_t length) {
    using Mask = std::array<std::uint64_t, 2>;
    static constexpr auto kMasks = [] {
        std::array<Mask, kLook + 1> masks = {};
        for (std::size_t i = 1; i < masks.size(); ++i) {
            masks[i] = masks[i - 1];
            masks[i][(i - 1) / 8] |= std::uint64_t{0xff} << ((i - 1) % 8 * 8);
        }
        return masks;
    }();
    constexpr std::ptrdiff_t kLeast = 7;  // "0 0 0 0"
    if (length < kLeast || length > kLook) return {};
    const Mask& mask = kMasks[static_cast<std::size_t>(length)];
    return {LoadEight(at) & mask[0], LoadEight(at + 8) & mask[1], length};
}

inline void KnownCells::Add(const Text& text, const Dtile& tile) {
    if (text.length == 0) return;
    char characters[kLook];
    StoreEight(characters, text.first);
    StoreEight(characters + sizeof text.first, text.second);
    // What ends a number may be a minus or a line feed, too.
    char before = ' ';
    for (std::ptrdiff_t i = 0; i < text.length; ++i) {
        const bool digit = characters[i] >= '0' && characters[i] <= '9';
        if (!digit && (characters[i] != ' ' || before == ' ')) return;
        before = characters[i];
    }
    if (before != ' ') entries[PlaceOf(text)] = {text.first, text.second, tile};
}
