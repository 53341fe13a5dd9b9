// Many tiles of one node, written one after the other.
#pragma once

#include "engine/dobject.h"

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>

/// Writes as Dobject::PutTile does, but looks up once what that looks up for each tile, draws a
/// tile that it has drawn before by a copy, and the same tile many times side by side a row of
/// pixels at a time. While a pen lives, its node keeps its place, its size and its font, and the
/// last tiles may not be there yet. A pen of no node writes nothing.
class TilePen {
public:
    explicit TilePen(Dobject* node);
    TilePen(const TilePen&) = delete;
    TilePen& operator=(const TilePen&) = delete;
    ~TilePen() { EndRun(); }

    void Put(int x, int y, int chr, int fg, int bg, int attrib) {
        if (!IsPlain(chr, fg, bg, attrib)) return PutOther(x, y, chr, fg, bg, attrib);
        // The bytes of the Dtile.
        const auto bits = [](int field) { return static_cast<std::uint64_t>(field); };
        const std::uint64_t put = bits(chr) | bits(fg) << 16 | bits(bg) << 32 | bits(attrib) << 48;
        // Without a branch for each tile that is another one, which nobody can foretell.
        const bool same = (put == cell) & (y == row) & (x == next) & (x < end);
        repeats = same ? repeats + 1 : 0;
        if (repeats < kRun)
            PutOne(x, y, put);
        else
            ++next;
    }

    /// The same tile so many times side by side.
    void PutRun(int x, int y, int count, int chr, int fg, int bg, int attrib) {
        Put(x, y, chr, fg, bg, attrib);
        const bool going = IsPlain(chr, fg, bg, attrib) && y == row && x + 1 == next;
        if (going)
            next = std::min(x + count, end);
        else
            for (int i = 1; i < count; ++i) Put(x + i, y, chr, fg, bg, attrib);
    }

private:
    /// Other fields keep what there was or let through what is under the tile.
    bool IsPlain(int chr, int fg, int bg, int attrib) const {
        return ((chr | attrib) & ~0x7fff) == 0 && ((fg | bg) & ~0xff) == 0 && surface;
    }

    /// A tile as it is drawn: a number of eight pixels for each of its rows.
    struct Look {
        std::uint64_t shown = UINT64_MAX;  ///< the tile's bytes but for its attribute
        std::array<std::uint64_t, kTileSize> rows = {};
    };
    static constexpr std::size_t kLooks = 64;  ///< kept, each for the glyphs of one rest of it
    static constexpr int kRun = 4;             ///< as many repeats are the beginning of a run

    void PutOther(int x, int y, int chr, int fg, int bg, int attrib);
    void PutOne(int x, int y, std::uint64_t put);
    void Draw(Look& fresh, const Dtile& tile);
    void EndRun();

    Dobject* node;
    const Dfont* font = nullptr;
    BITMAP* surface = nullptr;
    Bitmap single;  ///< of one tile, where looks are drawn
    std::array<Look, kLooks> looks;
    // The last tile, and the columns of its row that are to have it as well: not written yet.
    std::uint64_t cell = 0;
    const Look* look = nullptr;
    int row = 0, first = INT_MAX, next = INT_MAX;
    int end = 0;      ///< the node's width
    int repeats = 0;  ///< of the last tile, side by side
};
