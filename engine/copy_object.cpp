#include "engine/copy_object.h"

#include "engine/dinterface.h"

namespace {

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
    for (const auto& child : source.children) CopyObject(copy, *child);
    return true;
}

}  // namespace

Dobject* CopyObject(Dobject& parent, const Dobject& source) {
    const bool isRoot = &parent == &vWorld->Root();
    const std::int32_t id = vWorld->TakeId();
    Dobject* copy = isRoot ? parent.Spawn_Back(id, source.posz) : parent.Spawn(id, source.posz);
    copy->posx = source.posx;
    copy->posy = source.posy;
    if (CopyInto(*copy, source)) return copy;
    parent.Erase(*copy);
    return nullptr;
}

std::unique_ptr<Dobject> CopyObject(const Dobject& source) {
    auto copy = std::make_unique<Dobject>();
    copy->id = vWorld->TakeId();
    copy->posz = source.posz;
    if (!CopyInto(*copy, source)) return nullptr;
    return copy;
}
