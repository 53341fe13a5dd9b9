// The world through its handles.

#include "engine/report.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <unistd.h>
#include <climits>

using testing::ElementsAre;

namespace {

class World : public WorldTest {
protected:
    Dobject& Current() { return *world->Node(HandleGuard(world->GetCurrentObject())); }
};

}  // namespace

TEST_F(World, HandlesAreSharedCountedAndReused) {
    Dobject& a = AddNode(world->Root(), "a", 1, 1);
    Dobject& b = AddNode(world->Root(), "b", 1, 1);
    const Handle h = world->AddHandle(&a);
    EXPECT_EQ(world->AddHandle(&a), h);
    world->ReleaseHandle(h);
    EXPECT_STREQ(world->GetName(h), "a");
    world->ReleaseHandle(h);
    EXPECT_EQ(world->GetName(h), nullptr);
    EXPECT_EQ(world->AddHandle(&b), h);
    world->ReleaseHandle(h);
    world->ReleaseHandle(kRootHandle);
    EXPECT_STREQ(world->GetName(kRootHandle), "world_tree");
}

TEST_F(World, FullTablesAreReported) {
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    std::vector<Handle> handles;
    for (int i = 1; i < kMaxHandles; ++i)
        handles.push_back(world->AddHandle(&AddNode(board, "o", 1, 1)));
    EXPECT_EQ(handles.back(), 1023);
    EXPECT_EQ(world->AddHandle(&AddNode(board, "one more", 1, 1)), -1);
    EXPECT_EQ(reports.Texts(), "Error: Max Handles reached\n");
    EXPECT_EQ(reports.Messages()[0].caption, "Oh No!!");
    for (Handle h : handles) world->ReleaseHandle(h);
    reports.Clear();

    for (int i = 0; i < kMaxHandleLists; ++i) EXPECT_EQ(world->StartHandleList(0, ".top"), i);
    EXPECT_EQ(world->StartHandleList(0, ".top"), -1);
    EXPECT_EQ(reports.Texts(), "Error: Max HandleLists reached\n");
    reports.Clear();
    world->ReleaseHandleList(7);
    EXPECT_EQ(world->StartHandleList(0, ".top"), 7);

    // A query for more nodes than there are handles ends after one message.
    EXPECT_EQ(world->StartHandleListAt(-1, 0, 0), -1);
    for (int i = 0; i < kMaxHandleLists; ++i) world->ReleaseHandleList(i);
    const int list = world->StartHandleListAt(kRootHandle, 0, 0);
    EXPECT_EQ(reports.Messages().size(), 1u);
    world->ReleaseHandleList(list);
    reports.Clear();
}

TEST_F(World, BadHandlesDoNothing) {
    for (Handle h : {-1, 5, 1023, 1024, INT_MAX, INT_MIN}) {
        world->SetName(h, "x");
        world->SetScript(h, "x");
        world->SetProperty(h, kPosX, 1);
        world->SetTile(h, 0, 0, 1, 1, 1, 1);
        world->BackupTiles(h);
        world->RestoreTiles(h);
        world->SetExpanded(h, 1);
        world->ExpandAll(h);
        world->SetHidden(h, 1);
        world->MoveTo(h, 1, 1);
        world->EraseObject(h);
        world->MoveObject(h, 0);
        world->SetCurrentObject(h);
        world->ReleaseHandle(h);
        int a = 1, b = 2, c = 3, d = 4;
        world->WorldToLocal(h, a, b);
        world->LocalToWorld(h, a, b);
        EXPECT_EQ(world->GetTile(h, 0, 0, a, b, c, d), 0);
        EXPECT_THAT((std::vector{a, b, c, d}), ElementsAre(1, 2, 3, 4));
        EXPECT_EQ(world->GetId(h), -1);
        EXPECT_EQ(world->GetProperty(h, kPosX), 0);
        EXPECT_EQ(world->GetParent(h), -1);
        EXPECT_EQ(world->GetHandleById(h, 0), -1);
        EXPECT_EQ(world->SpawnObject(h, "x", 1, 1, 0), -1);
        EXPECT_EQ(world->GetScript(h), nullptr);
        EXPECT_EQ(world->StartHandleList(h, ".top"), -1);
    }
    EXPECT_EQ(world->currentObject, 0);
}

