// A board to select from and paint on, shown as lines of text.
#pragma once

#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "tests/support/test_world.h"

#include <random>

class AreaTest : public WorldTest {
protected:
    AreaTest() {
        ResetBrushes();
        ClearTileClip();
        vTileClipSkip = 0;
        MakeBoard(8, 6);
    }

    void MakeBoard(int w, int h) {
        board = &AddNode(world->Root(), "board", w, h);
        world->currentBoard = world->currentObject = board->id;
        handle = HandleOf(*board);
    }

    Dtile& At(int x, int y) { return *board->GetTile(x, y); }

    /// Random tiles of `kinds` glyphs, and random marks with a box that holds them.
    void Scatter(std::mt19937& random, int kinds) {
        for (Dtile& tile : board->tiles) tile.chr = static_cast<std::uint16_t>(random() % kinds);
        SelectRect(handle, {static_cast<int>(random() % 8), 0}, {board->width - 1, 4});
        for (int y = vRegionY; y < vRegionY + vRegionH; ++y)
            for (int x = vRegionX; x < vRegionX + vRegionW; ++x)
                if (random() % 4 == 0) MaskAt(x, y) = kNotSelected;
    }

    /// The mask, rows parted by "/": "." not selected, "x" selected, "o" done.
    static std::string Mask() {
        std::string text;
        for (int y = 0; y < vMaskH; ++y) {
            if (y) text += '/';
            for (int x = 0; x < vMaskW; ++x) text += ".xo"[static_cast<std::size_t>(MaskAt(x, y))];
        }
        return text;
    }
    static std::vector<int> Box() { return {vRegionX, vRegionY, vRegionW, vRegionH}; }

    /// The glyph numbers of a node the same way, as characters from "0" on.
    static std::string Glyphs(const Dobject& node) {
        std::string text;
        for (std::size_t i = 0; i < node.tiles.size(); ++i) {
            if (i && i % static_cast<std::size_t>(node.width) == 0) text += '/';
            text += static_cast<char>('0' + node.tiles[i].chr);
        }
        return text;
    }
    std::string Glyphs() const { return Glyphs(*board); }

    /// Writes glyphs in the form that Glyphs gives.
    void Draw(const std::string& text) {
        std::size_t i = 0;
        for (char c : text)
            if (c != '/') board->tiles[i++].chr = static_cast<std::uint16_t>(c - '0');
    }

    Dobject* board = nullptr;
    Handle handle = kNoHandle;
};
