#include "editor/view/tile_clip.h"

#include "engine/tile_pen.h"

std::vector<Dtile> vTileClip;
std::int32_t vTileClipW = 0, vTileClipH = 0;
std::int32_t vTileClipSkip = 0;

namespace {

constexpr std::uint16_t kNoValue = 65535;
constexpr Dtile kHole{kNoValue, kNoValue, kNoValue, kNoValue};
constexpr int kSheetColumns = 16;

Dtile& ClipCell(int u, int v) {
    return vTileClip[static_cast<std::size_t>(v) * static_cast<std::size_t>(vTileClipW) +
                     static_cast<std::size_t>(u)];
}

}  // namespace

void ClearTileClip() {
    vTileClip.clear();
    vTileClipW = vTileClipH = 0;
}

void CopyRegion(Handle h, TileArea& area, const Brush& brush) {
    vTileClipW = area.w;
    vTileClipH = area.h;
    vTileClip.assign(static_cast<std::size_t>(area.w) * static_cast<std::size_t>(area.h), kHole);
    Dobject* node = vWorld->Node(h);
    if (!node) return;
    ForEachSelected(area, [&](int x, int y) {
        const Dtile* tile = node->GetTile(x, y);
        if (!tile) return;
        Dtile& cell = ClipCell(x - area.x, y - area.y);
        if (brush.chr != kKeepField) cell.chr = tile->chr;
        if (brush.fg != kKeepField) cell.fg = tile->fg;
        if (brush.bg != kKeepField) cell.bg = tile->bg;
        if (brush.attrib != kKeepField) cell.attrib = tile->attrib;
    });
}

void PasteRegion(Handle h, TileArea& area) {
    if (vTileClipW < 1 || vTileClipH < 1) return;
    vWorld->BackupTiles(h);
    TilePen pen(vWorld->Editable(h));
    ForEachSelected(area, [&](int x, int y) {
        const Dtile& cell = ClipCell((x - area.x) % vTileClipW, (y - area.y) % vTileClipH);
        if (vTileClipSkip && cell == Dtile{}) return;
        pen.Put(x, y, Signed(cell.chr), Signed(cell.fg), Signed(cell.bg), Signed(cell.attrib));
    });
}

void PasteSpriteRegion(Handle h, TileArea& area, Brush& brush) {
    vWorld->BackupTiles(h);
    const int count = vWorld->GetFont()->GlyphCount();
    ForEachSelected(area, [&](int x, int y) {
        const int glyph = brush.chr + (y - area.y) * kSheetColumns + (x - area.x);
        if (glyph >= count) return;
        brush.fg = kSpriteMark;
        brush.bg = HoleHint(glyph);
        vWorld->SetTile(h, x, y, glyph, brush.fg, brush.bg, brush.attrib);
    });
}
