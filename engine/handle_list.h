// Handle lists: the answers to queries for several nodes.
#pragma once

#include "engine/handle_table.h"

#include <vector>

inline constexpr int kMaxHandleLists = 256;

class HandleLists {
public:
    /// The table that the lists' handles are of, and that outlives them.
    explicit HandleLists(HandleTable& handles) : table(handles) {}

    /// The lowest free list, or -1 with a message.
    int FindFreeHandleList();
    /// The nodes that a selector such as ".self.all" names, as seen from h; see handle_list.cpp
    /// for the words. -1 on a bad handle or a null selector. The list must be released.
    int StartHandleList(Handle h, const char* selector);
    /// Every node of h's subtree whose viewport covers a world tile, parents before children.
    int StartHandleListAt(Handle h, int x, int y);
    /// The next element, borrowed from the list; -1 at the end, after which the walk starts
    /// anew.
    Handle NextHandle(int list);
    int CountHandles(int list) const;
    void ReleaseHandleList(int list);

private:
    struct List {
        bool inUse = false;
        std::size_t cursor = 0;
        std::vector<Handle> handles;
    };
    struct SelectorWalk;

    /// False, after the message, when the handle table is full.
    bool Add(List& list, Dobject* node);
    int Open(List& list);
    /// False when the handle table is full and the query must end.
    bool CollectAt(List& list, Dobject& node, int x, int y);

    HandleTable& table;
    std::array<List, kMaxHandleLists> lists;
};
