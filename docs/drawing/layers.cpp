#include "docs/drawing/sheet.h"

#include "engine/copy_object.h"

namespace {

constexpr const char* kSample = "Library/samples/lamplight.zqlt";

Dobject& Child(const Dobject& parent, const std::string& name) {
    for (const auto& child : parent.children)
        if (child->name == name) return *child;
    return *parent.children.front();
}

// The sample's board, alone in the world.
Dobject& OpenBoard(const std::string& name) {
    vWorld->SetViewSize(1, 1);
    vWorld->Load(kSample);
    Dobject& board = Child(vWorld->Root(), name);
    vWorld->ShowBoard(board.id);
    return board;
}

}  // namespace

// What stands around the window, from the back to the front, each on a bare board.
bool DrawLayers(const std::string& path) {
    Dobject& room = OpenBoard("Lamp_room");
    const HandleGuard board(vWorld->AddHandle(&room));
    constexpr int kAcross = 44, kDown = 35, kLeft = 4, kTop = 2;
    const std::vector<std::vector<const char*>> steps{
        {"view"}, {"window"},         {"curtains"},
        {"cat"},  {"view", "window"}, {"view", "window", "curtains", "cat"}};
    constexpr int kColumns = 3;
    std::vector<std::unique_ptr<Dobject>> all;
    while (!room.children.empty()) all.push_back(room.UnLink(*room.children.front()));
    vWorld->SetProperty(board, kWidth, kColumns * kAcross);
    vWorld->SetProperty(board, kHeight, static_cast<int>(steps.size()) / kColumns * kDown);
    vWorld->SetProperty(board, kViewW, room.width);
    vWorld->SetProperty(board, kViewH, room.height);
    for (Dtile& tile : room.tiles) tile = {176, 27, 26, 0};
    room.RedrawTiles();
    int n = 0;
    for (const auto& names : steps) {
        for (const std::string name : names)
            for (const auto& node : all) {
                if (node->name != name) continue;
                Dobject* copy = CopyObject(room, *node);
                copy->posx += n % kColumns * kAcross - kLeft;
                copy->posy += n / kColumns * kDown - kTop;
            }
        ++n;
    }
    return WriteView(path, room.width, room.height, 1);
}

// The whole grid of the cave, with a frame around what its viewport shows.
bool DrawGrid(const std::string& path) {
    Dobject& cave = OpenBoard("Cave");
    const Box shown{cave.viewx, cave.viewy, cave.viewx + cave.vieww - 1,
                    cave.viewy + cave.viewh - 1};
    const HandleGuard board(vWorld->AddHandle(&cave));
    vWorld->SetExpanded(board, 1);
    Dobject* frame = cave.Spawn(vWorld->TakeId(), 99);
    frame->Create("frame", cave.width, cave.height);
    for (int x = shown.left; x <= shown.right; ++x)
        for (int y = shown.top; y <= shown.bottom; ++y)
            if (x == shown.left || x == shown.right || y == shown.top || y == shown.bottom)
                frame->PutTile(x, y, 219, 15, 0, 0);
    return WriteView(path, cave.width, cave.height, 1);
}
