#include "editor/tools/drag_viewer.h"

#include "engine/dtile.h"

#include <algorithm>

namespace {

constexpr double kTilesPerPixel = 0.125;

int WholeTiles(int pixels) { return (pixels + kTileSize - 1) / kTileSize * kTileSize; }

int Dragged(int at, int press, int scroll) {
    return static_cast<int>((at - press) * kTilesPerPixel + scroll);
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

void DragViewer::ScrollTo(platform::Point wanted) {
    const platform::Size content = ContentTiles();
    scroll = {std::min(std::max(wanted.x, room.w - content.w), 0),
              std::min(std::max(wanted.y, room.h - content.h), 0)};
    Invalidate();
}

void DragViewer::OnMouseMove(bool, platform::Point at) {
    if (dragging)
        ScrollTo({Dragged(at.x, press.x, pressScroll.x), Dragged(at.y, press.y, pressScroll.y)});
}

// The content moves against the arrow, as with a scroll bar.
void DragViewer::OnKeyDown(int code) {
    const platform::Point step = ArrowStep(code);
    if (step != platform::Point{}) ScrollTo({scroll.x - step.x, scroll.y - step.y});
}
