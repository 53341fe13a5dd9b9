// What a game's archive holds, what it reads as, and all the forms in which it may come.

#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <sstream>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

const std::string kHead = "~endvars\n~endimports\n";
// A door of 3 by 2 cells inside a board.
const std::string kDoor =
    "~ob door 5\n-1 2 3 2\n0 0 3 2\n-5 0 255 255 0 65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n";
const std::string kBoard =
    "~ob board -2\n0 0 4 1\n1 0 3 1\n-4 1 2 3 0\n~pb\n~pe\n" + kDoor + "~oe\n";

class Archive : public WorldTest {
protected:
    // An archive around a text, with a sheet of 16 by 8 pixels.
    static std::vector<PlainEntry> Entries(const std::string& text) {
        std::string pixels;
        for (int i = 0; i < 128; ++i) pixels += std::to_string(i) + " ";
        return {{"font.hdr", "16 8 2\r\n"},
                {"font.raw", pixels},
                {"game.qlt", text},
                {"res.dat", "3 0"}};
    }

    bool LoadZip(const std::vector<PlainEntry>& entries, const std::string& name = "g.zqlt") {
        PutFile(folder / name, MakeZip(entries));
        return world->Load(folder / name);
    }

    bool LoadText(const std::string& text) { return LoadZip(Entries(text)); }

    std::string SavedEntry(std::size_t index) {
        EXPECT_TRUE(world->Save(folder / "saved.zqlt"));
        const auto entries = ReadZip(FileBytes(folder / "saved.zqlt"));
        return index < entries.size() ? entries[index].bytes : "";
    }

    static std::string WithPairs(const std::string& text) {
        std::string pairs;
        for (char c : text) pairs += c == '\n' ? std::string("\r\n") : std::string(1, c);
        return pairs;
    }

    static std::string Pixels(const BITMAP& bitmap) {
        std::string pixels;
        for (int y = 0; y < bitmap.h; ++y) pixels.append(bitmap.line[y], bitmap.line[y] + bitmap.w);
        return pixels;
    }

    Dobject& First() { return *world->Root().children.front(); }

    TempFolder folder;
};

}  // namespace

TEST_F(Archive, EntriesStandInTheirOrderAndForm) {
    std::mt19937 random(1);
    PlantRandomWorld(*world, random);
    world->videoMode = 2;
    world->windowed = 0;
    ASSERT_TRUE(world->Save(folder / "a.zqlt"));
    const std::vector<PlainEntry> entries = ReadZip(FileBytes(folder / "a.zqlt"));
    ASSERT_EQ(entries.size(), 4u);
    std::string pixels;
    for (int i = 0; i < 128 * 128; ++i)
        pixels += std::to_string(getpixel(world->GetFont()->Sheet(), i % 128, i / 128)) + " ";
    const PlainEntry expected[] = {{"font.hdr", "128 128 2\r\n"},
                                   {"font.raw", pixels},
                                   {"game.qlt", WithPairs(PlainText(world->Root()))},
                                   {"res.dat", "2 0"}};
    for (std::size_t i = 0; i < 4; ++i) {
        EXPECT_EQ(entries[i].name, expected[i].name);
        EXPECT_EQ(entries[i].bytes, expected[i].bytes);
        EXPECT_EQ(entries[i].method, 8);
        EXPECT_EQ(entries[i].externalAttribs, 32u);
        EXPECT_EQ(entries[i].internalAttribs, 0);
        EXPECT_EQ(entries[i].extraSize + entries[i].commentSize + entries[i].flags, 0);
    }
}

TEST_F(Archive, RandomWorldsComeBackAsTheyWere) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        PlantRandomWorld(*world, random);
        const std::string before = Account(world->Root());
        const std::string drawn = Pixels(*First().vSurf);
        ASSERT_EQ(SavedEntry(2), WithPairs(PlainText(world->Root())));
        world->Root().EraseAll();
        ASSERT_TRUE(world->Load(folder / "saved.zqlt"));
        ASSERT_EQ(Account(world->Root()), before);
        const BITMAP* surface = First().Surface();
        ASSERT_EQ(surface ? Pixels(*surface) : "", drawn) << "the surfaces show the tiles";
    }
}

