// The real quilt-tool, run as people run it.

#include "engine/compositor.h"
#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/tool/shell.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

using testing::HasSubstr;
using testing::StartsWith;

namespace {

class Tool : public ToolTest {
protected:
    void SaveGame(const std::string& name) { ASSERT_TRUE(world->Save(folder / name)); }

    void PlantGame() {
        Dobject& first = AddNode(world->Root(), "first", 30, 20, 1);
        first.viewx = 2;
        first.viewy = 1;
        first.vieww = 12;
        first.viewh = 19;
        for (int i = 0; i < 600; ++i) first.PutTile(i % 30, i / 30, i % 256, 1 + i % 200, i % 3, 0);
        Dobject& door = AddNode(first, "door", 3, 2, -4);
        door.script = "#bind a\n\n#end";
        door.posx = 4;
        for (int i = 0; i < 6; ++i) door.PutTile(i % 3, i / 3, 65, -2, i % 2, 1);
        AddNode(world->Root(), "second", 1, 1, 5).posx = 3;
    }
};

}  // namespace

TEST_F(Tool, InfoTellsTheTree) {
    PlantGame();
    world->videoMode = 2;
    world->windowed = 0;
    SaveGame("a.zqlt");
    const Result json = Run("info --json a.zqlt");
    EXPECT_EQ(json.status, 0) << json.err;
    EXPECT_EQ(json.out,
              R"({"font":{"width":128,"height":128,"glyphs":256},"video_mode":2,"windowed":0,)"
              R"("boards":[{"name":"first","posx":0,"posy":0,"posz":1,"width":30,"height":20,)"
              R"("viewx":2,"viewy":1,"vieww":12,"viewh":19,"script_lines":0,"children":[)"
              R"({"name":"door","posx":4,"posy":0,"posz":-4,"width":3,"height":2,"viewx":0,)"
              R"("viewy":0,"vieww":3,"viewh":2,"script_lines":3,"children":[]}]},)"
              R"({"name":"second","posx":3,"posy":0,"posz":5,"width":1,"height":1,"viewx":0,)"
              R"("viewy":0,"vieww":1,"viewh":1,"script_lines":0,"children":[]}]})"
              "\n");
    EXPECT_THAT(Run("info a.zqlt").out,
                HasSubstr("\n  door: at 4, 0, z -4, 3 by 2 tiles, view 0, 0, 3 by 2, "
                          "3 script lines\n"));
}

TEST_F(Tool, NamesOfAnyBytesAreSafe) {
    AddNode(world->Root(), "\x1b[31m\"\\\xff\xc2\x9bz\xc3\xa4", 1, 1);
    SaveGame("a.zqlt");
    const std::string text = Run("info a.zqlt").out + Run("check a.zqlt nothing\x1b").err;
    for (char c : text) EXPECT_TRUE(c == '\n' || static_cast<unsigned char>(c) >= ' ') << text;
    EXPECT_THAT(text, HasSubstr("\\x1b[31m\"\\x5c\\xff\\xc2\\x9bz\xc3\xa4:"));
    const auto json = nlohmann::json::parse(Run("info a.zqlt --json").out);
    EXPECT_THAT(json["boards"][0]["name"].get<std::string>(), StartsWith("\x1b[31m\"\\"));
}

TEST_F(Tool, RenderShowsABoardAsTheEditorDoes) {
    PlantGame();
    SaveGame("a.zqlt");
    world->ShowBoard(world->Root().children.front()->id);
    world->SetViewSize(12, 19);
    const Bitmap target = MakeBitmap(12 * 8, 19 * 8);
    clear_bitmap(target.get());
    world->DrawWorld(target.get(), 0, 0);
    const RGB* palette = world->GetFont()->GetPalette();
    for (const unsigned scale : {1u, 3u}) {
        ASSERT_EQ(Run("render a.zqlt one.png --scale " + std::to_string(scale)).status, 0);
        const Picture picture(folder / "one.png");
        EXPECT_TRUE(picture.paletted);
        ASSERT_EQ(picture.image.width, 12u * 8 * scale);
        ASSERT_EQ(picture.image.height, 19u * 8 * scale);
        for (std::size_t i = 0; i < picture.colors.size(); ++i) {
            const std::size_t at = i / 3;
            const unsigned w = picture.image.width;
            const RGB& color = palette[getpixel(target.get(), static_cast<int>(at % w / scale),
                                                static_cast<int>(at / w / scale))];
            const int part = i % 3 == 0 ? color.r : i % 3 == 1 ? color.g : color.b;
            ASSERT_EQ(static_cast<unsigned char>(picture.colors[i]) >> 2, part) << i;
        }
    }
    EXPECT_EQ(Run("render a.zqlt two.png --board second").status, 0);
    EXPECT_EQ(Picture(folder / "two.png").image.width, 8u);
}

