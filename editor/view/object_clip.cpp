#include "editor/view/object_clip.h"

#include "engine/dinterface.h"

std::unique_ptr<Dobject> vObjectClip;

Dobject* FreshObjectClip() {
    if (vObjectClip) {
        vObjectClip->font = vWorld->GetFont();
        vObjectClip->RedrawTiles();
    }
    return vObjectClip.get();
}

void MakeObjectClip() {
    // Far from the ids that are given out, since the handle table tells nodes apart by id.
    constexpr std::int32_t kClipId = 101010101;
    vObjectClip = std::make_unique<Dobject>(kClipId);
    vObjectClip->Create("Dummy", 1, 1);
    vObjectClip->PutTile(0, 0, 1, 15, 1, kAttribNone);
}
