// Comparing, joining and saving of games: the functions over random worlds, the commands by a few
// real calls.

#include "engine/game_archive.h"
#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/tool/shell.h"
#include "tool/compare/diff.h"
#include "tool/compare/merge.h"
#include "tool/compare/salvage.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <functional>
#include <sstream>

using namespace std::string_view_literals;
using nlohmann::json;
using testing::HasSubstr;

namespace {

using Edit = std::function<void(Game&)>;

void ForAll(Dobject& node, const std::function<void(Dobject&)>& visit) {
    for (const auto& child : node.children) {
        visit(*child);
        ForAll(*child, visit);
    }
}

Dobject& At(Dobject& top, const std::string& path) {
    std::istringstream names(path);
    Dobject* node = &top;
    for (std::string name; std::getline(names, name, '/');)
        node = std::find_if(node->children.begin(), node->children.end(), [&](const auto& child) {
                   return child->name == name;
               })->get();
    return *node;
}

void Add(Dobject& parent, const std::string& name) {
    Dobject& node = *parent.SpawnLast(0, 0);
    node.Create(name, 3, 2);
    node.PutTile(1, 1, static_cast<int>(name.size()), 7, 8, 0);
}

void Move(Dobject& node, Dobject& parent) {
    parent.children.push_back(node.parent->UnLink(node));
    node.parent = &parent;
}

std::string BytesOf(const json& text) {
    if (!text.is_object()) return text;
    const std::string hex = text["hex"];
    std::string bytes;
    for (std::size_t at = 0; at < hex.size(); at += 2)
        bytes += static_cast<char>(std::stoi(hex.substr(at, 2), nullptr, 16));
    return bytes;
}

// Words in threes: a node's path, what is done to it, and with what.
void Do(Game& game, const std::string& edits) {
    std::istringstream words(edits);
    for (std::string path, verb, value; words >> path >> verb >> value;) {
        if (verb == "mode") game.videoMode = std::stoi(value);
        if (verb == "row") game.sheet->line[std::stoul(value)][9] ^= 1;
        if (path == "game") continue;
        Dobject& node = path == "." ? game.root : At(game.root, path);
        for (const NodeNumber& number : kNodeNumbers)
            if (verb == number.name) node.*number.field = std::stoi(value);
        if (verb == "chr") node.tiles[std::stoul(value)].chr = 99;
        if (verb == "char") node.tiles[std::stoul(value)].chr = 98;
        if (verb == "bg") node.tiles[std::stoul(value)].bg = 98;
        if (verb == "name") node.name = value;
        if (verb == "script") node.script = "one\n" + value + "\nthree";
        if (verb == "cut") node.Resize(std::stoi(value), node.height);
        if (verb == "to") Move(node, At(game.root, value));
        if (verb == "add") Add(node, value);
        if (verb == "take") node.Erase(At(node, value));
    }
}

// Makes the later game of the earlier one by what the tool says of the two, and by that alone.
void Replay(const json& said, Game& game) {
    game.videoMode = said["settings"].value("video mode", std::vector{0, *game.videoMode})[1];
    for (const json& block : said["pixels"]) {
        const std::string pixels = BytesOf({{"hex", block[3]}});
        const std::size_t x = block[0];
        const std::size_t y = block[1];
        for (std::size_t i = 0; i < pixels.size(); ++i)
            game.sheet->line[y + i / 8][x + i % 8] = static_cast<unsigned char>(pixels[i]);
    }
    std::vector<Dobject*> old = {&game.root};
    ForAll(game.root, [&](Dobject& node) { old.push_back(&node); });
    std::map<int, Dobject*> added;
    std::map<Dobject*, std::unique_ptr<Dobject>> pool;
    std::map<Dobject*, std::vector<Dobject*>> lists;
    for (Dobject* parent : old)
        for (; !parent->children.empty(); parent->children.pop_front()) {
            lists[parent].push_back(parent->children.front().get());
            pool[lists[parent].back()] = std::move(parent->children.front());
        }
    const auto find = [&](const json& node) -> Dobject& {
        return *(node[0].is_null() ? added.at(node[1]) : old.at(node[0]));
    };
    for (const json& change : said["nodes"]) {
        if (change["change"] == "removed") continue;
        if (change["change"] == "added") {
            auto fresh = std::make_unique<Dobject>();
            added[change["node"][1]] = fresh.get();
            pool[fresh.get()] = std::move(fresh);
        }
        Dobject& node = find(change["node"]);
        if (change.contains("name")) node.name = BytesOf(change["name"][1]);
        if (change.contains("script")) node.script = BytesOf(change["script"]["after"]);
        const std::vector<Dtile> tiles = node.tiles;
        const auto width = static_cast<std::size_t>(node.width);
        const json numbers = change.value("numbers", json::object());
        for (const auto& [name, values] : numbers.items())
            for (const NodeNumber& number : kNodeNumbers)
                if (name == number.name) node.*number.field = values[1];
        const auto newWidth = static_cast<std::size_t>(node.width);
        node.tiles.assign(newWidth * static_cast<std::size_t>(node.height), kBlankTile);
        for (std::size_t i = 0; i < node.tiles.size(); ++i)
            if (i % newWidth < width && i / newWidth * width < tiles.size())
                node.tiles[i] = tiles[i / newWidth * width + i % newWidth];
        for (const json& run : change["cells"])
            std::fill_n(
                &node.tiles.at(run[0].get<std::size_t>() + run[1].get<std::size_t>() * newWidth),
                run[2].get<int>(), Dtile{run[4][0], run[4][1], run[4][2], run[4][3]});
    }
    for (const json& list : said["lists"]) {
        std::vector<Dobject*>& children = lists[&find(list["node"])];
        children.clear();
        for (const json& child : list["children"]) children.push_back(&find(child));
    }
    const std::function<void(Dobject&)> fill = [&](Dobject& parent) {
        for (Dobject* child : lists[&parent]) {
            parent.children.push_back(std::move(pool.at(child)));
            child->parent = &parent;
            fill(*child);
        }
    };
    fill(game.root);
}

struct Read : Game {
    explicit Read(const std::string& bytes, const Edit& edit = {}) {
        GameFault fault;
        std::int32_t id = 0;
        EXPECT_TRUE(ReadGame(
            *ZipReader::InMemory(bytes), "x", [&id] { return ++id; }, *this, fault))
            << fault.text;
        if (edit) edit(*this);
        SortByZ(root);
        ForAll(root, SortByZ);
    }
};

class Compare : public ToolTest {
protected:
    std::string Bytes() { return Bytes(world->GetFont()->Sheet(), world->Root(), 1); }
    static std::string Bytes(const Game& game) {
        return Bytes(game.sheet.get(), game.root, *game.videoMode);
    }
    static std::string Bytes(BITMAP* sheet, const Dobject& root, int mode) {
        std::string why;
        return ComposeGame(sheet, root, mode, 1, why);
    }
    static std::string Told(Game& game) {
        std::string sheet;
        for (int y = 0; game.sheet && y < game.sheet->h; ++y)
            sheet.append(reinterpret_cast<char*>(game.sheet->line[y]), 1u * game.sheet->w);
        return Account(game.root) + std::to_string(game.videoMode.value_or(9)) + sheet;
    }
    void PlantNamed(std::mt19937& random) {
        PlantRandomWorld(*world, random);
        int number = 0;
        ForAll(world->Root(), [&](Dobject& node) { node.name = "n" + std::to_string(number++); });
    }
};

}  // namespace

