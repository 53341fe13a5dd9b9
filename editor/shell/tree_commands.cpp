// The commands of the list's two menus.

#include "editor/commands.h"
#include "editor/script/do_programming.h"
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

Change CopyToClip(Handle h) {
    const Dobject* node = vWorld->Node(h);
    if (auto copy = node ? CopyObject(*node) : nullptr) vObjectClip = std::move(copy);
    return Change::Nothing;
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
    {kCmdLocation, &CSelectView::Edit<DoLocation>},
    {kCmdSize, &CSelectView::Edit<DoSize>},
    {kCmdViewport, &CSelectView::Edit<DoViewport>},
    {kCmdExpandAll, &CSelectView::ExpandAll},
    {kCmdHide, &CSelectView::Hide},
};

void CSelectView::OnCommand(int command) {
    const platform::WaitCursor wait;
    if (command > kCmdMoveBase) return host.Changed(MoveTo(command - kCmdMoveBase));
    for (const Binding& binding : kBindings)
        if (binding.command == command) host.Changed((this->*binding.action)());
}

// --- adding and deleting -----------------------------------------------------------------------

Change CSelectView::AddBoard() {
    vWorld->ShowBoard(vWorld->NewBoard());
    host.Changed(Change::World);
    host.EditName();
    return Change::List;
}

Change CSelectView::AddObject() {
    vWorld->NewObject(HandleGuard(vWorld->GetCurrentObject()), 0, 0);
    host.Changed(Change::World);
    host.EditName();
    return Change::List;
}

Change CSelectView::Delete() {
    {
        const HandleGuard h(vWorld->GetCurrentObject());
        const char* name = vWorld->GetName(h);
        if (!name) return Change::Nothing;
        const char* question = vWorld->Node(h)->IsBoard() ? "Delete Board?" : "Delete Object?";
        if (!vPlatform->MessageBox(question, name, platform::Buttons::OkCancel,
                                   platform::Icon::Warning))
            return Change::Nothing;
        vWorld->EraseObject(h);
    }
    vWorld->SelectTreeRow(0);
    return Change::World;
}

// --- copies ------------------------------------------------------------------------------------

Change CSelectView::CopyBoard() { return CopyToClip(HandleGuard(vWorld->GetCurrentBoard())); }

Change CSelectView::CopyCurrentObject() {
    return CopyToClip(HandleGuard(vWorld->GetCurrentObject()));
}

Change CSelectView::DuplicateBoard() {
    const HandleGuard h(vWorld->GetCurrentBoard());
    if (const Dobject* board = vWorld->Node(h)) CopyObject(vWorld->Root(), *board);
    return Change::List;
}

Change CSelectView::PasteBoard() {
    PasteClip(kRootHandle);
    return Change::List;
}

Change CSelectView::PasteOnBoard() {
    PasteClip(HandleGuard(vWorld->GetCurrentBoard()));
    return Change::List;
}

Change CSelectView::PasteOnObject() {
    PasteClip(HandleGuard(vWorld->GetCurrentObject()));
    return Change::World;
}

Change CSelectView::MoveTo(std::int32_t id) {
    {
        const HandleGuard h(vWorld->GetCurrentObject());
        const HandleGuard target(vWorld->GetHandleById(kRootHandle, id));
        vWorld->MoveObject(h, target);
    }
    vWorld->SelectTreeRow(0);
    return Change::World;
}

// --- properties --------------------------------------------------------------------------------

Change CSelectView::NameBoard() {
    host.EditName();
    return vPanelMode == kPanelProperties ? Change::World : Change::List;
}

Change CSelectView::NameObject() {
    host.EditName();
    return Change::World;
}

Change CSelectView::EditScript() {
    DoProgramming().Run();
    return Change::Nothing;
}

template <typename Dialog>
Change CSelectView::Edit() {
    Dialog().Run();
    return Change::World;
}

Change CSelectView::ExpandAll() {
    vWorld->ExpandAll(HandleGuard(vWorld->GetCurrentObject()));
    return Change::World;
}

Change CSelectView::Hide() {
    const HandleGuard h(vWorld->GetCurrentObject());
    vWorld->SetHidden(h, vWorld->IsHidden(h) ? 0 : 1);
    return Change::World;
}
