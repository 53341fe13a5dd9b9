// The commands of the list's two menus.

#include "editor/commands.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/select_view.h"
#include "editor/view/object_clip.h"
#include "editor/view/view_state.h"
#include "engine/copy_object.h"
#include "platform/platform.h"

#include <string>
#include <utility>

namespace {

void CopyToClip(Handle h) {
    const Dobject* node = vWorld->Node(h);
    if (!node) return;
    if (auto copy = CopyObject(*node)) vObjectClip = std::move(copy);
}

void PasteClip(Handle parent) {
    Dobject* under = vWorld->Node(parent);
    const Dobject* clip = FreshObjectClip();
    if (under && clip) CopyObject(*under, *clip);
}

}  // namespace

struct CSelectView::Binding {
    int command;
    Action action;
};

const CSelectView::Binding CSelectView::kBindings[] = {
    {kCmdAddBoard, &CSelectView::AddBoard},
    {kCmdAddObject, &CSelectView::AddObject},
    {kCmdDuplicateBoard, &CSelectView::DuplicateBoard},
    {kCmdPasteBoard, &CSelectView::PasteBoard},
    {kCmdPasteOnBoard, &CSelectView::PasteOnBoard},
    {kCmdPasteOnObject, &CSelectView::PasteOnObject},
    {kCmdCopyBoard, &CSelectView::CopyBoard},
    {kCmdCopyObject, &CSelectView::CopyCurrentObject},
    {kCmdDelete, &CSelectView::Delete},
    {kCmdBoardName, &CSelectView::NameBoard},
    {kCmdObjectName, &CSelectView::NameObject},
    {kCmdProgramming, &CSelectView::EditScript},
    {kCmdLocation, &CSelectView::EditLocation},
    {kCmdSize, &CSelectView::EditSize},
    {kCmdViewport, &CSelectView::EditViewport},
    {kCmdExpandAll, &CSelectView::ExpandAll},
    {kCmdHide, &CSelectView::Hide},
};

void CSelectView::OnCommand(int command) {
    const platform::WaitCursor wait;
    if (command > kCmdMoveBase) {
        MoveTo(command - kCmdMoveBase);
        return;
    }
    for (const Binding& binding : kBindings)
        if (binding.command == command) (this->*binding.action)();
}

// --- adding and deleting -----------------------------------------------------------------------

void CSelectView::AddBoard() {
    vWorld->ShowBoard(vWorld->NewBoard());
    host.RedrawAll();
    host.EditName();
    Invalidate();
}

void CSelectView::AddObject() {
    vWorld->NewObject(HandleGuard(vWorld->GetCurrentObject()), 0, 0);
    host.RedrawAll();
    host.EditName();
    Invalidate();
}

void CSelectView::Delete() {
    {
        const HandleGuard h(vWorld->GetCurrentObject());
        const char* name = vWorld->GetName(h);
        if (!name) return;
        const char* question = vWorld->Node(h)->IsBoard() ? "Delete Board?" : "Delete Object?";
        if (!vPlatform->MessageBox(question, name, platform::Buttons::OkCancel,
                                   platform::Icon::Warning))
            return;
        vWorld->EraseObject(h);
    }
    SelectFirstBoard();
}

// --- copies ------------------------------------------------------------------------------------

void CSelectView::CopyBoard() { CopyToClip(HandleGuard(vWorld->GetCurrentBoard())); }

void CSelectView::CopyCurrentObject() { CopyToClip(HandleGuard(vWorld->GetCurrentObject())); }

void CSelectView::DuplicateBoard() {
    const HandleGuard h(vWorld->GetCurrentBoard());
    if (const Dobject* board = vWorld->Node(h)) CopyObject(vWorld->Root(), *board);
    Invalidate();
}

void CSelectView::PasteBoard() {
    PasteClip(kRootHandle);
    Invalidate();
}

void CSelectView::PasteOnBoard() {
    PasteClip(HandleGuard(vWorld->GetCurrentBoard()));
    Invalidate();
}

void CSelectView::PasteOnObject() {
    PasteClip(HandleGuard(vWorld->GetCurrentObject()));
    host.RedrawAll();
}

void CSelectView::MoveTo(std::int32_t id) {
    {
        const HandleGuard h(vWorld->GetCurrentObject());
        const HandleGuard target(vWorld->GetHandleById(kRootHandle, id));
        vWorld->MoveObject(h, target);
    }
    SelectFirstBoard();
}

// --- properties --------------------------------------------------------------------------------

void CSelectView::NameBoard() {
    host.EditName();
    if (vPanelMode == kPanelProperties)
        host.RedrawAll();
    else
        Invalidate();
}

void CSelectView::NameObject() {
    host.EditName();
    host.RedrawAll();
}

void CSelectView::EditLocation() {
    DoLocation().Run();
    host.RedrawAll();
}

void CSelectView::EditSize() {
    DoSize().Run();
    host.RedrawAll();
}

void CSelectView::EditViewport() {
    DoViewport().Run();
    host.RedrawAll();
}

void CSelectView::ExpandAll() {
    vWorld->ExpandAll(HandleGuard(vWorld->GetCurrentObject()));
    host.RedrawAll();
}

void CSelectView::Hide() {
    const HandleGuard h(vWorld->GetCurrentObject());
    vWorld->SetHidden(h, vWorld->IsHidden(h) ? 0 : 1);
    host.RedrawAll();
}
