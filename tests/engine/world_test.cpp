// The world through its handles: what a random walk cannot reach.

#include "tests/support/test_world.h"

using World = WorldTest;

TEST_F(World, FullTablesAreReported) {
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    for (Handle h = 1; h < kMaxHandles; ++h) EXPECT_EQ(HandleOf(AddNode(board, "o", 1, 1)), h);
    EXPECT_EQ(HandleOf(AddNode(board, "one more", 1, 1)), -1);
    for (Handle h = 1; h < kMaxHandles; ++h) world->ReleaseHandle(h);
    // A query for more nodes than there are handles gives back what it took.
    world->ReleaseHandleList(world->StartHandleListAt(kRootHandle, 0, 0));
    EXPECT_EQ(world->GetId(1), -1);
    for (int i = 0; i < kMaxHandleLists; ++i) EXPECT_EQ(world->StartHandleList(0, ".top"), i);
    EXPECT_EQ(world->StartHandleList(0, ".top"), -1);
    EXPECT_TRUE(IsGridSize(31 * 601, 1801) && !board.Create("too large", 32768, 1));
    EXPECT_EQ(reports.Texts(),
              "Error: Max Handles reached\nError: Max Handles reached\n"
              "Error: Max HandleLists reached\nUnable to Create Object vSurf\n");
    reports.Clear();
    world->ReleaseHandleList(7);
    EXPECT_EQ(world->StartHandleList(0, ".top"), 7);
}

TEST_F(World, BadHandlesDoNothing) {
    const std::string before = Account(*world);
    for (Handle h : {-1, 5, 1023, 1024, INT_MAX, INT_MIN, kRootHandle}) {
        int a = 1, b = 2, c = 3, d = 4;
        world->SetName(h, "x");
        world->SetScript(h, "x");
        for (int index = kPosX; index <= kViewH; ++index) world->SetProperty(h, index, 4);
        world->SetTile(h, 0, 0, 1, 1, 1, 1);
        world->MoveTo(h, 1, 1);
        world->EraseObject(h);
        world->MoveObject(h, 0);
        world->ReleaseHandle(h);
        EXPECT_EQ(world->GetTile(h, 0, 0, a, b, c, d), 0);
        if (h == kRootHandle) continue;
        world->BackupTiles(h);
        world->RestoreTiles(h);
        world->SetExpanded(h, 1);
        world->ExpandAll(h);
        world->SetHidden(h, 1);
        world->SetCurrentObject(h);
        world->ReleaseHandleList(h);
        world->WorldToLocal(h, a, b);
        world->LocalToWorld(h, a, b);
        EXPECT_EQ((std::vector{a, b, c, d}), (std::vector{1, 2, 3, 4}));
        EXPECT_FALSE(world->GetName(h) || world->GetScript(h) || world->HasBackup(h));
        EXPECT_FALSE(world->GetProperty(h, kPosX) || world->Export(h, "x.zobj"));
        for (int minus : {world->GetId(h), world->GetParent(h), world->GetHandleById(h, 0),
                          world->SpawnObject(h, "x", 1, 1, 0), world->StartHandleList(h, ".top"),
                          world->StartHandleListAt(h, 0, 0), world->CountHandles(-1)})
            EXPECT_EQ(minus, -1);
    }
    EXPECT_EQ(Account(*world) + world->Root().name, before + "world_tree");
    EXPECT_EQ(world->Root().width + world->Root().posx, 0);
}

TEST_F(World, APathUpAndDownAndADrawingOfAllComeToAnEnd) {
    Dobject& board = AddNode(world->Root(), "b", 1, 1);
    Dobject& child = AddNode(board, "c", 1, 1);
    for (int i = 0; i < 3; ++i) AddNode(board, "c", 1, 1);
    // Each pair multiplies the nodes by four.
    std::string wide = ".self";
    for (int i = 0; i < 60; ++i) wide += ".all.parent";
    world->ReleaseHandleList(world->StartHandleList(HandleOf(board), (wide + ".top").c_str()));
    child.PutTile(0, 0, 219, 9, 9, 0);
    clear_to_color(child.vSurf.get(), 5);
    world->RedrawAll();
    EXPECT_EQ(getpixel(child.vSurf.get(), 0, 0), 9) << "an object is drawn with its board";
    // A field of 65535 leaves the pixels as they are: those of a new surface are 0.
    child.tiles[0] = {1, 65535, 65535, 0};
    child.vSurf.reset();
    EXPECT_EQ(getpixel(child.Surface(), 0, 0), 0);
}
