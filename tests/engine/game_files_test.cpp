// Games and object files: what they hold, what they read as, and what is refused.

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

// An archive around a text, with a sheet of 16 by 8 pixels.
std::vector<PlainEntry> Entries(const std::string& text) {
    std::string pixels;
    for (int i = 0; i < 128; ++i) pixels += std::to_string(i) + " ";
    return {
        {"font.hdr", "16 8 2\r\n"}, {"font.raw", pixels}, {"game.qlt", text}, {"res.dat", "3 0"}};
}

std::string Pixels(BITMAP* bitmap) {
    std::string pixels;
    for (int y = 0; bitmap && y < bitmap->h; ++y)
        pixels.append(bitmap->line[y], bitmap->line[y] + bitmap->w);
    return pixels;
}

class GameFiles : public WorldTest {
protected:
    bool LoadZip(const std::vector<PlainEntry>& entries, const std::string& name = "g.zqlt") {
        return world->Load(PutFile(folder / name, MakeZip(entries)));
    }
    std::vector<PlainEntry> Saved() {
        EXPECT_TRUE(world->Save(folder / "saved.zqlt"));
        return ReadZip(FileBytes(folder / "saved.zqlt"));
    }
    Dobject& First() { return *world->Root().children.front(); }

    TempFolder folder;
};

// All that a world has and a file has not.
void AddPassing(Dobject& node, std::mt19937& random) {
    node.hidden = random() % 2;
    if (random() % 2) node.BackupTiles();
    const HandleGuard h(vWorld->AddHandle(&node));
    // Without a width it could not collapse.
    if (node.vieww && random() % 2) vWorld->SetExpanded(h, 1);
    for (const auto& child : node.children) AddPassing(*child, random);
}

void ExpectFresh(const Dobject& node, const Dobject& parent) {
    EXPECT_EQ(node.hidden, 0);
    EXPECT_TRUE(node.undoTiles.empty());
    EXPECT_EQ(node.parent, &parent);
    for (const auto& child : node.children) ExpectFresh(*child, node);
}

}  // namespace

TEST_F(GameFiles, RandomWorldsComeBackAsTheyWere) {
    std::string sheet;
    for (unsigned char c : Pixels(world->GetFont()->Sheet())) sheet += std::to_string(c) + " ";
    const unsigned first = std::random_device{}();
    for (unsigned seed = first; seed < first + 40 && !HasFailure(); ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        PlantRandomWorld(*world, random);
        AddPassing(First(), random);
        world->videoMode = static_cast<int>(seed % 4);
        world->windowed = static_cast<int>(seed % 2);
        const std::string drawn = Pixels(First().vSurf.get());
        const std::vector<PlainEntry> entries = Saved();
        ASSERT_EQ(entries.size(), 4u);
        const std::string settings = std::to_string(world->videoMode) + (seed % 2 ? " 1" : " 0");
        // Saving has collapsed what was expanded.
        const PlainEntry expected[] = {{"font.hdr", "128 128 2\r\n"},
                                       {"font.raw", sheet},
                                       {"game.qlt", WithPairs(PlainText(world->Root()))},
                                       {"res.dat", settings}};
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(entries[i].name, expected[i].name);
            ASSERT_EQ(entries[i].bytes, expected[i].bytes);
            ASSERT_EQ(entries[i].method, 8);
            ASSERT_EQ(entries[i].externalAttribs, 32u);
            ASSERT_EQ(entries[i].internalAttribs + entries[i].extraSize + entries[i].commentSize +
                          entries[i].flags,
                      0);
        }
        const std::string before = Account(world->Root());
        world->Root().EraseAll();
        world->videoMode = world->windowed = 7;
        ASSERT_TRUE(world->Load(folder / "saved.zqlt"));
        ASSERT_EQ(Account(world->Root()), before);
        for (const auto& board : world->Root().children) ExpectFresh(*board, world->Root());
        EXPECT_EQ(std::to_string(world->videoMode) + " " + std::to_string(world->windowed),
                  settings);
        ASSERT_EQ(Pixels(First().Surface()), drawn) << "the surfaces show the tiles";

        // An object file of the same: out, and into another node.
        Dobject& other = AddNode(world->Root(), "other", 9, 9, 100);
        AddNode(other, "own child", 1, 1);
        other.BackupTiles();
        const HandleGuard from(HandleOf(First())), to(HandleOf(other));
        if (First().vieww) world->SetExpanded(from, 1);
        const std::int32_t id = other.id, newest = world->TakeId();
        ASSERT_TRUE(world->Export(from, folder / "x.y.zobj"));
        const auto object = ReadZip(FileBytes(folder / "x.y.zobj"));
        ASSERT_EQ(object.size(), 1u);
        EXPECT_EQ(object[0].name, "x.y.obj");
        world->SetExpanded(to, 1);
        ASSERT_TRUE(world->Import(to, folder / "x.y.zobj"));
        ASSERT_EQ(Account(other), Account(First()));
        for (auto field : {&Dobject::posx, &Dobject::posy, &Dobject::posz, &Dobject::viewx,
                           &Dobject::viewy, &Dobject::vieww, &Dobject::viewh, &Dobject::width,
                           &Dobject::height, &Dobject::evieww})
            EXPECT_EQ(other.*field, First().*field);
        EXPECT_EQ(other.name + other.script, First().name + First().script);
        EXPECT_EQ(other.tiles, First().tiles);
        EXPECT_EQ(other.id, id);
        ExpectFresh(other, world->Root());
        for (const auto& child : other.children) EXPECT_GT(child->id, newest);
        EXPECT_EQ(Pixels(other.Surface()), drawn);
    }
    reports.Clear();
}

