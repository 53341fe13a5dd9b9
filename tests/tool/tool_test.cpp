// The real quilt-tool, run as people run it.

#include "engine/compositor.h"
#include "engine/game_archive.h"

#include "tests/support/plain_zip.h"
#include "tests/tool/shell.h"

#include <QImage>

#include <regex>

using namespace testing;

namespace {

struct Tool : ToolTest {
    void SaveGame(const std::string& name) { ASSERT_TRUE(world->Save(folder / name)); }

    void PlantGame() {
        Dobject& first = AddNode(world->Root(), "first", 30, 20, 1);
        first.viewx = 2;
        first.viewy = 1;
        first.vieww = 12;
        first.viewh = 19;
        for (int i = 0; i < 600; ++i) first.PutTile(i % 30, i / 30, i % 256, 1 + i % 200, i % 3, 0);
        Dobject& door = AddNode(first, "door", 6, 2, -4);
        door.posx = 4;
        door.posy = 5;
        door.viewx = 1;
        door.vieww = 3;
        for (int i = 0; i < 6; ++i) door.PutTile(i % 3, i / 3, 65, -2, i % 2, 1);
        Dobject& second = AddNode(world->Root(), "second", 2, 1, 5);
        second.posx = 3;
        for (int x : {0, 1}) second.PutTile(x, 0, 65, x + 2, x + 4, 0);
    }
};

}  // namespace

TEST_F(Tool, RenderShowsABoardAsTheEditorDoes) {
    PlantGame();
    SaveGame("a.zqlt");
    const RGB* palette = world->GetFont()->GetPalette();
    for (const int scale : {1, 3}) {
        const Dobject& board = *world->Root().children[scale == 1];
        world->ShowBoard(board.id);
        world->SetViewSize(board.vieww, board.viewh);
        const Bitmap target = MakeBitmap(board.vieww * 8, board.viewh * 8);
        world->DrawWorld(target.get(), 0, 0);
        const std::string call = "render a.zqlt one.png --board " + board.name + " --scale ";
        ASSERT_EQ(Run(call + std::to_string(scale)).status, 0);
        const QImage picture(QString::fromStdString(folder / "one.png"));
        ASSERT_EQ(picture.size(), QSize(target->w, target->h) * scale);
        for (int i = 0; i < picture.width() * picture.height(); ++i) {
            const int x = i % picture.width(), y = i / picture.width();
            const RGB& color = palette[target->line[y / scale][x / scale]];
            const QRgb seen = picture.pixel(x, y) >> 2 & 0x3f3f3f;
            ASSERT_EQ(seen, QRgb(color.r << 16 | color.g << 8 | color.b)) << x << ", " << y;
        }
        EXPECT_EQ(FileBytes(folder / "one.png")[24], scale == 1 ? 2 : 8) << "bits a pixel";
    }
}

TEST_F(Tool, CatAndRepackWriteTheWorld) {
    std::mt19937 random(7);
    PlantRandomWorld(*world, random);
    SaveGame("a.zqlt");
    EXPECT_EQ(Run("repack a.zqlt b.zqlt").status, 0);
    const auto before = ReadZip(FileBytes(folder / "a.zqlt"));
    EXPECT_EQ(Run("cat a.zqlt | sed 's/$/\\r/'").out, before[2].bytes);
    const auto after = ReadZip(FileBytes(folder / "b.zqlt"));
    ASSERT_EQ(after.size(), before.size());
    for (std::size_t i = 0; i < after.size(); ++i) EXPECT_EQ(after[i].bytes, before[i].bytes);
    // What is kept of two games, to be had back.
    Shell(
        "k='Tessel Works/QUILT!/kept'; mkdir -p \"$k\"; cp a.zqlt \"$k/a-1 5.zqlt\"; cp a.zqlt "
        "\"$k/b-1 6.zqlt\"");
    setenv("XDG_DATA_HOME", folder.Path().c_str(), 1);
    const std::string one = Run("kept a.zqlt").out;
    EXPECT_THAT(one, MatchesRegex("1  5  a-1  1 boards, 4 objects, [0-9]+ bytes\n"));
    const std::string more = " && ! quilt-tool kept --restore 3 back.zqlt";
    EXPECT_EQ(Run("kept --restore 2 back.zqlt && diff a.zqlt back.zqlt" + more).status, 0);
    // In place; the moment in an archive is the one of what was repacked.
    std::filesystem::copy_file("Library/default.zqlt", folder / "old.zqlt");
    EXPECT_EQ(Run("repack old.zqlt old.zqlt").status, 0);
    EXPECT_GT(ReadZip(FileBytes(folder / "old.zqlt"))[2].age, 2);
}