TEST_F(Tool, CatAndRepackWriteTheWorld) {
    std::mt19937 random(5);
    PlantRandomWorld(*world, random);
    SaveGame("a.zqlt");
    EXPECT_EQ(Run("cat a.zqlt").out, PlainText(world->Root()));
    EXPECT_EQ(Run("repack a.zqlt b.zqlt").status, 0);
    const auto before = ReadZip(FileBytes(folder / "a.zqlt"));
    const auto after = ReadZip(FileBytes(folder / "b.zqlt"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) EXPECT_EQ(after[i].bytes, before[i].bytes);
    // In place, from an unusual form.
    PutFile(folder / "own.zqlt",
            MakeZip({{"OWN.QLT",
                      "~endvars ~endimports ~ob b 0 0 0 2 1 0 0 2 1 1 2 3 4 1 2 3 4\n~pb\n"
                      "~pe\n~oe"},
                     {"font.hdr", "1 2 1"},
                     {"font.raw", "ab"}}));
    EXPECT_EQ(Run("repack own.zqlt own.zqlt").status, 0);
    const auto own = ReadZip(FileBytes(folder / "own.zqlt"));
    ASSERT_EQ(own.size(), 4u);
    EXPECT_EQ(own[1].bytes, "97 98 ");
    EXPECT_THAT(own[2].bytes, HasSubstr("\r\n-2 1 2 3 4\r\n"));
    EXPECT_EQ(own[3].bytes, "1 1");
    // The moment in an archive is the one of what was repacked.
    const std::string once = FileBytes(folder / "own.zqlt");
    EXPECT_EQ(Shell("sleep 2; quilt-tool repack own.zqlt own.zqlt").status, 0);
    EXPECT_EQ(FileBytes(folder / "own.zqlt"), once);
}

TEST_F(Tool, CheckFindsWhatIsSuspect) {
    PutFile(folder / "a.zqlt",
            MakeZip(GameEntries(
                "~endvars\n~endimports\n"
                "~ob b 0\n0 0 2 1\n1 0 2 1\n1 2 3 0 2 2 3 0\n~pb\nx\n~pbx\n~pexit\n~oe\n"
                "~ob c 0\n0 0 1 1\n0 0 1 1\n0 0 0 0\nno\n~pe\n~anything\n"
                "~ob b 1\n0 0 1 1\n0 0 1 1\n0 0 0 0\n~pb\n~pe\n~oe\nrest\n")));
    // A viewport past each edge, and the largest that is within.
    std::string views = "~endvars\n~endimports\n";
    int number = 0;
    for (const char* view : {"0 0 2 4", "-1 0 1 1", "0 -1 1 1", "1 0 2 1", "0 2 1 2", "0 0 -1 1",
                             "0 0 1 -1", "2147483647 0 2 1", "0 0 2 3", "1 2 1 1"})
        views += "~ob v" + std::to_string(number++) + " 0\n0 0 2 3\n" + view +
                 "\n-6 1 2 3 0\n~pb\n~pe\n~oe\n";
    PutFile(folder / "views.zqlt", MakeZip(GameEntries(views)));
    const std::string past = Run("check views.zqlt").out;
    for (int i = 0; i < number; ++i)
        EXPECT_EQ(past.find("'v" + std::to_string(i) + "' reaches past") != past.npos, i < 8) << i;
    PutFile(folder / "scripts.zqlt",
            MakeZip(GameEntries("~endvars\n~endimports\n~ob s 0\n0 0 1 1\n0 0 1 1\n0 0 0 0\n~pb\n"
                                "#WALK n\n#board\n#zap hERE\n#restore gone\n:Here now\n'#foo\n"
                                "#play \"#foo\"\nan #foe\n#zap cat.gone\n#if #end\n~pe\n~oe\n")));
    const std::string script = "scripts.zqlt: game.qlt, line 3: script of 's', line ";
    EXPECT_EQ(Run("check scripts.zqlt").out,
              script + "2: #board has nothing behind it\n" + script +
                  "4: #restore names the label 'gone', which the script does not have\n" + script +
                  "8: #foe is no command\n" + script + "10: #if has nothing behind it\n");
    PutFile(folder / "good.zqlt", MakeZip(GameEntries("~endvars\n~endimports\n")));
    PutFile(folder / "bad.zqlt", MakeZip(GameEntries("~endvars")));
    const std::string first =
        "a.zqlt: game.qlt, line 3: 1 cells of 'b' have glyphs beyond the sheet's 2, the first 2 at "
        "1, 0\n";
    const std::string all =
        first +
        "a.zqlt: game.qlt, line 3: the viewport of 'b' reaches past its grid\n"
        "a.zqlt: game.qlt, line 9: a line of the script of 'b' begins with ~pb and reads as "
        "empty\n"
        "a.zqlt: game.qlt, line 10: a line of the script of 'b' begins with ~pe and ends it\n"
        "a.zqlt: game.qlt, line 16: '~pb' is missing before the script of 'c'\n"
        "a.zqlt: game.qlt, line 18: '~anything' ends 'c', not '~oe'\n"
        "a.zqlt: game.qlt, line 19: the name 'b' occurs more than once in 'world_tree'\n"
        "a.zqlt: game.qlt, line 26: nothing is read from 'rest' on\n";
    const Result plain = Run("check a.zqlt good.zqlt");
    EXPECT_EQ(plain.out, all);
    EXPECT_EQ(plain.err + std::to_string(plain.status), "0");
    const Result strict = Run("check --strict good.zqlt a.zqlt");
    EXPECT_THAT(strict.err, HasSubstr("quilt-tool: " + first));
    EXPECT_EQ(strict.out + std::to_string(strict.status), "1");
    EXPECT_EQ(Run("check --strict good.zqlt").status, 0);
    // All of them are looked at.
    const Result both = Run("check bad.zqlt a.zqlt");
    EXPECT_EQ(both.out + std::to_string(both.status), all + "1");
    EXPECT_EQ(both.err, "quilt-tool: bad.zqlt: game.qlt, line 1: the text ends in its header\n");
}

TEST_F(Tool, FaultsHaveTheirStatusAndPlace) {
    PlantGame();
    SaveGame("a.zqlt");
    PutFile(folder / "bad.zqlt", "x");
    PutFile(folder / "empty.zqlt", MakeZip({{"readme", "x"}}));
    PutFile(folder / "giant.zqlt",
            MakeZip({{"font.hdr", "1 2 1" + std::string(69995, ' ')}, {"font.raw", "ab"}}));
    PutFile(folder / "long.zobj", MakeZip({{"long.obj", "~ob b 0 0 0 0 0 0 0 0 0\n~pb\n~pe\n~oe" +
                                                            std::string(17 << 20, '\n')}}));
    const std::string board = "~endvars\n~endimports\n~ob b 0\n0 0 1 1\n0 0 ";
    PutFile(folder / "none.zqlt", MakeZip(GameEntries(board + "0 1\n1 2 3 0\n~pb\n~pe\n~oe\n")));
    PutFile(folder / "huge.zqlt",
            MakeZip(GameEntries(board + "32767 32767\n1 2 3 0\n~pb\n~pe\n~oe\n")));
    const struct {
        const char* call;
        int status;
        const char* err;
    } cases[] = {{"info bad.zqlt", 1, "quilt-tool: bad.zqlt: it is no game archive"},
                 {"cat missing.zqlt", 1, "quilt-tool: missing.zqlt: there is no such file\n"},
                 {"cat long.zobj", 1, "quilt-tool: long.zobj: long.obj: its data are damaged\n"},
                 {"info empty.zqlt", 1, "quilt-tool: empty.zqlt: there is no world"},
                 {"repack a.zqlt no/b.zqlt", 1, "quilt-tool: no/b.zqlt: "},
                 {"render none.zqlt b.png", 1, "quilt-tool: none.zqlt: the viewport of 'b'"},
                 {"render huge.zqlt b.png", 1, "quilt-tool: huge.zqlt: the picture of 'b'"},
                 {"render a.zqlt b.png --board x", 2, "quilt-tool: a.zqlt: there is no board 'x'"},
                 {"render a.zqlt b.png --scale 0", 2, "quilt-tool: --scale"},
                 {"cat a.zqlt >/dev/full", 1, "quilt-tool: standard output: "},
                 {"git-setup --print >/dev/full", 1, "quilt-tool: standard output: "},
                 {"--version >/dev/full", 1, "quilt-tool: standard output: "},
                 {"info giant.zqlt", 1, "quilt-tool: giant.zqlt: font.hdr: its 70000 bytes"},
                 {"info", 2, "quilt-tool: GAME is required"},
                 {"other a.zqlt", 2, "quilt-tool: "},
                 {"diff a.zqlt missing.zqlt", 2, "quilt-tool: missing.zqlt: "},
                 {"diff --quiet a.zqlt a.zqlt", 0, ""},
                 {"", 2, "quilt-tool: "}};
    ASSERT_EQ(Shell("git init -q").status, 0);
    for (const auto& c : cases) {
        const Result result = Run(c.call);
        EXPECT_EQ(result.status, c.status) << c.call;
        EXPECT_THAT(result.err, StartsWith(c.err)) << c.call;
        EXPECT_EQ(result.out, "") << c.call;
    }
#ifndef QUILT_SANITIZED
    // A board of 16 MB whose surface is one of 128.
    PutFile(folder / "wide.zqlt",
            MakeZip(GameEntries("~endvars\n~endimports\n~ob b 0\n0 0 2000 1000\n0 0 9 9\n"
                                "-2000000 1 2 3 0\n~pb\n~pe\n~oe\n")));
    for (const char* most : {"20000", "40000", "120000"}) {
        const Result result =
            Shell("ulimit -v " + std::string(most) + "; quilt-tool render wide.zqlt b.png");
        EXPECT_EQ(result.status, 1) << most;
        EXPECT_THAT(result.err, HasSubstr("memory")) << most;
    }
#endif
    EXPECT_FALSE(std::filesystem::exists(folder / "b.png"));
}
