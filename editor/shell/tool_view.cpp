#include "editor/shell/tool_view.h"

#include "editor/commands.h"
#include "editor/shell/panel_ids.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

// The menu bar's own Alt keys (F, S, V, H) go before the panel's.
constexpr Control kControls[] = {
    {kPropViewer, ControlKind::Picture, "Prop Viewer", 3, 3, 119, 47,
     "The selected board or object"},
    {kNodeName, ControlKind::Button, "&Name", 125, 3, 51, 13, "Name the board or object (Alt+N)"},
    {kNodeProgramming, ControlKind::Button, "&Programming", 125, 20, 51, 13,
     "Write its script (Alt+P)"},
    {kNodeSize, ControlKind::Button, "&Size", 125, 37, 51, 13, "Columns and rows of its grid"},
    {kNodeViewport, ControlKind::Button, "&Viewport", 179, 3, 51, 13,
     "How much of its grid is shown"},
    {kNodeLocation, ControlKind::Button, "&Location", 179, 20, 51, 13,
     "Its place and depth (Alt+L)"},
    {kShowAll, ControlKind::CheckBox, "Show All", 179, 39, 43, 10,
     "Show its whole grid (Ctrl and double click in the list does it too)"},
    {kToPaint, ControlKind::Button, "PAINT", 233, 3, 51, 13,
     "Paint with the brush (Ctrl and double click in the list)"},
    {kFocusMode, ControlKind::CheckBox, "&Focus", 234, 23, 36, 10, "Show it alone"},
    {kHideObjs, ControlKind::CheckBox, "&Hide Objs", 234, 39, 49, 10,
     "Leave out the objects on it"},
};

struct NodeButton {
    int id;
    int command;
};
constexpr NodeButton kNodeButtons[] = {
    {kNodeName, kCmdObjectName},   {kNodeProgramming, kCmdProgramming}, {kNodeSize, kCmdSize},
    {kNodeViewport, kCmdViewport}, {kNodeLocation, kCmdLocation},
};

}  // namespace

const platform::Form& CToolView::Layout() {
    static constexpr platform::Form kForm{"", 287, 53, "OCR A Extended", 10, kControls};
    return kForm;
}

platform::WindowEvents* CToolView::PictureEvents(int id) {
    return id == kPropViewer ? &viewer : nullptr;
}

void CToolView::OnInit(FormWindow& form) { viewer.Attach(form.Picture(kPropViewer)); }

void CToolView::OnFormPaint(FormWindow& form) {
    const HandleGuard h(vWorld->GetCurrentObject());
    form.SetCheck(kFocusMode, vViewMode & kViewFocus);
    form.SetCheck(kHideObjs, vViewMode & kViewHideObjs);
    form.SetCheck(kShowAll, vWorld->IsExpanded(h) != 0);
}

void CToolView::OnControl(FormWindow& form, int id) {
    for (const NodeButton& button : kNodeButtons)
        if (button.id == id) return host.RunNodeCommand(button.command);
    host.Changed(Run(form, id));
}

Change CToolView::Run(FormWindow& form, int id) {
    switch (id) {
        // The edit view composes what is asked for at its next repaint.
        case kFocusMode:
        case kHideObjs: {
            const auto flag = id == kFocusMode ? kViewFocus : kViewHideObjs;
            vViewMode ^= flag;
            form.SetCheck(id, vViewMode & flag);
            return Change::Nothing;
        }
        case kShowAll:
            vWorld->SetExpanded(HandleGuard(vWorld->GetCurrentObject()),
                                form.IsChecked(kShowAll) ? 1 : 0);
            return Change::World;
        case kToPaint:
            vPanelMode = kPanelPaint;
            host.PostCommand(kCmdShowPaintPanel);
            return Change::Nothing;
        default:
            return Change::Nothing;
    }
}
