// The world through its handles: what a random walk cannot reach.

#include "engine/report.h"
#include "tests/support/random_world.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <unistd.h>

#include <climits>

using testing::HasSubstr;

using World = WorldTest;

TEST_F(World, FullTablesAreReported) {
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    for (Handle h = 1; h < kMaxHandles; ++h) EXPECT_EQ(HandleOf(AddNode(board, "o", 1, 1)), h);
    EXPECT_EQ(HandleOf(AddNode(board, "one more", 1, 1)), -1);
    for (Handle h = 1; h < kMaxHandles; ++h) world->ReleaseHandle(h);
    // A query for more nodes than there are handles gives back what it took.
    world->ReleaseHandleList(world->StartHandleListAt(kRootHandle, 0, 0));
    EXPECT_EQ(reports.Texts(), "Error: Max Handles reached\nError: Max Handles reached\n");
    EXPECT_EQ(reports.Messages()[0].caption, "Oh No!!");
    reports.Clear();
    EXPECT_EQ(world->GetId(1), -1);
    for (int i = 0; i < kMaxHandleLists; ++i) EXPECT_EQ(world->StartHandleList(0, ".top"), i);
    EXPECT_EQ(world->StartHandleList(0, ".top"), -1);
    EXPECT_EQ(reports.Texts(), "Error: Max HandleLists reached\n");
    reports.Clear();
    world->ReleaseHandleList(7);
    EXPECT_EQ(world->StartHandleList(0, ".top"), 7);
}

TEST_F(World, BadHandlesDoNothing) {
    const std::string before = Account(*world);
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
        world->ReleaseHandleList(h);
        int a = 1, b = 2, c = 3, d = 4;
        world->WorldToLocal(h, a, b);
        world->LocalToWorld(h, a, b);
        EXPECT_EQ(world->GetTile(h, 0, 0, a, b, c, d), 0);
        EXPECT_EQ((std::vector{a, b, c, d}), (std::vector{1, 2, 3, 4}));
        EXPECT_EQ(world->GetProperty(h, kPosX), 0);
        EXPECT_EQ(world->GetName(h), nullptr);
        EXPECT_EQ(world->GetScript(h), nullptr);
        for (int minus : {world->GetId(h), world->GetParent(h), world->GetHandleById(h, 0),
                          world->SpawnObject(h, "x", 1, 1, 0), world->StartHandleList(h, ".top"),
                          world->StartHandleListAt(h, 0, 0)})
            EXPECT_EQ(minus, -1);
    }
    EXPECT_EQ(world->StartHandleList(0, nullptr), -1);
    EXPECT_EQ(world->NextHandle(kMaxHandleLists), -1);
    EXPECT_EQ(world->CountHandles(-1), -1);
    // Nothing can be done to the root, which has no board.
    world->SetName(kRootHandle, "other");
    world->SetProperty(kRootHandle, kWidth, 4);
    world->SetTile(kRootHandle, 0, 0, 1, 2, 3, 4);
    EXPECT_EQ(Account(*world), before);
    EXPECT_EQ(world->Root().name + std::to_string(world->Root().width), "world_tree0");
    EXPECT_EQ(world->GetCurrentObject() + world->GetCurrentBoard(), -2);
    EXPECT_EQ(world->currentObject, 0);
    EXPECT_EQ(world->TakeId(), 1);
}

TEST_F(World, SizesThatCannotBeAreRefusedAndNothingIsLost) {
    Dobject& board = AddNode(world->Root(), "board", 4, 3);
    const HandleGuard h(HandleOf(board));
    board.PutTile(3, 2, 65, 15, 1, 2);
    const std::vector<Dtile> before = board.tiles;
    for (auto [w, ht] : {std::pair{32768, 1}, {1, 32768}, {8193, 8192}, {32767, 32767}}) {
        EXPECT_FALSE(board.Resize(w, ht)) << w << " by " << ht;
        EXPECT_FALSE(board.Create("other", w, ht));
    }
    for (int index : {kWidth, kHeight, kViewW, kViewH}) world->SetProperty(h, index, 40'000);
    EXPECT_THAT(reports.Texts(), HasSubstr("Unable to Resize Object vSurf"));
    EXPECT_THAT(reports.Texts(), HasSubstr("Unable to Create Object vSurf"));
    reports.Clear();
    EXPECT_EQ(board.name, "board");
    EXPECT_EQ(board.width * 100 + board.viewh, 403);
    EXPECT_EQ(board.tiles, before);
    EXPECT_EQ(getpixel(board.vSurf.get(), 31, 23), 1);
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

TEST_F(World, StopsWhenItsFontIsMissing) {
    EXPECT_EXIT(
        {
            if (chdir("/") != 0) std::exit(3);
            vMessageHook = [](const char* text, const char*) { std::fputs(text, stderr); };
            Dinterface broken;
        },
        testing::ExitedWithCode(1), "Unable to load 'Library/default.dat'");
}