TEST_F(Archive, ScriptsKeepAllButTheirLastLineFeed) {
    for (auto [script, back] : {std::pair<std::string, std::string>{"", ""},
                                {"\n", ""},
                                {"a\n\n", "a\n"},
                                {" ~pe\n~p", " ~pe\n~p"},
                                {std::string(9998, 'x') + "\ny", std::string(9998, 'x') + "\ny"}}) {
        world->Root().EraseAll();
        AddNode(world->Root(), "n", 1, 1).script = script;
        ASSERT_TRUE(world->Save(folder / "s.zqlt") && world->Load(folder / "s.zqlt")) << script;
        EXPECT_EQ(First().script, back);
    }
}

TEST_F(Archive, ZDecidesTheOrder) {
    const auto node = [](const std::string& name, int z, const std::string& inside = {}) {
        return "~ob " + name + " " + std::to_string(z) + "\n0 0 1 1\n0 0 1 1\n1 2 3 0\n~pb\n~pe\n" +
               inside + "~oe\n";
    };
    const std::string objects = node("p", 5) + node("q", 9) + node("r", 5);
    ASSERT_TRUE(LoadText(kHead + node("three", 3, objects) + node("world_tree", 1, objects) +
                         node("also", 1)));
    const auto names = [](const Dobject& parent) {
        std::string all;
        for (const auto& child : parent.children) all += child->name + " ";
        return all;
    };
    EXPECT_EQ(names(world->Root()), "world_tree also three ");
    EXPECT_EQ(names(*world->Root().children.back()), "q p r ");
    EXPECT_EQ(names(First()), "p r q ") << "a node of the root's name orders as the root does";
}

TEST_F(Archive, ASaveCollapsesWhatIsExpanded) {
    Dobject& board = AddNode(world->Root(), "b", 6, 5);
    board.viewx = 2;
    board.vieww = 3;
    world->SetExpanded(HandleGuard(HandleOf(board)), 1);
    EXPECT_THAT(SavedEntry(2), HasSubstr("\r\n0 0 6 5\r\n0 0 3 5\r\n"));
    EXPECT_EQ(board.vieww, 3);
    EXPECT_EQ(board.evieww, 0);
}

TEST_F(Archive, NamesAreWrittenAsOneWord) {
    AddNode(world->Root(), "a b\tc\n", 1, 1);
    AddNode(*world->Root().children.front(), "", 1, 1);
    EXPECT_THAT(SavedEntry(2), HasSubstr("~ob a_b_c_ 0\r\n"));
    EXPECT_THAT(SavedEntry(2), HasSubstr("~ob _ 0\r\n"));
    EXPECT_EQ(First().name, "a b\tc\n") << "in memory it stays";
}

