#include "engine/copy_object.h"

#include "engine/dinterface.h"
#include "engine/report.h"

#include <new>

namespace {

bool Complete(Dobject& parent, Dobject& copy, const Dobject& source);

bool CopyInto(Dobject& copy, const Dobject& source) {
    try {
        copy.tiles = source.tiles;
    } catch (const std::bad_alloc&) {
        Fatal("Unable to Create Object vSurf", __FILE__, __LINE__);
        return false;
    }
    copy.name = source.name;
    copy.width = source.width;
    copy.height = source.height;
    Trace("%s->Create(%i,%i)\n", copy.name.c_str(), copy.width, copy.height);
    copy.viewx = source.viewx;
    copy.viewy = source.viewy;
    copy.vieww = source.vieww;
    copy.viewh = source.viewh;
    copy.script = source.script;
    for (const auto& child : source.children)
        Complete(copy, *copy.Spawn(vWorld->TakeId(), child->posz), *child);
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
