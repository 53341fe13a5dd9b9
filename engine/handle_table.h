// The table of handles: what the editor holds in place of pointers to nodes.
//
// A handle is good for one event, an id for as long as its node lives. A bad handle is one outside
// 0 to 1023, or of a free slot: whoever is given one does nothing.
#pragma once

#include "engine/dobject.h"

#include <array>
#include <cstdint>

using Handle = std::int32_t;

inline constexpr int kMaxHandles = 1024;
inline constexpr Handle kNoHandle = -1;
inline constexpr Handle kRootHandle = 0;

class HandleTable {
public:
    /// A slot that holds the node, counted up by one; -1, with a message, when all are taken.
    Handle AddHandle(Dobject* object);
    void ReleaseHandle(Handle h);
    /// The node of a handle, or null: for the operations that make or read whole nodes.
    Dobject* Node(Handle h) const;
    /// The same, but null for the root, whose name, size and tiles nothing changes.
    Dobject* Editable(Handle h) const;

protected:
    /// The node of kRootHandle, whose slot is never free.
    void HoldRoot(Dobject& root) { slots[kRootHandle] = {1, &root}; }
    /// Frees the slot of a node that is about to go.
    void Forget(Handle h) { slots[static_cast<std::size_t>(h)] = {}; }

private:
    struct Slot {
        std::int32_t count = 0;
        Dobject* object = nullptr;
    };
    std::array<Slot, kMaxHandles> slots;
};