TEST_F(World, NewBoardHasItsRingAndTheSizeOfTheVideoMode) {
    const std::pair<int, int> sizes[] = {{40, 30}, {80, 60}, {100, 75}, {128, 96}};
    for (int mode = 0; mode < 4; ++mode) {
        world->videoMode = mode;
        const int id = world->NewBoard();
        EXPECT_GE(id, 1);
        EXPECT_EQ(world->currentBoard, id);
        const Dobject& board = Current();
        EXPECT_EQ(std::pair(board.width, board.height), sizes[mode]);
        const auto ring = std::count(board.tiles.begin(), board.tiles.end(), Dtile{176, 16, 32, 1});
        EXPECT_EQ(ring, 2 * board.width + 2 * board.height - 4);
        EXPECT_EQ(std::count(board.tiles.begin(), board.tiles.end(), kBlankTile),
                  board.width * board.height - ring);
    }
}

TEST_F(World, PropertiesReadAndWriteWithTheirEffects) {
    world->NewBoard();
    const HandleGuard h(world->GetCurrentObject());
    Dobject& board = Current();
    world->SetExpanded(h, 1);
    world->SetProperty(h, kViewW, 90);
    EXPECT_EQ(board.width, 90);
    EXPECT_EQ(board.evieww, 0) << "a new viewport ends the expansion";
    EXPECT_EQ(*board.GetTile(89, 0), kBlankTile);
    world->SetProperty(h, kViewH, 5);
    EXPECT_EQ(board.height, 60);
    world->SetProperty(h, kHeight, 4);
    EXPECT_EQ(board.viewh, 4);
    world->SetProperty(h, kViewW, 40000);
    EXPECT_EQ(board.vieww, 90) << "a grid that is refused leaves the viewport";
    reports.Clear();
    world->SetProperty(h, 9, 3);
    EXPECT_EQ(world->GetProperty(h, 9), 0);
    for (int index = 0; index < 9; ++index) {
        if (index == kPosZ) continue;
        world->SetProperty(h, index, 7);
        EXPECT_EQ(world->GetProperty(h, index), 7) << index;
    }
}

TEST_F(World, TheListHitsItsRowsAndShowsTheBoard) {
    Dobject& a = AddNode(world->Root(), "a", 1, 1);
    Dobject& a1 = AddNode(a, "a1", 1, 1);
    Dobject& a2 = AddNode(a1, "a2", 1, 1);
    Dobject& b = AddNode(world->Root(), "b", 1, 1);
    const Dobject* rows[] = {&a, &a1, &a2, &b};
    // Of the ten pixels of a row seven hit.
    for (int scroll : {0, 20}) {
        for (int y = 0; y < 70; ++y) {
            world->currentObject = 0;
            world->ClickTreeList(scroll, y);
            const int at = y + scroll - 13;
            const bool hit = at > 0 && at < 40 && at % 10 >= 1 && at % 10 <= 7;
            EXPECT_EQ(world->currentObject, hit ? rows[at / 10]->id : 0) << y;
            if (!hit) continue;
            EXPECT_EQ(world->currentBoard, at < 30 ? a.id : b.id);
            EXPECT_EQ((at < 30 ? b : a).posy, 480);
        }
    }
    a1.name = kRootName;
    world->ClickTreeList(0, 35);
    EXPECT_EQ(world->currentBoard, a2.id) << "the climb stops below a node of the root's name";
}

