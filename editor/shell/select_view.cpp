#include "editor/shell/select_view.h"

#include "editor/commands.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"

#include <algorithm>

namespace {

constexpr int kRowHeight = 10;
constexpr int kWheelRows = 5;

// The list follows the pointer, a row for each ten pixels.
int ScrolledRow(int pressRow, int at, int press) {
    return std::max(static_cast<int>(pressRow - (at - press) * 0.1), 0);
}

}  // namespace

void CSelectView::OnDraw(platform::Window& own) {
    const platform::Size size = own.ClientSize();
    if (size.w != vListW || size.h != vListH) {
        vListBitmap.reset();
        vListW = size.w;
        vListH = size.h;
    }
    if (!vListBitmap) vListBitmap = MakeBitmap(vListW, vListH);
    if (!vListBitmap) return;
    vWorld->DrawTreeList(vRowX, vRowY, vListBitmap.get());
    own.ShowPicture({vListBitmap->line, vListW, vListH}, size);
}

void CSelectView::PickRow(int y) {
    vWorld->ClickTreeList(vRowY * kRowHeight, y);
    redrawAll();
}

void CSelectView::OnLButtonDown(bool ctrl, platform::Point at) {
    if (ctrl) {
        vPressX = at.x;
        vPressY = at.y;
        vPressRowX = vRowX;
        vPressRowY = vRowY;
        vListMode = kScrolling;
    } else {
        PickRow(at.y);
        vListMode = kPicking;
    }
    window->SetCapture();
}

void CSelectView::OnLButtonUp(bool, platform::Point) {
    vListMode = kIdle;
    window->ReleaseCapture();
}

void CSelectView::OnLButtonDblClk(bool ctrl, platform::Point) {
    if (ctrl) SwapPanel();
}

void CSelectView::SwapPanel() {
    const HandleGuard h(vWorld->GetCurrentObject());
    const bool toPaint = vPanelMode == kPanelProperties;
    postCommand(toPaint ? kCmdShowPaintPanel : kCmdShowPropertiesPanel);
    vWorld->SetExpanded(h, toPaint ? 1 : 0);
    vPanelMode = toPaint ? kPanelPaint : kPanelProperties;
    redrawAll();
}

void CSelectView::OnMouseMove(bool, platform::Point at) {
    if (vListMode == kScrolling) {
        vRowX = ScrolledRow(vPressRowX, at.x, vPressX);
        vRowY = ScrolledRow(vPressRowY, at.y, vPressY);
        Invalidate();
    } else if (vListMode == kPicking) {
        PickRow(at.y);
    }
}

void CSelectView::OnMouseWheel(int delta) {
    if (delta > 0) vRowY += kWheelRows;
    if (delta < 0) vRowY = std::max(vRowY - kWheelRows, 0);
    Invalidate();
}