// merge(base, x, base), merge(base, base, x) and merge(base, x, x) are x, whatever x is, and so is
// base when what diff says of the two is replayed on it.
TEST_F(Compare, JoiningWithoutASecondHandAndReplayingGiveTheOther) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        std::string bytes[2];
        for (std::string& each : bytes) {
            PlantRandomWorld(*world, random);
            if (seed % 2) PlantNamed(random);
            world->GetFont()->PutGlyphPixel(static_cast<int>(random() % 256), 1, 1, 3);
            each = Bytes();
        }
        // An unlike world, and the same with a few nodes taken out, moved or changed.
        const Edit edits[] = {{}, [&random](Game& game) {
                                  for (int i = 0; i < 4 && game.root.children.size() > 1; ++i) {
                                      Dobject& board = *game.root.children.front();
                                      Dobject& last = *game.root.children.back();
                                      if (i % 2)
                                          game.root.Erase(board);
                                      else if (!board.children.empty())
                                          Move(*board.children.back(), last);
                                      last.posz += random() % 3;
                                      last.script += "\nmore";
                                      for (std::size_t at = i; at < last.tiles.size(); at += 9)
                                          last.tiles[at].fg ^= 1;
                                  }
                              }};
        for (const int kind : {0, 1}) {
            SCOPED_TRACE("seed " + std::to_string(seed) + ", kind " + std::to_string(kind));
            Read x(bytes[kind], edits[kind]);
            x.videoMode = 2;
            const std::string other = Bytes(x);
            Read wanted(other);
            for (const int call : {0, 1, 2}) {
                const Read base(bytes[1]);
                Read ours(call == 1 ? bytes[1] : other);
                Read theirs(call == 0 ? bytes[1] : other);
                const auto conflicts = MergeGames(base, ours, theirs, Favor::kOurs);
                ASSERT_EQ(conflicts.size(), 0u) << conflicts[0].path << ": " << conflicts[0].what;
                ASSERT_EQ(Told(ours), Told(wanted)) << call;
                ASSERT_TRUE(DiffGames(ours, wanted).Alike());
            }
            PutFile(folder / "a.zqlt", bytes[1]);
            PutFile(folder / "b.zqlt", other);
            Read replayed(bytes[1]);
            Replay(json::parse(Run("diff a.zqlt b.zqlt --json --values").out), replayed);
            ASSERT_EQ(Told(replayed), Told(wanted));
        }
    }
}

