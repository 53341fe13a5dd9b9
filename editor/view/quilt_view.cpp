#include "editor/view/quilt_view.h"

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/tile_clip.h"
#include "editor/view/tool_menus.h"
#include "editor/view/view_marks.h"
#include "engine/compositor.h"
#include "engine/dinterface.h"
#include "engine/report.h"

#include <algorithm>
#include <cmath>

using platform::Point;
using platform::Size;

namespace {

constexpr float kNearest = 0.25f;
constexpr float kFarthest = 2.0f;

// A whole number of tiles, always more than `pixels`.
int RoomFor(int pixels) { return (pixels & ~(kTileSize - 1)) + kTileSize; }

int Truncated(double value) { return static_cast<int>(std::trunc(value)); }

// What a screen reader tells: the cursor's place in the selected node, and what stands there.
std::string Describe(Point cursor) {
    const HandleGuard object(vWorld->GetCurrentObject());
    const char* name = vWorld->GetName(object);
    if (!name) return {};
    vWorld->WorldToLocal(object, cursor.x, cursor.y);
    std::string text =
        std::string(name) + ", " + std::to_string(cursor.x) + " x " + std::to_string(cursor.y);
    int chr = 0;
    int fg = 0;
    int bg = 0;
    int attrib = 0;
    if (!vWorld->GetTile(object, cursor.x, cursor.y, chr, fg, bg, attrib))
        return text + ": outside the grid";
    return text + ": glyph " + std::to_string(chr) + ", colour " + std::to_string(fg) + " on " +
           std::to_string(bg) + ", attribute " + std::to_string(attrib);
}

}  // namespace

CQuiltView::CQuiltView(ViewHost& panes)
    : host(panes), vToolMenu(MakeToolMenu()), vPrimMenu(MakePrimMenu()) {
    ResetBrushes();
    ClearTileClip();
    MakeObjectClip();
}

CQuiltView::~CQuiltView() { vObjectClip.reset(); }

// --- repaint -----------------------------------------------------------------------------------

void CQuiltView::MakeBackBuffer(Size client) {
    const double zoom = static_cast<double>(vZoom);
    const int w = RoomFor(Truncated(client.w * zoom));
    const int h = RoomFor(Truncated(client.h * zoom));
    if (vZoom != vLastZoom || w != vBackW || h != vBackH) {
        vBackBuffer.reset();
        vBackW = w;
        vBackH = h;
    }
    vLastZoom = vZoom;
    if (vBackBuffer) return;
    vBackBuffer = MakeBitmap(vBackW, vBackH);
    if (!vBackBuffer) {
        Fatal("Unable to create vBackBuffer", __FILE__, __LINE__);
        return;
    }
    vWorld->SetViewSize(vBackW / kTileSize, vBackH / kTileSize);
}

void CQuiltView::Compose() {
    BITMAP* to = vBackBuffer.get();
    if (vViewMode == 0) {
        vWorld->DrawWorld(to, vScroll.x, vScroll.y);
    } else {
        const HandleGuard h(vWorld->GetCurrentObject());
        vWorld->DrawObjectMode(to, vScroll.x, vScroll.y, h, vViewMode);
    }
    ClearUncovered(to);
}

