// The list at the left: the tree of boards and objects, painted a row a node. A click selects,
// and the two menus do to the selected node what concerns it as a whole.
#pragma once

#include "editor/shell/panel_host.h"
#include "engine/bitmap.h"
#include "platform/menu.h"
#include "platform/window.h"

#include <cstdint>

class CSelectView final : public platform::WindowEvents {
public:
    explicit CSelectView(PanelHost& frame);

    void Attach(platform::Window& own) { window = &own; }
    void Invalidate() { window->Invalidate(); }

    void OnDraw(platform::Window& own) override;
    bool TakesKeys() const override { return true; }
    void OnKeyDown(int code) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnLButtonDblClk(bool ctrl, platform::Point at) override;
    void OnRButtonDown(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;
    void OnMouseWheel(int delta) override;
    /// A choice from one of the two menus; other numbers do nothing.
    void OnCommand(int command);

private:
    enum ListMode : std::int32_t { kIdle = 0, kScrolling = 1, kPicking = 2 };

    using Action = Change (CSelectView::*)();
    struct Binding;
    static const Binding kBindings[];

    void PickRow(int y);
    /// By its place in the list, brought into sight; one beyond an end is that at the end.
    void SelectRow(int row);
    int RowsInSight() const;
    void RowMenu();
    void SwapPanel();
    int RunMenu(platform::Point at);

    // commands
    Change AddBoard();
    Change AddObject();
    Change DuplicateBoard();
    Change PasteBoard();
    Change PasteOnBoard();
    Change PasteOnObject();
    Change CopyBoard();
    Change CopyCurrentObject();
    Change Delete();
    Change NameBoard();
    Change NameObject();
    Change EditScript();
    template <typename Dialog>
    Change Edit();
    Change ExpandAll();
    Change Hide();
    Change MoveTo(std::int32_t id);

    PanelHost& host;
    platform::Window* window = nullptr;

    platform::Menu vBoardMenu;
    platform::Menu vObjMenu;
    Bitmap vListBitmap;  ///< null until the first repaint
    std::int32_t vListW = 0, vListH = 0;
    std::int32_t vRowX = 0, vRowY = 0;  ///< scroll in rows of 10 pixels, from 0
    ListMode vListMode = kIdle;
    platform::Point vPress;     ///< window pixel where a scroll drag began
    platform::Point vPressRow;  ///< vRowX, vRowY then
};
