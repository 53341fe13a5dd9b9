#include "editor/tools/drag_viewer.h"

#include "engine/dtile.h"

#include <algorithm>

namespace {

constexpr double kTilesPerPixel = 0.125;

int WholeTiles(int pixels) { return (pixels + kTileSize - 1) / kTileSize * kTileSize; }

int Scrolled(int at, int press, int scroll, int shown, int content) {
    const int wanted = static_cast<int>((at - press) * kTilesPerPixel + scroll);
    return std::min(std::max(wanted, shown - content), 0);
}

}  // namespace

void DragViewer::OnDraw(platform::Window& own) {
    const platform::Size half = HalfOf(own.ClientSize());
    BITMAP* to = Buffer({WholeTiles(half.w), WholeTiles(half.h)}, Name());
    if (!to) return;
    if (room == platform::Size{}) room = {half.w / kTileSize, half.h / kTileSize};
    clear_bitmap(to);
    Compose(to);
    ShowDoubled(own);
}

void DragViewer::OnLButtonDown(bool, platform::Point at) {
    press = at;
    pressScroll = scroll;
    dragging = true;
    if (window) window->SetCapture();
}

void DragViewer::OnLButtonUp(bool, platform::Point) {
    if (window) window->ReleaseCapture();
    dragging = false;
}

void DragViewer::OnMouseMove(bool, platform::Point at) {
    if (!dragging) return;
    const platform::Size content = ContentTiles();
    scroll = {Scrolled(at.x, press.x, pressScroll.x, room.w, content.w),
              Scrolled(at.y, press.y, pressScroll.y, room.h, content.h)};
    Invalidate();
}
