// The clipboards in files, by the dialogs that show them, and those files in other programs.

#include "editor/shell/do_object_clip_board.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/tile_clip_files.h"
#include "editor/view/object_clip.h"
#include "platform/keys.h"
#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <cstdlib>

using namespace platform;

namespace {

constexpr std::uint16_t kNone = 65535;
constexpr Dtile kNothing{kNone, kNone, kNone, kNone};

class TileClip : public WorldTest {
protected:
    ~TileClip() override { ClearTileClip(); }
    static void Put(int w, int h, const std::vector<Dtile>& cells) {
        vTileClip = cells;
        vTileClipW = w;
        vTileClipH = h;
    }
    bool Load(const std::string& name, bool foreground = true) {
        return LoadTileClip(temp / name, [foreground] { return foreground; });
    }
    // "2x1 c65f7 a3": of each cell the fields that it has.
    static std::string Cells() {
        std::string text = std::to_string(vTileClipW) + "x" + std::to_string(vTileClipH);
        for (const Dtile& t : vTileClip) {
            text += " ";
            const std::uint16_t fields[] = {t.chr, t.fg, t.bg, t.attrib};
            for (int i = 0; i < 4; ++i)
                if (fields[i] != kNone) text += "cfba"[i] + std::to_string(Signed(fields[i]));
        }
        return text;
    }

    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

TEST_F(TileClip, FilesAreReadOrLeaveTheClipboardAsItWas) {
    const auto zip = [](const std::string& size, const std::string& cells) {
        return MakeZip({{"size.hdr", size}, {"clip.dat", cells, 0}});
    };
    std::string damaged = zip("1 1", "1 1 1 1");
    damaged.replace(damaged.find("1 1 1 1"), 7, "1 1 1 2");
    // What the clipboard holds then; or "!" and a message; or "?" and a line of the trace.
    const struct {
        const char* name;
        std::string bytes, result;
    } cases[] = {
        {"a.txt", "ab\r\ncd\r\n", "2x3 c97 c98 c99 c100 c100 c100"},
        {"a.txt", "\t\na\n\nbc", "2x4 c97 c98 c99 c99 c99 c99 c99 c99"},
        {"a.txt", std::string("\xff\0b", 3), "3x1 c255 c0 c98"},
        {"a.txt", "  \n ", "!no characters"},
        {"a.txt", std::string(9999, 'x'), "!more than 9998 characters"},
        {"a.att", "1\r\n\t2 -3\r\n65535", "1x2 a-3 "},
        {"a.att", "2 2\n1 2 3", "?after 3 of 4"},
        {"a.att", "30000 30000 1", "!30000 by 30000"},
        {"a.qcf", zip("2 1\n", "65 -2 1 2\n-1 7 40000 65535"), "2x1 c65f-2b1a2 f7b-25536"},
        {"a.qcf", damaged, "?damaged"},
        {"a.qcf", "2 2", "?no game archive"},
        {"a.qcf", MakeZip({{"size.hdr", "1 1\r\n"}}), "?clip.dat"},
        {"a.qcf", zip("1 1", std::string(70'000, '1')), "?clip.dat: its 70000 bytes"},
        {"a.qcf", zip("1 1", "1 1 1 70000"), "?after 0 of 1"},
        {"a.chr", std::string(200, '\n'), "!no PCX picture"},
    };
    for (const auto& c : cases) {
        Put(1, 1, {{1, 2, 3, 4}});
        PutFile(temp / c.name, c.bytes);
        const bool loads = c.result[0] != '!' && c.result[0] != '?';
        EXPECT_EQ(Load(c.name), loads) << c.result;
        EXPECT_EQ(Cells(), loads ? c.result : "1x1 c1f2b3a4");
        const bool trace = c.result[0] == '?';
        EXPECT_THAT(trace ? testing::PrintToString(reports.Trace()) : reports.Texts(),
                    testing::HasSubstr(loads ? "" : c.result.substr(1)));
        EXPECT_EQ(reports.Texts().empty(), loads || trace);
        reports.Clear();
    }
    EXPECT_FALSE(SaveTileClip(temp / "no folder/x.qcf"));
}

// The first cell alone tells the kind of file, and so which fields come back.
TEST_F(TileClip, FilesKeepWhatTheirKindCarries) {
    const struct {
        Dtile first;
        const char* extension;
        std::uint16_t Dtile::*field = nullptr;  ///< null for all
    } cases[] = {{{5, kNone, kNone, kNone}, "chr", &Dtile::chr},
                 {{kNone, 65534, kNone, kNone}, "bmp", &Dtile::fg},
                 {{kNone, kNone, 0, kNone}, "bmp", &Dtile::bg},
                 {{kNone, kNone, kNone, 0}, "att", &Dtile::attrib},
                 {kNothing, "qcf"},
                 {{kNone, 1, 1, kNone}, "qcf"},
                 {{1, 1, 1, 1}, "qcf"}};
    for (const auto& c : cases) {
        std::vector<Dtile> cells{
            c.first, {300, 300, 300, 300}, kNothing, {40000, 40000, 40000, 40000}};
        Put(2, 2, cells);
        const std::string name = std::string("kind.") + c.extension;
        EXPECT_STREQ(SaveFormat(ClipKindOf(c.first)).extension, c.extension);
        ASSERT_TRUE(SaveTileClip(temp / name));
        ClearTileClip();
        ASSERT_TRUE(Load(name, c.first.fg != kNone));
        EXPECT_EQ((Point{vTileClipW, vTileClipH}), (Point{2, 2}));
        for (std::size_t i = 0; i < 4; ++i) {
            Dtile kept = kNothing;
            const int mask = name == "kind.bmp" ? 255 : 65535;
            if (c.field) kept.*c.field = static_cast<std::uint16_t>(cells[i].*c.field & mask);
            EXPECT_EQ(vTileClip[i], c.field ? kept : cells[i]) << name;
        }
    }
    EXPECT_EQ(FileBytes(temp / "kind.att"), "2 2\n0 300 \n-1 -25536 \n");
    EXPECT_EQ(ReadZip(FileBytes(temp / "kind.qcf")).at(1).bytes,
              "1 1 1 1 300 300 300 300 -1 -1 -1 -1 -25536 -25536 -25536 -25536 ");
    // Glyphs through the pictures of other programs: red is the first byte, blue the sign.
    std::vector<Dtile> cells(28, kNothing);
    for (std::size_t i = 0; i < 28; ++i) cells[i].chr = static_cast<std::uint16_t>(40001 * i + 5);
    Put(7, 4, cells);
    ASSERT_TRUE(SaveTileClip(temp / "ours"));
    const std::string shell =
        "cd " + temp.Path() +
        " && pcxtoppm ours 2>err >ppm && ppmtopcx -24bit ppm 2>err >their.chr";
    ASSERT_EQ(std::system(shell.c_str()), 0) << FileBytes(temp / "err");
    EXPECT_EQ(FileBytes(temp / "ppm").substr(0, 17),
              "P6\n7 4\n255\n" + std::string("\5\0\0\x46\x9c\xff", 6));
    ASSERT_TRUE(Load("their.chr"));
    EXPECT_EQ(vTileClip, cells);
}

TEST_F(TileClip, TheDialogsLoadAndSave) {
    PutFile(temp / "t.txt", "ab\ncd");
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        form.Choose(kClipSave);  // empty: not even a file dialog
        for (const bool loads : {false, true}) {
            EXPECT_EQ(form.Shown(kClipPicture).invalidated, 0);
            script.ExpectFile("open", loads ? std::optional(temp / "t.txt") : std::nullopt);
            form.Choose(kClipLoad);
        }
        EXPECT_EQ(form.Shown(kClipPicture).invalidated, 1);
        script.ExpectFile("save", temp / "saved.chr");
        form.Choose(kClipSave);
        EXPECT_EQ(script.lastFileDialog.filter, "Char Files (*.chr)|*.chr||");
        form.Click(kIdCancel);
    });
    DoTileClip().Run();
    EXPECT_EQ(Cells(), "2x2 c97 c98 c99 c100");
    MakeObjectClip();
    vObjectClip->Spawn(world->TakeId(), 4)->Create("child", 2, 2);
    vObjectClip->script = "#end";
    const std::string before = Account(*vObjectClip);
    script.ExpectDialog("Object ClipBoard", [&](ScriptedForm& form) {
        script.ExpectFile("save", temp / "x.zobj");
        form.Choose(kObjectSave);
        vObjectClip->EraseAll();
        vObjectClip->name = "other";
        form.Shown(kObjectPicture).invalidated = 0;
        script.ExpectFile("open", temp / "x.zobj");
        form.Choose(kObjectLoad);
        EXPECT_EQ(form.Shown(kObjectPicture).invalidated, 1);
        form.Click(kIdOk);
    });
    DoObjectClipBoard().Run();
    EXPECT_EQ(Account(*vObjectClip), before);
    EXPECT_EQ(temp.Names(), (std::vector<std::string>{"saved.chr", "t.txt", "x.zobj"}));

    // Only the button "foreground" is foreground; Escape and the close box are not.
    Put(1, 1, {{kNone, 5, kNone, kNone}});
    ASSERT_TRUE(SaveTileClip(temp / "c.bmp"));
    for (const int button : {1002, 1003, int{kIdCancel}}) {
        script.ExpectDialog("Load BMP As",
                            [&](ScriptedForm& form) { form.events.OnControl(form, button); });
        ASSERT_TRUE(LoadTileClip(temp / "c.bmp", AskForForeground));
        EXPECT_EQ(Cells(), button == 1002 ? "1x1 f5" : "1x1 b5");
    }
}

TEST_F(TileClip, TheTilesAreDraggedAndShown) {
    const struct {
        Dtile cell;
        int chr, fg, bg;
    } cells[] = {{{kNone, kNone, kNone, 3}, 177, 15, 1}, {{65, kNone, kNone, kNone}, 65, 15, 1},
                 {{kNone, 7, kNone, kNone}, 177, 7, 0},  {{kNone, kNone, 9, kNone}, 177, 0, 9},
                 {{2, 65534, 1, 0}, 2, -2, 1},           {{66, 12, 13, 0}, 66, 12, 13}};
    std::vector<Dtile> all;
    for (int i = 0; i < 600; ++i) all.push_back(cells[i % 6].cell);
    Put(20, 30, all);
    const Bitmap expected = MakeBitmap(512, 512);
    clear_bitmap(expected.get());
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        ScriptedWindow& window = form.Shown(kClipPicture);
        window.Paint();
        // Drags and arrows move what is shown, not out of the window, in which are 9 by 9 tiles.
        const struct {
            Point to;  ///< from 50,50
            int key;
            Point scroll;
        } moves[] = {{{33, 34}, 0, {-2, -2}},         {{58, 10}, 0, {-1, -7}},
                     {{50, 50}, kKeyRight, {-2, -7}}, {{50, 50}, kKeyUp, {-2, -6}},
                     {{-99, -900}, 0, {-11, -21}},    {{50, 50}, kKeyDown, {-11, -21}},
                     {{65, 50}, kKeyLeft, {-8, -21}}, {{500, 500}, kKeyLeft, {0, 0}},
                     {{40, 30}, 0, {-1, -2}}};
        for (const auto& move : moves) {
            window.Drag({50, 50}, move.to);
            window.Send(&WindowEvents::OnMouseMove, false, Point{0, 0});
            if (move.key) window.Key(move.key);
            EXPECT_EQ(static_cast<DragViewer&>(*window.events).Scroll(), move.scroll);
        }
        for (int i = 0; i < 600; ++i) {
            const auto& [cell, chr, fg, bg] = cells[i % 6];
            if (i % 20 >= 1 && i / 20 >= 2)
                world->GetFont()->DrawGlyph(expected.get(), chr, fg, bg, i % 20 - 1, i / 20 - 2);
        }
        window.Paint();
        EXPECT_EQ(window.description, "20 by 30 tiles");
        window.ExpectPicture(expected.get());
        form.Click(kIdOk);
    });
    DoTileClip().Run();
}