// Two hands on one random world, each with every second place; joined it is as one hand's work.
TEST_F(Compare, EditsThatDoNotTouchAreJoined) {
    for (unsigned seed = 1; seed <= 60; ++seed) {
        SCOPED_TRACE("seed " + std::to_string(seed));
        std::mt19937 random(seed);
        PlantNamed(random);
        ForAll(world->Root(), [](Dobject& node) { node.script = "a\nb\nc\nd\ne\nf\ng"; });
        const std::string bytes = Bytes();
        const auto edit = [seed](Game& game, unsigned hand) {
            std::mt19937 rolls(seed * 2 + hand);
            ForAll(game.root, [&](Dobject& node) {
                for (std::size_t cell = hand; cell < node.tiles.size(); cell += 2 + rolls() % 8 * 2)
                    (rolls() % 2 ? node.tiles[cell].chr : node.tiles[cell].bg) ^= 5;
                if (rolls() % 2) (hand ? node.posx : node.posy) ^= 1;
                if (rolls() % 3 == 0)
                    node.script.insert(hand ? 2u : node.script.size() - 1, "new\n");
                // A node with little in it is not known again under another name.
                if (hand && node.tiles.size() > 20 && rolls() % 4 == 0) node.name += "x";
            });
            game.sheet->line[0][hand * 8] ^= 1;
            if (hand) game.videoMode = 2;
        };
        const auto add = [](Game& game, unsigned hand) {
            Add(*game.root.children.front(), hand ? "theirs" : "ours");
        };
        const Read both(bytes, [&](Game& game) {
            for (const unsigned hand : {0u, 1u}) edit(game, hand);
            for (const unsigned hand : {0u, 1u}) add(game, hand);
        });
        for (const bool swapped : {false, true}) {
            const Read base(bytes);
            const auto work = [&](unsigned hand) {
                return [&, hand](Game& game) { edit(game, hand), add(game, hand); };
            };
            Read sides[] = {Read(bytes, work(0)), Read(bytes, work(1))};
            const auto conflicts = MergeGames(base, sides[swapped], sides[!swapped], Favor::kOurs);
            ASSERT_TRUE(conflicts.empty()) << conflicts[0].path << ": " << conflicts[0].what;
            const GameDiff left = DiffGames(sides[swapped], both);
            // The order of the two added ones is open.
            for (const NodeChange& change : left.nodes)
                ASSERT_TRUE(change.reordered && change.numbers.empty() && change.tiles == 0)
                    << change.path;
            ASSERT_TRUE(left.glyphs.empty() && left.settings.empty());
        }
    }
}

