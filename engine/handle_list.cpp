// A selector is a path of words separated by ".". Its first character, normally ".", is not
// looked at. It starts at the node itself when it begins with self, parent, inside, contained
// or mask, else among the node's siblings. The words:
//   top      the root
//   all      every child
//   parent   one level up
//   inside, contained, mask   nothing: they have no meaning for the editor's tree
//   any other, also empty: every child of exactly that name
// Blanks inside a word are dropped.

#include "engine/handle_list.h"

#include "engine/report.h"

#include <algorithm>

namespace {

constexpr std::size_t kMaxWord = 99;
/// A path can go down and up again any number of times, each "all.parent" multiplying the
/// nodes it passes. A walk ends after so many words, far beyond what any real path needs.
constexpr int kMaxSteps = 1'000'000;
/// Nor does any go down more often than this, each time a call deeper.
constexpr int kMaxDescents = 1'000;

bool IsList(int list) { return list >= 0 && list < kMaxHandleLists; }

}  // namespace

int HandleLists::FindFreeHandleList() {
    auto free = std::find_if(lists.begin(), lists.end(), [](const auto& l) { return !l.inUse; });
    if (free == lists.end()) {
        ShowMessage("Error: Max HandleLists reached", "Oh No!!");
        return -1;
    }
    return static_cast<int>(free - lists.begin());
}

bool HandleLists::Add(List& list, Dobject* node) {
    const Handle h = table.AddHandle(node);
    if (h == kNoHandle) return false;
    list.handles.push_back(h);
    return true;
}

struct HandleLists::SelectorWalk {
    HandleLists& owner;
    List& list;
    std::string_view selector;
    int stepsLeft = kMaxSteps;
    int descentsLeft = kMaxDescents;

    /// Takes the word at `position`, without its blanks, and moves behind its ".".
    std::string TakeWord(std::size_t& position) const {
        const std::size_t end = std::min(selector.find('.', position), selector.size());
        std::string word(selector.substr(position, end - position));
        std::erase(word, ' ');
        position = std::min(end + 1, selector.size());
        return word;
    }

    /// False when the walk as a whole must end.
    bool Resolve(std::size_t position, Dobject* node) {
        while (position < selector.size()) {
            if (--stepsLeft < 0) return false;
            const std::string word = TakeWord(position);
            if (word == "top") {
                node = owner.table.Node(kRootHandle);
                continue;
            }
            if (word == "all") return ResolveChildren(position, node, nullptr);
            if (word == "parent") {
                node = node ? node->parent : nullptr;
                if (!node) return true;
                continue;
            }
            if (word == "inside" || word == "contained" || word == "mask") return true;
            if (word.size() > kMaxWord) return true;
            return ResolveChildren(position, node, &word);
        }
        return !node || owner.Add(list, node);
    }

    bool ResolveChildren(std::size_t position, Dobject* node, const std::string* name) {
        if (!node) return true;
        if (--descentsLeft < 0) return false;
        for (const auto& child : node->children) {
            if (name && child->name != *name) continue;
            if (!Resolve(position, child.get())) return false;
        }
        ++descentsLeft;
        return true;
    }
};

int HandleLists::Open(List& list) {
    list.cursor = 0;
    list.inUse = true;
    return static_cast<int>(&list - lists.data());
}

int HandleLists::StartHandleList(Handle h, const char* selector) {
    Dobject* node = table.Node(h);
    if (!node || !selector) return -1;
    const int index = FindFreeHandleList();
    if (index < 0) return -1;
    Trace("%s->Starting handle list .. %i\n", node->name.c_str(), index);

    const std::string_view text(selector);
    const std::string_view path = text.substr(std::min<std::size_t>(1, text.size()));
    constexpr std::string_view kSelf = "self";
    std::size_t position = std::min<std::size_t>(1, text.size());
    Dobject* start = node->parent;
    if (path.starts_with(kSelf)) {
        position = std::min(1 + kSelf.size() + 1, text.size());
        start = node;
    } else if (path.starts_with("parent") || path.starts_with("inside") ||
               path.starts_with("contained") || path.starts_with("mask")) {
        start = node;
    }
    List& list = lists[static_cast<std::size_t>(index)];
    list.inUse = true;
    SelectorWalk{*this, list, text}.Resolve(position, start);
    return Open(list);
}

bool HandleLists::CollectAt(List& list, Dobject& node, int x, int y) {
    int fromLeft = x;
    int fromTop = y;
    node.SubOffset(fromLeft, fromTop);
    const bool covered =
        fromLeft >= 0 && fromLeft < node.vieww && fromTop >= 0 && fromTop < node.viewh;
    if (covered && !Add(list, &node)) return false;
    return std::all_of(node.children.begin(), node.children.end(),
                       [&](const auto& child) { return CollectAt(list, *child, x, y); });
}

int HandleLists::StartHandleListAt(Handle h, int x, int y) {
    Dobject* node = table.Node(h);
    if (!node) return -1;
    const int index = FindFreeHandleList();
    if (index < 0) return -1;
    List& list = lists[static_cast<std::size_t>(index)];
    CollectAt(list, *node, x, y);
    return Open(list);
}

Handle HandleLists::NextHandle(int list) {
    if (!IsList(list)) return kNoHandle;
    List& l = lists[static_cast<std::size_t>(list)];
    if (l.cursor >= l.handles.size()) {
        l.cursor = 0;
        return kNoHandle;
    }
    return l.handles[l.cursor++];
}

int HandleLists::CountHandles(int list) const {
    if (!IsList(list)) return -1;
    return static_cast<int>(lists[static_cast<std::size_t>(list)].handles.size());
}

void HandleLists::ReleaseHandleList(int list) {
    if (!IsList(list)) return;
    List& l = lists[static_cast<std::size_t>(list)];
    for (Handle h : l.handles) table.ReleaseHandle(h);
    l.handles.clear();
    l.inUse = false;
}
