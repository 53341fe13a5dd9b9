#include "editor/view/tile_clip.h"

#include "editor/view/brush.h"
#include "editor/view/selection.h"

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

void CopyRegion(Handle h) {
    vTileClipW = vRegionW;
    vTileClipH = vRegionH;
    vTileClip.assign(static_cast<std::size_t>(vRegionW) * static_cast<std::size_t>(vRegionH),
                     kHole);
    Dobject* node = vWorld->Node(h);
    if (!node) return;
    ForEachSelected([&](int x, int y) {
        const Dtile* tile = node->GetTile(x, y);
        if (!tile) return;
        Dtile& cell = ClipCell(x - vRegionX, y - vRegionY);
        if (vBrush.chr != kKeepField) cell.chr = tile->chr;
        if (vBrush.fg != kKeepField) cell.fg = tile->fg;
        if (vBrush.bg != kKeepField) cell.bg = tile->bg;
        if (vBrush.attrib != kKeepField) cell.attrib = tile->attrib;
    });
}

void PasteRegion(Handle h) {
    if (vTileClipW < 1 || vTileClipH < 1) return;
    vWorld->BackupTiles(h);
    ForEachSelected([&](int x, int y) {
        const Dtile& cell = ClipCell((x - vRegionX) % vTileClipW, (y - vRegionY) % vTileClipH);
        if (vTileClipSkip && cell == Dtile{}) return;
        vWorld->SetTile(h, x, y, Signed(cell.chr), Signed(cell.fg), Signed(cell.bg),
                        Signed(cell.attrib));
    });
}

void PasteSpriteRegion(Handle h) {
    vWorld->BackupTiles(h);
    const int count = vWorld->GetFont()->GlyphCount();
    ForEachSelected([&](int x, int y) {
        const int glyph = vBrush.chr + (y - vRegionY) * kSheetColumns + (x - vRegionX);
        if (glyph >= count) return;
        vBrush.fg = kSpriteMark;
        vBrush.bg = HoleHint(glyph);
        vWorld->SetTile(h, x, y, glyph, vBrush.fg, vBrush.bg, vBrush.attrib);
    });
}
