#include "editor/tools/char_edit.h"

#include "editor/view/brush.h"
#include "engine/dinterface.h"
#include "engine/random.h"

#include <algorithm>
#include <string>

namespace {

constexpr int kZoom = 4;  ///< bitmap pixels a side of a glyph's pixel
constexpr int kSide = kTileSize * kZoom;
constexpr int kTick = 15;
constexpr int kCursorColors = 255;

int PixelColor(platform::Point at) {
    return vWorld->GetFont()->GetGlyphPixel(vBrush.chr, at.x, at.y);
}

// A tick tells a pixel that is empty from one of a dark colour.
void TickEmptyPixels(BITMAP* to) {
    for (int y = 0; y < kTileSize; ++y)
        for (int x = 0; x < kTileSize; ++x)
            if (PixelColor({x, y}) == 0)
                line(to, kZoom * x + 1, kZoom * y + 1, kZoom * x + 2, kZoom * y + 2, kTick);
}

}  // namespace

void CharEdit::OnDraw(platform::Window& own) {
    BITMAP* to = Buffer({kSide, kSide}, "CharEdit");
    const Bitmap glyph = MakeBitmap(kTileSize, kTileSize);
    if (!to || !glyph) return;
    vWorld->GetFont()->DrawGlyph(glyph.get(), vBrush.chr, kSpriteMark, kSpriteMark, 0, 0);
    stretch_blit(glyph.get(), to, 0, 0, kTileSize, kTileSize, 0, 0, kSide, kSide);
    TickEmptyPixels(to);
    const int x = cursor.x * kZoom;
    const int y = cursor.y * kZoom;
    // Another colour each time, so that the cursor is seen on any picture.
    xor_mode(TRUE);
    rect(to, x, y, x + kZoom - 1, y + kZoom - 1, vRandom.Next() % kCursorColors);
    xor_mode(FALSE);
    own.ShowPicture({to->line, kSide, kSide}, own.ClientSize());
    own.SetDescription("Glyph " + std::to_string(vBrush.chr) + ", pixel " +
                       std::to_string(cursor.x) + " " + std::to_string(cursor.y) + ": colour " +
                       std::to_string(PixelColor(cursor)));
}

void CharEdit::SetCursor(platform::Point pixel) {
    cursor = {std::clamp(pixel.x, 0, kTileSize - 1), std::clamp(pixel.y, 0, kTileSize - 1)};
    Invalidate();
}

void CharEdit::FollowMouse(platform::Point at) {
    if (!window) return;
    const platform::Size size = window->ClientSize();
    SetCursor({at.x / std::max(size.w >> 3, 1), at.y / std::max(size.h >> 3, 1)});
}

void CharEdit::OnLButtonDown(bool, platform::Point at) {
    pressed = true;
    if (window) window->SetCapture();
    FollowMouse(at);
}

void CharEdit::OnLButtonUp(bool, platform::Point) {
    pressed = false;
    if (window) window->ReleaseCapture();
}

void CharEdit::OnMouseMove(bool, platform::Point at) {
    if (pressed) FollowMouse(at);
}
