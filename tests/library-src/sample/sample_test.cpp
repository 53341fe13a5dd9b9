// The sample game as it was built: that it shows what it is for, and that its scripts are scripts.

#include "engine/zip_stream.h"
#include "tests/library-src/sample/script_faults.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

namespace {

constexpr const char* kSample = "Library/samples/lamplight.zqlt";

template <typename Act>
void ForEachNode(const Dobject& parent, Act act) {
    for (const auto& child : parent.children) {
        act(*child);
        ForEachNode(*child, act);
    }
}

class Sample : public WorldTest {
protected:
    Sample() {
        world->SetViewSize(80, 60);
        EXPECT_TRUE(world->Load(kSample));
    }

    Dobject& Board(const std::string& name) { return Child(world->Root(), name); }
    static Dobject& Child(const Dobject& parent, const std::string& name) {
        for (const auto& child : parent.children)
            if (child->name == name) return *child;
        ADD_FAILURE() << "no " << name << " on " << parent.name;
        return *parent.children.front();
    }
    static std::vector<std::string> NamesOn(const Dobject& parent) {
        std::vector<std::string> names;
        for (const auto& child : parent.children) names.push_back(child->name);
        return names;
    }

    // The pixels of a board as the edit view shows it.
    std::string Picture(const Dobject& board) {
        world->ShowBoard(board.id);
        const Bitmap target = MakeBitmap(640, 480);
        clear_bitmap(target.get());
        world->DrawWorld(target.get(), 0, 0);
        std::string pixels;
        for (int y = 0; y < 480; ++y)
            pixels.append(reinterpret_cast<const char*>(target->line[y]), 640);
        return pixels;
    }

    template <typename Fits>
    int CountCells(const Dobject& node, Fits fits) {
        return static_cast<int>(std::count_if(node.tiles.begin(), node.tiles.end(), fits));
    }

    static std::string Entry(const std::string& path, const std::string& name) {
        ZipReader archive(path);
        EXPECT_TRUE(archive.OpenEntry(name)) << path << " " << name;
        std::string bytes;
        char buffer[4096];
        for (int count; (count = archive.Read(buffer, sizeof buffer)) > 0;)
            bytes.append(buffer, static_cast<std::size_t>(count));
        return bytes;
    }

