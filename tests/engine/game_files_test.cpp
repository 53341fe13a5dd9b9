// Games and object files: what they hold, what they read as, and what is refused.

#include "engine/copy_object.h"
#include "engine/file_layer.h"
#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <sstream>

using testing::HasSubstr;

namespace {

const std::string kHead = "~endvars\n~endimports\n";
// A door of 3 by 2 cells inside a board.
const std::string kDoor =
    "~ob door 5\n-1 2 3 2\n0 0 3 2\n-5 0 255 255 0 65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n";
const std::string kBoard =
    "~ob board -2\n0 0 4 1\n1 0 3 1\n-4 1 -2 3 0\n~pb\n~pe\n" + kDoor + "~oe\n";

struct LittleMemory final : FileLayer {
    LittleMemory() : before(std::exchange(vFiles, this)) {}
    ~LittleMemory() override { vFiles = before; }
    std::int64_t FreeMemory() override { return 100; }
    FileLayer* before;
};

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.rfind(from), from.size(), to);
}

std::string WithPairs(const std::string& text) {
    std::string pairs;
    for (char c : text) pairs += c == '\n' ? std::string("\r\n") : std::string(1, c);
    return pairs;
}

std::string Pixels(BITMAP* bitmap) {
    std::string pixels;
    for (int y = 0; bitmap && y < bitmap->h; ++y)
        pixels.append(bitmap->line[y], bitmap->line[y] + bitmap->w);
    return pixels;
}

// The account of a node by itself.
std::string Alone(const Dobject& node) {
    Dobject holder;
    CopyObject(holder, node);
    return Account(holder);
}

class GameFiles : public WorldTest {
protected:
    bool LoadZip(const std::vector<PlainEntry>& entries, const std::string& name = "g.zqlt") {
        return world->Load(PutFile(folder / name, MakeZip(entries)));
    }
    Dobject& First() { return *world->Root().children.front(); }

    // Gives the node and all below it what a world has and a file has not.
    void AddPassing(Dobject& node) {
        node.hidden = random() % 2;
        if (random() % 2) node.BackupTiles();
        // Without a width it could not collapse.
        if (node.vieww && random() % 2) world->SetExpanded(HandleGuard(HandleOf(node)), 1);
        for (const auto& child : node.children) AddPassing(*child);
    }
    void ExpectFresh(const Dobject& node, const Dobject& parent) {
        EXPECT_EQ(node.hidden, 0);
        EXPECT_TRUE(node.undoTiles.empty());
        EXPECT_EQ(node.parent, &parent);
        EXPECT_EQ(world->Node(HandleGuard(world->GetHandleById(kRootHandle, node.id))), &node);
        for (const auto& child : node.children) ExpectFresh(*child, node);
    }

    std::mt19937 random{testing::UnitTest::GetInstance()->random_seed() + 1u};
    TempFolder folder;
};

}  // namespace

TEST_F(GameFiles, RandomWorldsComeBackAsTheyWere) {
    std::string sheet;
    for (unsigned char c : Pixels(world->GetFont()->Sheet())) sheet += std::to_string(c) + " ";
    for (int round = 0; round < 40 && !HasFailure(); ++round) {
        PlantRandomWorld(*world, random);
        AddPassing(First());
        world->videoMode = round % 4;
        world->windowed = round % 2;
        const std::string drawn = Pixels(First().vSurf.get());
        const std::string before = Account(*world, Kept::InFile);
        ASSERT_TRUE(world->Save(folder / "s.zqlt"));
        // Saving has collapsed what was expanded.
        const std::string text = WithPairs(PlainText(world->Root()));
        const std::string mode = std::to_string(round % 4) + (round % 2 ? " 1" : " 0");
        const std::vector<PlainEntry> entries = ReadZip(FileBytes(folder / "s.zqlt"));
        const std::pair<const char*, std::string> expected[] = {{"font.hdr", "128 128 2\r\n"},
                                                                {"font.raw", sheet},
                                                                {"game.qlt", text},
                                                                {"res.dat", mode}};
        ASSERT_EQ(entries.size(), 4u);
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(entries[i].name, expected[i].first);
            ASSERT_EQ(entries[i].bytes, expected[i].second);
            ASSERT_EQ(entries[i].method, 8);
            ASSERT_EQ(entries[i].attributes, 32u);
            ASSERT_EQ(entries[i].extra, 0u);
            ASSERT_LT(std::abs(entries[i].age), 9);
        }
        world->Root().EraseAll();
        world->videoMode = world->windowed = 7;
        ASSERT_TRUE(world->Load(folder / "s.zqlt"));
        ASSERT_EQ(Difference(before, Account(*world)), "");
        for (const auto& board : world->Root().children) ExpectFresh(*board, world->Root());
        ASSERT_EQ(Pixels(First().Surface()), drawn) << "the surfaces show the tiles";

        // An object file of the same: out, and into another node.
        Dobject& other = AddNode(world->Root(), "other", 9, 9, 100);
        AddNode(other, "own child", 1, 1);
        other.BackupTiles();
        const HandleGuard from(HandleOf(First())), to(HandleOf(other));
        if (First().vieww) world->SetExpanded(from, 1);
        const std::int32_t id = other.id;
        ASSERT_TRUE(world->Export(from, folder / "x.y.zobj"));
        EXPECT_EQ(ReadZip(FileBytes(folder / "x.y.zobj")).at(0).name, "x.y.obj");
        world->SetExpanded(to, 1);
        ASSERT_TRUE(world->Import(to, folder / "x.y.zobj"));
        ASSERT_EQ(Difference(Alone(First()), Alone(other)), "");
        EXPECT_EQ(other.evieww, 0);
        EXPECT_EQ(other.id, id);
        for (const auto& board : world->Root().children) ExpectFresh(*board, world->Root());
        EXPECT_EQ(Pixels(other.Surface()), drawn);
    }
    reports.Clear();
}