// Each edit: the line of the diff; against the second edit of the other side: the conflict.
TEST_F(Compare, EachEditHasItsLineAndEachClashIsTold) {
    Dobject& hall = AddNode(world->Root(), "Hall", 20, 10);
    hall.script = "one\ntwo\nthree";
    for (int i = 0; i < 200; ++i) hall.PutTile(i % 20, i / 20, i % 7, 1 + i % 5, 2, 0);
    AddNode(hall, "door", 4, 3).PutTile(0, 0, 9, 9, 9, 0);
    AddNode(hall, "lamp", 2, 2).PutTile(0, 0, 3, 3, 3, 0);
    AddNode(world->Root(), "Cave", 8, 8, 3).PutTile(2, 2, 1, 2, 3, 1);
    const std::string bytes = Bytes();
    const struct {
        const char* line;
        const char* edit;
        const char* other;
        const char* conflict;  ///< empty: it joins well
    } rows[] = {
        {"video mode 1 -> 3", "game mode 3", "game mode 0",
         "settings: video mode: base 1, ours 3, theirs 0"},
        {"glyphs: 1 changed: 65", "game row 33", "game row 34", "sheet: glyph 65"},
        {"Hall: 1 tile in 3, 4, 1 by 1", "Hall chr 83", "Hall char 83",
         "Hall: 1 tile in 3, 4, 1 by 1"},
        {"Hall: 4 tiles in 0, 0, 2 by 3; 9, 1, 1 by 1",
         "Hall chr 0 Hall chr 21 Hall chr 29 Hall chr 40", "Hall bg 0", ""},
        {"Hall: x 0 -> 4, z 0 -> -2", "Hall x 4 Hall z -2", "Hall x 5",
         "Hall: x: base 0, ours 4, theirs 5"},
        {"Cave: width 8 -> 4, view width 8 -> 4", "Cave cut 4", "Cave chr 13",
         "Cave: theirs painted where ours cut the grid: 1 tile in 5, 1, 1 by 1"},
        {"Vault: renamed from Hall", "Hall name Vault", "Hall name Attic",
         "Vault: name: base Hall, ours Vault, theirs Attic"},
        {"Cave/door: moved from Hall/door", "Hall/door to Cave", "Hall/door to Hall/lamp",
         "Cave/door: moved to Cave by ours, to Hall/lamp by theirs"},
        {"Hall/lamp/door: moved from Hall/door", "Hall/door to Hall/lamp", "Hall/lamp to Hall/door",
         "Hall/lamp: moved below itself by both sides together; its place is ours"},
        {"Hall: removed, 20 by 10, with 2 objects", ". take Hall", "Hall/door x 3",
         "Hall: removed by ours, changed by theirs"},
        {"Hall/new: added, 3 by 2", "Hall add new", ". take Hall",
         "Hall: changed by ours, removed by theirs"},
        {"--- Hall (script)\n+++ Hall (script)\n@@ -1,3 +1,3 @@\n one\n-two\n+2\n three\n",
         "Hall script 2", "Hall script zwei", "Hall: script, line 2"},
    };
    PutFile(folder / "a.zqlt", bytes);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Read edited(bytes, [&](Game& game) { Do(game, row.edit); });
        PutFile(folder / "b.zqlt", Bytes(edited));
        const Result diff = Run("diff a.zqlt b.zqlt");
        EXPECT_EQ(diff.status, 1);
        EXPECT_THAT(diff.out, HasSubstr(row.line));
        PutFile(folder / "c.zqlt", Bytes(Read(bytes, [&](Game& game) { Do(game, row.other); })));
        const bool clash = *row.conflict != '\0';
        const Result merge = Run("merge a.zqlt b.zqlt c.zqlt -o d.zqlt");
        EXPECT_EQ(merge.status, clash);
        EXPECT_EQ(merge.out, clash ? "conflict: " + std::string(row.conflict) + "\n" : "");
        // Favoring theirs is the same from the other side.
        EXPECT_EQ(Run("merge a.zqlt c.zqlt b.zqlt -o e.zqlt --theirs").status, clash);
        for (const char* joined : {"d.zqlt", "e.zqlt"}) {
            Read game(FileBytes(folder / joined));
            EXPECT_EQ(Told(game) == Told(edited), clash) << joined;
        }
    }
    EXPECT_EQ(Run("merge a.zqlt b.zqlt c.zqlt -o d.zqlt --marks").status, 1);
    EXPECT_THAT(Run("cat d.zqlt").out,
                HasSubstr("one\n<<<<<<< ours\n2\n=======\nzwei\n>>>>>>> theirs\nthree\n"));
    EXPECT_EQ(Run("diff a.zqlt a.zqlt").out, "");
}

