// Many tiles of one node, written one after the other.
#pragma once

#include "engine/dobject.h"

#include <array>
#include <cstdint>

/// Writes as Dobject::PutTile does, but looks up once what that looks up for each tile, and draws
/// a tile that it has drawn before by a copy. While a pen lives, its node keeps its place, its
/// size and its font. A pen of no node writes nothing.
class TilePen {
public:
    explicit TilePen(Dobject* node);

    void Put(int x, int y, int chr, int fg, int bg, int attrib);

private:
    /// A tile as it is drawn: a number of eight pixels for each of its rows.
    struct Look {
        int chr = -1, fg = 0, bg = 0;
        std::array<std::uint64_t, kTileSize> rows = {};
    };
    const Look& LookOf(int chr, int fg, int bg);

    static constexpr std::size_t kLooks = 64;  ///< kept, each for the glyphs of one rest of it

    Dobject* node;
    const Dfont* font = nullptr;
    BITMAP* surface = nullptr;
    Bitmap single;  ///< of one tile, where looks are drawn
    std::array<Look, kLooks> looks;
};
