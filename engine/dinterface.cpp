#include "engine/dinterface.h"

#include "engine/report.h"

#include <cstdlib>
#include <new>

Dinterface* vWorld = nullptr;

const VideoMode& GetVideoMode(int mode) {
    static constexpr VideoMode kModes[kVideoModes] = {
        {40, 30, 320, 240, 240},
        {80, 60, 640, 480, 480},
        {100, 75, 800, 600, 592},
        {128, 96, 1024, 768, 768},
    };
    constexpr int kUsual = 1;
    return kModes[mode >= 0 && mode < kVideoModes ? mode : kUsual];
}

namespace {

template <typename Part>
std::unique_ptr<Part> MakePart(const char* message) {
    std::unique_ptr<Part> part(new (std::nothrow) Part);
    if (!part) {
        Fatal(message, __FILE__, __LINE__);
        std::exit(EXIT_FAILURE);
    }
    return part;
}

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

Dinterface::Dinterface() {
    vWorld = this;
    vMain = MakePart<Dobject>("Unable to create vMain");
    vMain->name = kRootName;
    slots[kRootHandle] = {1, vMain.get()};
    vFont = MakePart<Dfont>("Unable to create vFont");
    vFont->LoadDefault();
    vMain->font = vFont.get();
    vSoundBox = MakePart<SoundBox>("Unable to create vSoundBox");
    vCompiler = MakePart<Compiler>("Unable to create vCompiler");
    Trace("Dinterface created\n");
}

Dinterface::~Dinterface() {
    vFont.reset();
    vMain.reset();
    vCompiler.reset();
    Trace("Dinterface deleted\n");
    vWorld = nullptr;
}

Handle Dinterface::AddHandle(Dobject* object) {
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

void Dinterface::ReleaseHandle(Handle h) {
    if (h <= kRootHandle || h >= kMaxHandles) return;
    Slot& slot = slots[static_cast<std::size_t>(h)];
    if (--slot.count < 1) slot = {};
}

Dobject* Dinterface::Node(Handle h) const {
    if (h < 0 || h >= kMaxHandles) return nullptr;
    return slots[static_cast<std::size_t>(h)].object;
}

Handle Dinterface::GetHandleById(Handle h, std::int32_t id) {
    Dobject* node = Node(h);
    Dobject* found = node ? FindById(*node, id) : nullptr;
    return found ? AddHandle(found) : kNoHandle;
}

// 0 is the root's id, and the state of a world in which nothing was selected yet.
Handle Dinterface::GetCurrentObject() {
    return currentObject ? GetHandleById(kRootHandle, currentObject) : kNoHandle;
}

Handle Dinterface::GetCurrentBoard() {
    return currentBoard ? GetHandleById(kRootHandle, currentBoard) : kNoHandle;
}

Dobject* Dinterface::Editable(Handle h) const {
    Dobject* node = Node(h);
    return node == vMain.get() ? nullptr : node;
}

Handle Dinterface::GetParent(Handle h) {
    Dobject* node = Node(h);
    return node && node->parent ? AddHandle(node->parent) : kNoHandle;
}

std::int32_t Dinterface::GetId(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->id : -1;
}

void Dinterface::SetCurrentObject(Handle h) {
    if (const Dobject* node = Node(h)) currentObject = node->id;
}

std::int32_t Dinterface::GetProperty(Handle h, int index) const {
    const Dobject* node = Node(h);
    if (!node) return 0;
    switch (index) {
        case kPosX:
            return node->posx;
        case kPosY:
            return node->posy;
        case kPosZ:
            return node->posz;
        case kWidth:
            return node->width;
        case kHeight:
            return node->height;
        case kViewX:
            return node->viewx;
        case kViewY:
            return node->viewy;
        case kViewW:
            return node->vieww;
        case kViewH:
            return node->viewh;
        default:
            return 0;
    }
}

void Dinterface::SetProperty(Handle h, int index, std::int32_t value) {
    Dobject* node = Editable(h);
    if (!node) return;
    const auto endExpansion = [node] { node->evieww = node->eviewh = 0; };
    switch (index) {
        case kPosX:
            node->posx = value;
            break;
        case kPosY:
            node->posy = value;
            break;
        case kPosZ:
            ReSort(*node, value);
            break;
        case kWidth:
            node->Resize(value, node->height);
            break;
        case kHeight:
            node->Resize(node->width, value);
            break;
        case kViewX:
            node->viewx = value;
            break;
        case kViewY:
            node->viewy = value;
            break;
        // The grid grows first, so that a size that is refused leaves the viewport as it was.
        case kViewW:
            if (value > node->width && !node->Resize(value, node->height)) break;
            endExpansion();
            node->vieww = value;
            break;
        case kViewH:
            if (value > node->height && !node->Resize(node->width, value)) break;
            endExpansion();
            node->viewh = value;
            break;
        default:
            break;
    }
}

const char* Dinterface::GetName(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->name.c_str() : nullptr;
}

void Dinterface::SetName(Handle h, const std::string& name) {
    if (Dobject* node = Editable(h)) node->name = name;
}

const char* Dinterface::GetScript(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->script.c_str() : nullptr;
}

void Dinterface::SetScript(Handle h, const std::string& script) {
    if (Dobject* node = Editable(h)) node->script = script;
}

int Dinterface::GetTile(Handle h, int x, int y, int& chr, int& fg, int& bg, int& attrib) const {
    Dobject* node = Node(h);
    const Dtile* tile = node ? node->GetTile(x, y) : nullptr;
    if (!tile) return 0;
    chr = Signed(tile->chr);
    fg = Signed(tile->fg);
    bg = Signed(tile->bg);
    attrib = Signed(tile->attrib);
    return 1;
}

void Dinterface::SetTile(Handle h, int x, int y, int chr, int fg, int bg, int attrib) {
    if (Dobject* node = Editable(h)) node->PutTile(x, y, chr, fg, bg, attrib);
}

void Dinterface::BackupTiles(Handle h) {
    if (Dobject* node = Editable(h)) node->BackupTiles();
}

void Dinterface::RestoreTiles(Handle h) {
    if (Dobject* node = Editable(h)) node->RestoreTiles();
}

bool Dinterface::HasBackup(Handle h) const {
    const Dobject* node = Node(h);
    return node && !node->undoTiles.empty();
}

int Dinterface::IsExpanded(Handle h) const {
    const Dobject* node = Node(h);
    return node && node->evieww;
}

void Dinterface::SetExpanded(Handle h, int on) {
    Dobject* node = Node(h);
    if (!node) return;
    if (on == 1)
        node->Expand();
    else
        node->Collapse();
}

void Dinterface::ExpandAll(Handle h) {
    if (Dobject* node = Node(h)) ExpandTree(*node);
}

int Dinterface::IsHidden(Handle h) const {
    const Dobject* node = Node(h);
    return node ? node->hidden : 0;
}

void Dinterface::SetHidden(Handle h, int value) {
    if (Dobject* node = Node(h)) node->hidden = value;
}

void Dinterface::MoveTo(Handle h, int x, int y) {
    Dobject* node = Node(h);
    if (!node || !node->parent) return;
    node->parent->SubOffset(x, y);
    node->posx = node->parent->viewx + x;
    node->posy = node->parent->viewy + y;
}

void Dinterface::WorldToLocal(Handle h, int& x, int& y) const {
    const Dobject* node = Node(h);
    if (!node) return;
    node->SubOffset(x, y);
    x += node->viewx;
    y += node->viewy;
}

void Dinterface::LocalToWorld(Handle h, int& x, int& y) const {
    if (const Dobject* node = Node(h)) node->AddOffset(x, y);
}

Handle Dinterface::SpawnObject(Handle parent, const std::string& name, int w, int h, int z) {
    Dobject* under = Node(parent);
    if (!under) return kNoHandle;
    Dobject* node = under->Spawn(TakeId(), z);
    node->Create(name, w, h);
    return AddHandle(node);
}

void Dinterface::EraseObject(Handle h) {
    Dobject* node = Node(h);
    if (!node || !node->parent || vMain->children.size() < 2) return;
    slots[static_cast<std::size_t>(h)] = {};
    node->parent->Erase(*node);
}

void Dinterface::MoveObject(Handle h, Handle newParent) {
    Dobject* node = Node(h);
    Dobject* under = Node(newParent);
    if (!node || !under || !node->parent || IsWithin(under, *node)) return;
    std::unique_ptr<Dobject> own = node->parent->UnLink(*node);
    own->parent = under;
    under->Link(std::move(own));
}

void MakeFreshBoard(Dobject& node, const std::string& name, const VideoMode& mode) {
    constexpr Dtile kRing{176, 16, 32, kAttribSolid};
    if (!node.Create(name, mode.width, mode.height)) return;
    Dtile* tile = node.tiles.data();
    for (int y = 0; y < node.height; ++y) {
        for (int x = 0; x < node.width; ++x) {
            const bool edge = x == 0 || y == 0 || x == node.width - 1 || y == node.height - 1;
            *tile++ = edge ? kRing : kBlankTile;
        }
    }
    node.RedrawTiles();
}

std::int32_t Dinterface::NewBoard() {
    Dobject* board = vMain->Spawn_Back(TakeId(), 0);
    MakeFreshBoard(*board, "NewBoard", GetVideoMode(videoMode));
    currentObject = currentBoard = board->id;
    return board->id;
}

std::int32_t Dinterface::NewObject(Handle parent, int x, int y) {
    const std::string name = "NewObject" + std::to_string(nextId);
    const HandleGuard h(SpawnObject(parent, name, 1, 1, 0));
    if (h == kNoHandle) return currentObject;
    SetTile(h, 0, 0, 1, 15, 1, kAttribSolid);
    SetProperty(h, kPosX, x);
    SetProperty(h, kPosY, y);
    return currentObject = GetId(h);
}

void Dinterface::ShowBoard(std::int32_t id) {
    if (!vMain) {
        Fatal("vMain doesn't exist", __FILE__, __LINE__);
        return;
    }
    for (const auto& board : vMain->children) {
        if (board->id == id)
            board->posx = board->posy = 0;
        else
            board->posy = GetVideoMode(videoMode).parkingRow;
    }
}

void Dinterface::RedrawAll() {
    for (const auto& board : vMain->children) board->RedrawTiles();
}
