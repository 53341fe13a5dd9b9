#include "engine/tile_pen.h"

#include "engine/dfont.h"
#include "engine/eight_bytes.h"

TilePen::TilePen(Dobject* of) : node(of) {
    if (!node) return;
    font = node->Font();
    single = MakeBitmap(kTileSize, kTileSize);
    if (font && single) surface = node->Surface();
}

const TilePen::Look& TilePen::LookOf(int chr, int fg, int bg) {
    Look& look = looks[static_cast<std::size_t>(chr) % kLooks];
    if (look.chr == chr && look.fg == fg && look.bg == bg) return look;
    look = {chr, fg, bg};
    font->DrawGlyph(single.get(), chr, fg, bg, 0, 0);
    for (std::size_t row = 0; row < look.rows.size(); ++row)
        look.rows[row] = LoadEight(single->line[row]);
    return look;
}

void TilePen::Put(int x, int y, int chr, int fg, int bg, int attrib) {
    constexpr int kColors = 256;
    const auto within = [](int n, int end) { return n >= 0 && n < end; };
    // Anything else keeps a field or lets through what is under it.
    const bool plain = within(chr, INT16_MAX) && within(fg, kColors) && within(bg, kColors) &&
                       within(attrib, INT16_MAX);
    Dtile* const tile = node ? node->GetTile(x, y) : nullptr;
    if (!tile) return;
    if (!surface || !plain) return node->PutTile(x, y, chr, fg, bg, attrib);
    *tile = {static_cast<std::uint16_t>(chr), static_cast<std::uint16_t>(fg),
             static_cast<std::uint16_t>(bg), static_cast<std::uint16_t>(attrib)};
    const Look& look = LookOf(chr, fg, bg);
    unsigned char* const* const line = surface->line + y * kTileSize;
    for (std::size_t row = 0; row < look.rows.size(); ++row)
        StoreEight(line[row] + x * kTileSize, look.rows[row]);
}
