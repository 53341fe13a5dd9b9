#include "editor/shell/do_object_clip_board.h"

#include "editor/view/object_clip.h"
#include "engine/dinterface.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr const char* kFilter = "QUILT! obj files (*.zobj)|*.zobj||";
constexpr int kAlone = 2;  // DrawObjectMode: the node with its children and nothing else

constexpr Control kControls[] = {
    {kObjectPicture, ControlKind::Picture, "Object clipboard", 7, 7, 256, 218,
     "The object on the clipboard; drag or use the arrow keys to move it"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 234, 232, 29, 13, "Close"},
};
constexpr platform::Form kForm{"Object ClipBoard", 270, 252, "Courier New", 8, kControls};

}  // namespace

void ObjectViewer::Compose(BITMAP* to) {
    if (!vObjectClip) return;
    // The compositor's masks are made for the edit view's bitmap; for this one they are lent.
    const int w = vWorld->Root().width;
    const int h = vWorld->Root().height;
    vWorld->SetViewSize(to->w / kTileSize, to->h / kTileSize);
    {
        const HandleGuard clip(vWorld->AddHandle(vObjectClip.get()));
        vWorld->DrawObjectMode(to, Scroll().x, Scroll().y, clip, kAlone);
    }
    vWorld->SetViewSize(w, h);
    if (window) window->SetDescription(vObjectClip->name);
}

platform::Size ObjectViewer::ContentTiles() const {
    return vObjectClip ? platform::Size{vObjectClip->width, vObjectClip->height} : platform::Size{};
}

void DoObjectClipBoard::Run() {
    FreshObjectClip();
    vPlatform->RunDialog(kForm, *this);
}

void DoObjectClipBoard::Show(const std::string& path) {
    if (!FreshObjectClip() ||
        !vWorld->Import(HandleGuard(vWorld->AddHandle(vObjectClip.get())), path))
        return;
    DoObjectClipBoard().Run();
}

platform::Menu DoObjectClipBoard::FormMenu() {
    return {platform::SubMenu(
        "&File", {platform::Entry("&Load", kObjectLoad), platform::Entry("&Save", kObjectSave)})};
}

platform::WindowEvents* DoObjectClipBoard::PictureEvents(int) { return &viewer; }

void DoObjectClipBoard::OnInit(FormWindow& form) { viewer.Attach(form.Picture(kObjectPicture)); }

void DoObjectClipBoard::OnCommand(FormWindow&, int command) {
    const platform::FileDialog dialog{"", kFilter, kObjectExtension, ""};
    const auto path = command == kObjectLoad ? vPlatform->OpenFileDialog(dialog)
                                             : vPlatform->SaveFileDialog(dialog);
    if (!path || !vObjectClip) return;
    const platform::WaitCursor wait;
    const HandleGuard clip(vWorld->AddHandle(vObjectClip.get()));
    if (command == kObjectLoad)
        vWorld->Import(clip, *path);
    else
        vWorld->Export(clip, *path);
    viewer.Invalidate();
}

void DoObjectClipBoard::OnControl(FormWindow& form, int id) { form.EndDialog(id); }