TEST_F(GameFiles, WhatAFileDoesNotKeep) {
    for (auto [script, back] : {std::pair<std::string, std::string>{"\n", ""},
                                {"a\n\n", "a\n"},
                                {" ~pe\n~p", " ~pe\n~p"},
                                {std::string(9998, 'x') + "\ny", std::string(9998, 'x') + "\ny"}}) {
        world->Root().EraseAll();
        Dobject& node = AddNode(world->Root(), "a b\tc\n", 1, 2);
        node.script = script;
        // As a field 65535 is the mark of what stays, which in a new cell is 0.
        node.tiles[0] = {65535, 65535, 1, 65535};
        AddNode(node, "", 1, 1);
        ASSERT_TRUE(world->Save(folder / "s.zqlt") && world->Load(folder / "s.zqlt")) << script;
        EXPECT_EQ(First().script, back);
        EXPECT_EQ(First().name, "a_b_c_");
        EXPECT_EQ(First().children.front()->name, "_");
        EXPECT_EQ(First().tiles[0], (Dtile{0, 0, 1, 0}));
    }
}

TEST_F(GameFiles, ZDecidesTheOrder) {
    const auto node = [](const std::string& name, int z, const std::string& inside = {}) {
        return "~ob " + name + " " + std::to_string(z) + "\n0 0 1 1\n0 0 1 1\n1 2 3 0\n~pb\n~pe\n" +
               inside + "~oe\n";
    };
    const std::string objects = node("p", 5) + node("q", 9) + node("r", 5);
    ASSERT_TRUE(LoadZip(Entries(kHead + node("three", 3, objects) + node("world_tree", 1, objects) +
                                node("also", 1))));
    const auto names = [](const Dobject& parent) {
        std::string all;
        for (const auto& child : parent.children) all += child->name + " ";
        return all;
    };
    EXPECT_EQ(names(world->Root()), "world_tree also three ");
    EXPECT_EQ(names(*world->Root().children.back()), "q p r ");
    EXPECT_EQ(names(First()), "p r q ") << "a node of the root's name orders as the root does";
}