TEST_F(Tool, CheckFindsWhatIsSuspect) {
    // A viewport past each edge, and the largest that is within.
    std::string views, past;
    int number = 0;
    for (const char* view : {"0 0 2 4", "-1 0 1 1", "0 -1 1 1", "1 0 2 1", "0 2 1 2", "0 0 -1 1",
                             "0 0 1 -1", "2147483647 0 2 1", "0 0 2 3", "0 0 2 0", "1 2 1 1"}) {
        const std::string name = "v" + std::to_string(number++);
        views += "~ob " + name + " 0\n0 0 2 3\n" + view + "\n-6 1 2 3 0\n~pb\n~pe\n~oe\n";
        if (number < 9)
            past += std::to_string(7 * number - 4) + ": the viewport of '" + name +
                    "' reaches past its grid\n";
    }
    const std::pair<std::string, std::string> rows[] = {
        {"~ob b 0\n0 0 2 1\n1 0 2 1\n1 2 3 0 2 2 3 0\n~pb\nx\n~pbx\n~pexit\n~oe\n"
         "~ob c 0\n0 0 1 1\n0 0 1 1\n0 0 0 0\nno\n~pe\n~anything\n"
         "~ob b 1\n0 0 1 1\n0 0 1 1\n0 0 0 0\n~pb\n~pe\n~oe\nrest\n",
         "3: 1 cells of 'b' have glyphs beyond the sheet's 2, the first 2 at 1, 0\n"
         "3: the viewport of 'b' reaches past its grid\n"
         "9: a line of the script of 'b' begins with ~pb and reads as empty\n"
         "10: a line of the script of 'b' begins with ~pe and ends it\n"
         "16: '~pb' is missing before the script of 'c'\n"
         "18: '~anything' ends 'c', not '~oe'\n"
         "19: the name 'b' occurs more than once in 'world_tree'\n"
         "26: nothing is read from 'rest' on\n"},
        {"~ob s 0\n0 0 1 1\n0 0 1 1\n0 0 0 0\n~pb\n#WALK n\n#board\n#zap hERE\n#restore gone\n"
         ":Here now\n'#foo\n#play \"#foo\"\nan #foe\n#zap cat.gone\n#if #end\n~pe\n~oe\n",
         "3: script of 's', line 2: #board has nothing behind it\n"
         "3: script of 's', line 4: #restore names the label 'gone', which the script does not "
         "have\n"
         "3: script of 's', line 8: #foe is no command\n"
         "3: script of 's', line 10: #if has nothing behind it\n"},
        {views, past},
    };
    for (const auto& [text, findings] : rows) {
        PutFile(folder / "a.zqlt", MakeZip(GameEntries("~endvars\n~endimports\n" + text)));
        const Result plain = Run("check a.zqlt");
        const std::regex place("a.zqlt: game.qlt, line ");
        EXPECT_EQ(std::regex_replace(plain.out, place, ""), findings);
        EXPECT_EQ(plain.err + std::to_string(plain.status), "0");
        const bool told =
            Run("info a.zqlt").err.find("tool: a.zqlt: ~pb Expected") != std::string::npos;
        EXPECT_EQ(told, findings.find("'~pb' is missing") != std::string::npos);
        const Result strict = Run("check --strict a.zqlt");
        EXPECT_EQ(std::regex_replace(strict.err, std::regex("quilt-tool: "), ""), plain.out);
        EXPECT_EQ(strict.out + std::to_string(strict.status), findings.empty() ? "0" : "1");
    }
}

TEST_F(Tool, FaultsHaveTheirStatusAndPlace) {
    PlantGame();
    SaveGame("a.zqlt");
    PutFile(folder / "bad.zqlt", "x");
    PutFile(folder / "empty.zqlt", MakeZip({{"readme", "x"}}));
    const std::string huge = "~ob b 0\n0 0 1 1\n0 0 32767 32767\n1 2 3 0\n~pb\n~pe\n~oe\n",
                      none = "~ob e 0\n0 0 1 1\n0 0 0 0\n1 2 3 0\n~pb\n~pe\n~oe\n";
    PutFile(folder / "huge.zqlt", MakeZip(GameEntries("~endvars\n~endimports\n" + huge + none)));
    const struct {
        const char* call;
        int status;
        const char* err;
    } cases[] = {
        {"info bad.zqlt", 1, "quilt-tool: bad.zqlt: it is no game archive"},
        {"cat missing\x1b", 1, "quilt-tool: missing\\x1b: there is no such file\n"},
        {"info empty.zqlt", 1, "quilt-tool: empty.zqlt: there is no world"},
        {"render huge.zqlt b.png", 1, "quilt-tool: huge.zqlt: the picture of 'b'"},
        {"render huge.zqlt b.png --board e", 1, "quilt-tool: huge.zqlt: the viewport of 'e'"},
        {"render a.zqlt b.png --board x", 2, "quilt-tool: a.zqlt: there is no board 'x'"},
        {"render a.zqlt b.png --scale 65", 2, "quilt-tool: "},
        {"cat a.zqlt >/dev/full", 1, "quilt-tool: standard output: "},
        {"repair missing b.zqlt", 1, "quilt-tool: missing: there is no such file\n"},
        {"other a.zqlt", 2, "quilt-tool: "},
        {"", 2, "quilt-tool: "}};
    for (const auto& c : cases) {
        const Result result = Run(c.call);
        EXPECT_EQ(result.status, c.status) << c.call;
        EXPECT_THAT(result.err, StartsWith(c.err)) << c.call;
        EXPECT_EQ(result.out, "") << c.call;
    }
    EXPECT_FALSE(std::filesystem::exists(folder / "b.png"));
}
