#include "engine/copy_object.h"

#include "engine/dinterface.h"

namespace {

bool Complete(Dobject& parent, Dobject& copy, const Dobject& source);

// Children stand in the order of their z already, unless a node called like the root sorted them
// the other way.
void CopyChild(Dobject& copy, const Dobject& child) {
    const std::int32_t id = vWorld->TakeId();
    const bool last = copy.children.empty() || copy.children.back()->posz >= child.posz;
    Dobject* made = last ? copy.SpawnLast(id, child.posz) : copy.Spawn(id, child.posz);
    Complete(copy, *made, child);
}

bool CopyInto(Dobject& copy, const Dobject& source) {
    if (!copy.Create(source.name, source.width, source.height)) return false;
    copy.tiles = source.tiles;
    // The source's surface shows its tiles, so the copy's may be painted from it.
    if (source.vSurf)
        blit(source.vSurf.get(), copy.vSurf.get(), 0, 0, 0, 0, source.vSurf->w, source.vSurf->h);
    else
        copy.vSurf.reset();
    copy.viewx = source.viewx;
    copy.viewy = source.viewy;
    copy.vieww = source.vieww;
    copy.viewh = source.viewh;
    copy.script = source.script;
    for (const auto& child : source.children) CopyChild(copy, *child);
    return true;
}

// Deletes a copy that cannot be completed.
bool Complete(Dobject& parent, Dobject& copy, const Dobject& source) {
    copy.posx = source.posx;
    copy.posy = source.posy;
    if (CopyInto(copy, source)) return true;
    parent.Erase(copy);
    return false;
}

}  // namespace

Dobject* CopyObject(Dobject& parent, const Dobject& source) {
    const bool isRoot = &parent == &vWorld->Root();
    const std::int32_t id = vWorld->TakeId();
    Dobject* copy = isRoot ? parent.Spawn_Back(id, source.posz) : parent.Spawn(id, source.posz);
    return Complete(parent, *copy, source) ? copy : nullptr;
}

std::unique_ptr<Dobject> CopyObject(const Dobject& source) {
    auto copy = std::make_unique<Dobject>(vWorld->TakeId());
    copy->posz = source.posz;
    if (!CopyInto(*copy, source)) return nullptr;
    return copy;
}
