// Nodes by themselves: grids, children, tiles and places.

#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

class Node : public WorldTest {
protected:
    Node() : board(AddNode(world->Root(), "board", 4, 3)) { reports.Clear(); }

    Dobject& board;
};

}  // namespace

TEST_F(Node, CreatedCellsAreEmptyAndResizedOnesAreSolid) {
    EXPECT_EQ(board.tiles, std::vector<Dtile>(12));
    board.PutTile(3, 2, 65, 15, 1, 2);
    const Dtile put = *board.GetTile(3, 2);
    ASSERT_TRUE(board.Resize(5, 4));
    EXPECT_EQ(*board.GetTile(3, 2), put);
    EXPECT_EQ(*board.GetTile(4, 3), kBlankTile);
    EXPECT_EQ(getpixel(board.vSurf.get(), 39, 31), 255);
    EXPECT_EQ(board.vieww, 4) << "a larger grid leaves the viewport";

    ASSERT_TRUE(board.Resize(2, 2));
    EXPECT_EQ(board.vieww, 2);
    ASSERT_TRUE(board.Resize(5, 4));
    EXPECT_EQ(*board.GetTile(3, 2), kBlankTile) << "what was cut off stays lost";
}

TEST_F(Node, SizesThatCannotBeAreRefusedAndNothingIsLost) {
    const std::vector<Dtile> before = board.tiles;
    for (auto [w, h] : {std::pair{32768, 1}, {1, 32768}, {8193, 8192}, {32767, 32767}}) {
        EXPECT_FALSE(board.Resize(w, h)) << w << " by " << h;
        EXPECT_FALSE(board.Create("other", w, h));
    }
    EXPECT_THAT(reports.Texts(), HasSubstr("Unable to Resize Object vSurf"));
    EXPECT_EQ(board.name, "board");
    EXPECT_EQ(board.width, 4);
    EXPECT_EQ(board.tiles, before);
    ASSERT_TRUE(board.vSurf);
    reports.Clear();

    ASSERT_TRUE(board.Resize(-3, 2));
    EXPECT_EQ(board.width, 0);
    board.PutTile(0, 0, 1, 1, 1, 1);
    board.BackupTiles();
    board.RestoreTiles();
    EXPECT_EQ(board.GetTile(0, 0), nullptr);
    ASSERT_TRUE(board.Resize(2, 2));
    EXPECT_EQ(*board.GetTile(1, 1), kBlankTile);
}

TEST_F(Node, PutTileKeepsFieldsOfMinusOneAndDrawsWhatItWrote) {
    board.PutTile(1, 1, 219, 7, 9, 3);
    board.PutTile(1, 1, -1, -2, -1, -1);
    EXPECT_EQ(*board.GetTile(1, 1), (Dtile{219, 65534, 9, 3}));
    board.PutTile(1, 1, 0, 300, 256, 0);
    EXPECT_EQ(getpixel(board.vSurf.get(), 8, 8), 0) << "only the low eight bits are a colour";
    for (auto [x, y] : {std::pair{4, 0}, {0, 3}, {-1, 0}, {0, -1}}) board.PutTile(x, y, 9, 9, 9, 9);
    EXPECT_EQ(std::count(board.tiles.begin(), board.tiles.end(), Dtile{9, 9, 9, 9}), 0);
}

TEST_F(Node, UndoIsOneSnapshotReadAtThePresentRowLength) {
    board.PutTile(0, 1, 5, 6, 7, 1);
    board.BackupTiles();
    board.PutTile(0, 1, 8, 8, 8, 0);
    board.RestoreTiles();
    EXPECT_EQ(*board.GetTile(0, 1), (Dtile{5, 6, 7, 1}));
    board.Resize(2, 3);
    board.RestoreTiles();
    EXPECT_EQ(*board.GetTile(0, 2), (Dtile{5, 6, 7, 1}));

    Dobject& other = AddNode(board, "other", 2, 1);
    other.PutTile(0, 0, 1, 1, 1, 1);
    other.RestoreTiles();
    EXPECT_EQ(other.tiles, std::vector<Dtile>(2)) << "without a backup the grid empties";
    EXPECT_EQ(getpixel(other.vSurf.get(), 0, 0), 0);
}