// Packed and plain, cut at many places: each node that stands whole before the cut is there.
TEST_F(Compare, WhatIsLeftOfACutArchiveIsSaved) {
    std::mt19937 random(7);
    PlantNamed(random);
    std::string text;
    for (const char c : PlainText(world->Root())) text += c == '\n' ? "\r\n" : std::string(1, c);
    std::vector<Dobject*> all;
    ForAll(world->Root(), [&](Dobject& node) { all.push_back(&node); });
    for (const bool packed : {true, false}) {
        std::vector<PlainEntry> entries = GameEntries(text);
        for (PlainEntry& entry : entries) entry.method = packed ? 8 : 0;
        const std::string bytes = MakeZip(entries);
        std::size_t saved = 0;
        for (std::size_t cut = 0; cut <= bytes.size(); cut += 97) {
            Salvage salvage;
            SalvageGame(std::string_view(bytes).substr(0, cut), salvage);
            std::size_t nodes = 0;
            std::size_t same = 0;
            ForAll(salvage.game.root,
                   [&](Dobject& node) { same += SameNode(node, *all[nodes++]); });
            ASSERT_LE(nodes, same + 1) << cut;
            ASSERT_GE(nodes, saved) << cut;
            saved = nodes;
            std::size_t whole = 0;
            for (std::size_t at = std::min(bytes.find("~endvars"), cut);
                 (at = bytes.find("~pe\r\n", at + 1)) + 5 <= cut && at < cut;)
                ++whole;
            ASSERT_GE(same, whole) << cut;
        }
        EXPECT_EQ(saved, all.size());
        Salvage whole;
        SalvageGame(bytes, whole);
        EXPECT_TRUE(whole.missing.empty());
        reports.Clear();
    }
    PutFile(folder / "cut.zqlt", Bytes().substr(0, Bytes().size() / 2));
    EXPECT_EQ(Run("repair cut.zqlt ./cut.zqlt").status, 2);
    EXPECT_THAT(Run("repair cut.zqlt good.zqlt 2>&1").out, HasSubstr("missing: "));
    EXPECT_EQ(Run("check good.zqlt").status, 0);
}

