// Comparing, joining and saving of games: the functions over random worlds, the commands by a few
// real calls.

#include "engine/game_archive.h"
#include "tests/support/plain_zip.h"
#include "tests/tool/shell.h"
#include "tool/compare/diff.h"
#include "tool/compare/merge.h"
#include "tool/compare/salvage.h"

#include <QImage>

#include <nlohmann/json.hpp>

using namespace std::literals;
using nlohmann::json;
using namespace testing;

namespace {

std::vector<Dobject*> AllOf(Dobject& node) {
    std::vector<Dobject*> all = {&node};
    for (const auto& child : node.children)
        for (Dobject* each : AllOf(*child)) all.push_back(each);
    return all;
}

Dobject& At(Dobject& root, const std::string& name) {
    const std::vector<Dobject*> all = AllOf(root);
    return **std::find_if(all.begin() + 1, all.end(),
                          [&](const Dobject* node) { return node->name == name; });
}

void Add(Dobject& parent, const std::string& name) {
    Dobject& node = *parent.Spawn(0, 0);
    node.Create(name, 3, 2);
    node.PutTile(1, 1, static_cast<int>(name.size()), 7, 8, 0);
}

void Move(Dobject& node, Dobject& parent) {
    parent.children.push_back(node.parent->UnLink(node));
    node.parent = &parent;
}

void ResizeSheet(Game& game, int width, int height, int fill) {
    Bitmap sheet = MakeBitmap(width, height);
    clear_to_color(sheet.get(), fill);
    blit(game.sheet.get(), sheet.get(), 0, 0, 0, 0, width, height);
    game.sheet = std::move(sheet);
}

// Words in threes: a node's name, what is done to it or to the game, and with what. A number is
// that of a cell that gets another glyph.
void Do(Game& game, const std::string& edits) {
    std::istringstream words(edits);
    for (std::string name, verb, value; words >> name >> verb >> value;) {
        Dobject& node = At(game.root, name);
        for (const NodeNumber& number : kNodeNumbers)
            if (verb == number.name) node.*number.field = std::stoi(value);
        if (verb == "mode") game.videoMode = std::stoi(value);
        if (verb == "high") ResizeSheet(game, game.sheet->w, std::stoi(value), 0);
        if (verb == "row") game.sheet->line[std::stoul(value)][9] ^= 1;
        if (std::isdigit(verb[0])) node.tiles[std::stoul(verb)].chr = value[0];
        if (verb == "name") node.name = value;
        if (verb == "script") node.script = "a\nb\nc\nd\n" + value + "\ne\nf\ng\nh";
        if (verb == "cut") node.Resize(std::stoi(value), node.height);
        if (verb == "deep") node.Resize(node.width, std::stoi(value));
        if (verb == "to") Move(node, At(game.root, value));
        if (verb == "add") Add(node, value);
        if (verb == "take") game.root.Erase(node);
    }
}

// The work of one hand of two: every second cell, its own numbers, its own end of the scripts. The
// order of the children is one's alone.
void Work(Game& game, unsigned seed, unsigned hand) {
    std::mt19937 rolls(seed * 2 + hand);
    for (Dobject* node : AllOf(game.root)) {
        if (!node->parent) continue;
        if (hand && node->children.size() > 1) Move(*node->children.front(), *node);
        for (std::size_t cell = hand; cell < node->tiles.size(); cell += 2 + rolls() % 8 * 2)
            (rolls() % 2 ? node->tiles[cell].chr : node->tiles[cell].bg) ^= 5;
        if (rolls() % 2) (hand ? node->posx : node->posy) ^= 1;
        if (rolls() % 3 == 0) node->script = hand ? "new\n" + node->script : node->script + "\nnew";
        // A node with little in it is not known again under another name.
        if (hand && node->tiles.size() > 20 && rolls() % 4 == 0) node->name += "x";
    }
    game.sheet->line[0][hand * 8] ^= 1;
    if (hand) game.videoMode = 2;
}

std::string BytesOf(const json& text) {
    if (!text.is_object()) return text;
    const std::string hex = text["hex"];
    std::string bytes;
    for (std::size_t at = 0; at < hex.size(); at += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

// Makes the later game of the earlier one by what the tool says of the two, and by that alone.
void Replay(const json& said, Game& game) {
    const auto later = [](const json& pairs, const char* name, int before) -> int {
        return pairs.value(name, json{0, before})[1];
    };
    game.videoMode = later(said["settings"], "video mode", *game.videoMode);
    ResizeSheet(game, later(said["sheet"], "width", game.sheet->w),
                later(said["sheet"], "height", game.sheet->h), 77);
    for (const json& block : said["pixels"]) {
        const std::string pixels = BytesOf({{"hex", block[3]}});
        const int x = block[0], y = block[1], width = std::min(8, game.sheet->w - x);
        for (int i = 0; i < std::ssize(pixels); ++i)
            game.sheet->line[y + i / width][x + i % width] = pixels[std::size_t(i)];
    }
    const std::vector<Dobject*> old = AllOf(game.root);
    std::map<int, Dobject*> added;
    std::map<Dobject*, std::unique_ptr<Dobject>> pool;
    std::map<Dobject*, std::vector<Dobject*>> lists;
    for (auto node = old.begin() + 1; node != old.end(); ++node) {
        lists[(*node)->parent].push_back(*node);
        pool[*node] = (*node)->parent->UnLink(**node);
    }
    const auto find = [&](const json& node) {
        return node[0].is_null() ? added.at(node[1]) : old.at(node[0]);
    };
    for (const json& change : said["nodes"]) {
        if (change["change"] == "removed") continue;
        if (change["change"] == "added") {
            auto fresh = std::make_unique<Dobject>();
            added[change["node"][1]] = fresh.get();
            pool[fresh.get()] = std::move(fresh);
        }
        Dobject& node = *find(change["node"]);
        if (change.contains("name")) node.name = BytesOf(change["name"][1]);
        if (change.contains("script")) node.script = BytesOf(change["script"]["after"]);
        const json numbers = change.value("numbers", json::object());
        std::vector<std::int32_t> values;
        for (const NodeNumber& number : kNodeNumbers)
            values.push_back(later(numbers, number.name, node.*number.field));
        node.Resize(later(numbers, "width", node.width), later(numbers, "height", node.height));
        for (std::size_t i = 0; i < values.size(); ++i) node.*kNodeNumbers[i].field = values[i];
        for (const json& run : change["cells"])
            std::fill_n(node.tiles.begin() + (run[0].get<int>() + run[1].get<int>() * node.width),
                        run[2].get<int>(), Dtile{run[4][0], run[4][1], run[4][2], run[4][3]});
    }
    for (const json& list : said["lists"]) {
        std::vector<Dobject*>& children = lists[find(list["node"])];
        children.clear();
        for (const json& child : list["children"]) children.push_back(find(child));
    }
    for (std::vector<Dobject*> todo{&game.root}; !todo.empty();) {
        Dobject* parent = todo.back();
        todo.pop_back();
        for (Dobject* child : lists[parent]) {
            child->parent = parent;
            parent->children.push_back(std::move(pool.at(child)));
            todo.push_back(child);
        }
    }
}

struct Read : Game {
    explicit Read(const std::string& bytes, const std::function<void(Game&)>& edit = {}) {
        GameFault fault;
        const IdSource ids = [id = 0]() mutable { return ++id; };
        EXPECT_TRUE(ReadGame(*ZipReader::InMemory(bytes), "x", ids, *this, fault)) << fault.text;
        if (edit) edit(*this);
        for (Dobject* node : AllOf(root)) SortByZ(*node);
    }
    std::string Bytes() const {
        std::string why;
        return ComposeGame(sheet.get(), root, *videoMode, 1, why);
    }
    std::string Told() const {
        return Account(root) + std::to_string(*videoMode) + ' ' + std::to_string(sheet->w) +
               Pixels(sheet.get());
    }
};

struct Compare : ToolTest {
    std::string Bytes() { return world->Save(folder / "w.zqlt"), FileBytes(folder / "w.zqlt"); }
    // Every node has a name of its own, and a script.
    std::string PlantNamed(std::mt19937& random) {
        PlantRandomWorld(*world, random);
        int number = 0;
        for (Dobject* node : AllOf(world->Root())) {
            if (!node->parent) continue;
            node->name = "n" + std::to_string(number++);
            node->script = "a\nb\nc\nd\ne\nf\ng";
        }
        return Bytes();
    }
};

}  // namespace

TEST_F(Compare, RandomWorkIsToldAndJoined) {
    const std::string told[] = {
        "cat3987 check3125 diff5655 info9843 merge7651 picture2247 repair3787 ",
        "cat9753 check5351 diff7023 info8606 merge3649 picture6452 repair4813 ",
        "cat4405 check6708 diff7076 info5814 merge1279 picture2163 repair5109 "};
    for (unsigned seed = 1; seed <= 24 / PART_OF_WALK; ++seed) {
        SCOPED_TRACE(seed);
        std::mt19937 random(seed);
        PlantRandomWorld(*world, random);
        world->windowed = seed > 6;
        world->GetFont()->PutGlyphPixel(static_cast<int>(random() % 256), 1, 1, 3);
        const std::string unlike = Bytes();
        const std::string bytes = PlantNamed(random);
        const Read base(bytes);
        const auto work = [&](const std::vector<unsigned>& hands) {
            return Read(bytes, [&](Game& game) {
                for (const unsigned hand : hands) Work(game, seed, hand);
                for (const unsigned hand : hands)
                    Add(*game.root.children.back(),
                        hand ? "theirs" : "\x1b\x7f\"\\\xff\xc2\x9bz\xc3\xa4\xf4\x90\x80\x80");
            });
        };

        // Joined, it is as one hand's.
        const Read both = work({0, 1});
        for (const unsigned first : {0u, 1u}) {
            Read ours = work({first}), theirs = work({1 - first});
            const auto conflicts = MergeGames(base, ours, theirs, Favor::kOurs);
            ASSERT_TRUE(conflicts.empty()) << conflicts[0].path << ": " << conflicts[0].what;
            const GameDiff left = DiffGames(ours, both);
            // The order of the two added ones, below one node, is open.
            for (const NodeChange& c : left.nodes)
                ASSERT_TRUE(c.reordered && c.numbers.empty() && c.tiles == 0) << c.path;
            ASSERT_TRUE(left.nodes.size() < 2 && left.glyphs.empty() && left.settings.empty());
        }

        // merge(base, x, base), merge(base, base, x) and merge(base, x, x) are x, whatever x is.
        const Read moved(both.Bytes(), [&](Game& game) {
            for (int i = 0; i < 4 && game.root.children.size() > 1; ++i) {
                Dobject& board = *game.root.children.front();
                Dobject& last = *game.root.children.back();
                if (i % 2)
                    game.root.Erase(board);
                else if (!board.children.empty())
                    Move(*board.children.back(), last);
                last.posz += random() % 3;
            }
        });
        for (const std::string& x : {unlike, moved.Bytes()})
            for (const int call : {0, 1, 2}) {
                Read ours(call == 1 ? bytes : x);
                Read theirs(call == 0 ? bytes : x);
                const auto conflicts = MergeGames(base, ours, theirs, Favor::kOurs);
                ASSERT_TRUE(conflicts.empty()) << conflicts[0].path << ": " << conflicts[0].what;
                ASSERT_EQ(Difference(Read(x).Told(), ours.Told()), "") << call;
                ASSERT_TRUE(DiffGames(ours, Read(x)).Alike());
            }

        // What is told of two games makes the one of the other, sheets of any sizes included.
        if (seed % 6 || seed > 6 * CALLED_WORLDS) continue;
        std::map<std::string, unsigned long> sums;
        std::vector<std::string> games{bytes, unlike, moved.Bytes()};
        for (const auto& [w, h] :
             {std::pair{129, 128}, {129, 128}, {132, 136}, {60, 260}, {128, 124}})
            games.push_back(Read(bytes, [&, w = w, h = h](Game& game) {
                                ResizeSheet(game, w, h, int(games.size() % 2));
                                Work(game, unsigned(w + h), games.size() % 2);
                                for (Dobject* node : AllOf(game.root)) node->name.resize(2);
                                game.root.children.front()->Resize(w % 50 + 1, h % 40 + 1);
                            }).Bytes());
        for (std::size_t i = 1; i < games.size(); ++i) {
            PutFile(folder / "a", games[i - 1]);
            PutFile(folder / "b", games[i]);
            Read replayed(games[i - 1]);
            Replay(json::parse(Run("diff a b --json --values").out), replayed);
            ASSERT_EQ(Difference(Read(games[i]).Told(), replayed.Told()), "") << i;
            PutFile(folder / "o", games[0]);
            PutFile(folder / "cut", games[0].substr(i % 2 * 60, games[0].size() / (2 - i % 2)));
            std::istringstream calls(
                "diff o b >/dev/full\ndiff --git x o 1 0 b 2 0\ndiff no b\ndiff b a --picture .\n"
                "diff o b --board n0\ndiff o b --stat\ndiff o >e\ndiff o b --board no\n"
                "diff a b --quiet --board n0 --picture p.png\ndiff b b --quiet\ndiff o b\n"
                "diff o b --json --values\ndiff o b --json\nrepair cut ./cut\n"
                "repair cut c\ncheck c\nrepair c no/c\ninfo c >/dev/full\ninfo b --json\ninfo b\n"
                "merge o a b -o c --marks\ncat c\ninfo c\nmerge o a b -o c --theirs\ncheck c\n"
                "merge o no b -o c\nmerge o b a -o c >/dev/full\nrepair no c\n"
                "merge e a b -o c\ncat c\nrepair b c\ndiff b c\n");
            for (std::string call; std::getline(calls, call);) {
                const Result result = Shell(QUICK_TOOL + call);
                sums[call.substr(0, call.find(' '))] +=
                    SumOf(result.out + result.err + std::to_string(result.status));
            }
            const QImage picture(QString::fromStdString(folder / "n0.png"));
            const QImage seen = picture.convertToFormat(QImage::Format_RGB32);
            sums["picture"] += qChecksum({seen.constBits(), seen.sizeInBytes()});
        }
        std::string said;
        for (const auto& [verb, sum] : sums) said += verb + std::to_string(sum % 10000) + " ";
        EXPECT_EQ(said, told[seed / 6 - 1]) << "look at what they say now, then write the sums";
    }
}

// Each edit: the line of the diff; against the edit of the other side: the conflict.
TEST_F(Compare, EachEditHasItsLineAndEachClashIsTold) {
    Dobject& hall = AddNode(world->Root(), "Hall", 20, 10);
    hall.script = "a\nb\nc\nd\ntwo\ne\nf\ng\nh";
    for (int i = 0; i < 200; ++i) hall.PutTile(i % 20, i / 20, i % 7, 1 + i % 5, 2, 0);
    AddNode(hall, "door", 4, 3).PutTile(0, 0, 9, 9, 9, 0);
    AddNode(hall, "lamp", 2, 2).PutTile(0, 0, 3, 3, 3, 0);
    AddNode(hall, "lamp", 2, 2).PutTile(0, 0, 5, 5, 5, 0);
    AddNode(world->Root(), "Cave", 8, 8, 3).PutTile(2, 2, 1, 2, 3, 1);
    const std::string bytes = Bytes();
    const struct {
        const char *line, *edit, *other, *conflict;
    } rows[] = {
        {"video mode 1 -> 3", "Hall mode 3", "Hall mode 0",
         "settings: video mode: base 1, ours 3, theirs 0"},
        {"glyphs: 1 changed: 65", "Hall row 33", "Hall row 34", "sheet: glyph 65"},
        {"sheet: height 128 -> 120", "Hall high 120", "Hall row 127", "sheet: glyph 241"},
        {"sheet: height 128 -> 136", "Hall high 136", "Hall high 144",
         "sheet: height: base 128, ours 136, theirs 144"},
        {"Hall/lamp: width 2 -> 32767", "lamp cut 32767", "lamp deep 1025",
         "Hall/lamp: the sizes of both sides together are no grid's"},
        {"Hall: 4 tiles in 0, 0, 2 by 3; 9, 1, 1 by 1", "Hall 0 A Hall 21 A Hall 29 A Hall 40 A",
         "Hall 21 B", "Hall: 1 tile in 1, 1, 1 by 1"},
        {"Hall: x 0 -> 4, z 0 -> -2", "Hall x 4 Hall z -2", "Hall x 5",
         "Hall: x: base 0, ours 4, theirs 5"},
        {"Cave: width 8 -> 4, view width 8 -> 4", "Cave cut 4", "Cave 13 A",
         "Cave: theirs painted where ours cut the grid: 1 tile in 5, 1, 1 by 1"},
        {"Vault: renamed from Hall", "Hall name Vault", "Hall name Attic",
         "Vault: name: base Hall, ours Vault, theirs Attic"},
        {"Cave/door: moved from Hall/door", "door to Cave", "door to lamp",
         "Cave/door: moved to Cave by ours, to Hall/lamp by theirs"},
        {"Hall/lamp/door: moved from Hall/door", "door to lamp", "lamp to door",
         "Hall/lamp: moved below itself by both sides together; its place is ours"},
        {"Hall: removed, 20 by 10, with 3 objects", "Hall take 1", "door x 3 Cave to lamp",
         "Hall: removed by ours, changed by theirs"},
        {"Hall: its children in another order", "door to Hall", "lamp to Hall",
         "Hall: the order of its children"},
        {"Hall/new: added, 3 by 2", "Hall add new", "Hall take 1",
         "Hall: changed by ours, removed by theirs"},
        {"--- Hall (script)\n+++ Hall (script)\n@@ -2,7 +2,7 @@\n b\n c\n d\n-two\n+2\n e\n f\n "
         "g\n",
         "Hall script 2", "Hall script zwei", "Hall: script, line 5"},
    };
    PutFile(folder / "a.zqlt", bytes);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Read edited(bytes, [&](Game& game) { Do(game, row.edit); });
        PutFile(folder / "b.zqlt", edited.Bytes());
        PutFile(folder / "c.zqlt", Read(bytes, [&](Game& game) { Do(game, row.other); }).Bytes());
        const Result diff = Run("diff a.zqlt b.zqlt");
        EXPECT_EQ(diff.status, 1);
        EXPECT_THAT(diff.out, HasSubstr(row.line));
        const Result merge = Run("merge a.zqlt b.zqlt c.zqlt -o d.zqlt");
        EXPECT_EQ(merge.status, 1);
        EXPECT_EQ(merge.out, "conflict: " + std::string(row.conflict) + "\n");
        EXPECT_EQ(Run("merge a.zqlt c.zqlt b.zqlt -o e.zqlt").out.substr(0, 10), "conflict: ");
        // Favoring theirs is the same from the other side.
        EXPECT_EQ(Run("merge a.zqlt c.zqlt b.zqlt -o e.zqlt --theirs").status, 1);
        for (const char* to : {"d.zqlt", "e.zqlt"})
            EXPECT_EQ(Difference(Read(FileBytes(folder / to)).Told(), edited.Told()), "") << to;
    }
    EXPECT_EQ(Run("merge a.zqlt b.zqlt c.zqlt -o d.zqlt --marks").status, 1);
    EXPECT_THAT(Run("cat d.zqlt").out,
                HasSubstr("d\n<<<<<<< ours\n2\n=======\nzwei\n>>>>>>> theirs\ne\n"));
    EXPECT_LT(ReadZip(FileBytes(folder / "d.zqlt"))[2].age, 60);
    EXPECT_EQ(Run("diff a.zqlt a.zqlt").out, "");
    for (const auto& [file, edit] :
         {std::pair("b.zqlt", "Hall add x"), {"c.zqlt", "Hall add x x 0 A"}})
        PutFile(folder / file, Read(bytes, [e = edit](Game& game) { Do(game, e); }).Bytes());
    EXPECT_EQ(Run("merge a.zqlt b.zqlt c.zqlt -o d.zqlt").out,
              "conflict: Hall/x: both sides added it unlike; both are kept\n");
    EXPECT_EQ(Read(FileBytes(folder / "d.zqlt")).root.children[0]->children.size(), 5u);
    const char* const all =
        "Hall script 2222222222222222222 Hall 0 A Hall name Vault lamp 3 A lamp to Vault lamp 3 B";
    PutFile(folder / "b.zqlt", Read(bytes, [&](Game& game) { Do(game, all); }).Bytes());
    EXPECT_EQ(Run("diff --stat a.zqlt b.zqlt").out,
              "Vault | renamed from Hall, its children in another order, 1 tile, script +1 -1\n"
              "Vault/lamp | 1 tile\nVault/lamp[2] | 1 tile\n");
}

// Packed and plain, cut at many places: each node that stands whole before the cut is there.
TEST_F(Compare, WhatIsLeftOfACutArchiveIsSaved) {
    std::mt19937 random(7);
    PlantRandomWorld(*world, random);
    world->Root().children.front()->script = "PK\3\4";  // begins no entry
    std::vector<PlainEntry> entries = ReadZip(Bytes());
    const std::string all = Account(world->Root());
    const auto count = [](const std::string& text, const std::string& end) {
        std::ptrdiff_t found = 0;
        for (std::size_t at = 0; (at = text.find(end, at + 1)) != text.npos;) ++found;
        return found;
    };
    for (const int method : {8, 0}) {
        for (PlainEntry& entry : entries) entry.method = method;
        const std::string bytes = MakeZip(entries);
        std::ptrdiff_t saved = 0;
        for (std::size_t cut = 0; cut <= bytes.size(); cut += 97) {
            Salvage salvage;
            SalvageGame(std::string_view(bytes).substr(0, cut), salvage);
            const std::string got = Account(salvage.game.root);
            const auto alike = std::mismatch(got.begin(), got.end(), all.begin(), all.end()).first;
            const auto nodes = count(got, "~pe\n");
            const auto same = count({got.begin(), alike}, "~pe\n");
            ASSERT_GE(same, count(bytes.substr(0, cut), "~pe\r\n")) << cut;
            ASSERT_LE(nodes, same + 1) << cut;
            ASSERT_GE(nodes, saved) << cut;
            saved = nodes;
        }
        EXPECT_EQ(saved, count(all, "~pe\n"));
        Salvage whole;
        SalvageGame(bytes, whole);
        EXPECT_TRUE(whole.missing.empty());
        reports.Clear();
    }
}

// All headers or all records of the directory are damaged alike; the other ones tell enough.
TEST_F(Compare, DamagedHeadersLoseNothing) {
    std::mt19937 random(7);
    const std::string bytes = PlantNamed(random), others = MakeZip(ReadZip(bytes));
    constexpr std::string_view kHeader = "PK\3\4"sv;
    constexpr std::string_view kRecord = "PK\1\2"sv;
    constexpr std::string_view kSizesFollow = "\x8\0\x8\0tidy\0\0\0\0\0\0\0\0\0\0\0\0"sv;
    const struct {
        std::string_view signature;
        std::size_t at;
        std::string_view patch;
    } rows[] = {
        {kHeader, 30, "xxxxxxx"},  {kHeader, 8, "c"},        {kHeader, 14, "xxxx"},
        {kHeader, 26, "\xff\xff"}, {kHeader, 28, "\x9"},     {kHeader, 6, kSizesFollow},
        {kRecord, 0, "xxxx"},      {kRecord, 46, "xxxxxxx"}, {kRecord, 42, "\xff\xff\xff\xff"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        // Only a header without fields is that of no entry when it tells of some.
        std::string damaged = row.at == 28 ? bytes : others;
        for (std::size_t at = 0; (at = damaged.find(row.signature, at)) != bytes.npos; ++at)
            damaged.replace(at + row.at, row.patch.size(), row.patch);
        Salvage salvage;
        SalvageGame(damaged, salvage);
        EXPECT_TRUE(salvage.missing.empty() && salvage.game.videoMode == world->videoMode);
        EXPECT_EQ(Account(salvage.game.root), Account(world->Root()));
    }
}

// Two authors and a real repository.
TEST_F(Compare, GitComparesAndJoinsGames) {
    Dobject& hall = AddNode(world->Root(), "Hall", 20, 10);
    const auto paint = [&](const std::string& file, int x, int chr) {
        hall.PutTile(x, 3, chr, 7, 1, 0);
        world->Save(folder / (file + ".zqlt"));
        world->Export(HandleGuard(world->AddHandle(&hall)), folder / (file + ".zobj"));
    };
    paint("a", 3, 1);
    Shell("git init -q -b main; git config user.name n; git config user.email e@localhost");
    EXPECT_THAT(Run("git-setup --print").out, ContainsRegex("merge.quilt.driver.*zqlt diff="));
    EXPECT_THAT(Run("git-setup && git config diff.quilt.command x && quilt-tool git-setup").out,
                EndsWith("merge=quilt\ngit config diff.quilt.command 'quilt-tool diff --git'\n"));
    EXPECT_EQ(FileBytes(folder / ".gitattributes"),
              "*.zqlt diff=quilt merge=quilt\n*.zobj diff=quilt merge=quilt\n");
    Shell("git add -A; git commit -qm one; git checkout -qb side");
    paint("a", 2, 65);
    EXPECT_THAT(Shell("git diff").out, HasSubstr("Hall: 1 tile in 2, 3, 1 by 1\n"));
    EXPECT_THAT(Shell("git commit -qam two; git show; git checkout -q main").out,
                HasSubstr("\n+65 7 1 0\n"));
    hall.tiles[62] = {};
    paint("a", 9, 66);
    Shell("git commit -qam three");
    EXPECT_EQ(Shell("git merge -q side -m both").status, 0);
    paint("both", 2, 65);
    for (const char* end : {".zqlt", ".zobj"})
        EXPECT_EQ(Run(std::string("diff a") + end + " both" + end).status, 0);
    EXPECT_EQ(Run("merge a.zqlt a.zobj a.zqlt -o d.zqlt").status, 2);
    Shell("git checkout -q side");
    paint("a", 9, 67);
    Shell("git commit -qam four");
    EXPECT_THAT(Shell("git merge main 2>&1").out,
                HasSubstr("conflict: Hall: 1 tile in 9, 3, 1 by 1"));

    // A folder takes a picture a board by a name that stays in it; a change need not be seen.
    world->Save(folder / "before.zqlt");
    hall.tiles[5].attrib = 3;
    const std::string most(100, 'n');
    for (const auto& n : {"a/b"s, "a\\b"s, ""s, ".c"s, most + "o"}) AddNode(world->Root(), n, 1, 1);
    AddNode(world->Root(), "huge", 1100, 1000);
    world->Save(folder / "after.zqlt");
    TempFolder pictures;
    EXPECT_THAT(Run("diff before.zqlt after.zqlt --picture " + (pictures / "")).err,
                HasSubstr("is too large to draw"));
    EXPECT_THAT(pictures.Names(),
                ElementsAre("Hall.png", "_.c.png", "_.png", "a_b-2.png", "a_b.png", most + ".png"));
}
