#include "engine/tile_pen.h"

#include "engine/dfont.h"
#include "engine/eight_bytes.h"

#include <utility>

TilePen::TilePen(Dobject* of) : node(of) {
    if (!node) return;
    font = node->Font();
    single = MakeBitmap(kTileSize, kTileSize);
    if (font && single) surface = node->Surface();
    end = node->width;
}

void TilePen::PutOther(int x, int y, int chr, int fg, int bg, int attrib) {
    EndRun();
    if (node) node->PutTile(x, y, chr, fg, bg, attrib);
}

void TilePen::Draw(Look& fresh, const Dtile& tile) {
    font->DrawGlyph(single.get(), tile.chr, tile.fg, tile.bg, 0, 0);
    for (std::size_t i = 0; i < fresh.rows.size(); ++i) fresh.rows[i] = LoadEight(single->line[i]);
}

void TilePen::PutOne(int x, int y, std::uint64_t put) {
    constexpr std::uint64_t kShown = 0xffff'ffff'ffff;
    EndRun();
    Dtile* const tile = node->GetTile(x, y);
    if (!tile) return;
    StoreEight(tile, put);
    Look& found = looks[put % kLooks];
    if (std::exchange(found.shown, put & kShown) != (put & kShown)) Draw(found, *tile);
    cell = put;
    look = &found;
    row = y;
    first = next = x + 1;
    unsigned char* const* const line = surface->line + y * kTileSize;
    for (std::size_t i = 0; i < found.rows.size(); ++i)
        StoreEight(line[i] + x * kTileSize, found.rows[i]);
}

void TilePen::EndRun() {
    const int tiles = next - first;
    if (tiles <= 0) return;
    FillEight(node->GetTile(first, row), cell, tiles);
    for (int i = 0; i < kTileSize; ++i)
        FillEight(surface->line[row * kTileSize + i] + first * kTileSize,
                  look->rows[static_cast<std::size_t>(i)], tiles);
    first = next;
}
