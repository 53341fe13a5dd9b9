#include "editor/tools/char_select.h"

#include "editor/view/brush.h"
#include "engine/dinterface.h"
#include "platform/keys.h"

#include <algorithm>
#include <string>

std::int32_t vCharScrollX = 0;
std::int32_t vCharScrollY = 0;

namespace {

constexpr int kUsualColumns = 16;
constexpr double kTilesPerPixel = 0.125;

enum Direction { kUp, kRight, kDown, kLeft };  // of Dfont::NeighbourGlyph

struct GlyphKey {
    int key;
    Direction direction;
};
constexpr GlyphKey kKeys[] = {
    {platform::kKeyUp, kUp},        {platform::kKeyPageUp, kUp},   {platform::kKeyRight, kRight},
    {platform::kKeyDelete, kRight}, {platform::kKeyDown, kDown},   {platform::kKeyPageDown, kDown},
    {platform::kKeyLeft, kLeft},    {platform::kKeyInsert, kLeft},
};

// The tile under a window pixel, counted from the sheet's corner.
int TileAt(int pixel, int scroll, int tile) { return (pixel - scroll * tile) / tile; }

int LowestScroll(int sheet, int shown) { return -1 - ((sheet - shown) >> 3); }

int Scrolled(int at, int press, int scroll, int sheet, int shown) {
    const int lowest = LowestScroll(sheet, shown);
    const int wanted = static_cast<int>((at - press) * kTilesPerPixel + scroll);
    return std::min(std::max(wanted, lowest), 0);
}

}  // namespace

void UpdateHoleHint() { vBrush.bg = HoleHint(vBrush.chr); }

void CharSelect::OnDraw(platform::Window& own) {
    const platform::Size client = own.ClientSize();
    // As large as the window allows for a sheet of 16 columns.
    // A pixel of the sheet is two or more of the window's, or a half more of them: then every
    // second one is wider.
    constexpr int kHalf = kTileSize / 2;
    if (!vBitmap) cell = std::max(client.w / kUsualColumns / kHalf * kHalf, 2 * kTileSize);
    // An even number with halves, so that the picture ends with a whole pixel.
    const int odd = cell % kTileSize ? 1 : 0;
    const auto held = [=, this](int pixels) {
        return ((pixels * kTileSize + cell - 1) / cell + odd) & ~odd;
    };
    BITMAP* to = Buffer({held(client.w), held(client.h)}, "CharSelect");
    if (!to) return;
    clear_bitmap(to);
    BITMAP* sheet = vWorld->GetFont()->Sheet();
    blit(sheet, to, -kTileSize * vCharScrollX, -kTileSize * vCharScrollY, 0, 0, to->w, to->h);
    own.ShowPicture({to->line, to->w, to->h}, {to->w * cell / kTileSize, to->h * cell / kTileSize});
    own.SetDescription("Glyph " + std::to_string(vBrush.chr));
}

void CharSelect::Pick(int glyph) {
    vBrush.chr = glyph;
    if (vBrush.fg == kSpriteMark) UpdateHoleHint();
    Call(repaintPreview);
    Call(repaintCharEdit);
}

void CharSelect::PickAt(platform::Point at) {
    const Dfont& glyphs = *vWorld->GetFont();
    const int x = kTileSize * TileAt(at.x, vCharScrollX, cell);
    const int y = kTileSize * TileAt(at.y, vCharScrollY, cell);
    if (x < 0 || y < 0 || x >= glyphs.Sheet()->w || y >= glyphs.Sheet()->h) return;
    const int glyph = glyphs.FindGlyphAt(x, y);
    if (glyph >= 0) Pick(glyph);
}

// No further than needed to have the glyph in the window.
void CharSelect::ScrollTo(int glyph) {
    const Dfont& glyphs = *vWorld->GetFont();
    const int columns = std::max(glyphs.Sheet()->w / kTileSize, 1);
    const auto moved = [](int scroll, int place, int shown) {
        return std::min(std::max(scroll, -place), shown / kTileSize - 1 - place);
    };
    if (!vBitmap) return;
    vCharScrollX = std::min(moved(vCharScrollX, glyph % columns, vBitmap->w), 0);
    vCharScrollY = std::min(moved(vCharScrollY, glyph / columns, vBitmap->h), 0);
    Invalidate();
}

void CharSelect::Scroll(platform::Point at) {
    if (!vBitmap) return;
    const BITMAP* sheet = vWorld->GetFont()->Sheet();
    vCharScrollX = Scrolled(at.x, press.x, pressScroll.x, sheet->w, vBitmap->w);
    vCharScrollY = Scrolled(at.y, press.y, pressScroll.y, sheet->h, vBitmap->h);
    Invalidate();
}

void CharSelect::OnLButtonDown(bool ctrl, platform::Point at) {
    if (!ctrl) {
        mode = kPicking;
        PickAt(at);
        return;
    }
    mode = kScrolling;
    press = at;
    pressScroll = {vCharScrollX, vCharScrollY};
    if (window) window->SetCapture();
}

void CharSelect::OnLButtonUp(bool, platform::Point) {
    if (mode == kScrolling && window) window->ReleaseCapture();
    mode = kIdle;
}

void CharSelect::OnMouseMove(bool, platform::Point at) {
    if (mode == kScrolling) Scroll(at);
    if (mode == kPicking) PickAt(at);
}

void CharSelect::OnKeyDown(int code) {
    for (const GlyphKey& binding : kKeys) {
        if (binding.key != code) continue;
        const int glyph = vWorld->GetFont()->NeighbourGlyph(vBrush.chr, binding.direction);
        if (glyph < 0) return;
        Pick(glyph);
        ScrollTo(glyph);
    }
}

void CharSelect::ScrollDown(double part) {
    if (!vBitmap) return;
    const int lowest = LowestScroll(vWorld->GetFont()->Sheet()->h, vBitmap->h);
    vCharScrollY = std::min(static_cast<int>(lowest * part), 0);
    Invalidate();
}
