#include "engine/node_access.h"

namespace {

constexpr std::int32_t Dobject::*kFields[] = {
    &Dobject::posx,  &Dobject::posy,  &Dobject::posz,  &Dobject::width, &Dobject::height,
    &Dobject::viewx, &Dobject::viewy, &Dobject::vieww, &Dobject::viewh,
};

bool IsProperty(int index) { return index >= kPosX && index <= kViewH; }

void ExpandTree(Dobject& node) {
    node.Expand();
    for (const auto& child : node.children) ExpandTree(*child);
}

bool IsWithin(const Dobject* node, const Dobject& tree) {
    for (; node; node = node->parent)
        if (node == &tree) return true;
    return false;
}

Dobject* FindById(Dobject& tree, std::int32_t id) {
    if (tree.id == id) return &tree;
    Dobject* found = FindNode(id);
    return IsWithin(found, tree) ? found : nullptr;
}

void ReSort(Dobject& node, std::int32_t z) {
    if (Dobject* parent = node.parent) {
        std::unique_ptr<Dobject> own = parent->UnLink(node);
        own->posz = z;
        if (parent->HoldsBoards())
            parent->Link_Back(std::move(own));
        else
            parent->Link(std::move(own));
    } else {
        node.posz = z;
    }
}

}  // namespace

Handle NodeAccess::GetHandleById(Handle h, std::int32_t id) {
    Dobject* node = Node(h);
    Dobject* found = node ? FindById(*node, id) : nullptr;
    return found ? AddHandle(found) : kNoHandle;
}

Handle NodeAccess::GetParent(Handle h) {
    Dobject* node = Node(h);
    return node && node->parent ? AddHandle(node->parent) : kNoHandle;
}

std::int32_t NodeAccess::GetId(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->id : -1;
}

std::int32_t NodeAccess::GetProperty(Handle h, int index) const {
    const Dobject* node = Node(h);
    return node && IsProperty(index) ? node->*kFields[index] : 0;
}

void NodeAccess::SetProperty(Handle h, int index, std::int32_t value) {
    Dobject* node = Editable(h);
    if (!node || !IsProperty(index)) return;
    switch (index) {
        case kPosZ:
            return ReSort(*node, value);
        case kWidth:
            node->Resize(value, node->height);
            return;
        case kHeight:
            node->Resize(node->width, value);
            return;
        // The grid grows first, so that a size that is refused leaves the viewport as it was.
        case kViewW:
            if (value > node->width && !node->Resize(value, node->height)) return;
            node->evieww = node->eviewh = 0;
            break;
        case kViewH:
            if (value > node->height && !node->Resize(node->width, value)) return;
            node->evieww = node->eviewh = 0;
            break;
        default:
            break;
    }
    node->*kFields[index] = value;
}

const char* NodeAccess::GetName(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->name.c_str() : nullptr;
}

void NodeAccess::SetName(Handle h, const std::string& name) {
    if (Dobject* node = Editable(h)) node->name = name;
}

const char* NodeAccess::GetScript(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->script.c_str() : nullptr;
}

void NodeAccess::SetScript(Handle h, const std::string& script) {
    if (Dobject* node = Editable(h)) node->script = script;
}

int NodeAccess::GetTile(Handle h, int x, int y, int& chr, int& fg, int& bg, int& attrib) const {
    Dobject* node = Node(h);
    const Dtile* tile = node ? node->GetTile(x, y) : nullptr;
    if (!tile) return 0;
    chr = Signed(tile->chr);
    fg = Signed(tile->fg);
    bg = Signed(tile->bg);
    attrib = Signed(tile->attrib);
    return 1;
}

void NodeAccess::SetTile(Handle h, int x, int y, int chr, int fg, int bg, int attrib) {
    if (Dobject* node = Editable(h)) node->PutTile(x, y, chr, fg, bg, attrib);
}

void NodeAccess::BackupTiles(Handle h) {
    if (Dobject* node = Editable(h)) node->BackupTiles();
}

void NodeAccess::RestoreTiles(Handle h) {
    if (Dobject* node = Editable(h)) node->RestoreTiles();
}

bool NodeAccess::HasBackup(Handle h) const {
    const Dobject* node = Node(h);
    return node && !node->undoTiles.empty();
}

int NodeAccess::IsExpanded(Handle h) const {
    const Dobject* node = Node(h);
    return node && node->evieww;
}

void NodeAccess::SetExpanded(Handle h, int on) {
    Dobject* node = Node(h);
    if (!node) return;
    if (on == 1)
        node->Expand();
    else
        node->Collapse();
}

void NodeAccess::ExpandAll(Handle h) {
    if (Dobject* node = Node(h)) ExpandTree(*node);
}

int NodeAccess::IsHidden(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->hidden : 0;
}

void NodeAccess::SetHidden(Handle h, int value) {
    if (Dobject* node = Node(h)) node->hidden = value;
}

void NodeAccess::MoveTo(Handle h, int x, int y) {
    Dobject* node = Node(h);
    if (!node || !node->parent) return;
    node->parent->SubOffset(x, y);
    node->posx = node->parent->viewx + x;
    node->posy = node->parent->viewy + y;
}

void NodeAccess::WorldToLocal(Handle h, int& x, int& y) const {
    const Dobject* node = Node(h);
    if (!node) return;
    node->SubOffset(x, y);
    x += node->viewx;
    y += node->viewy;
}

void NodeAccess::LocalToWorld(Handle h, int& x, int& y) const {
    if (const Dobject* node = Node(h)) node->AddOffset(x, y);
}

Handle NodeAccess::SpawnObject(Handle parent, const std::string& name, int w, int h, int z) {
    Dobject* under = Node(parent);
    if (!under) return kNoHandle;
    Dobject* node = under->Spawn(TakeId(), z);
    node->Create(name, w, h);
    return AddHandle(node);
}

void NodeAccess::EraseObject(Handle h) {
    Dobject* node = Node(h);
    if (!node || !node->parent || Node(kRootHandle)->children.size() < 2) return;
    Forget(h);
    node->parent->Erase(*node);
}

void NodeAccess::MoveObject(Handle h, Handle newParent) {
    Dobject* node = Node(h);
    Dobject* under = Node(newParent);
    if (!node || !under || !node->parent || IsWithin(under, *node)) return;
    std::unique_ptr<Dobject> own = node->parent->UnLink(*node);
    own->parent = under;
    under->Link(std::move(own));
}