void CQuiltView::DrawMarks() {
    BITMAP* to = vBackBuffer.get();
    const Point cursor = vCursor + vScroll;
    const Point anchor = vDrag.anchor + vScroll;
    Point first;
    Point last;
    const bool box = vDrag.state == kDragBox || vDrag.state == kKeyBox;
    if (vPanelMode == kPanelPaint && box) {
        first = {std::min(cursor.x, anchor.x), std::min(cursor.y, anchor.y)};
        last = {std::max(cursor.x, anchor.x), std::max(cursor.y, anchor.y)};
        DrawBoxMark(to, first, last);
    } else {
        DrawBoxMark(to, cursor, cursor);
        if (vPanelMode == kPanelPaint && vDrag.state == kDragPoints) {
            first = cursor;
            last = anchor;
            DrawBoxMark(to, anchor, anchor);
        }
    }

    constexpr int kBoardFrame = 4;
    constexpr int kObjectFrame = 2;
    DrawNodeFrame(to, HandleGuard(vWorld->GetCurrentBoard()), vScroll, kBoardFrame);
    const HandleGuard object(vWorld->GetCurrentObject());
    DrawNodeFrame(to, object, vScroll, kObjectFrame);
    if (vPanelMode == kPanelPaint && vShowAttrib) DrawAttribOverlay(to, object, vScroll);
    DrawScreenFrame(to, vScroll, vWorld->videoMode);
    if (!vRuler) return;
    if (first == last)
        DrawRulerCross(to, object, vCursor, vScroll);
    else
        DrawRulerBox(to, first, last);
}

void CQuiltView::OnDraw(platform::Window& own) {
    MakeBackBuffer(own.ClientSize());
    if (!vBackBuffer) return;
    Compose();
    xor_mode(TRUE);
    DrawMarks();
    xor_mode(FALSE);
    // Each bitmap pixel takes the same number of window pixels (or each second one is shown),
    // so that the tile under the mouse is the tile that is seen there. What this leaves over at
    // the right and the bottom the window cuts off.
    const double zoom = static_cast<double>(vZoom);
    own.ShowPicture({vBackBuffer->line, vBackW, vBackH},
                    {Truncated(vBackW / zoom), Truncated(vBackH / zoom)});
    std::string description = Describe(vCursor);
    if (vDrag.state == kKeyBox)
        description += "; box of " + std::to_string(std::abs(vDrag.anchor.x - vCursor.x) + 1) +
                       " x " + std::to_string(std::abs(vDrag.anchor.y - vCursor.y) + 1);
    own.SetDescription(description);
    onShown();
}

// --- places ------------------------------------------------------------------------------------

Point CQuiltView::TileAt(Point pixel) const {
    return {Truncated(pixel.x / Scale() - vScroll.x), Truncated(pixel.y / Scale() - vScroll.y)};
}

Point CQuiltView::CornerOf(Point tile) const {
    return {Truncated((tile.x + vScroll.x + 1) * Scale()),
            Truncated((tile.y + vScroll.y + 1) * Scale())};
}

void CQuiltView::PlaceCursor(Point tile) {
    if (tile != vCursor) vLast.reset();
    vCursor = tile;
}

void CQuiltView::DragView(Point pixel) {
    vScroll = {Truncated((pixel.x - vDrag.press.x) / Scale() + vDrag.scroll.x),
               Truncated((pixel.y - vDrag.press.y) / Scale() + vDrag.scroll.y)};
}

void CQuiltView::MoveCurrentObject(Point tile) {
    vWorld->MoveTo(HandleGuard(vWorld->GetCurrentObject()), tile.x, tile.y);
    host.Changed(Change::Place);
}

// --- mouse -------------------------------------------------------------------------------------

void CQuiltView::OnLButtonDown(bool ctrl, Point at) {
    if (ctrl) {
        vDrag = {kDragView, vDrag.anchor, at, vScroll};
        window->SetCapture();
    } else {
        PlaceCursor(TileAt(at));
        if (vPanelMode == kPanelPaint) {
            vDrag.state = kFollow;
            vTextMargin = vCursor.x;
        } else {
            Pick(at);
        }
    }
    Invalidate();
}

void CQuiltView::OnLButtonUp(bool, Point) {
    vDrag.state = kIdle;
    window->ReleaseCapture();
}

void CQuiltView::OnRButtonDown(bool ctrl, Point at) {
    const Point tile = TileAt(at);
    if (vPanelMode == kPanelProperties) MoveCurrentObject(tile);
    vDrag = {.state = ctrl ? kDragPoints : kDragBox, .anchor = tile};
    PlaceCursor(tile);
    Invalidate();
}

