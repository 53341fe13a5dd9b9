// Games and object files: what they hold, what they read as, and what is refused.

#include "engine/copy_object.h"
#include "engine/game_archive.h"
#include "engine/report.h"

#include "tests/support/plain_zip.h"
#include "tests/support/test_world.h"

#include <sys/resource.h>
#include <unistd.h>

#include <regex>

using testing::HasSubstr;

namespace {

const std::string kHead = "~endvars\n~endimports\n";
// A door of 3 by 2 cells inside a board.
const std::string kDoor =
    "~ob door 5\n-1 2 3 2\n0 0 3 2\n-5 0 255 255 0 65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n";
const std::string kBoard =
    "~ob board -2\n0 0 4 1\n1 0 3 1\n-4 1 -2 3 0\n~pb\n~pe\n" + kDoor + "~oe\n";

std::string Replaced(std::string text, const std::string& from, const std::string& to) {
    return text.replace(text.rfind(from), from.size(), to);
}

// The account of a node by itself.
std::string Alone(const Dobject& node) {
    Dobject holder;
    CopyObject(holder, node);
    return Account(holder);
}

// What an archive reads as; empty when it is refused, which then has a reason.
std::string ReadAccount(std::string_view bytes) {
    Game game;
    GameFault fault;
    const IdSource ids = [id = 0]() mutable { return ++id; };
    const bool read = ReadGame(*ZipReader::InMemory(bytes), "x", ids, game, fault);
    EXPECT_NE(read, !fault.text.empty());
    return read ? "world\n" + Account(game.root) : "";
}

// While it lives, the program can have so many MiB more; but what watches over memory needs more.
class MemoryLimit {
public:
    explicit MemoryLimit(std::size_t mebibytes) {
        getrlimit(RLIMIT_AS, &before);
        rlimit limit = before;
        limit.rlim_cur = (std::stoul(FileBytes("/proc/self/statm")) * 4096) + (mebibytes << 20);
#ifndef QUILT_SANITIZED
        setrlimit(RLIMIT_AS, &limit);
#endif
    }
    ~MemoryLimit() { setrlimit(RLIMIT_AS, &before); }

private:
    rlimit before;
};

struct GameFiles : WorldTest {
    bool LoadZip(const std::vector<PlainEntry>& entries, const std::string& name = "g.zqlt") {
        return world->Load(PutFile(folder / name, MakeZip(entries)));
    }
    Dobject& First() { return *world->Root().children.front(); }

    // Gives the node and all below it what a world has and a file has not.
    void AddPassing(Dobject& node) {
        node.hidden = Roll(0, 1);
        if (Roll(0, 9) == 0) node.name = "a b\tc\n";
        if (Roll(0, 9) == 0) node.name = "";
        if (Roll(0, 3) == 0) node.script += "\n";
        // As a field 65535 is the mark of what stays, which in a new cell is 0.
        if (!node.tiles.empty() && Roll(0, 1)) node.tiles[0] = {65535, 65535, 0, 65535};
        node.RedrawTiles();
        if (Roll(0, 1)) node.BackupTiles();
        // Without a width it could not collapse.
        if (node.vieww && Roll(0, 1)) node.Expand();
        for (const auto& child : node.children) AddPassing(*child);
    }
    void ExpectFresh(const Dobject& node, const Dobject& parent) {
        EXPECT_EQ(node.hidden, 0);
        EXPECT_TRUE(node.undoTiles.empty());
        EXPECT_EQ(node.parent, &parent);
        EXPECT_EQ(FindNode(node.id), &node);
        for (const auto& child : node.children) ExpectFresh(*child, node);
    }

    TempFolder folder;
};

}  // namespace

