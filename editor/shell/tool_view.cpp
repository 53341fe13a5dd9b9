#include "editor/shell/tool_view.h"

#include "editor/commands.h"
#include "editor/shell/panel_ids.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

// What stands behind the viewer and the five disabled buttons is still to come.
constexpr Control kControls[] = {
    {kPropViewer, ControlKind::Picture, "Prop Viewer", 3, 3, 119, 47, 0, 0,
     "The selected board or object", false},
    {kNodeName, ControlKind::Button, "&Name", 125, 3, 51, 13, 0, 0, "Name the node", false},
    {kNodeProgramming, ControlKind::Button, "&Programming", 125, 20, 51, 13, 0, 0,
     "Write the node's script", false},
    {kNodeSize, ControlKind::Button, "&Size", 125, 37, 51, 13, 0, 0, "Size of the grid", false},
    {kNodeViewport, ControlKind::Button, "&Viewport", 179, 3, 51, 13, 0, 0,
     "The part of the grid that is shown", false},
    {kNodeLocation, ControlKind::Button, "&Location", 179, 20, 51, 13, 0, 0,
     "Place and depth of the node", false},
    {kShowAll, ControlKind::CheckBox, "Show All", 179, 39, 43, 10, 0, 0,
     "Show the whole grid of the node"},
    {kToPaint, ControlKind::Button, "PAINT", 233, 3, 51, 13, 0, 0, "Paint with the brush"},
    {kFocusMode, ControlKind::CheckBox, "&Focus", 234, 23, 36, 10, 0, 0,
     "Show the selected node alone"},
    {kHideObjs, ControlKind::CheckBox, "&Hide Objs", 234, 39, 49, 10, 0, 0,
     "Leave out the objects of the selected node"},
};

}  // namespace

const platform::Form& CToolView::Layout() {
    static constexpr platform::Form kForm{"", 287, 53, "OCR A Extended", 10, kControls};
    return kForm;
}

void CToolView::OnFormPaint(FormWindow& form) {
    const HandleGuard h(vWorld->GetCurrentObject());
    form.SetCheck(kFocusMode, vViewMode & kViewFocus);
    form.SetCheck(kHideObjs, vViewMode & kViewHideObjs);
    form.SetCheck(kShowAll, vWorld->IsExpanded(h) != 0);
}

void CToolView::FlipViewMode(FormWindow& form, int id, int flag) {
    vViewMode ^= flag;
    form.SetCheck(id, vViewMode & flag);
}

void CToolView::OnControl(FormWindow& form, int id) {
    switch (id) {
        case kFocusMode:
            FlipViewMode(form, id, kViewFocus);
            break;
        case kHideObjs:
            FlipViewMode(form, id, kViewHideObjs);
            break;
        case kShowAll:
            vWorld->SetExpanded(HandleGuard(vWorld->GetCurrentObject()),
                                form.IsChecked(kShowAll) ? 1 : 0);
            host.RedrawAll();
            break;
        case kToPaint:
            vPanelMode = kPanelPaint;
            host.PostCommand(kCmdShowPaintPanel);
            break;
        default:
            break;
    }
}
