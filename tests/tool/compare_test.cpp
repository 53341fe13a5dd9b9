// Comparing, joining and saving of games: the functions over random worlds, the commands by a few
// real calls.

#include "engine/game_archive.h"
#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"
#include "tool/compare/diff.h"
#include "tool/compare/merge.h"
#include "tool/compare/salvage.h"

#include <gmock/gmock.h>
#include <png.h>

#include <algorithm>
#include <functional>
#include <sstream>

using testing::HasSubstr;

namespace {

using Edit = std::function<void(Game&)>;

class Compare : public WorldTest {
protected:
    struct Result {
        int status;
        std::string out;
    };
    // With the tool as quilt-tool in the path.
    Result Shell(const std::string& command) {
        const std::string line = "cd '" + folder.Path() + "' && export PATH=\"$(dirname " +
                                 QUILT_TOOL "):$PATH\" && { " + command + "; } >'" + out.Path() +
                                 "/out' 2>&1 </dev/null";
        const int status = std::system(line.c_str());
        return {WEXITSTATUS(status), FileBytes(out / "out")};
    }

    // The world of the fixture as a game that was read.
    std::string Bytes() {
        std::string why;
        const std::string bytes = ComposeGame(world->GetFont()->Sheet(), world->Root(), 1, 1, why);
        EXPECT_EQ(why, "");
        return bytes;
    }
    static void Read(const std::string& bytes, Game& game, const Edit& edit = {}) {
        GameFault fault;
        std::int32_t id = 0;
        ASSERT_TRUE(ReadGame(
            *ZipReader::InMemory(bytes), "x", [&id] { return ++id; }, game, fault))
            << fault.text;
        if (edit) edit(game);
        SortAll(game.root);
    }
    static void SortAll(Dobject& node) {
        SortByZ(node);
        for (const auto& child : node.children) SortAll(*child);
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
    static void ForAll(Dobject& node, const std::function<void(Dobject&)>& visit) {
        for (const auto& child : node.children) {
            visit(*child);
            ForAll(*child, visit);
        }
    }

    TempFolder folder;
    TempFolder out;
};

Dobject& At(Game& game, const std::string& path) {
    std::istringstream names(path);
    Dobject* node = &game.root;
    for (std::string name; std::getline(names, name, '/');)
        node = std::find_if(node->children.begin(), node->children.end(), [&](const auto& child) {
                   return child->name == name;
               })->get();
    return *node;
}

void Add(Dobject& parent, const std::string& name) {
    parent.children.push_back(std::make_unique<Dobject>());
    Dobject& node = *parent.children.back();
    node.parent = &parent;
    node.Create(name, 3, 2);
    node.PutTile(1, 1, static_cast<int>(name.size()), 7, 8, 0);
}

void Move(Dobject& node, Dobject& parent) {
    Dobject& from = *node.parent;
    const auto at = std::find_if(from.children.begin(), from.children.end(),
                                 [&](const auto& child) { return child.get() == &node; });
    parent.children.splice(parent.children.end(), from.children, at);
    node.parent = &parent;
}

void Remove(Dobject& node) {
    std::erase_if(node.parent->children, [&](const auto& child) { return child.get() == &node; });
}

}  // namespace

// merge(base, x, base), merge(base, base, x) and merge(base, x, x) are x, whatever x is.
TEST_F(Compare, JoiningWithoutASecondHandGivesTheFirst) {
    for (unsigned seed = 1; seed <= 40; ++seed) {
        std::mt19937 random(seed);
        std::string bytes[2];
        for (std::string& each : bytes) {
            PlantRandomWorld(*world, random);
            if (seed % 2) PlantNamed(random);
            world->GetFont()->PutGlyphPixel(static_cast<int>(random() % 256), 1, 1, 3);
            each = Bytes();
        }
        // An unlike world, and the same with a few nodes taken out or moved.
        const Edit edits[] = {{}, [&random](Game& game) {
                                  for (int i = 0; i < 4 && game.root.children.size() > 1; ++i) {
                                      Dobject& board = *game.root.children.front();
                                      if (i % 2)
                                          Remove(board);
                                      else if (!board.children.empty())
                                          Move(*board.children.back(), *game.root.children.back());
                                      game.root.children.back()->posz += random() % 3;
                                  }
                              }};
        for (const int kind : {0, 1}) {
            Game x;
            Read(bytes[kind], x, edits[kind]);
            std::string why;
            const std::string other = ComposeGame(x.sheet.get(), x.root, 2, 1, why);
            for (const int call : {0, 1, 2}) {
                SCOPED_TRACE("seed " + std::to_string(seed) + ", call " + std::to_string(call));
                Game base, ours, theirs, wanted;
                Read(bytes[1], base);
                Read(call == 1 ? bytes[1] : other, ours);
                Read(call == 0 ? bytes[1] : other, theirs);
                Read(other, wanted);
                const auto conflicts = MergeGames(base, ours, theirs, Favor::kOurs);
                ASSERT_EQ(conflicts.size(), 0u) << conflicts[0].path << ": " << conflicts[0].what;
                ASSERT_EQ(Told(ours), Told(wanted));
                ASSERT_TRUE(DiffGames(ours, wanted).Alike());
            }
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
        const auto edit = [seed](Game& game, int hand) {
            std::mt19937 rolls(seed * 2 + static_cast<unsigned>(hand));
            std::vector<Dobject*> nodes;
            ForAll(game.root, [&](Dobject& node) { nodes.push_back(&node); });
            for (std::size_t i = 0; i < nodes.size(); ++i) {
                Dobject& node = *nodes[i];
                for (std::size_t cell = static_cast<std::size_t>(hand); cell < node.tiles.size();
                     cell += 2 + rolls() % 8 * 2)
                    (rolls() % 2 ? node.tiles[cell].chr : node.tiles[cell].bg) ^= 5;
                if (rolls() % 2) (hand ? node.posx : node.posy) ^= 1;
                if (rolls() % 3 == 0)
                    node.script.insert(hand ? 2u : node.script.size() - 1, "new\n");
                // A node with little in it is not known again under another name.
                if (hand && node.tiles.size() > 20 && rolls() % 4 == 0) node.name += "x";
            }
            game.sheet->line[0][hand * 8] ^= 1;
            if (hand) game.videoMode = 2;
            Add(*game.root.children.front(), hand ? "theirs" : "ours");
        };
        for (const bool swapped : {false, true}) {
            Game base, sides[2], both;
            Read(bytes, base);
            for (int hand : {0, 1}) Read(bytes, sides[hand], [&](Game& g) { edit(g, hand); });
            // What each side alone made is a difference; names are the second hand's alone.
            Read(bytes, both, [&](Game& g) {
                edit(g, 0);
                Dobject& first = *g.root.children.front();
                std::unique_ptr<Dobject> added = std::move(first.children.back());
                first.children.pop_back();
                edit(g, 1);
                first.children.insert(std::prev(first.children.end()), std::move(added));
            });
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
        Edit edit;
        Edit other;            ///< of the other side; none: not joined
        const char* conflict;  ///< empty: it joins well
    } rows[] = {
        {"video mode 1 -> 3", [](Game& g) { g.videoMode = 3; }, [](Game& g) { g.videoMode = 0; },
         "settings: video mode: base 1, ours 3, theirs 0"},
        {"glyphs: 1 changed: 65", [](Game& g) { g.sheet->line[33][9] ^= 1; },
         [](Game& g) { g.sheet->line[34][9] ^= 1; }, "sheet: glyph 65"},
        {"Hall: 1 tile in 3, 4, 1 by 1", [](Game& g) { At(g, "Hall").tiles[83].chr = 99; },
         [](Game& g) { At(g, "Hall").tiles[83].chr = 98; }, "Hall: 1 tile in 3, 4, 1 by 1"},
        {"Hall: 3 tiles in 0, 0, 2 by 2; 9, 1, 1 by 1",
         [](Game& g) {
             for (std::size_t cell : {0, 21, 29}) At(g, "Hall").tiles[cell].fg = 99;
         },
         [](Game& g) { At(g, "Hall").tiles[0].bg = 98; }, ""},
        {"Hall: x 0 -> 4, z 0 -> -2",
         [](Game& g) { At(g, "Hall").posx = 4, At(g, "Hall").posz = -2; },
         [](Game& g) { At(g, "Hall").posx = 5; }, "Hall: x: base 0, ours 4, theirs 5"},
        {"Cave: width 8 -> 4, view width 8 -> 4", [](Game& g) { At(g, "Cave").Resize(4, 8); },
         [](Game& g) { At(g, "Cave").tiles[13].chr = 7; },
         "Cave: theirs painted where ours cut the grid: 1 tile in 5, 1, 1 by 1"},
        {"Vault: renamed from Hall", [](Game& g) { At(g, "Hall").name = "Vault"; },
         [](Game& g) { At(g, "Hall").name = "Attic"; },
         "Vault: name: base Hall, ours Vault, theirs Attic"},
        {"Cave/door: moved from Hall/door",
         [](Game& g) { Move(At(g, "Hall/door"), At(g, "Cave")); },
         [](Game& g) { Move(At(g, "Hall/door"), At(g, "Hall/lamp")); },
         "Cave/door: moved to Cave by ours, to Hall/lamp by theirs"},
        {"Hall/lamp/door: moved from Hall/door",
         [](Game& g) { Move(At(g, "Hall/door"), At(g, "Hall/lamp")); },
         [](Game& g) { Move(At(g, "Hall/lamp"), At(g, "Hall/door")); },
         "Hall/lamp: moved below itself by both sides together; its place is ours"},
        {"Hall: removed, 20 by 10, with 2 objects", [](Game& g) { Remove(At(g, "Hall")); },
         [](Game& g) { At(g, "Hall/door").posx = 3; }, "Hall: removed by ours, changed by theirs"},
        {"Hall/new: added, 3 by 2", [](Game& g) { Add(At(g, "Hall"), "new"); },
         [](Game& g) { Remove(At(g, "Hall")); }, "Hall: changed by ours, removed by theirs"},
        {"Hall: its children in another order",
         [](Game& g) { Move(At(g, "Hall/door"), At(g, "Hall")); },
         {},
         ""},
        {"--- Hall (script)\n+++ Hall (script)\n@@ -1,3 +1,3 @@\n one\n-two\n+2\n three\n",
         [](Game& g) { At(g, "Hall").script = "one\n2\nthree"; },
         [](Game& g) { At(g, "Hall").script = "one\nzwei\nthree"; }, "Hall: script, line 2"},
    };
    std::string why;
    PutFile(folder / "a.zqlt", bytes);
    for (const auto& row : rows) {
        SCOPED_TRACE(row.line);
        Game edited, theirs, base;
        Read(bytes, edited, row.edit);
        PutFile(folder / "b.zqlt",
                ComposeGame(edited.sheet.get(), edited.root, *edited.videoMode, 1, why));
        const std::string wanted = Told(edited);
        const Result diff = Shell("quilt-tool diff a.zqlt b.zqlt");
        EXPECT_EQ(diff.status, 1);
        EXPECT_THAT(diff.out, HasSubstr(row.line));
        if (!row.other) continue;
        Read(bytes, base);
        Read(bytes, theirs, row.other);
        PutFile(folder / "c.zqlt",
                ComposeGame(theirs.sheet.get(), theirs.root, *theirs.videoMode, 1, why));
        const Result merge = Shell("quilt-tool merge a.zqlt b.zqlt c.zqlt -o d.zqlt");
        const bool clash = *row.conflict != '\0';
        EXPECT_EQ(merge.status, clash);
        EXPECT_EQ(merge.out, clash ? "conflict: " + std::string(row.conflict) + "\n" : "");
        Game joined;
        Read(FileBytes(folder / "d.zqlt"), joined);
        EXPECT_EQ(Told(joined) == wanted, clash);
        // Favoring theirs is the same from the other side.
        EXPECT_EQ(Shell("quilt-tool merge a.zqlt c.zqlt b.zqlt -o e.zqlt --theirs").status, clash);
        Game other;
        Read(FileBytes(folder / "e.zqlt"), other);
        EXPECT_EQ(Told(other) == wanted, clash);
    }
    EXPECT_EQ(Shell("quilt-tool merge a.zqlt b.zqlt c.zqlt -o d.zqlt --marks").status, 1);
    EXPECT_THAT(Shell("quilt-tool cat d.zqlt").out,
                HasSubstr("one\n<<<<<<< ours\n2\n=======\nzwei\n>>>>>>> theirs\nthree\n"));
    EXPECT_EQ(Shell("quilt-tool diff a.zqlt a.zqlt").out, "");
    EXPECT_EQ(Shell("quilt-tool diff --quiet a.zqlt a.zqlt").status, 0);
    EXPECT_EQ(Shell("quilt-tool diff a.zqlt none.zqlt").status, 2);
}

// Cut at many places: each node that stands whole before the cut is there.
TEST_F(Compare, WhatIsLeftOfACutArchiveIsSaved) {
    std::mt19937 random(7);
    PlantNamed(random);
    const std::string bytes = Bytes();
    std::string text = PlainText(world->Root());
    std::size_t saved = 0;
    for (std::size_t cut = 0; cut <= bytes.size(); cut += 97) {
        Salvage salvage;
        SalvageGame(std::string_view(bytes).substr(0, cut), salvage);
        std::size_t end = 0;
        int whole = 0;
        ForAll(salvage.game.root, [&](Dobject& node) {
            // The block of its own: as it was, but for the last one.
            std::ostringstream block;
            Dobject alone;
            alone.name = node.name, alone.posz = node.posz, alone.script = node.script;
            for (const NodeNumber& number : kNodeNumbers) alone.*number.field = node.*number.field;
            alone.tiles = node.tiles;
            WriteObject(alone, block);
            std::string own = block.str();
            own.resize(own.size() - 4);
            const std::size_t at = text.find(own);
            whole += at != text.npos;
            if (at != text.npos) end = std::max(end, at + own.size());
        });
        std::size_t nodes = 0;
        ForAll(salvage.game.root, [&](Dobject&) { ++nodes; });
        EXPECT_LE(nodes, static_cast<std::size_t>(whole) + 1) << cut;
        EXPECT_GE(nodes, saved) << cut;
        saved = nodes;
        // No whole node stood before one that is there and was left out.
        std::size_t before = 0;
        for (std::size_t at = text.find("~ob n"); at < end; at = text.find("~ob n", at + 1))
            before += text.compare(at, 8, "~ob not ") != 0;  // a line of a script
        EXPECT_EQ(before, static_cast<std::size_t>(whole)) << cut;
    }
    Salvage all;
    SalvageGame(bytes, all);
    EXPECT_TRUE(all.missing.empty());
    EXPECT_EQ(Account(all.game.root), Account(world->Root()));
    PutFile(folder / "cut.zqlt", bytes.substr(0, bytes.size() / 2));
    EXPECT_EQ(Shell("quilt-tool repair cut.zqlt ./cut.zqlt").status, 2);
    EXPECT_THAT(Shell("quilt-tool repair cut.zqlt good.zqlt").out, HasSubstr("missing: "));
    EXPECT_EQ(Shell("quilt-tool check good.zqlt").status, 0);
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
    EXPECT_THAT(Shell("quilt-tool git-setup --print").out, HasSubstr("merge.quilt.driver"));
    EXPECT_FALSE(std::filesystem::exists(folder / ".gitattributes"));
    EXPECT_THAT(Shell("quilt-tool git-setup").out, HasSubstr(".gitattributes: *.zqlt diff=quilt"));
    EXPECT_EQ(Shell("quilt-tool git-setup").out, "");
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
    EXPECT_EQ(Shell("quilt-tool diff a.zqlt both.zqlt").status, 0);
    Shell("git checkout -q side");
    paint("a.zqlt", 9, 67);
    Shell("git commit -qam four");
    EXPECT_THAT(Shell("git merge main").out, HasSubstr("conflict: Hall: 1 tile in 9, 3, 1 by 1"));
    EXPECT_EQ(Shell("quilt-tool check a.zqlt").status, 0);

    // The picture: three columns, and a frame only in the last.
    ASSERT_EQ(Shell("quilt-tool diff both.zqlt a.zqlt --picture p.png").status, 1);
    png_image png{};
    png.version = PNG_IMAGE_VERSION;
    ASSERT_TRUE(png_image_begin_read_from_file(&png, (folder / "p.png").c_str()));
    png.format = PNG_FORMAT_RGB;
    std::string colors(PNG_IMAGE_SIZE(png), '\0');
    png_image_finish_read(&png, nullptr, colors.data(), 0, nullptr);
    EXPECT_EQ(png.width, 3u * 160 + 4 * 8);
    const auto columnsDiffer = [&](unsigned one, unsigned two) {
        unsigned count = 0;
        for (unsigned y = 20; y < 100; ++y)
            for (unsigned x = 0; x < 160; ++x)
                count += colors.substr((y * png.width + one + x) * 3, 3) !=
                         colors.substr((y * png.width + two + x) * 3, 3);
        return count;
    };
    EXPECT_GT(columnsDiffer(8, 176), 0u);
    EXPECT_LE(columnsDiffer(8, 176), 64u);
    EXPECT_EQ(columnsDiffer(176, 344), 36u);
}