    void SetZ(Dobject& node, int z) { world->SetProperty(HandleOf(node), kPosZ, z); }
};

TEST_F(Sample, HasFourBoardsOfTheScreensSize) {
    EXPECT_THAT(NamesOn(world->Root()), ElementsAre("Title", "Harbour", "Lamp_room", "Cave"));
    for (const auto& board : world->Root().children) {
        EXPECT_EQ(board->vieww, 80) << board->name;
        EXPECT_EQ(board->viewh, 60) << board->name;
    }
}

TEST_F(Sample, ToolFindsNothingToSay) {
    EXPECT_EQ(std::system(QUILT_TOOL " check --strict Library/samples/lamplight.zqlt"), 0);
}

TEST_F(Sample, AnotherBuildGivesTheSameBytes) {
    const TempFolder folder;
    const std::string again = folder / "again.zqlt";
    ASSERT_EQ(std::system((QUILT_SAMPLE " " + again + " " SPRITES).c_str()), 0);
    EXPECT_TRUE(FileBytes(again) == FileBytes(kSample));
}

// Holes: what lies behind the window is a part of the picture, and so is what stands before it.
TEST_F(Sample, WindowLetsTheViewThrough) {
    const Dobject& room = Board("Lamp_room");
    Dobject& window = Child(room, "window");
    const std::string shown = Picture(room);
    for (const char* name : {"view", "window", "curtains", "cat"}) {
        Child(room, name).hidden = 1;
        EXPECT_NE(Picture(room), shown) << name;
        Child(room, name).hidden = 0;
    }
    EXPECT_GT(CountCells(window, [](const Dtile& t) { return t.fg == 0 && t.bg == 0; }), 300);
    EXPECT_GT(CountCells(window, [](const Dtile& t) { return t.fg != 0 && t.bg == 0; }), 50);
}

TEST_F(Sample, DepthDecidesWhoIsInFront) {
    const Dobject& room = Board("Lamp_room");
    const std::string shown = Picture(room);
    SetZ(Child(room, "view"), 6);
    EXPECT_NE(Picture(room), shown) << "the view before the window";
    SetZ(Child(room, "view"), 1);
    SetZ(Child(room, "curtains"), 4);
    EXPECT_NE(Picture(room), shown) << "the curtains behind the window";
}

TEST_F(Sample, ViewportsAreSmallerThanTheirGrids) {
    Dobject& cave = Board("Cave");
    Dobject& fall = Child(cave, "fall");
    EXPECT_EQ(cave.width, 160);
    EXPECT_LT(fall.viewh, fall.height);
    // The four positions of the waterfall's script show four pictures; a fifth would be the first.
    std::vector<std::string> pictures;
    for (int y = 0; y < 4; ++y) {
        fall.viewy = y;
        pictures.push_back(Picture(cave));
    }
    std::sort(pictures.begin(), pictures.end());
    EXPECT_EQ(std::unique(pictures.begin(), pictures.end()), pictures.end());
}

TEST_F(Sample, SpritesHaveColoursOfTheirOwn) {
    std::set<int> values;
    for (int glyph = 128; glyph < 160; ++glyph)
        for (int i = 0; i < 64; ++i)
            values.insert(world->GetFont()->GetGlyphPixel(glyph, i % 8, i / 8));
    EXPECT_GT(values.size(), 15u);
    int sprites = 0;
    ForEachNode(world->Root(), [&](const Dobject& node) {
        sprites += CountCells(node, [](const Dtile& t) { return Signed(t.fg) == -2; });
    });
    EXPECT_GT(sprites, 60);
}

TEST_F(Sample, ASaveChangesNothing) {
    const TempFolder folder;
    ASSERT_TRUE(world->Save(folder / "again.zqlt"));
    for (const char* name : {"font.hdr", "font.raw", "game.qlt", "res.dat"})
        EXPECT_TRUE(Entry(folder / "again.zqlt", name) == Entry(kSample, name)) << name;
}

TEST_F(Sample, ScriptsSpeakOfWhatThereIs) {
    GameNames names;
    for (const auto& board : world->Root().children) names.boards.insert(board->name);
    int scripts = 0;
    ForEachNode(world->Root(), [&](const Dobject& node) { names.objects.insert(node.name); });
    ForEachNode(world->Root(), [&](const Dobject& node) {
        EXPECT_THAT(ScriptFaults(node.script, names), IsEmpty()) << node.name;
        scripts += !node.script.empty();
        if (node.script.starts_with("@")) {
            EXPECT_EQ(node.script.substr(1, node.script.find('\n') - 1), node.name);
        }
    });
    EXPECT_GT(scripts, 25);
}

TEST(ScriptFaults, AreFound) {
    const GameNames names{{"Hall"}, {"Key"}};
    const char* bad[] = {
        "#jump n",       "#walk up",
        "#cycle 256",    "#board Cellar",
        "#focus Lock",   "#mod posq 1",
        "#zap touch",    "#ifex a = 1 #end",
        "#play c",       "#ifex a == 1 #jump",
        "#light 6 32 0", "#end now",
        "/n/x",          "/n?",
        "#end\n@late",   "#charex 1 2 3 4 5",
    };
    for (const char* script : bad)
        EXPECT_THAT(ScriptFaults(script, names), testing::SizeIs(1)) << script;
    EXPECT_THAT(ScriptFaults("@me\n' #jump\n/n?e\n:touch\n#zap touch\n#board Hall\n#focus Key\n"
                             "#ifex luck >= 7 #play \"tc - g\"\nHi #jump\n",
                             names),
                IsEmpty());
}

}  // namespace
