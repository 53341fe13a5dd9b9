#include "engine/handle_table.h"

#include "engine/report.h"

Handle HandleTable::AddHandle(Dobject* object) {
    for (Handle h = 0; h < kMaxHandles; ++h) {
        Slot& slot = slots[static_cast<std::size_t>(h)];
        if (!slot.object) {
            slot = {1, object};
            return h;
        }
        if (slot.object->id == object->id) {
            ++slot.count;
            return h;
        }
    }
    ShowMessage("Error: Max Handles reached", "Oh No!!");
    return kNoHandle;
}

void HandleTable::ReleaseHandle(Handle h) {
    if (h <= kRootHandle || h >= kMaxHandles) return;
    Slot& slot = slots[static_cast<std::size_t>(h)];
    if (--slot.count < 1) slot = {};
}

Dobject* HandleTable::Node(Handle h) const {
    if (h < 0 || h >= kMaxHandles) return nullptr;
    return slots[static_cast<std::size_t>(h)].object;
}

Dobject* HandleTable::Editable(Handle h) const {
    Dobject* node = Node(h);
    return node == Node(kRootHandle) ? nullptr : node;
}
