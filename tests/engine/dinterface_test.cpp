// The world through its handles.

#include "engine/copy_object.h"
#include "engine/report.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <unistd.h>
#include <climits>
#include <set>

using testing::ElementsAre;

namespace {

class World : public WorldTest {
protected:
    Dobject& Current() { return *world->Node(HandleGuard(world->GetCurrentObject())); }
};

std::string Row(const Dtile& tile) {
    return std::to_string(tile.chr) + " " + std::to_string(tile.fg) + " " +
           std::to_string(tile.bg) + " " + std::to_string(tile.attrib);
}

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

TEST_F(World, ShowBoardParksTheOthersBelowTheScreen) {
    const int rows[] = {240, 480, 592, 768};
    const int a = world->NewBoard();
    Dobject& boardA = Current();
    const int b = world->NewBoard();
    Dobject& boardB = Current();
    for (int mode = 0; mode < 4; ++mode) {
        world->videoMode = mode;
        boardB.posx = boardA.posx = 5;
        world->ShowBoard(a);
        EXPECT_EQ(std::pair(boardA.posx, boardA.posy), std::pair(0, 0));
        EXPECT_EQ(std::pair(boardB.posx, boardB.posy), std::pair(5, rows[mode]));
        world->ShowBoard(b);
        EXPECT_EQ(boardA.posy, rows[mode]);
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

TEST_F(World, ZSortsBoardsUpwardsAndObjectsDownwards) {
    Dobject& first = AddNode(world->Root(), "first", 1, 1, 0);
    AddNode(world->Root(), "second", 1, 1, 0);
    world->SetProperty(HandleGuard(HandleOf(first)), kPosZ, 1);
    EXPECT_EQ(world->Root().children.front()->name, "second");
    Dobject& low = AddNode(first, "low", 1, 1, 0);
    AddNode(first, "high", 1, 1, 5);
    world->SetProperty(HandleGuard(HandleOf(low)), kPosZ, 9);
    EXPECT_EQ(first.children.front()->name, "low");
    EXPECT_EQ(low.parent, &first);
    first.name = kRootName;
    world->SetProperty(HandleGuard(HandleOf(low)), kPosZ, 10);
    EXPECT_EQ(first.children.front()->name, "high") << "the root is told by its name";
}

TEST_F(World, ExpandingKeepsTheViewportAside) {
    world->NewBoard();
    const HandleGuard board(world->GetCurrentBoard());
    world->NewObject(board, 2, 3);
    Dobject& object = Current();
    object.Resize(6, 5);
    object.viewx = 2;
    object.vieww = 3;
    object.viewh = 2;
    world->ExpandAll(board);
    EXPECT_EQ(object.vieww, 6);
    EXPECT_EQ(object.viewx, 0);
    const HandleGuard h(HandleOf(object));
    EXPECT_EQ(world->IsExpanded(h), 1);
    world->SetExpanded(h, 1);
    world->SetExpanded(h, 0);
    EXPECT_EQ(std::pair(object.vieww, object.viewh), std::pair(3, 2));
    EXPECT_EQ(object.viewx, 0);
}

TEST_F(World, NewObjectsAndTheirPlaces) {
    world->NewBoard();
    const HandleGuard board(world->GetCurrentBoard());
    world->Node(board)->viewx = 4;
    const int id = world->NewObject(board, -2, 3);
    EXPECT_EQ(Current().name, "NewObject" + std::to_string(id));
    EXPECT_EQ(Row(Current().tiles[0]), "1 15 1 1");
    const HandleGuard h(world->GetCurrentObject());
    int x = 0, y = 0;
    world->LocalToWorld(h, x, y);
    EXPECT_EQ(std::pair(x, y), std::pair(-6, 3));
    world->MoveTo(h, 10, 11);
    EXPECT_EQ(std::pair(Current().posx, Current().posy), std::pair(14, 11));
    x = 10, y = 12;
    world->WorldToLocal(h, x, y);
    EXPECT_EQ(std::pair(x, y), std::pair(0, 1));
    world->SetTile(h, 0, 0, -1, -2, -1, -1);
    int chr, fg, bg, attrib;
    EXPECT_EQ(world->GetTile(h, 0, 0, chr, fg, bg, attrib), 1);
    EXPECT_EQ(fg, -2);
}

TEST_F(World, ErasingNeedsASecondBoard) {
    world->NewBoard();
    const HandleGuard board(world->GetCurrentBoard());
    world->NewObject(board, 0, 0);
    const Handle h = world->GetCurrentObject();
    world->EraseObject(h);
    EXPECT_EQ(world->Node(board)->children.size(), 1u);
    AddNode(world->Root(), "other", 1, 1);
    world->EraseObject(h);
    EXPECT_TRUE(world->Node(board)->children.empty());
    EXPECT_EQ(world->Node(h), nullptr);
}

TEST_F(World, MovingKeepsTheTreeATree) {
    Dobject& a = AddNode(world->Root(), "a", 1, 1);
    Dobject& b = AddNode(a, "b", 1, 1);
    Dobject& c = AddNode(b, "c", 1, 1);
    const HandleGuard hb(HandleOf(b)), hc(HandleOf(c)), ha(HandleOf(a));
    world->MoveObject(hb, hc);
    world->MoveObject(hb, hb);
    EXPECT_EQ(b.parent, &a);
    world->MoveObject(hc, ha);
    EXPECT_EQ(c.parent, &a);
    EXPECT_EQ(a.children.size(), 2u);
    EXPECT_TRUE(b.children.empty());
}

TEST_F(World, CopiesAreDeepAndHaveIdsOfTheirOwn) {
    Dobject& a = AddNode(world->Root(), "a", 2, 2, 3);
    a.script = "#end";
    a.posx = 4;
    a.vieww = 1;
    a.hidden = 1;
    Dobject& b = AddNode(a, "b", 1, 1, 7);
    b.PutTile(0, 0, 65, 9, 8, 2);
    const std::unique_ptr<Dobject> free = CopyObject(a);
    b.PutTile(0, 0, 1, 1, 1, 1);
    EXPECT_EQ(free->posx, 0);
    EXPECT_EQ(free->posz, 3);
    EXPECT_EQ(free->vieww, 1);
    EXPECT_EQ(free->hidden, 0);
    EXPECT_EQ(free->script, "#end");
    const Dobject* pasted = CopyObject(a, *free);
    EXPECT_EQ(pasted, a.children.back().get());
    const Dobject& inner = *pasted->children.front();
    EXPECT_EQ(Row(inner.tiles[0]), "65 9 8 2");
    EXPECT_EQ(getpixel(inner.vSurf.get(), 0, 0),
              getpixel(free->children.front()->vSurf.get(), 0, 0));
    EXPECT_EQ(std::set({a.id, b.id, free->id, pasted->id, inner.id}).size(), 5u);
}

TEST_F(World, TheListHitsItsRowsAndShowsTheBoard) {
    Dobject& a = AddNode(world->Root(), "a", 1, 1);
    Dobject& a1 = AddNode(a, "a1", 1, 1);
    Dobject& a2 = AddNode(a1, "a2", 1, 1);
    Dobject& b = AddNode(world->Root(), "b", 1, 1);
    world->ClickTreeList(0, 45);
    EXPECT_EQ(world->currentObject, b.id);
    EXPECT_EQ(a.posy, 480);
    world->ClickTreeList(0, 15);
    EXPECT_EQ(world->currentBoard, a.id);
    EXPECT_EQ(b.posy, 480);
    world->ClickTreeList(20, 15);
    EXPECT_EQ(world->currentObject, a2.id) << "scrolled by two rows";
    EXPECT_EQ(world->currentBoard, a.id);
    // Of the ten pixels of a row seven hit.
    for (int y = 20; y < 40; ++y) {
        world->currentObject = 0;
        world->ClickTreeList(0, y);
        const int row = (y - 13) / 10;
        const bool hit = (y - 13) % 10 >= 1 && (y - 13) % 10 <= 7;
        EXPECT_EQ(world->currentObject, !hit ? 0 : row == 0 ? a.id : row == 1 ? a1.id : a2.id) << y;
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
