#include "editor/shell/select_view.h"

#include "editor/commands.h"
#include "editor/shell/tree_menus.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"
#include "platform/keys.h"

#include <algorithm>
#include <string>

namespace {

constexpr int kRowHeight = 10;
constexpr int kTop = 3;      ///< of the title, pixels
constexpr int kMenuAt = 30;  ///< where a menu opens by key, pixels from the left
constexpr int kWheelRows = 5;

// The list follows the pointer, a row for each ten pixels.
int ScrolledRow(int pressRow, int at, int press) {
    return std::max(static_cast<int>(pressRow - (at - press) * 0.1), 0);
}

// The selected row in words, for who cannot see the list.
std::string Describe(const Dobject* node) {
    if (!node) return "The selected row is not among the rows shown";
    std::string text = node->IsBoard() ? "Board " : "Object ";
    text += node->name + ", z " + std::to_string(node->posz);
    if (node->hidden) text += ", hidden";
    if (!node->IsBoard() && node->parent) text += ", in " + node->parent->name;
    return text;
}

}  // namespace

CSelectView::CSelectView(PanelHost& frame)
    : host(frame), vBoardMenu(MakeBoardMenu()), vObjMenu(MakeObjectMenu()) {}

// --- repaint -----------------------------------------------------------------------------------

void CSelectView::OnDraw(platform::Window& own) {
    const platform::Size size = own.ClientSize();
    if (size.w != vListW || size.h != vListH) {
        vListBitmap.reset();
        vListW = size.w;
        vListH = size.h;
    }
    if (!vListBitmap) vListBitmap = MakeBitmap(vListW, vListH);
    if (!vListBitmap) return;
    const Dobject* selected = vWorld->DrawTreeList(vRowX, vRowY, vListBitmap.get());
    own.ShowPicture({vListBitmap->line, vListW, vListH}, size);
    own.SetDescription(Describe(selected));
}

// --- mouse -------------------------------------------------------------------------------------

void CSelectView::PickRow(int y) {
    vWorld->ClickTreeList(vRowY * kRowHeight, y);
    host.Changed(Change::World);
}

void CSelectView::OnLButtonDown(bool ctrl, platform::Point at) {
    if (ctrl) {
        vPress = at;
        vPressRow = {vRowX, vRowY};
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
    if (ctrl)
        SwapPanel();
    else
        EditScript();
}

void CSelectView::SwapPanel() {
    const HandleGuard h(vWorld->GetCurrentObject());
    const bool toPaint = vPanelMode == kPanelProperties;
    host.PostCommand(toPaint ? kCmdShowPaintPanel : kCmdShowPropertiesPanel);
    vWorld->SetExpanded(h, toPaint ? 1 : 0);
    vPanelMode = toPaint ? kPanelPaint : kPanelProperties;
    host.Changed(Change::World);
}

void CSelectView::OnMouseMove(bool, platform::Point at) {
    if (vListMode == kScrolling) {
        vRowX = ScrolledRow(vPressRow.x, at.x, vPress.x);
        vRowY = ScrolledRow(vPressRow.y, at.y, vPress.y);
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

// --- keys --------------------------------------------------------------------------------------

int CSelectView::RowsInSight() const {
    return std::max((window->ClientSize().h - kTop) / kRowHeight, 1);
}

void CSelectView::SelectRow(int row) {
    row = std::clamp(row, 0, vWorld->TreeRowCount() - 1);
    if (row < 0) return;
    // The title is row 0 of the picture and comes into sight with the first board.
    vRowY = std::max(std::min(vRowY, row == 0 ? 0 : row + 1), row + 2 - RowsInSight());
    vWorld->SelectTreeRow(row);
    host.Changed(Change::World);
}

void CSelectView::RowMenu() {
    const int row = vWorld->SelectedTreeRow();
    if (row >= 0) SelectRow(row);
    OnCommand(RunMenu({kMenuAt, kTop + std::max(row + 1 - vRowY, 0) * kRowHeight}));
}

void CSelectView::OnKeyDown(int code) {
    const int row = vWorld->SelectedTreeRow();
    const int page = std::max(RowsInSight() - 1, 1);
    switch (code) {
        case platform::kKeyUp:
            return SelectRow(row - 1);
        case platform::kKeyDown:
            return SelectRow(row + 1);
        case platform::kKeyPageUp:
            return SelectRow(row - page);
        case platform::kKeyPageDown:
            return SelectRow(row + page);
        case platform::kKeyHome:
            return SelectRow(0);
        case platform::kKeyEnd:
            return SelectRow(vWorld->TreeRowCount() - 1);
        case platform::kKeyEnter:
            EditScript();
            break;
        case platform::kKeyEnter | platform::kWithCtrl:
            return SwapPanel();
        case platform::kKeyApps:
            return RowMenu();
        case platform::kKeyDelete:
            return host.Changed(Delete());
        case platform::kKeyEscape:
            return host.FocusEditView();
        default:
            break;
    }
}

// --- menus -------------------------------------------------------------------------------------

int CSelectView::RunMenu(platform::Point at) {
    // Where there is no board yet, the menu of boards adds one.
    bool isBoard = true;
    {
        const HandleGuard h(vWorld->GetCurrentObject());
        const Dobject* node = vWorld->Node(h);
        isBoard = !node || node->IsBoard();
        if (!isBoard) ShowNode(vObjMenu, *node);
    }
    // Below the row, so that it stays in sight.
    const platform::Point below{at.x, (at.y / kRowHeight + 1) * kRowHeight};
    const int command =
        window->TrackPopupMenu(isBoard ? vBoardMenu : vObjMenu, window->ClientToScreen(below));
    DropMoveMenu(vObjMenu);
    return command;
}

void CSelectView::OnRButtonDown(bool, platform::Point at) {
    PickRow(at.y);
    OnCommand(RunMenu(at));
}
