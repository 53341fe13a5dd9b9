// Cells that a text of tiles has held before, known again by their characters.
//
// What people paint consists of few different cells. To compare the characters of a cell with
// those of one that was read costs a fraction of reading its four numbers.
#pragma once

#include "engine/dtile.h"
#include "engine/eight_bytes.h"

#include <bit>
#include <cstddef>
#include <cstdint>

class KnownCells {
public:
    /// The characters of four fields, with a blank between each two and one behind them that does
    /// not count. Of length 0 when that does not fit into kLook characters.
    struct Text {
        std::uint64_t first;
        std::uint64_t second;
        std::ptrdiff_t length;
    };
    static constexpr std::ptrdiff_t kLook = 16;

    /// Any kLook characters may stand there: only what was added is found, and Add is particular.
    static Text TextAt(const char* at);

    /// Null when it is not known.
    const Dtile* Find(const Text& text) const {
        const Entry& entry = entries[PlaceOf(text)];
        const bool same = entry.first == text.first && entry.second == text.second;
        return same && text.length > 0 ? &entry.tile : nullptr;
    }

    /// That these characters read as the tile. Forgets another text in its place.
    void Add(const Text& text, const Dtile& tile);

private:
    struct Entry {
        std::uint64_t first = 0;
        std::uint64_t second = 0;
        Dtile tile;
    };
    static constexpr int kBits = 9;

    static std::size_t PlaceOf(const Text& text) {
        constexpr std::uint64_t kGoldenRatio = 0x9e3779b97f4a7c15;
        constexpr std::uint64_t kOdd = 0xc2b2ae3d27d4eb4f;
        return (text.first * kGoldenRatio ^ text.second * kOdd) >> (64 - kBits);
    }

    Entry entries[std::size_t{1} << kBits];
};

inline KnownCells::Text KnownCells::TextAt(const char* at) {
    constexpr int kWord = 8;
    const std::uint64_t first = LoadEight(at);
    const std::uint64_t second = LoadEight(at + kWord);
    // A bit for each blank.
    const auto blanksOf = [](std::uint64_t word) {
        return LowBits(~SetBytes(word ^ ' ' * kEveryByte));
    };
    std::uint64_t blanks = blanksOf(first) | blanksOf(second) << kWord;
    for (int i = 0; i < 3; ++i) blanks &= blanks - 1;
    if (blanks == 0) return {0, 0, 0};
    const int length = std::countr_zero(blanks);
    const auto kept = [](std::uint64_t word, int bytes) {
        return word & ((std::uint64_t{1} << (8 * bytes)) - 1);
    };
    if (length < kWord) return {kept(first, length), 0, length};
    return {first, kept(second, length - kWord), length};
}

inline void KnownCells::Add(const Text& text, const Dtile& tile) {
    // As many blanks as TextAt counts also stand in "1 2\n3 4 5", which is five numbers.
    char characters[kLook + 1];
    StoreEight(characters, text.first);
    StoreEight(characters + sizeof text.first, text.second);
    characters[text.length] = ' ';
    char before = ' ';
    for (std::ptrdiff_t i = 0; i <= text.length; ++i) {
        const char c = characters[i];
        const bool digit = before >= '0' && before <= '9';
        if (c == '-' ? before != ' ' : c == ' ' ? !digit : c < '0' || c > '9') return;
        before = c;
    }
    entries[PlaceOf(text)] = {text.first, text.second, tile};
}