// All headers or all records of the directory are damaged alike; the other ones tell enough.
TEST_F(Compare, DamagedHeadersLoseNothing) {
    std::mt19937 random(7);
    PlantNamed(random);
    const std::string bytes = Bytes();
    constexpr std::string_view kHeader = "PK\3\4"sv;
    constexpr std::string_view kRecord = "PK\1\2"sv;
    constexpr std::string_view kSizesFollow = "\x8\0\x8\0tidy\0\0\0\0\0\0\0\0\0\0\0\0"sv;
    const struct {
        std::string_view signature;
        std::size_t at;
        std::string_view patch;
        std::size_t missing = 0;
        std::size_t lost = 0;          ///< bytes at the start
        const char* behind = nullptr;  ///< in place of the directory
    } rows[] = {
        {kHeader, 0, "xxxx"},
        {kHeader, 30, "xxxxxxx"},
        {kHeader, 8, "c"},
        {kHeader, 14, "xxxx"},
        {kHeader, 26, "\xff\xff"},
        {kHeader, 28, "\x9"},
        {kHeader, 6, kSizesFollow},
        {kHeader, 6, kSizesFollow, 0, 0, ""},
        {kHeader, 6, kSizesFollow, 1, 0, "PK\7\bxxxx"},  // the settings, whose checksum differs
        {kHeader, 0, "xxxx", 1, 20},                     // the sheet's size, which begins the file
        {kRecord, 0, "xxxx"},
        {kRecord, 46, "xxxxxxx"},
        {kRecord, 42, "\xff\xff\xff\xff"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(&row - rows);
        std::string damaged = bytes;
        for (std::size_t at = 0; (at = damaged.find(row.signature, at)) != bytes.npos; ++at)
            damaged.replace(at + row.at, row.patch.size(), row.patch);
        if (row.behind) damaged.replace(damaged.find(kRecord), bytes.npos, row.behind);
        damaged.erase(0, row.lost);
        Salvage salvage;
        SalvageGame(damaged, salvage);
        EXPECT_EQ(salvage.missing.size(), row.missing) << testing::PrintToString(salvage.missing);
        EXPECT_EQ(Account(salvage.game.root), Account(world->Root()));
    }
}

// Two authors and a real repository.
TEST_F(Compare, GitComparesAndJoinsGames) {
    Dobject& hall = AddNode(world->Root(), "Hall", 20, 10);
    world->Save(folder / "a.zqlt");
    const auto paint = [&](const char* file, int x, int chr) {
        hall.PutTile(x, 3, chr, 7, 1, 0);
        world->Save(folder / file);
    };
    Shell("git init -q -b main; git config user.name n; git config user.email e@localhost");
    EXPECT_THAT(Run("git-setup --print").out, HasSubstr("merge.quilt.driver"));
    EXPECT_FALSE(std::filesystem::exists(folder / ".gitattributes"));
    EXPECT_THAT(Run("git-setup").out, HasSubstr(".gitattributes: *.zqlt diff=quilt"));
    EXPECT_EQ(Run("git-setup").out, "");
    Shell("git add -A; git commit -qm one; git checkout -qb side");
    paint("a.zqlt", 2, 65);
    EXPECT_THAT(Shell("git diff").out, HasSubstr("Hall: 1 tile in 2, 3, 1 by 1\n"));
    Shell("git commit -qam two");
    EXPECT_THAT(Shell("git show").out, HasSubstr("\n+65 7 1 0\n"));
    Shell("git checkout -q main");
    hall.tiles[62] = {};
    paint("a.zqlt", 9, 66);
    Shell("git commit -qam three");
    EXPECT_EQ(Shell("git merge -q side -m both").status, 0);
    paint("both.zqlt", 2, 65);
    EXPECT_EQ(Run("diff a.zqlt both.zqlt").status, 0);
    Shell("git checkout -q side");
    paint("a.zqlt", 9, 67);
    Shell("git commit -qam four");
    EXPECT_THAT(Shell("git merge main 2>&1").out,
                HasSubstr("conflict: Hall: 1 tile in 9, 3, 1 by 1"));
    EXPECT_EQ(Run("check a.zqlt").status, 0);

    // The picture: three columns, and a frame only in the last.
    ASSERT_EQ(Run("diff both.zqlt a.zqlt --picture p.png").status, 1);
    const Picture png(folder / "p.png");
    EXPECT_EQ(png.image.width, 3u * 160 + 4 * 8);
    unsigned painted = 0;
    unsigned framed = 0;
    for (unsigned y = 20; y < 100; ++y)
        for (unsigned x = 8; x < 168; ++x) {
            painted += png.At(x, y) != png.At(x + 168, y);
            framed += png.At(x + 168, y) != png.At(x + 336, y);
        }
    EXPECT_TRUE(painted > 0 && painted <= 64) << painted;
    EXPECT_EQ(framed, 36u);
}