TEST_F(Archive, UnusualFormsAreTheSameWorld) {
    const std::string text = kHead + kBoard;
    ASSERT_TRUE(LoadText(text));
    const std::string expected = Account(world->Root());
    EXPECT_THAT(expected, HasSubstr("door 5 -1 2 3 2 0 0 3 2"));

    const std::vector<PlainEntry> plain = Entries(text);
    std::vector<PlainEntry> stored = plain;
    for (PlainEntry& entry : stored) entry.method = 0;
    std::string split = text;
    split.replace(split.find("-5 0 255 255 0"), 14,
                  "-2 0 255\n255\t0 0 255 255 0\r\n\n-1 0 255 255 0 0 +255 255 0");
    std::string overlong = text;
    overlong.replace(overlong.find("65 15 0 1"), 9, "-900 65 15 0 1  ");
    std::string oneLine =
        kHead + "~ob board -2 0 0 4 1 1 0 3 1 -4 1 2 3 0\n~pb\n~pe\n" + kDoor + "~oe";
    std::string otherEnds = text;
    otherEnds.replace(otherEnds.rfind("~oe"), 3, "~anything");
    std::string wideHead = text;
    wideHead.replace(0, kHead.size(), "  any\r\n\v\fwords ");
    std::string startWithMore = text;
    startWithMore.replace(startWithMore.find("~pb"), 3, "~pb and more");
    const std::vector<std::pair<const char*, std::vector<PlainEntry>>> forms = {
        {"stored", stored},
        {"line feed pairs", Entries(WithPairs(text))},
        {"other order", {plain[3], plain[2], plain[1], plain[0]}},
        {"upper case",
         {{"FONT.HDR", plain[0].bytes}, {"Font.Raw", plain[1].bytes}, {"GAME.QLT", text}}},
        {"other entries", {{"readme", "x"}, plain[0], plain[1], plain[2], {"z", ""}}},
        {"split runs", Entries(split)},
        {"a run past the end", Entries(overlong)},
        {"all on one line", Entries(oneLine)},
        {"another end word", Entries(otherEnds)},
        {"another header", Entries(wideHead)},
        {"more behind the start of a script", Entries(startWithMore)},
        {"text behind the last board", Entries(text + "the end ~ob x")},
        {"own name", {plain[0], plain[1], {"g.qlt", text}, {"game.qlt", kHead}}},
        {"own name in capitals", {plain[0], plain[1], {"G.QLT", text}}},
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
    ASSERT_TRUE(LoadZip({plain[0], plain[1], {"g.qlt", kHead}, {"game.qlt", text}}, "other.zqlt"));
    EXPECT_EQ(Account(world->Root()), expected);
}

TEST_F(Archive, ALongTileLineIsReadWhole) {
    std::string cells;
    for (int i = 0; i < 40'000; ++i) cells += std::to_string(i % 7) + " 1 2 3 ";
    ASSERT_TRUE(
        LoadText(kHead + "~ob n 0\n0 0 200 200\n0 0 200 200\n" + cells + "\n~pb\n~pe\n~oe\n"));
    EXPECT_EQ(First().tiles[39'999].chr, 39'999 % 7);
}

TEST_F(Archive, TheByteFormSkipsWhiteSpace) {
    std::vector<PlainEntry> entries = Entries(kHead);
    entries[0].bytes = "2 4 1";
    entries[1].bytes = std::string(" \t\x01\xff\n\r\x80 \v\f\0a\x1f!", 14) + "b";
    ASSERT_TRUE(LoadZip(entries));
    std::vector<int> pixels;
    for (int i = 0; i < 8; ++i) pixels.push_back(getpixel(world->GetFont()->Sheet(), i % 2, i / 2));
    EXPECT_THAT(pixels, ElementsAre(1, 255, 128, 0, 'a', 31, '!', 'b'));
}

TEST_F(Archive, AMissingPartKeepsWhatThereWas) {
    AddNode(world->Root(), "old", 1, 1);
    world->videoMode = 3;
    world->windowed = 0;
    std::vector<PlainEntry> entries = Entries(kHead + kBoard);
    entries.pop_back();
    ASSERT_TRUE(LoadZip(entries));
    EXPECT_EQ(world->videoMode, 3);
    EXPECT_EQ(world->windowed, 0);
    EXPECT_EQ(First().name, "board");
    // No text entry: an empty tree, which the document looks for first.
    entries.pop_back();
    ASSERT_TRUE(LoadZip(entries));
    EXPECT_TRUE(world->Root().children.empty());
    world->GetFont()->LoadDefault();
    ASSERT_TRUE(LoadZip({{"readme", "x"}}));
    EXPECT_EQ(world->GetFont()->GlyphCount(), 256);
}

TEST_F(Archive, AMissingStartOfAScriptIsReportedAndPassedOver) {
    std::string text = kHead + kBoard;
    text.replace(text.find("~pb\n#bind x"), 3, "oops");
    ASSERT_TRUE(LoadText(text));
    ASSERT_EQ(reports.Messages().size(), 1u);
    EXPECT_EQ(reports.Messages()[0].text, "~pb Expected");
    EXPECT_THAT(reports.Messages()[0].caption, HasSubstr("oops"));
    reports.Clear();
    EXPECT_EQ(First().children.front()->script, "#bind x");
}

TEST_F(Archive, FaultsAreReportedWithTheirPlaceAndChangeNothing) {
    AddNode(world->Root(), "old", 2, 2);
    world->currentBoard = world->currentObject = First().id;
    const std::string before = Account(world->Root());
    const std::string sheet = SavedEntry(1);

    const std::vector<PlainEntry> good = Entries(kHead + kBoard);
    const auto with = [&](std::size_t index, const std::string& bytes) {
        std::vector<PlainEntry> entries = good;
        entries[index].bytes = bytes;
        return entries;
    };
    const auto text = [&](const std::string& from, const std::string& to) {
        std::string bytes = kHead + kBoard;
        bytes.replace(bytes.find(from), from.size(), to);
        return with(2, bytes);
    };
    const std::string longLine(9999, 'x');
    const std::vector<std::pair<std::vector<PlainEntry>, const char*>> faults = {
        {text("-5 0 255 255 0 65", "-3 0 255 255 0"),
         "game.qlt, line 13: the grid of 'door' ends after 3 of 6 cells"},
        {text("65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n~oe\n", "65 15"),
         "game.qlt, line 12: the grid of 'door' ends after 5 of 6 cells"},
        {text("65 15 0 1", "65 15 0 x"), "line 12: the grid of 'door'"},
        {text("65 15 0 1", "70000 15 0 1"), "beyond 16 bits"},
        {text("-1 2 3 2", "-1 2 x 2"), "game.qlt, line 10: the width of 'door' is no number"},
        {text("-1 2 3 2", "-1 2 99999999999 2"), "the width of 'door' is beyond 32 bits"},
        {text("-1 2 3 2", "-1 2 -3 2"), "the size of 'door', -3 by 2, is no grid's"},
        {text("-1 2 3 2", "-1 2 32767 32767"), "the size of 'door', 32767 by 32767"},
        {text("#bind x", longLine), "line 14: a line of the script of 'door' has more than 9998"},
        {text("~pe\n~oe\n~oe\n", ""), "the script of 'door' has no end"},
        {text("~oe\n~oe\n", "~oe\n"), "the text ends before the '~oe' of 'board'"},
        {text("door", std::string(70'000, 'd')), "'ddddd"},
        {with(2, "~endvars"), "game.qlt, line 1: the text ends in its header"},
        {with(0, "16 8"), "font.hdr: three numbers are expected"},
        {with(0, "0 8 2"), "font.hdr: a sheet of 0 by 8 pixels cannot be"},
        {with(0, "262144 262144 2"), "font.hdr: a sheet of 262144 by 262144"},
        {with(1, "1 2 3"), "font.raw: the sheet ends after 3 of 128 pixels"},
        {with(1, "1 2 256 4"), "font.raw: the pixel at 2, 0 is no colour: 256"},
        {with(3, "1"), "res.dat: two numbers are expected"},
        {{good[0], good[2]}, "font.raw: there is no such entry"},
        {{good[1], good[2]}, "font.hdr: there is no such entry"},
    };
    for (const auto& [entries, reason] : faults) {
        EXPECT_FALSE(LoadZip(entries)) << reason;
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        EXPECT_THAT(reports.Texts(), HasSubstr(folder / "g.zqlt"));
        reports.Clear();
    }
    for (auto [bytes, reason] : {std::pair<std::string, const char*>{"", "it is empty"},
                                 {"PK", "it is no game archive"}}) {
        PutFile(folder / "g.zqlt", bytes);
        EXPECT_FALSE(world->Load(folder / "g.zqlt"));
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        reports.Clear();
    }
    for (auto [name, reason] :
         {std::pair{"missing", "there is no such file"}, {".", "it is no file"}}) {
        EXPECT_FALSE(world->Load(folder / name));
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        reports.Clear();
    }
    EXPECT_EQ(Account(world->Root()), before);
    EXPECT_EQ(world->currentBoard, First().id);
    EXPECT_EQ(world->GetFont()->GlyphCount(), 256);
    EXPECT_EQ(SavedEntry(1), sheet);
}

// One block by itself: the stream stands behind the "~ob".
TEST_F(Archive, BlocksAreReadAndWrittenAlone) {
    Dobject& board = AddNode(world->Root(), "b", 2, 2);
    std::istringstream in("door 5 0 0 1 1 0 0 1 1 7 8 9 1\n~pb\n~pe\n~oe\n rest");
    ASSERT_TRUE(ReadObject(board, in));
    std::string rest;
    in >> rest;
    EXPECT_EQ(rest, "rest");
    std::ostringstream out;
    WriteObject(*board.children.front(), out);
    EXPECT_EQ(out.str(), "~ob door 5\n0 0 1 1\n0 0 1 1\n7 8 9 1\n~pb\n~pe\n~oe\n");
    std::istringstream cut("door 5 0 0 1");
    EXPECT_FALSE(ReadObject(board, cut));
    EXPECT_EQ(board.children.size(), 1u);
    EXPECT_THAT(reports.Texts(), HasSubstr("the height of 'door'"));
    reports.Clear();
}

TEST_F(Archive, WhatCouldNotBeReadIsNotSaved) {
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
}
