#include "engine/dinterface.h"

#include "engine/compositor.h"
#include "engine/report.h"

#include <cstdlib>
#include <new>

Dinterface* vWorld = nullptr;

namespace {

[[noreturn]] void GiveUp(const char* message) {
    Fatal(message, __FILE__, __LINE__);
    std::exit(EXIT_FAILURE);
}

template <typename Part>
std::unique_ptr<Part> MakePart(const char* message) {
    std::unique_ptr<Part> part(new (std::nothrow) Part);
    if (!part) GiveUp(message);
    return part;
}

Bitmap MakeMask(int w, int h, const char* message) {
    Bitmap mask = MakeBitmap(w, h);
    if (!mask) GiveUp(message);
    return mask;
}

bool HasRoot(const Dobject* root) {
    if (!root) Fatal("vMain doesn't exist", __FILE__, __LINE__);
    return root;
}

}  // namespace

Dinterface::Dinterface() : HandleLists(static_cast<HandleTable&>(*this)) {
    vWorld = this;
    vMain = MakePart<Dobject>("Unable to create vMain");
    vMain->name = kRootName;
    HoldRoot(*vMain);
    treeList = std::make_unique<TreeList>(*vMain);
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

// 0 is the root's id, and the state of a world in which nothing was selected yet.
Handle Dinterface::GetCurrentObject() {
    return currentObject ? GetHandleById(kRootHandle, currentObject) : kNoHandle;
}

Handle Dinterface::GetCurrentBoard() {
    return currentBoard ? GetHandleById(kRootHandle, currentBoard) : kNoHandle;
}

void Dinterface::SetCurrentObject(Handle h) {
    if (const Dobject* node = Node(h)) currentObject = node->id;
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
    if (!HasRoot(vMain.get())) return;
    for (const auto& board : vMain->children) {
        if (board->id == id)
            board->posx = board->posy = 0;
        else
            board->posy = GetVideoMode(videoMode).parkingRow;
    }
}

const Dobject* Dinterface::DrawTreeList(int x, int y, BITMAP* bitmap) {
    return treeList->Draw(x, y, bitmap, currentObject, currentBoard);
}

void Dinterface::SelectTreeRow(int row) {
    const Dobject* board = treeList->NodeAt(row);
    if (!board) return;
    currentObject = board->id;
    while (board->parent->parent && !board->IsBoard()) board = board->parent;
    currentBoard = board->id;
    ShowBoard(board->id);
}

void Dinterface::RedrawAll() {
    for (const auto& board : vMain->children) board->RedrawTiles();
}

void Dinterface::SetViewSize(int w, int h) {
    if (!HasRoot(vMain.get())) return;
    Bitmap cells = MakeMask(w, h, "Unable to create vClipBuffer");
    Bitmap pixels = MakeMask(w * kTileSize, h * kTileSize, "Unable to create vSubClipBuffer");
    vMain->width = w;
    vMain->height = h;
    vClipBuffer = std::move(cells);
    vSubClipBuffer = std::move(pixels);
    Trace("--- vSubClipBuffer %i x %i ---\n", vSubClipBuffer->w, vSubClipBuffer->h);
}

void Dinterface::DrawWorld(BITMAP* target, int x, int y) {
    if (!HasRoot(vMain.get())) return;
    vMain->viewx = x;
    vMain->viewy = y;
    vMain->DrawChildren(target);
}

void Dinterface::DrawObjectMode(BITMAP* target, int x, int y, Handle h, int mode) {
    clear_bitmap(vClipBuffer.get());
    Dobject* node = Node(h);
    if (!node) return;
    int originX = 0;
    int originY = 0;
    switch (mode) {
        case 1:
            node->drawChildren = 0;
            DrawWorld(target, x, y);
            node->drawChildren = 1;
            break;
        case 2:
            originX = -node->posx;
            originY = -node->posy;
            node->AddOffset(originX, originY);
            Trace("%s-> tPX = %i, tPY = %i\n", node->name.c_str(), originX, originY);
            node->Draw(target, originX + x, originY + y, vMain->width - x, vMain->height - y, 0, 0,
                       vMain->width, vMain->height);
            break;
        case 3:
            node->AddOffset(originX, originY);
            originX += x;
            originY += y;
            // Cells beyond this are off any target, and their pixels off Allegro's numbers.
            if (std::abs(std::int64_t{originX}) > kMaxGridSide * 2 ||
                std::abs(std::int64_t{originY}) > kMaxGridSide * 2)
                break;
            if (BITMAP* surf = node->Surface(); surf && !node->tiles.empty()) {
                blit(surf, target, 0, 0, originX * kTileSize, originY * kTileSize, surf->w,
                     surf->h);
                rectfill(vClipBuffer.get(), originX, originY, originX + node->width - 1,
                         originY + node->height - 1, kFinal);
            }
            break;
        default:
            break;
    }
}