TEST_F(GameFiles, UnusualFormsAreTheSameWorld) {
    const std::string text = kHead + kBoard;
    const std::vector<PlainEntry> plain = Entries(text);
    ASSERT_TRUE(LoadZip(plain));
    const std::string expected = Account(world->Root());
    EXPECT_THAT(expected, HasSubstr("door 5 -1 2 3 2 0 0 3 2"));
    std::vector<PlainEntry> stored = plain;
    for (PlainEntry& entry : stored) entry.method = 0;
    const auto with = [&](const std::string& from, const std::string& to) {
        return Entries(Replaced(text, from, to));
    };
    const std::vector<PlainEntry> own = {plain[0], plain[1], {"G.QLT", text}, {"game.qlt", kHead}};
    const std::vector<std::pair<const char*, std::vector<PlainEntry>>> forms = {
        {"stored", stored},
        {"line feed pairs", Entries(WithPairs(text))},
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
        {"text behind the last board", Entries(text + "the end ~ob x")},
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
    // A tile line longer than any buffer.
    std::string cells;
    for (int i = 0; i < 40'000; ++i) cells += std::to_string(i % 7) + " 1 2 3 ";
    ASSERT_TRUE(LoadZip(
        Entries(kHead + "~ob n 0\n0 0 200 200\n0 0 200 200\n" + cells + "\n~pb\n~pe\n~oe\n")));
    EXPECT_EQ(First().tiles[39'999].chr, 39'999 % 7);
    // The sheet as bytes, of which white space does not count.
    std::vector<PlainEntry> bytes = Entries(kHead);
    bytes[0].bytes = "2 4 1";
    bytes[1].bytes = std::string(" \t\x01\xff\n\r\x80 \v\f\0a\x1f!", 14) + "b";
    ASSERT_TRUE(LoadZip(bytes));
    EXPECT_EQ(Pixels(world->GetFont()->Sheet()), std::string("\x01\xff\x80\0a\x1f!b", 8));
}

TEST_F(GameFiles, AMissingPartKeepsWhatThereWas) {
    world->videoMode = 3;
    std::vector<PlainEntry> entries = Entries(kHead + kBoard);
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
    ASSERT_TRUE(LoadZip(Entries(Replaced(kHead + kBoard, "~pb\n#bind x", "oops\n#bind x"))));
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
    const std::vector<PlainEntry> good = Entries(kHead + kBoard);
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
    const struct {
        const char* file;
        std::string bytes;
        const char* reason;
    } faults[] = {
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
    std::istringstream in("door 5 0 0 1 1 0 0 1 1 7 8 9 1\n~pb\n~pe\n~oe\n rest");
    const IdSource ids = [this] { return world->TakeId(); };
    ASSERT_TRUE(ReadObject(board, in, ids));
    std::string rest;
    in >> rest;
    EXPECT_EQ(rest, "rest");
    std::ostringstream out;
    WriteObject(*board.children.front(), out);
    EXPECT_EQ(out.str(), "~ob door 5\n0 0 1 1\n0 0 1 1\n7 8 9 1\n~pb\n~pe\n~oe\n");
    std::istringstream cut("door 5 0 0 1");
    EXPECT_FALSE(ReadObject(board, cut, ids));
    EXPECT_THAT(reports.Texts(), HasSubstr("the height of 'door'"));
    const LittleMemory memory;
    std::istringstream large("door 5 0 0 9 9 0 0 1 1 -81 7 8 9 1\n~pb\n~pe\n~oe\n");
    EXPECT_FALSE(ReadObject(board, large, ids));
    EXPECT_EQ(board.children.size(), 1u);
    reports.Clear();
}

TEST_F(GameFiles, WhatCouldNotBeReadIsNotSaved) {
    PutFile(folder / "old.zqlt", "old");
    Dobject& board = AddNode(world->Root(), "b", 2, 2);
    const auto refused = [&](const char* reason) {
        EXPECT_FALSE(world->Save(folder / "old.zqlt"));
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        reports.Clear();
        EXPECT_EQ(FileBytes(folder / "old.zqlt"), "old");
    };
    board.script = "a\n" + std::string(9999, 'x');
    refused("In the script of 'b', line 2 has more than 9998 characters");
    board.script.clear();
    board.name.assign(70'000, 'n');
    refused("has more than 65535 characters");
    board.name = "b";
    Dobject* deepest = &board;
    for (int depth = 2; depth <= kMaxNesting; ++depth) deepest = &AddNode(*deepest, "n", 1, 1);
    EXPECT_TRUE(world->Save(folder / "deep.zqlt"));
    ASSERT_TRUE(world->Load(folder / "deep.zqlt"));
    for (deepest = &First(); !deepest->children.empty();) deepest = deepest->children.front().get();
    AddNode(*deepest, "n", 1, 1);
    refused("nested more than 1000 deep");
    const HandleGuard h(HandleOf(AddNode(world->Root(), "last", 1, 1)));
    EXPECT_FALSE(world->Export(h, folder / "no folder/thing.zobj"));
    EXPECT_FALSE(world->Export(-1, folder / "x.zobj"));
    EXPECT_FALSE(world->Import(5000, folder / "x.zobj"));
    EXPECT_EQ(reports.Texts(), "") << "an object that cannot be written is silent";
    EXPECT_THAT(reports.Trace(), testing::Contains(HasSubstr("could not be saved")));
}