void CQuiltView::OnRButtonUp(bool, Point at) {
    if (vPanelMode == kPanelPaint) {
        if (vDrag.state == kDragPoints)
            RunMenu(vPrimMenu, at);
        else
            RunToolMenu(at);
        return;
    }
    vDrag.state = kIdle;
    window->ReleaseCapture();
}

void CQuiltView::OnMouseMove(bool, Point at) {
    const Point tile = TileAt(at);
    const bool properties = vPanelMode == kPanelProperties;
    switch (vDrag.state) {
        case kDragView:
            DragView(at);
            break;
        case kIdle:
            if (properties) PlaceCursor(tile);
            break;
        case kFollow:
            PlaceCursor(tile);
            break;
        case kDragBox:
            if (properties) {
                MoveCurrentObject(tile);
                PlaceCursor(tile);
                break;
            }
            [[fallthrough]];
        case kDragPoints:
            if (properties) break;
            vDrag.anchor = tile;
            break;
        default:
            break;
    }
    Invalidate();
}

void CQuiltView::OnMouseWheel(int delta) {
    if (delta > 0) OnCommand(kCmdZoomIn);
    if (delta < 0) OnCommand(kCmdZoomOut);
}

void CQuiltView::EndBox() {
    if (vDrag.state != kKeyBox) return;
    vDrag.state = kIdle;
    Invalidate();
}

// --- menus and picking -------------------------------------------------------------------------

void CQuiltView::RunMenu(const platform::Menu& menu, Point at) {
    // The drag stays as it is while the menu is up, so that its mark can be seen.
    const int command = window->TrackPopupMenu(menu, window->ClientToScreen(at));
    vDrag.state = kIdle;
    window->ReleaseCapture();
    OnCommand(command);
    Invalidate();
}

void CQuiltView::RunToolMenu(Point at) {
    platform::FindEntry(vToolMenu, kCmdRuler)->checked = vRuler;
    RunMenu(vToolMenu, at);
}

void CQuiltView::Pick(Point at) {
    int list = -1;
    {
        const HandleGuard board(vWorld->GetCurrentBoard());
        list = vWorld->StartHandleListAt(board, vCursor.x, vCursor.y);
    }
    const int count = vWorld->CountHandles(list);
    platform::Menu menu;
    for (Handle h = vWorld->NextHandle(list); h != kNoHandle; h = vWorld->NextHandle(list)) {
        // Of one or two nodes the last is meant: the only one, or the one on the board.
        if (count <= 2) vWorld->SetCurrentObject(h);
        menu.push_back(platform::Entry(platform::MenuText(vWorld->GetName(h)),
                                       vWorld->GetId(h) + kCmdPickBase));
    }
    vWorld->ReleaseHandleList(list);
    if (count > 2) {
        menu.push_back(platform::Separator());
        menu.push_back(platform::Entry("&Cancel", kCmdNone));
        const int command = window->TrackPopupMenu(menu, window->ClientToScreen(at));
        // An id beyond the range would read as a command of another menu.
        if (command < kCmdPickEnd) OnCommand(command);
    }
    host.Changed(Change::Selection);
}

void CQuiltView::SelectPicked(int command) {
    const HandleGuard h(vWorld->GetHandleById(kRootHandle, command - kCmdPickBase));
    vWorld->SetCurrentObject(h);
}

void CQuiltView::ZoomBy(float factor) {
    vZoom = std::clamp(vZoom * factor, kNearest, kFarthest);
    Invalidate();
}

void CQuiltView::OnCommand(int command) {
    if (command >= kCmdPickBase && command < kCmdPickEnd) SelectPicked(command);
    switch (command) {
        case kCmdZoomIn:
            ZoomBy(0.5f);
            break;
        case kCmdZoomOut:
            ZoomBy(2.0f);
            break;
        case kCmdRuler:
            vRuler = !vRuler;
            Invalidate();
            break;
        default:
            // The panel tells of the backup that was taken.
            if (RunAreaCommand(command, vCursor, vDrag.anchor, host)) host.Changed(Change::World);
            break;
    }
}
