// The clipboards in files, by the dialogs that show them, and those files in
// other programs.

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

#include <cstdlib>
#include <random>
#include <sstream>

using namespace platform;

namespace {

constexpr std::uint16_t kNone = 65535;
constexpr Dtile kNothing{kNone, kNone, kNone, kNone};

class TileClip : public WorldTest {
protected:
    TileClip() {
        ClearTileClip();
        vTileClipSkip = 0;
    }
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
    // What a program writes, run in the test's folder.
    std::string Shell(const std::string& line) {
        const std::string full = "cd '" + temp.Path() + "' && { " + line + "; } >out 2>err";
        EXPECT_EQ(std::system(full.c_str()), 0) << line << "\n" << FileBytes(temp / "err");
        return FileBytes(temp / "out");
    }

    TempFolder temp;
    ScriptedPlatform script;
    std::mt19937 random{5};
};

}  // namespace

TEST_F(TileClip, FilesAreReadOrLeaveTheClipboardAsItWas) {
    const auto zip = [](const std::string& size, const std::string& cells) {
        return MakeZip({{"size.hdr", size}, {"clip.dat", cells, 0}});
    };
    std::string damaged = zip("1 1", "1 1 1 1");
    damaged.replace(damaged.find("1 1 1 1"), 7, "1 1 1 2");
    // What the clipboard holds then; or "!" and a message; or "?" and a line of
    // the trace.
    const struct {
        const char* name;
        std::string bytes, result;
    } cases[] = {
        {"a.txt", "ab\r\ncd\r\n", "2x3 c97 c98 c99 c100 c100 c100"},
        {"a.txt", "a b", "3x1 c97 c98 c98"},
        {"a.txt", "\t\nx\n", "1x3 c120 c120 c120"},
        {"a.txt", "a\n\nbc", "2x3 c97 c98 c99 c99 c99 c99"},
        {"a.txt", std::string("\xff\0b", 3), "3x1 c255 c0 c98"},
        {"a.txt", "  \n ", "!no characters"},
        {"a.txt", std::string(9999, 'x'), "!more than 9998 characters"},
        {"a.txt", std::string(9998, 'x') + std::string(60000, '\n'), "!size of"},
        {"a.att", "1\r\n\t2 -3\r\n65535", "1x2 a-3 "},
        {"a.att", "2 2\n1 2 3", "?after 3 of 4"},
        {"a.att", "2 x", "?two numbers"},
        {"a.att", "30000 30000 1", "!30000 by 30000"},
        {"a.qcf", zip("2 1\n", "65 -2 1 2\n-1 7 40000 65535"), "2x1 c65f-2b1a2 f7b-25536"},
        {"a.qcf", damaged, "?damaged"},
        {"a.qcf", "2 2", "?no game archive"},
        {"a.qcf", MakeZip({{"clip.dat", "1 1 1 1 "}}), "?size.hdr"},
        {"a.qcf", MakeZip({{"size.hdr", "1 1\r\n"}}), "?clip.dat"},
        {"a.qcf", zip(std::string(70'000, ' '), "1"), "?size.hdr: its 70000 bytes"},
        {"a.qcf", zip("1 1", std::string(70'000, '1')), "?clip.dat: its 70000 bytes"},
        {"a.qcf", zip("2 1", "1 1 1 1 1 1 1"), "?after 1 of 2"},
        {"a.qcf", zip("2000000000 2000000000", "1"), "!size of"},
        {"a.qcf", zip("1 1", "1 1 1 70000"), "?after 0 of 1"},
        {"a.bmp", "BM", "!no BMP picture"},
        {"a.chr", std::string(200, '\n'), "!no PCX picture"},
        {"a.BMP", "ab", "!Test"},
        {"none/a.qcf", "", "?no such file"},
        {"none/a.txt", "", "!a.txt could not be loaded.\nthere is no such file"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.result);
        Put(1, 1, {{1, 2, 3, 4}});
        PutFile(temp / c.name, c.bytes);
        const bool loads = c.result[0] != '!' && c.result[0] != '?';
        EXPECT_EQ(Load(c.name), loads);
        EXPECT_EQ(Cells(), loads ? c.result : "1x1 c1f2b3a4");
        std::string trace;
        for (const std::string& line : reports.Trace()) trace += line;
        const bool silent = c.result[0] == '?';
        EXPECT_TRUE(loads ||
                    (silent ? trace : reports.Texts()).find(c.result.substr(1)) != trace.npos);
        EXPECT_EQ(reports.Texts().empty(), loads || silent) << reports.Texts();
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
                 {{5, 1, kNone, kNone}, "qcf"},
                 {{kNone, 1, 1, kNone}, "qcf"},
                 {{1, 1, 1, 1}, "qcf"}};
    for (const auto& c : cases) {
        std::vector<Dtile> cells{
            c.first, {300, 300, 300, 300}, kNothing, {40000, 40000, 40000, 40000}};
        Put(2, 2, cells);
        for (Dtile& cell : cells) {
            if (!c.field) break;
            const bool picture = c.field == &Dtile::fg || c.field == &Dtile::bg;
            const auto kept = static_cast<std::uint16_t>(cell.*c.field & (picture ? 255 : 65535));
            cell = kNothing;
            cell.*c.field = kept;
        }
        EXPECT_STREQ(SaveFormat(ClipKindOf(c.first)).extension, c.extension);
        const std::string name = std::string("kind.") + c.extension;
        ASSERT_TRUE(SaveTileClip(temp / name));
        ClearTileClip();
        ASSERT_TRUE(Load(name, c.first.fg != kNone));
        EXPECT_EQ(vTileClip, cells) << c.extension;
        EXPECT_EQ((Point{vTileClipW, vTileClipH}), (Point{2, 2}));
    }
    EXPECT_EQ(FileBytes(temp / "kind.att"), "2 2\n0 300 \n-1 -25536 \n");
    EXPECT_EQ(ReadZip(FileBytes(temp / "kind.qcf")).at(1).bytes,
              "1 1 1 1 300 300 300 300 -1 -1 -1 -1 -25536 -25536 -25536 -25536 ");
}

// By way of netpbm, whose plain text has three numbers for each pixel.
TEST_F(TileClip, OtherProgramsReadAndWriteThePictures) {
    for (const bool picture : {false, true}) {
        std::vector<Dtile> cells(28, kNothing);
        for (Dtile& cell : cells)
            (picture ? cell.fg : cell.chr) =
                static_cast<std::uint16_t>(random() % (picture ? 256 : 65536));
        Put(7, 4, cells);
        ASSERT_TRUE(SaveTileClip(temp / "ours"));
        std::istringstream text(
            Shell((picture ? "bmptopnm" : "pcxtoppm") + std::string(" ours | pnmtoplainpnm")));
        std::string head[4], back = "P3 7 4 255\n";
        for (std::string& word : head) text >> word;
        EXPECT_EQ(head[0] + head[1] + head[2], "P374");
        for (const Dtile& cell : cells) {
            int r = 0, g = 0, b = 0;
            text >> r >> g >> b;
            back += std::to_string(r) + " " + std::to_string(g) + " " + std::to_string(b) + "\n";
            const RGB& rgb = world->GetFont()->GetPalette()[cell.fg & 255];
            // Of a glyph red is the first of the three bytes in memory, blue the sign.
            if (picture)
                EXPECT_EQ((std::array{r >> 2, g >> 2, b >> 2}),
                          (std::array<int, 3>{rgb.r, rgb.g, rgb.b}));
            else
                EXPECT_EQ(r + 256 * g + 65536 * b, Signed(cell.chr) & 0xffffff);
        }
        if (picture) continue;
        PutFile(temp / "theirs.ppm", back);
        Shell("ppmtopcx -24bit theirs.ppm > theirs.chr");
        ClearTileClip();
        ASSERT_TRUE(Load("theirs.chr"));
        EXPECT_EQ(vTileClip, cells);
    }
}

TEST_F(TileClip, TheDialogsLoadAndSave) {
    PutFile(temp / "t.txt", "ab\ncd");
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        form.Choose(kClipSave);  // empty: not even a file dialog
        form.Shown(kClipPicture).Paint();
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
        for (const auto& path : {std::optional<std::string>(), std::optional(temp / "x.zobj")}) {
            script.ExpectFile("save", path);
            form.Choose(kObjectSave);
        }
        EXPECT_EQ(script.lastFileDialog.filter + script.lastFileDialog.extension,
                  "QUILT! obj files (*.zobj)|*.zobj||.zobj");
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
    vObjectClip.reset();
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

TEST_F(TileClip, TheClipboardsAreDraggedAndShown) {
    const auto roll = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    MakeObjectClip();
    world->SetViewSize(100, 90);
    vObjectClip->EraseAll();
    vObjectClip->Create("wide", 100, 3);
    vObjectClip->PutTile(0, 0, 65, 12, 3, 0);
    Dobject* child = vObjectClip->Spawn(world->TakeId(), 4);
    child->Create("child", 2, 2);
    child->PutTile(1, 1, 1, 7, 9, 0);
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
    const auto shows = [&](ScriptedWindow& window, const std::string& description) {
        window.Paint();
        EXPECT_EQ(window.w, (window.size.w + 15) / 16 * 8);
        EXPECT_EQ(window.description, description);
        window.ExpectPicture(expected.get());
    };
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        ScriptedWindow& window = form.Shown(kClipPicture);
        window.Paint();
        // Drags and arrows move what is shown, not out of the window.
        const Size room{(window.size.w + 1) / 16, (window.size.h + 1) / 16};
        Point scroll, press, grab;
        bool drags = false;
        for (int step = 0; step < 400; ++step) {
            const Point at{roll(400) - 100, roll(400) - 100};
            const int wish = roll(5), arrow = roll(4);
            if (wish == 0) {
                window.Send(&WindowEvents::OnLButtonDown, false, at);
                press = at;
                grab = scroll;
            } else if (wish == 1) {
                window.Send(&WindowEvents::OnLButtonUp, false, at);
            } else if (wish == 2) {
                const Point steps[] = {{1, 0}, {0, 1}, {-1, 0}, {0, -1}};
                window.Key(kKeyLeft + arrow);
                scroll = {scroll.x + steps[arrow].x, scroll.y + steps[arrow].y};
            } else {
                window.Send(&WindowEvents::OnMouseMove, false, at);
                if (drags)
                    scroll = {static_cast<int>((at.x - press.x) / 8.0 + grab.x),
                              static_cast<int>((at.y - press.y) / 8.0 + grab.y)};
            }
            if (wish < 2) drags = wish == 0;
            scroll = {std::min(std::max(scroll.x, room.w - 20), 0),
                      std::min(std::max(scroll.y, room.h - 30), 0)};
            ASSERT_EQ(static_cast<DragViewer&>(*window.events).Scroll(), scroll) << step;
            ASSERT_EQ(window.captured, drags);
        }
        clear_bitmap(expected.get());
        for (int i = 0; i < 600; ++i) {
            const auto& [cell, chr, fg, bg] = cells[i % 6];
            const Point at{i % 20 + scroll.x, i / 20 + scroll.y};
            if (at.x >= 0 && at.y >= 0)
                world->GetFont()->DrawGlyph(expected.get(), chr, fg, bg, at.x, at.y);
        }
        shows(window, "20 by 30 tiles");
        form.Click(kIdOk);
    });
    DoTileClip().Run();
    script.ExpectDialog("Object ClipBoard", [&](ScriptedForm& form) {
        ScriptedWindow& window = form.Shown(kObjectPicture);
        window.Paint();
        window.Key(kKeyRight);
        clear_bitmap(expected.get());
        blit(vObjectClip->Surface(), expected.get(), 8, 0, 0, 0, 512, 24);
        blit(child->Surface(), expected.get(), 8, 8, 0, 8, 8, 8);
        shows(window, "wide");
        form.Click(kIdOk);
    });
    DoObjectClipBoard().Run();
    EXPECT_EQ(world->Root().width, 100) << "the edit view has its masks back";
    vObjectClip.reset();
}
