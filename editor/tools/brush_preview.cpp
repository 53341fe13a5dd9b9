#include "editor/tools/brush_preview.h"

#include "editor/view/brush.h"
#include "engine/dinterface.h"

void DrawBrushSwatch(BITMAP* bitmap) {
    Brush swatch = vBrush;
    if (vBrushMode == kBrushText)
        swatch.fg = swatch.bg = kSpriteMark;
    else if (vBrushMode != kBrushNormal)
        return;
    const Dfont& glyphs = *vWorld->GetFont();
    for (int y = 0; y <= bitmap->h / kTileSize; ++y)
        for (int x = 0; x <= bitmap->w / kTileSize; ++x)
            glyphs.DrawGlyph(bitmap, swatch.chr, swatch.fg, swatch.bg, x, y);
}

void BrushPreview::OnDraw(platform::Window& own) {
    BITMAP* to = Buffer(HalfOf(own.ClientSize()), "BrushPreview");
    if (!to) return;
    clear_bitmap(to);
    DrawBrushSwatch(to);
    ShowDoubled(own);
    own.SetDescription("Glyph " + std::to_string(vBrush.chr) +
                       (vBrush.fg == kSpriteMark ? std::string(", a sprite")
                                                 : ", colour " + std::to_string(vBrush.fg) +
                                                       " on " + std::to_string(vBrush.bg)) +
                       ", attribute " + std::to_string(vBrush.attrib));
}

bool BrushPreview::OnPress() {
    if (openSettings) openSettings();
    return openSettings != nullptr;
}

void BrushPreview::OnLButtonUp(bool, platform::Point at) {
    if (openSettings && Holds(at)) openSettings();
}
