#include "docs/screens/album.h"

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"

namespace {

constexpr int kTile = 8;

QPoint At(int x, int y) { return {x * kTile + kTile / 2, y * kTile + kTile / 2}; }

// The row of the list with the current object, counted from the title.
int CurrentRow() {
    int row = 0, found = 0;
    const std::function<void(const Dobject&)> walk = [&](const Dobject& parent) {
        for (const auto& child : parent.children) {
            ++row;
            if (child->id == vWorld->currentObject) found = row;
            walk(*child);
        }
    };
    walk(vWorld->Root());
    return found;
}

QPoint OnList() {
    constexpr int kRow = 10;
    return {30, CurrentRow() * kRow + kRow / 2};
}

}  // namespace

void Studio::Select(const char* board, const char* object) {
    for (const auto& root : vWorld->Root().children) {
        if (root->name != board) continue;
        vWorld->ShowBoard(root->id);
        vWorld->currentBoard = vWorld->currentObject = root->id;
        for (const auto& child : root->children)
            if (child->name == object) vWorld->currentObject = child->id;
    }
    app.Frame().Changed(Change::World);
    Settle();
}

void Studio::ShowPanel(PanelMode panelMode) {
    vPanelMode = panelMode;
    app.Frame().OnCommand(panelMode == kPanelPaint ? kCmdShowPaintPanel : kCmdShowPropertiesPanel);
    Settle();
}

void TakeWindows(Studio& studio) {
    studio.Edit().setFocus();
    studio.Select("Harbour");
    vBrush = {206, 254, 122, 1};
    studio.ShowPanel(kPanelPaint);
    studio.camera.Save(studio.Panel().grab(), "panel-paint.png");
    studio.camera.TakeMenu("menu-areas.png", studio.Edit(), At(30, 31), At(44, 38), {}, {"Fa&de"});
    studio.camera.TakeMenu("menu-shapes.png", studio.Edit(), At(16, 4), At(40, 16),
                           Qt::ControlModifier, {"&Line"});

    studio.Select("Harbour", "keeper");
    studio.ShowPanel(kPanelProperties);
    studio.camera.Save(studio.Panel().grab(), "panel-properties.png");
    studio.camera.TakeMenu("menu-object.png", studio.List(), OnList(), OnList());
    studio.Select("Harbour");
    studio.camera.TakeMenu("menu-board.png", studio.List(), OnList(), OnList(), {}, {"&Add"});
    studio.Select("Harbour", "keeper");
    studio.camera.Save(studio.window.grab(), "main-window.png");
    studio.ShowPanel(kPanelPaint);
}