TEST_F(GameFiles, RandomWorldsComeBackAsTheyWere) {
    std::string raw;
    for (unsigned char c : Pixels(world->GetFont()->Sheet())) raw += std::to_string(c) + " ";
    for (int round = 0; round < 40 && !HasFailure(); ++round) {
        PlantRandomWorld(*world, dice);
        AddPassing(First());
        world->videoMode = round % 4;
        world->windowed = round % 2;
        const std::string drawn = Pixels(First().vSurf.get());
        const std::string before = Account(*world, Kept::InFile);
        ASSERT_TRUE(world->Save(folder / "s.zqlt"));
        // Saving has collapsed what was expanded.
        const std::string mode = std::to_string(round % 4) + (round % 2 ? " 1" : " 0");
        const std::pair<std::string, std::string> expected[] = {
            {"font.hdr", "128 128 2\r\n"}, {"font.raw", raw}, {"game.qlt", ""}, {"res.dat", mode}};
        const std::string bytes = FileBytes(folder / "s.zqlt");
        ASSERT_EQ(bytes[bytes.find("PK\1\2") + 36], 0) << "unpacking changes its line ends";
        const std::vector<PlainEntry> entries = ReadZip(bytes);
        ASSERT_EQ(entries.size(), 4u);
        for (std::size_t i = 0; i < 4; ++i) {
            ASSERT_EQ(entries[i].name, expected[i].first);
            ASSERT_TRUE(i == 2 || entries[i].bytes == expected[i].second);
            ASSERT_EQ(entries[i].method, 8);
            ASSERT_EQ(entries[i].attributes + entries[i].extra, 32u);
            ASSERT_LT(std::abs(entries[i].age), 9);
        }
        world->Root().EraseAll();
        world->videoMode = world->windowed = 7;
        ASSERT_TRUE(world->Load(folder / "s.zqlt"));
        ASSERT_EQ(Difference(before, Account(*world)), "");
        ASSERT_EQ(Pixels(First().Surface()), drawn) << "the surfaces show the tiles";

        // An object file of the same: out, and into another node.
        Dobject& other = AddNode(world->Root(), "other", 9, 9, 100);
        AddNode(other, "own child", 1, 1);
        other.BackupTiles();
        other.Expand();
        const HandleGuard from(HandleOf(First())), to(HandleOf(other));
        if (First().vieww) First().Expand();
        const std::int32_t id = other.id;
        ASSERT_TRUE(world->Export(from, folder / "x.y.zobj"));
        EXPECT_EQ(ReadZip(FileBytes(folder / "x.y.zobj")).at(0).name, "x.y.obj");
        ASSERT_TRUE(world->Import(to, folder / "x.y.zobj"));
        ASSERT_EQ(Difference(Alone(First()), Alone(other)), "");
        EXPECT_EQ(std::pair(other.evieww, other.id), std::pair(0, id));
        for (const auto& board : world->Root().children) ExpectFresh(*board, world->Root());
        EXPECT_EQ(Pixels(other.Surface()), drawn);
        // What was read may stand out of order; a new one goes in front of the first behind it.
        const auto& boards = world->Root().children;
        const Dobject& made = AddNode(world->Root(), "new", 1, 1, First().posz);
        std::size_t place = 0;
        while (boards[place].get() != &made) ASSERT_LE(boards[place++]->posz, made.posz);
        EXPECT_TRUE(place + 1 == boards.size() || boards[place + 1]->posz > made.posz);
    }
    reports.Clear();
}

