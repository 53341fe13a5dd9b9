#include "editor/view/brush.h"

#include "engine/dinterface.h"

#include <algorithm>

namespace {

void ScrollView(const HandleGuard& h, int position, int step, int size, int shown) {
    if (step == 0) return;
    const int last = std::max(vWorld->GetProperty(h, size) - vWorld->GetProperty(h, shown), 0);
    const int moved = vWorld->GetProperty(h, position) + step;
    // Back stops at the grid's start only: a viewport that a file put past the end stays put.
    vWorld->SetProperty(h, position, step < 0 ? std::max(moved, 0) : std::min(moved, last));
}

void ScrollBy(int stepX, int stepY, bool back) {
    const HandleGuard h(vWorld->GetCurrentObject());
    const int sign = back ? -1 : 1;
    ScrollView(h, kViewX, sign * stepX, kWidth, kViewW);
    ScrollView(h, kViewY, sign * stepY, kHeight, kViewH);
}

}  // namespace

// ResetBrushes gives them their first values.
Brush vBrush;
Brush vSavedBrush;
BrushMode vBrushMode;
std::array<BrushSlot, kBrushSlots> vBrushSlots;
std::int32_t vBrushSlot;
std::int32_t vStepX;
std::int32_t vStepY;

void ResetBrushes() {
    vBrush = vSavedBrush = {1, 15, 1, 0};
    vBrushMode = kBrushNormal;
    vBrushSlots = {{{1, 15, 1, 0}}};
    vBrushSlot = 0;
    vStepX = vStepY = 0;
}

const char* BrushModeName(int mode) {
    static constexpr const char* kNames[kBrushModes] = {
        "Brush - Normal", "Brush - TAB", "Brush - Text", "Brush - Blender", "Brush - Blender TAB",
    };
    return mode >= 0 && mode < kBrushModes ? kNames[mode] : "";
}

void ChooseBrushSlot(int slot) {
    if (slot < 0 || slot >= kBrushSlots) return;
    const auto narrow = [](std::int32_t field) { return static_cast<std::int16_t>(field); };
    vBrushSlots[static_cast<std::size_t>(vBrushSlot)] = {narrow(vBrush.chr), narrow(vBrush.fg),
                                                         narrow(vBrush.bg), narrow(vBrush.attrib)};
    const BrushSlot& chosen = vBrushSlots[static_cast<std::size_t>(slot)];
    vBrush = {chosen.chr, chosen.fg, chosen.bg, chosen.attrib};
    vBrushSlot = slot;
}

int NextBlendChar(int chr) {
    switch (chr) {
        case 32:
            return 176;
        case 176:
            return 177;
        case 177:
            return 178;
        case 178:
        case 219:
            return 219;
        default:
            return 32;
    }
}

int HoleHint(int chr) {
    const Dfont& glyphs = *vWorld->GetFont();
    for (int y = 0; y < kTileSize; ++y)
        for (int x = 0; x < kTileSize; ++x)
            if (glyphs.GetGlyphPixel(chr, x, y) == 0) return 0;
    return 1;
}

void ScrollBack() { ScrollBy(vStepX, vStepY, true); }

void ScrollForward() { ScrollBy(vStepX, vStepY, false); }