TEST_F(GameFiles, WhatAFileDoesNotKeep) {
    Dobject& node = AddNode(world->Root(), "a b\tc\n", 1, 2);
    node.script = "a\n\n";
    // As a field 65535 is the mark of what stays, which in a new cell is 0.
    node.tiles[0] = {65535, 65535, 1, 65535};
    AddNode(node, "", 1, 1).script = "\n";
    const std::string before = Account(*world, Kept::InFile);
    ASSERT_TRUE(world->Save(folder / "s.zqlt") && world->Load(folder / "s.zqlt"));
    EXPECT_EQ(Account(*world), before);
    EXPECT_THAT(before, HasSubstr("a_b_c_ 0 0 0 1 2 0 0 1 2 0 0 0,0,1,0 0,0,0,0 [a\n]\n _ 0"));
}

TEST_F(GameFiles, UnusualFormsAreTheSameWorld) {
    const std::string text = kHead + kBoard;
    const std::vector<PlainEntry> plain = GameEntries(text);
    ASSERT_TRUE(LoadZip(plain));
    const std::string expected = Account(world->Root());
    EXPECT_THAT(expected, HasSubstr("door 5 -1 2 3 2 0 0 3 2"));
    std::vector<PlainEntry> stored = plain;
    for (PlainEntry& entry : stored) entry.method = 0;
    const auto with = [&](const std::string& from, const std::string& to) {
        return GameEntries(Replaced(text, from, to));
    };
    const std::vector<PlainEntry> own = {plain[0], plain[1], {"G.QLT", text}, {"game.qlt", kHead}};
    const std::vector<std::pair<const char*, std::vector<PlainEntry>>> forms = {
        {"stored", stored},
        {"line feed pairs", GameEntries(WithPairs(text))},
        {"other order", {plain[3], plain[2], plain[1], plain[0]}},
        {"upper case",
         {{"FONT.HDR", plain[0].bytes}, {"Font.Raw", plain[1].bytes}, {"GAME.QLT", text}}},
        {"other entries", {{"readme", "x"}, plain[0], plain[1], plain[2], {"z", ""}}},
        {"split runs", with("-5 0 255 255 0",
                            "-2 0 255\n255\t0 0 255 255 0\r\n\n-1 0 255 255 0 0 "
                            "+255 255 0")},
        {"a run past the end", with("65 15 0 1", "-900 65 15 0 1  ")},
        {"all on one line", with("-2\n0 0 4 1\n1 0 3 1\n", "-2 0 0 4 1 1 0 3 1 ")},
        {"fields as unsigned numbers", with("1 -2 3 0", "1 65534 3 0")},
        {"another end word", with("~oe", "~anything")},
        {"another header", with(kHead, "  any\r\n\v\fwords ")},
        {"more behind the start of a script", with("~pb", "~pb and more")},
        {"text behind the last board", GameEntries(text + "the end ~ob x")},
        {"own name", own},
    };
    for (const auto& [what, entries] : forms) {
        SCOPED_TRACE(what);
        world->Root().EraseAll();
        ASSERT_TRUE(LoadZip(entries));
        EXPECT_EQ(Account(world->Root()), expected);
        EXPECT_EQ(world->GetFont()->GlyphCount(), 2);
        EXPECT_EQ(getpixel(world->GetFont()->Sheet(), 15, 7), 127);
    }
    // Under another name the archive's own text is the usual one.
    ASSERT_TRUE(LoadZip(own, "other.zqlt"));
    EXPECT_EQ(Account(world->Root()), "");
    // Boards ascend by their z and objects descend, in whatever order they stand.
    const std::string rest = "\n0 0 1 1\n0 0 1 1\n1 2 3 0\n~pb\n~pe\n";
    const std::string line = " 0 0 1 1 0 0 1 1 0 0 1,2,3,0 []\n";
    ASSERT_TRUE(LoadZip(GameEntries(kHead + "~ob x 3" + rest + "~ob p 5" + rest + "~oe\n~ob q 9" +
                                    rest + "~oe\n~ob r 5" + rest + "~oe\n~oe\n~ob y 1" + rest +
                                    "~oe\n~ob z 3" + rest + "~oe\n")));
    EXPECT_EQ(Account(world->Root()), "y 1" + line + "x 3" + line + " q 9" + line + " p 5" + line +
                                          " r 5" + line + "z 3" + line);
    // A tile line longer than any buffer.
    std::string cells;
    for (int i = 0; i < 40'000; ++i) cells += std::to_string(i % 7) + " 1 2 3 ";
    ASSERT_TRUE(LoadZip(
        GameEntries(kHead + "~ob n 0\n0 0 200 200\n0 0 200 200\n" + cells + "\n~pb\n~pe\n~oe\n")));
    EXPECT_EQ(First().tiles[39'999].chr, 39'999 % 7);
    // The sheet as bytes, of which white space does not count.
    std::vector<PlainEntry> bytes = GameEntries(kHead);
    bytes[0].bytes = "2 4 1";
    bytes[1].bytes = std::string(" \t\x01\xff\n\r\x80 \v\f\0a\x1f!", 14) + "b";
    ASSERT_TRUE(LoadZip(bytes));
    EXPECT_EQ(Pixels(world->GetFont()->Sheet()), std::string("\x01\xff\x80\0a\x1f!b", 8));
}

TEST_F(GameFiles, AMissingPartKeepsWhatThereWas) {
    world->videoMode = 3;
    std::vector<PlainEntry> entries = GameEntries(kHead + kBoard);
    entries.pop_back();
    ASSERT_TRUE(LoadZip(entries));
    EXPECT_EQ(world->videoMode, 3);
    EXPECT_EQ(First().name, "board");
    entries.pop_back();
    PutFile(folder / "none.zqlt", MakeZip(entries));
    EXPECT_FALSE(world->Load(folder / "none.zqlt", true));
    EXPECT_THAT(reports.Texts(), HasSubstr("no game in this archive"));
    EXPECT_EQ(First().name, "board");
    reports.Clear();
    ASSERT_TRUE(LoadZip(entries));
    EXPECT_TRUE(world->Root().children.empty());
    world->GetFont()->LoadDefault();
    ASSERT_TRUE(LoadZip({{"readme", "x"}}));
    EXPECT_EQ(world->GetFont()->GlyphCount(), 256);
    // The start of a script alone is reported and passed over.
    ASSERT_TRUE(LoadZip(GameEntries(Replaced(kHead + kBoard, "~pb\n#bind x", "oops\n#bind x"))));
    EXPECT_EQ(reports.Texts(), "~pb Expected\n");
    EXPECT_THAT(reports.Messages()[0].caption, HasSubstr("oops"));
    reports.Clear();
    EXPECT_EQ(First().children.front()->script, "#bind x");
}

TEST_F(GameFiles, FaultsAreReportedWithTheirPlaceAndChangeNothing) {
    AddNode(world->Root(), "thing", 2, 2);
    Dobject& old = First();
    world->currentBoard = old.id;
    const HandleGuard h(HandleOf(old));
    const std::string before = Account(world->Root());
    const std::vector<PlainEntry> good = GameEntries(kHead + kBoard);
    const auto with = [&](std::size_t index, const std::string& bytes) {
        std::vector<PlainEntry> entries = good;
        entries[index].bytes = bytes;
        return MakeZip(entries);
    };
    const auto text = [&](const std::string& from, const std::string& to) {
        return with(2, Replaced(kHead + kBoard, from, to));
    };
    const auto object = [](const std::string& block, const std::string& entry = "f.obj") {
        return MakeZip({{entry, block}});
    };
    // Far behind the object, where only the checksum tells.
    std::string damaged = MakeZip({{"f.obj", kBoard + std::string(100'000, ' ') + "behind", 0}});
    damaged[damaged.find("behind")] ^= 1;
    const std::string largest = "~ob n 0\n0 0 8 4\n0 0 8 4\n-32 1 2 3 0\n~pb\n~pe\n~oe\n";
    const std::string fill(TextScanner::kMaxFill + 100, ' ');
    const struct {
        const char* file;
        std::string bytes;
        const char* reason;
    } faults[] = {
        {"g.zqlt", with(2, kHead + largest + fill + largest), "millions of its characters"},
        {"g.zqlt", text("3 2\n", std::string(fill.size(), '0') + "3 2\n"),
         "characters say nothing"},
        {"g.zqlt", with(2, kHead + largest + "x" + fill), "game.qlt: it goes on long"},
        {"g.zqlt", with(0, "16 8 2" + std::string(65536, ' ')), "font.hdr: its 65542 bytes are"},
        {"f.zobj", object(kDoor + fill), "f.obj: it goes on long behind its end"},
        {"g.zqlt", text("-5 0 255 255 0 65", "-3 0 255 255 0"),
         "game.qlt, line 13: the grid of 'door' ends after 3 of 6 cells"},
        {"g.zqlt", text("65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n~oe\n", "65 15"),
         "game.qlt, line 12: the grid of 'door' ends after 5 of 6 cells"},
        {"g.zqlt", text("65 15 0 1", "65 15 0 x"), "line 12: the grid of 'door'"},
        {"g.zqlt", text("65 15 0 1", "65536 15 0 1"), "beyond 16 bits"},
        {"g.zqlt", text("65 15 0 1", "65 -32769 0 1"), "beyond 16 bits"},
        {"g.zqlt", text("-1 2 3 2", "-1 2 x 2"),
         "game.qlt, line 10: the width of 'door' is no number"},
        {"g.zqlt", text("-1 2 3 2", "-1 2 99999999999 2"), "the width of 'door' is beyond 32 bits"},
        {"g.zqlt", text("-1 2 3 2", "-1 2 -3 2"), "the size of 'door', -3 by 2, is no grid's"},
        {"g.zqlt", text("-1 2 3 2", "-1 2 32767 32767"), "the size of 'door', 32767 by 32767"},
        {"g.zqlt", text("#bind x", std::string(9999, 'x')),
         "line 14: a line of the script of 'door' has more than 9998"},
        {"g.zqlt", text("~pe\n~oe\n~oe\n", ""), "the script of 'door' has no end"},
        {"g.zqlt", text("~oe\n~oe\n", "~oe\n"), "the text ends before the '~oe' of 'board'"},
        {"g.zqlt", text("door", std::string(70'000, 'd')), "'ddddd"},
        {"g.zqlt", with(2, "~endvars"), "game.qlt, line 1: the text ends in its header"},
        {"g.zqlt", with(0, "16 8"), "font.hdr: three numbers are expected"},
        {"g.zqlt", with(0, "0 8 2"), "font.hdr: a sheet of 0 by 8 pixels cannot be"},
        {"g.zqlt", with(0, "262144 262144 2"), "font.hdr: a sheet of 262144 by 262144"},
        {"g.zqlt", with(1, "1 2 3"), "font.raw: the sheet ends after 3 of 128 pixels"},
        {"g.zqlt", with(1, "1 2 256 4"), "font.raw: the pixel at 2, 0 is no colour: 256"},
        {"g.zqlt", with(3, "1"), "res.dat: two numbers are expected"},
        {"g.zqlt", MakeZip({good[0], good[2]}), "font.raw: there is no such entry"},
        {"g.zqlt", MakeZip({good[1], good[2]}), "font.hdr: there is no such entry"},
        {"g.zqlt", "", "it is empty"},
        {"g.zqlt", "PK", "it is no game archive"},
        {"f.zobj", object(kDoor, "other.obj"), "no entry 'f.obj'"},
        {"f.zobj", "~ob", "no game archive"},
        {"f.zobj", object("~pb x"), "no object begins"},
        {"f.zobj", object(kDoor.substr(0, kDoor.size() - 5)), "f.obj, line"},
        {"f.zobj", damaged, "the data are damaged"},
    };
    const auto refused = [&](const std::string& path, const std::string& reason) {
        EXPECT_FALSE(path.ends_with("zobj") ? world->Import(h, path) : world->Load(path)) << reason;
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        EXPECT_THAT(reports.Texts(), HasSubstr(path));
        EXPECT_EQ(reports.Messages().size(), 1u) << reason;
        reports.Clear();
        ASSERT_EQ(Account(world->Root()), before) << reason;
    };
    for (const auto& fault : faults)
        refused(PutFile(folder / fault.file, fault.bytes), fault.reason);
    for (const char* name : {"missing", "missing.zobj"})
        refused(folder / name, "there is no such file");
    refused(folder / ".", "it is no file");
    // The surfaces would not fit.
    const LittleMemory memory;
    refused(PutFile(folder / "g.zqlt", with(2, kHead + largest)), "too large for this machine");
    refused(PutFile(folder / "f.zobj", object(largest)), "not enough memory");
    EXPECT_EQ(world->currentBoard, old.id);
    EXPECT_EQ(world->GetFont()->GlyphCount(), 256);
}

// One block by itself: the stream stands behind the "~ob".
TEST_F(GameFiles, BlocksAreReadAndWrittenAlone) {
    Dobject& board = AddNode(world->Root(), "b", 2, 2);
    const auto read = [&](const std::string& block) {
        std::istringstream in(block);
        const bool good = ReadObject(board, in, [this] { return world->TakeId(); });
        std::string rest;
        in >> rest;
        EXPECT_TRUE(!good || rest == "rest");
        return good;
    };
    ASSERT_TRUE(read("door 5 0 0 1 1 0 0 1 1 7 8 9 1\n~pb\n~pe\n~oe\n rest"));
    std::ostringstream out;
    WriteObject(*board.children.front(), out);
    EXPECT_EQ(out.str(), "~ob door 5\n0 0 1 1\n0 0 1 1\n7 8 9 1\n~pb\n~pe\n~oe\n");
    EXPECT_FALSE(read("door 5 0 0 1"));
    EXPECT_THAT(reports.Texts(), HasSubstr("the height of 'door'"));
    const LittleMemory memory;
    EXPECT_FALSE(read("door 5 0 0 9 9 0 0 1 1 -81 7 8 9 1\n~pb\n~pe\n~oe\n"));
    EXPECT_EQ(board.children.size(), 1u);
    reports.Clear();
}

TEST_F(GameFiles, WhatCouldNotBeReadIsNotSaved) {
    AddNode(world->Root(), "b", 2, 2);
    const auto refused = [&](const std::string& reason) {
        EXPECT_FALSE(world->Save(folder / "g.zqlt"));
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        reports.Clear();
        EXPECT_TRUE(folder.Names().empty());
    };
    for (const char* line : {"~pe", "~peek", "~pb", "~pbx"}) {
        First().script = std::string("#end\n") + line + "\nlast";
        refused("In the script of 'b', line 2 begins with ~p");
        EXPECT_FALSE(world->Export(HandleGuard(HandleOf(First())), folder / "g.zobj"));
        EXPECT_EQ(reports.Messages().size(), 1u);
    }
    First().script = "a\n" + std::string(9999, 'x');
    refused("In the script of 'b', line 2 has more than 9998 characters");
    First().script.erase(3, 1);
    First().name.assign(70'000, 'n');
    refused("has more than 65535 characters");
    First().name = "b";
    Dobject* deepest = &First();
    for (int depth = 2; depth <= kMaxNesting; ++depth) deepest = &AddNode(*deepest, "n", 1, 1);
    AddNode(*deepest, "n", 1, 1);
    refused("nested more than 1000 deep");
    deepest->EraseAll();
    EXPECT_TRUE(world->Save(folder / "deep.zqlt") && world->Load(folder / "deep.zqlt"));
    EXPECT_EQ(First().script.size(), 2 + 9998u);
    EXPECT_FALSE(world->Export(-1, folder / "x.zobj"));
    EXPECT_FALSE(world->Import(5000, folder / "x.zobj"));
    EXPECT_EQ(reports.Texts(), "");
    const HandleGuard last(HandleOf(AddNode(world->Root(), "last", 1, 1)));
    EXPECT_FALSE(world->Export(last, folder / "no folder/thing.zobj"));
    EXPECT_EQ(reports.Texts(), "") << "an object that cannot be written is silent";
    EXPECT_THAT(reports.Trace(), testing::Contains(HasSubstr("could not be saved")));
}