TEST_F(GameFiles, UnusualFormsAreTheSameWorld) {
    const std::string text = kHead + kBoard;
    const std::vector<PlainEntry> plain = GameEntries(text);
    ASSERT_TRUE(LoadZip(plain));
    const std::string expected = Account(world->Root());
    EXPECT_THAT(expected, HasSubstr("0 255 255 0 \n65 15 0 1 \n~pb\n#bind x\n"));
    std::vector<PlainEntry> stored = plain;
    for (PlainEntry& entry : stored) entry.method = 0;
    const auto with = [&](const std::string& from, const std::string& to) {
        return GameEntries(Replaced(text, from, to));
    };
    const std::vector<PlainEntry> own = {plain[0], plain[1], {"G.QLT", text}, {"game.qlt", kHead}};
    for (const auto& [what, entries] : std::vector<std::pair<const char*, std::vector<PlainEntry>>>{
             {"stored", stored},
             {"line feed pairs", GameEntries(std::regex_replace(text, std::regex("\n"), "\r\n"))},
             {"other order", {plain[3], plain[2], plain[1], plain[0]}},
             {"upper case",
              {{"FONT.HDR", plain[0].bytes}, {"Font.Raw", plain[1].bytes}, {"GAME.QLT", text}}},
             {"another end word", with("~oe", "~anything")},
             {"another header", with(kHead, "  any\r\n\v\fwords ")},
             {"text behind the last board", GameEntries(text + "the end ~ob x")},
             {"own name", own}}) {
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
    const std::string rest = "\n0 0 0 0\n0 0 0 0\n~pb\n\n~pe\n", end = "~oe\n";
    const std::string x = "~ob x 3" + rest, p = "~ob p 5" + rest + end, r = "~ob r 5" + rest + end,
                      q = "~ob q 9" + rest + end, y = "~ob y 1" + rest + end,
                      z = "~ob z 3" + rest + end;
    ASSERT_TRUE(LoadZip(GameEntries(kHead + x + p + q + r + end + y + z)));
    EXPECT_EQ(Account(world->Root()), y + x + q + p + r + end + z);
    // The sheet as bytes, of which white space does not count.
    std::vector<PlainEntry> bytes = GameEntries(kHead);
    bytes[0].bytes = "2 4 1";
    bytes[1].bytes = std::string(" \t\x01\xff\n\r\x80 \v\f\0a\x1f!", 14) + "b";
    ASSERT_TRUE(LoadZip(bytes));
    EXPECT_EQ(Pixels(world->GetFont()->Sheet()), std::string("\x01\xff\x80\0a\x1f!b", 8));
}

// The same few cells, most of them written as the editor does.
TEST_F(GameFiles, CellsAreTheSameHoweverTheyAreSpelled) {
    const std::uint16_t all[] = {0, 104, 107, 7, 65534, 12345, 65531};
    const char* const betweens[] = {"", "\n", "  ", "\t", " +", " 0", " -"};
    for (int round = 0; round < 99 && !HasFailure(); ++round) {
        const auto spelled = [&](int number) {
            const int odd = Roll(number >= 0, number < 0 ? 3 : number ? 5 : 6);
            return (Roll(0, 9) ? " " : betweens[odd]) + std::to_string(number);
        };
        std::vector<std::pair<Dtile, std::string>> few(Roll(1, 12));
        for (auto& [tile, text] : few)
            for (std::uint16_t* field : {&tile.chr, &tile.fg, &tile.bg, &tile.attrib}) {
                *field = all[Roll(0, round % 3 ? round % 3 : 6)];
                text += spelled(Roll(0, 1) ? *field : Signed(*field));
            }
        std::vector<Dtile> expected;
        std::string grid;
        while (expected.size() < 700) {
            const auto& [tile, text] = few[Roll(0, few.size() - 1)];
            const int run = std::stoi(text) < 0 || Roll(0, 1) ? Roll(1, 20) : 0;
            grid += (run ? spelled(-run) : "") + text;
            expected.insert(expected.end(), std::max(run, 1), tile);
        }
        expected.resize(700);
        ASSERT_TRUE(LoadZip(
            GameEntries(kHead + "~ob b 0\n0 0 70 10\n0 0 0 0" + grid + "\n~pb\n~pe\n~oe\n")));
        ASSERT_EQ(First().tiles, expected);
    }
}

TEST_F(GameFiles, AMissingPartKeepsWhatThereWas) {
    world->videoMode = 3;
    std::vector<PlainEntry> entries = GameEntries(kHead + kBoard);
    entries.pop_back();
    ASSERT_TRUE(LoadZip(entries));
    entries.pop_back();
    EXPECT_FALSE(world->Load(PutFile(folder / "none.zqlt", MakeZip(entries)), true));
    EXPECT_THAT(reports.Texts(), HasSubstr("no game in this archive"));
    EXPECT_EQ(First().name, "board");
    ASSERT_TRUE(LoadZip(entries));
    EXPECT_TRUE(world->Root().children.empty());
    ASSERT_TRUE(LoadZip({{"readme", "x"}}));
    EXPECT_EQ(world->GetFont()->GlyphCount(), 2);
    EXPECT_EQ(world->videoMode, 3);
    // The start of a script alone is reported and passed over, up to a number of times.
    reports.Clear();
    const std::string odd = Replaced(kBoard, "~pb\n#bind x", "oops\n#bind x");
    ASSERT_TRUE(LoadZip(GameEntries(kHead + odd)));
    EXPECT_EQ(reports.Texts(), "~pb Expected\n");
    EXPECT_THAT(reports.messages[0].second, HasSubstr("oops"));
    EXPECT_EQ(First().children.front()->script, "#bind x");
    std::string many = kHead;
    for (int i = 0; i < 30; ++i) many += odd;
    EXPECT_FALSE(LoadZip(GameEntries(many)));
    EXPECT_EQ(reports.messages.size(), 1 + 20 + 1u);
    reports.Clear();
}

TEST_F(GameFiles, FaultsAreReportedWithTheirPlaceAndChangeNothing) {
    AddNode(world->Root(), "thing", 2, 2);
    const HandleGuard h(HandleOf(First()));
    const std::string before = Account(*world);
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
    const std::string fill(TextScanner::kMaxFill + 100'000, ' '), n(4'000'000, 'n');
    const std::string start = "~ob n 0 0 0 0 0 0 0 0 0\n~pb\n";
    const std::string large = "~ob n 0\n0 0 8191 4096\n0 0 1 1\n-33550336 1 2 3 0\n~pb\n~pe\n~oe\n";
    std::string nodes = kHead, nested = kHead;
    while (nodes.size() < 20'000'000) nodes += start + "~pe\n~oe\n";
    while (nested.size() < 4'000'000) nested += start + "~pe\n";
    const char *const g = "g.zqlt", *const f = "f.zobj";
    const struct {
        const char* file;
        std::string bytes;
        const char* reason;
        std::size_t mebibytes = 64;
    } faults[] = {
        {g, text("-1 2 3 2", "-1 2 33000 1"), "the size of 'door', 33000 by 1, is no grid's"},
        {g, text("-1 2 3 2", "-1 2 32767 1024"), "'door' ends after 6 of 33553408"},
        {g, with(2, kHead + large + large), "the world has more than", 280},
        {g, with(2, nodes), "too many objects", 280},
        {g, with(2, nested), "nested more than 1000 deep"},
        {g, with(2, kHead + "~ob " + n), "65535"},
        {g, text("#bind x", n), "line 14: a line of the script of 'door' has more than 9998"},
        {g, with(2, kHead + kBoard + fill + kBoard), "millions of its characters"},
        {g, text("3 2\n", std::string(fill.size(), '0') + "3 2\n"), "characters say nothing"},
        {g, with(2, kHead + kBoard + "x" + fill), "game.qlt: it goes on long"},
        {g, with(0, "16 8 2" + std::string(65536, ' ')), "font.hdr: its 65542 bytes are"},
        {f, object(kDoor + fill), "f.obj: it goes on long behind its end"},
        {g, text("65 15 0 1\n~pb\n#bind x\n~pe\n~oe\n~oe\n", "65 15"),
         "game.qlt, line 12: the grid of 'door' ends after 5 of 6 cells"},
        {g, text("65 15 0 1", "65 15 0 x"), "line 12: the grid of 'door'"},
        {g, text("65 15 0 1", "65536 15 0 1"), "beyond 16 bits"},
        {g, text("65 15 0 1", "65 -32769 0 1"), "beyond 16 bits"},
        {g, text("65 15 0 1", "65 15 65536 1"), "beyond 16 bits"},
        {g, text("-1 2 3 2", "-1 2 x 2"), "game.qlt, line 10: the width of 'door' is no number"},
        {g, text("-1 2 3 2", "-1 2 99999999999 2"), "the width of 'door' is beyond 32 bits"},
        {g, text("~pe\n~oe\n~oe\n", ""), "the script of 'door' has no end"},
        {g, text("~oe\n~oe\n", "~oe\n"), "the text ends before the '~oe' of 'board'"},
        {g, with(0, "16 8"), "font.hdr: three numbers are expected"},
        {g, with(0, "0 8 2"), "font.hdr: a sheet of 0 by 8 pixels cannot be"},
        {g, with(1, "1 2 3"), "font.raw: the sheet ends after 3 of 128 pixels"},
        {g, with(1, "0 255 256 " + good[1].bytes), "font.raw: the pixel at 2, 0 is no colour: 256"},
        {g, with(3, "1"), "res.dat: two numbers are expected"},
        {g, MakeZip({good[0], good[2]}), "font.raw: there is no such entry"},
        {g, "", "it is empty"},
        {g, "PK", "it is no game archive"},
        {f, object(kDoor, "other.obj"), "no entry 'f.obj'"},
        {f, object(kDoor.substr(0, kDoor.size() - 5)), "f.obj, line"},
        {f, damaged, "the data are damaged"},
    };
    const auto refused = [&](const std::string& path, const std::string& reason) {
        EXPECT_FALSE(path.ends_with("zobj") ? world->Import(h, path) : world->Load(path)) << reason;
        EXPECT_THAT(reports.Texts(), testing::AllOf(HasSubstr(reason), HasSubstr(path)));
        EXPECT_EQ(reports.messages.size(), 1u) << reason;
        reports.Clear();
        ASSERT_EQ(Difference(before, Account(*world)), "") << reason;
    };
    for (const auto& fault : faults) {
        const MemoryLimit limit(fault.mebibytes);
        refused(PutFile(folder / fault.file, fault.bytes), fault.reason);
    }
    refused(folder / "missing", "there is no such file");
    refused(folder / "missing.zobj", "there is no such file");
    refused(folder / ".", "it is no file");
    // The surfaces would not fit.
    const FileHook little([](const std::string& asked) { return asked == "FreeMemory"; });
    const std::string wide = "~ob d 0\n0 0 300 300\n0 0 9 9\n-90000 1 2 3 0\n~pb\n~pe\n~oe\n";
    refused(PutFile(folder / "g.zqlt", with(2, kHead + wide)), "too large for this machine");
    refused(PutFile(folder / "f.zobj", object(wide)), "not enough memory");
}

// The checksums see to it that a damaged archive never passes for another world.
TEST_F(GameFiles, WhatIsCutIsRefusedAndWhatIsAlteredReadsAsItWasOrNot) {
    const std::string zip = MakeZip(GameEntries(kHead + kBoard)), whole = ReadAccount(zip);
    for (std::size_t at = 0; at < zip.size(); ++at) {
        ASSERT_EQ(ReadAccount(std::string_view(zip).substr(0, at)), "") << at;
        for (int bit = 0; bit < 8; ++bit) {
            std::string changed = zip;
            changed[at] = static_cast<char>(changed[at] ^ 1 << bit);
            const std::string read = ReadAccount(changed);
            // An entry whose name has changed may be missing.
            ASSERT_TRUE(read == whole || read.empty() || read == "world\n") << at << ", " << bit;
        }
    }
    // A file ends otherwise than memory does.
    for (std::size_t left = 1; left < 100; ++left)
        ASSERT_FALSE(world->Load(PutFile(folder / "cut.zqlt", zip.substr(0, zip.size() - left))));
    reports.Clear();  // "~pb Expected" may come before the damage is seen
}

TEST_F(GameFiles, WhatCouldNotBeReadIsNotSaved) {
    Dobject& board = AddNode(world->Root(), "b", 2, 2);
    const HandleGuard h(HandleOf(board));
    const auto refused = [&](const std::string& reason) {
        EXPECT_FALSE(world->Save(folder / "g.zqlt") || world->Export(h, folder / "g.zobj"));
        EXPECT_EQ(reports.messages.size(), 2u);
        EXPECT_THAT(reports.Texts(), HasSubstr(reason));
        reports.Clear();
        EXPECT_TRUE(folder.Names().empty());
    };
    for (const char* line : {"~pe", "~peek", "~pb", "~pbx"}) {
        board.script = std::string("#end\n") + line + "\nlast";
        refused("In the script of 'b', line 2 begins with ~p");
    }
    board.script = "a\n" + std::string(9999, 'x');
    refused("In the script of 'b', line 2 has more than 9998 characters");
    board.script.pop_back();
    board.name.assign(70'000, 'n');
    refused("has more than 65535 characters");
    board.name = "b";
    Dobject* deepest = &board;
    for (int depth = 2; depth <= kMaxNesting; ++depth) deepest = &AddNode(*deepest, "n", 1, 1);
    AddNode(*deepest, "n", 1, 1);
    refused("nested more than 1000 deep");
    deepest->EraseAll();
    EXPECT_FALSE(world->Export(h, folder / "no folder/thing.zobj"));
    EXPECT_EQ(reports.Texts(), "") << "an object that cannot be written is silent";
    EXPECT_TRUE(world->Save(folder / "deep.zqlt") && world->Load(folder / "deep.zqlt"));
    for (const char* told : {"could not be saved", "\nLoading .. ( /", "\nFinished Loading .. ( /"})
        EXPECT_THAT(reports.trace, HasSubstr(told));
    EXPECT_EQ(First().script.size(), 2 + 9998u);
}
