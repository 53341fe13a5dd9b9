// Object files: a node with all below it, out into a file and in again.

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using testing::HasSubstr;

namespace {

class ObjectFile : public WorldTest {
protected:
    ObjectFile() : board(AddNode(world->Root(), "board", 4, 3)) {}

    Dobject& MakeThing() {
        Dobject& thing = AddNode(board, "thing", 3, 2, 7);
        thing.PutTile(1, 1, 65, -2, 1, 3);
        thing.script = "#end\n:label";
        thing.posx = -2;
        thing.vieww = 2;
        Dobject& low = AddNode(thing, "low", 1, 1, 1);
        AddNode(thing, "high", 1, 1, 5);
        AddNode(low, "deep", 2, 2).script = "x";
        return thing;
    }

    TempFolder temp;
    Dobject& board;
};

}  // namespace

TEST_F(ObjectFile, ComesBackWithAllBelowItUnderTheOldId) {
    Dobject& thing = MakeThing();
    world->SetExpanded(HandleOf(thing), 1);
    const std::string path = temp / "thing.zobj";
    ASSERT_TRUE(world->Export(HandleOf(thing), path));
    EXPECT_EQ(thing.vieww, 2) << "collapsed by the writer";
    const std::string before = Account(thing);
    const std::vector<PlainEntry> entries = ReadZip(FileBytes(path));
    ASSERT_EQ(entries.size(), 1u);
    EXPECT_EQ(entries[0].name, "thing.obj");
    EXPECT_EQ(entries[0].bytes.rfind("~ob thing 7\r\n-2 0 3 2\r\n", 0), 0u);

    Dobject& other = AddNode(board, "other", 9, 9);
    other.script = "own";
    AddNode(other, "own child", 1, 1);
    other.BackupTiles();
    const std::int32_t id = other.id;
    const std::int32_t newest = world->TakeId();
    ASSERT_TRUE(world->Import(HandleOf(other), path));
    EXPECT_EQ(Account(other), before);
    EXPECT_EQ(other.id, id);
    EXPECT_EQ(other.parent, &board);
    for (const auto& child : other.children) {
        EXPECT_GT(child->id, newest);
        EXPECT_EQ(child->parent, &other);
    }
    EXPECT_EQ(other.children.front()->name, "high") << "in the order of z";
    EXPECT_EQ(getpixel(other.Surface(), 8, 8), getpixel(thing.vSurf.get(), 8, 8));
}

TEST_F(ObjectFile, WhatCannotBeReadLeavesTheNodeAsItWas) {
    Dobject& thing = MakeThing();
    const std::string path = temp / "thing.zobj";
    ASSERT_TRUE(world->Export(HandleOf(thing), path));
    const std::string good = FileBytes(path);
    const std::string block = ReadZip(good)[0].bytes;
    const std::string before = Account(thing);
    struct Case {
        std::string path, reason;
    };
    std::vector<Case> cases{
        {temp / "none.zobj", "no such file"},
        {PutFile(temp / "other.zobj", good), "no entry 'other.obj'"},
        {PutFile(temp / "text.zobj", "~ob"), "no game archive"},
        {PutFile(temp / "word.zobj", MakeZip({{"word.obj", "~pb x"}})), "no object begins"},
        {PutFile(temp / "cut.zobj", MakeZip({{"cut.obj", block.substr(0, block.size() - 5)}})),
         "cut.obj, line"},
    };
    for (const Case& c : cases) {
        reports.Clear();
        EXPECT_FALSE(world->Import(HandleOf(thing), c.path));
        EXPECT_THAT(reports.Texts(), HasSubstr(c.reason));
        EXPECT_THAT(reports.Texts(), HasSubstr(c.path));
        EXPECT_EQ(Account(thing), before) << c.path;
    }
    reports.Clear();
    // Every shorter archive, and one whose packed data have been altered.
    for (std::size_t size = 0; size < good.size(); ++size)
        EXPECT_FALSE(
            world->Import(HandleOf(thing), PutFile(temp / "thing.zobj", good.substr(0, size))));
    std::string altered = good;
    altered[good.size() / 3] ^= 0x55;
    world->Import(HandleOf(thing), PutFile(temp / "thing.zobj", altered));
    EXPECT_EQ(Account(thing), before);
    reports.Clear();

    EXPECT_FALSE(world->Export(HandleOf(thing), temp / "no folder/thing.zobj"));
    EXPECT_FALSE(world->Export(-1, path));
    EXPECT_FALSE(world->Import(5000, path));
    EXPECT_EQ(reports.Texts(), "") << "a file that cannot be written is silent";
    EXPECT_THAT(reports.Trace(), testing::Contains(HasSubstr("could not be saved")));
    thing.script = std::string(9999, 'x');
    EXPECT_FALSE(world->Export(HandleOf(thing), path));
    EXPECT_THAT(reports.Texts(), HasSubstr("more than 9998 characters"));
    reports.Clear();
}