TEST_F(World, TheListIsPaintedInBands) {
    Dobject& a = AddNode(world->Root(), "a", 1, 1);
    AddNode(a, "a1", 1, 1);
    AddNode(world->Root(), "b", 1, 1);
    world->currentBoard = a.id;
    world->currentObject = a.children.front()->id;
    const Bitmap list = MakeBitmap(200, 60);
    world->DrawTreeList(0, 0, list.get());
    const auto at = [&](int x, int y) { return getpixel(list.get(), x, y); };
    EXPECT_EQ(at(199, 1), 15) << "paper";
    EXPECT_EQ(at(190, 13), 1) << "a board's band runs to the right edge";
    EXPECT_EQ(at(190, 33), 1);
    EXPECT_EQ(at(13, 23), 0) << "the selected row's band, indented by one level";
    EXPECT_EQ(at(190, 23), 15) << "which ends with its text";
    world->DrawTreeList(0, 1, list.get());
    EXPECT_EQ(at(190, 3), 1) << "scrolled by a row";
}

TEST_F(World, SelectorsFindTheirNodes) {
    Dobject& a = AddNode(world->Root(), "a", 10, 10);
    Dobject& b = AddNode(world->Root(), "b", 10, 10);
    b.posy = 480;
    Dobject& one = AddNode(a, "one", 2, 2, 9);
    one.posx = 1;
    Dobject& two = AddNode(a, "two", 2, 2, 5);
    Dobject& twin = AddNode(a, "two", 2, 2, 1);
    Dobject& leaf = AddNode(two, "leaf", 1, 1);
    const auto found = [&](Dobject& from, const std::string& selector) {
        const HandleGuard h(HandleOf(from));
        const int list = world->StartHandleList(h, selector.c_str());
        std::vector<Dobject*> nodes;
        for (Handle n = world->NextHandle(list); n >= 0; n = world->NextHandle(list))
            nodes.push_back(world->Node(n));
        EXPECT_EQ(world->CountHandles(list), static_cast<int>(nodes.size()));
        world->ReleaseHandleList(list);
        return nodes;
    };
    Dobject& root = world->Root();
    EXPECT_THAT(found(leaf, ".top"), ElementsAre(&root));
    EXPECT_THAT(found(root, ".top.all"), ElementsAre(&a, &b));
    EXPECT_THAT(found(one, ".two"), ElementsAre(&two, &twin));
    EXPECT_THAT(found(one, ".t w o."), ElementsAre(&two, &twin));
    EXPECT_THAT(found(one, ".all"), ElementsAre(&one, &two, &twin));
    EXPECT_THAT(found(a, ".self.two.leaf"), ElementsAre(&leaf));
    EXPECT_THAT(found(a, ".self"), ElementsAre(&a));
    EXPECT_THAT(found(a, ".self."), ElementsAre(&a));
    EXPECT_THAT(found(leaf, ".parent.parent"), ElementsAre(&a));
    EXPECT_THAT(found(leaf, ".self.all"), ElementsAre());
    EXPECT_THAT(found(leaf, ".parent.parent.parent.parent.parent"), ElementsAre());
    EXPECT_THAT(found(root, ".a"), ElementsAre());
    EXPECT_THAT(found(root, ".all"), ElementsAre());
    EXPECT_THAT(found(a, ".inside.two"), ElementsAre());
    EXPECT_THAT(found(a, "." + std::string(100, 'x')), ElementsAre());
    EXPECT_THAT(found(one, ""), ElementsAre(&a)) << "an empty path stays at the start, the parent";

    // Down and up again multiplies the nodes; the walk must end all the same.
    std::string wide = ".top";
    for (int i = 0; i < 60; ++i) wide += ".all.parent";
    EXPECT_GT(found(a, wide + ".all").size() + 1, 0u);

    const int at = world->StartHandleListAt(kRootHandle, 1, 0);
    EXPECT_EQ(world->CountHandles(at), 4);
    EXPECT_EQ(world->Node(world->NextHandle(at)), &a) << "parents before children";
    world->ReleaseHandleList(at);
}

TEST_F(World, StopsWhenItsFontIsMissing) {
    EXPECT_EXIT(
        {
            if (chdir("/") != 0) std::exit(3);
            vMessageHook = [](const char* text, const char*) { std::fputs(text, stderr); };
            Dinterface broken;
        },
        testing::ExitedWithCode(1), "Unable to load 'Library/default.dat'");
}
