// The clipboards in files, by the dialogs that show them.

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

#include <random>

using namespace platform;
using testing::ElementsAre;
using testing::HasSubstr;

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

    static void Put(int w, int h, std::vector<Dtile> cells) {
        vTileClip = std::move(cells);
        vTileClipW = w;
        vTileClipH = h;
    }
    bool Load(const std::string& path, bool foreground = true) {
        return LoadTileClip(path, [foreground] { return foreground; });
    }
    // A clipboard whose fields are random where the mask has a bit: 1 chr, 2 fg, 4 bg, 8 attrib.
    static void PutRandom(int w, int h, int mask, unsigned seed) {
        std::mt19937 random(seed);
        std::vector<Dtile> cells(static_cast<std::size_t>(w * h), kNothing);
        for (Dtile& cell : cells) {
            std::uint16_t* fields[] = {&cell.chr, &cell.fg, &cell.bg, &cell.attrib};
            for (int i = 0; i < 4; ++i)
                if (mask >> i & 1) *fields[i] = static_cast<std::uint16_t>(random() % 256);
        }
        Put(w, h, cells);
    }
    static void ExpectSize(int w, int h) {
        EXPECT_EQ(vTileClipW, w);
        EXPECT_EQ(vTileClipH, h);
        EXPECT_EQ(vTileClip.size(), static_cast<std::size_t>(w * h));
    }

    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

TEST_F(TileClip, AttributesAreAText) {
    ASSERT_TRUE(Load(PutFile(temp / "b.att", "1\r\n\t2 -3\r\n65535")));
    ExpectSize(1, 2);
    EXPECT_EQ(vTileClip[0].attrib, 65533);
    ASSERT_TRUE(SaveTileClip(temp / "a.att"));
    EXPECT_EQ(FileBytes(temp / "a.att"), "1 2\n-3 \n-1 \n");
}

TEST_F(TileClip, TheCharactersOfATextFlowIntoItsGrid) {
    const struct {
        std::string text;
        int w, h;
        std::vector<std::uint16_t> glyphs;
    } cases[] = {{"ab\ncd\n", 2, 3, {'a', 'b', 'c', 'd', 'd', 'd'}},
                 {"a b", 3, 1, {'a', 'b', 'b'}},
                 {"ab\ncd", 2, 2, {'a', 'b', 'c', 'd'}},
                 {"ab\r\ncd\r\n", 2, 3, {'a', 'b', 'c', 'd', 'd', 'd'}},
                 {"\t\nx\n", 1, 3, {'x', 'x', 'x'}},
                 {"a\n\nbc", 2, 3, {'a', 'b', 'c', 'c', 'c', 'c'}},
                 {"\xff\x80", 2, 1, {255, 128}},
                 {std::string("a\0b", 3), 3, 1, {'a', 0, 'b'}}};
    for (const auto& c : cases) {
        SCOPED_TRACE(c.text);
        ASSERT_TRUE(Load(PutFile(temp / "t.txt", c.text)));
        ExpectSize(c.w, c.h);
        std::vector<Dtile> cells;
        for (const std::uint16_t glyph : c.glyphs) cells.push_back({glyph, kNone, kNone, kNone});
        EXPECT_EQ(vTileClip, cells);
    }
    ASSERT_TRUE(Load(PutFile(temp / "t.txt", std::string(9998, 'x'))));
    ExpectSize(9998, 1);
}

// The first cell alone tells the kind of file, and so which fields come back.
TEST_F(TileClip, FilesKeepWhatTheirKindCarries) {
    const struct {
        Dtile first;
        const char* extension;
        std::vector<std::uint16_t Dtile::*> fields;
    } cases[] = {{{5, kNone, kNone, kNone}, "chr", {&Dtile::chr}},
                 {{kNone, 65534, kNone, kNone}, "bmp", {&Dtile::fg}},
                 {{kNone, kNone, 0, kNone}, "bmp", {&Dtile::bg}},
                 {{kNone, kNone, kNone, 0}, "att", {&Dtile::attrib}},
                 {kNothing, "qcf", {}},
                 {{5, 1, kNone, kNone}, "qcf", {}},
                 {{kNone, 1, 1, kNone}, "qcf", {}},
                 {{1, 1, 1, 1}, "qcf", {}}};
    for (const auto& c : cases) {
        PutRandom(7, 3, 15, 5);
        vTileClip[0] = c.first;
        vTileClip[1] = {300, 300, 300, 300};
        vTileClip[2] = kNothing;
        vTileClip[3] = {40000, 40000, 40000, 40000};
        std::vector<Dtile> expected = vTileClip;
        for (Dtile& cell : expected) {
            const Dtile whole = cell;
            if (!c.fields.empty()) cell = kNothing;
            for (const auto field : c.fields) {
                const bool picture = field == &Dtile::fg || field == &Dtile::bg;
                cell.*field = static_cast<std::uint16_t>(whole.*field & (picture ? 255 : 65535));
            }
        }
        const ClipFormat& format = SaveFormat(ClipKindOf(c.first));
        EXPECT_STREQ(format.extension, c.extension);
        EXPECT_THAT(format.filter, HasSubstr(std::string("(*.") + c.extension + ")|*."));
        const std::string path = temp / (std::string("kind.") + c.extension);
        ASSERT_TRUE(SaveTileClip(path));
        PutRandom(3, 3, 15, 1);
        ASSERT_TRUE(Load(path, c.first.fg != kNone));
        ExpectSize(7, 3);
        EXPECT_EQ(vTileClip, expected) << c.extension;
    }
}

// --- files that are no good --------------------------------------------------------------------

TEST_F(TileClip, WhatCannotBeReadLeavesTheClipboardAsItWas) {
    PutRandom(4, 4, 15, 3);
    const std::vector<Dtile> before = vTileClip;
    const auto zip = [&](const char* name, const std::vector<PlainEntry>& entries) {
        return PutFile(temp / name, MakeZip(entries));
    };
    struct Case {
        std::string path;
        std::string message;  ///< on the screen; empty where only the trace tells
        std::string traced;
    };
    const std::vector<Case> cases{
        {temp / "none.qcf", "", "no such file"},
        {temp / "none.txt", "none.txt could not be loaded.\nthere is no such file", ""},
        {PutFile(temp / "x.BMP", "ab"), "Test", ""},
        {PutFile(temp / "text.qcf", "2 2"), "", "no game archive"},
        {zip("a.qcf", {{"clip.dat", "1 1 1 1 "}}), "", "size.hdr"},
        {zip("b.qcf", {{"size.hdr", "1 1\r\n"}}), "", "clip.dat"},
        {zip("c.qcf", {{"size.hdr", "2 1"}, {"clip.dat", "1 1 1 1 1 1 1"}}), "", "after 1 of 2"},
        {zip("f.qcf", {{"size.hdr", "2000000000 2000000000"}, {"clip.dat", "1"}}), "size of", ""},
        {zip("g.qcf", {{"size.hdr", "1 1"}, {"clip.dat", "1 1 1 70000"}}), "", "after 0 of 1"},
        {PutFile(temp / "a.att", "2 2\n1 2 3"), "", "after 3 of 4"},
        {PutFile(temp / "b.att", "2 x"), "", "two numbers"},
        {PutFile(temp / "c.att", "30000 30000 1"), "30000 by 30000", ""},
        {PutFile(temp / "b.txt", "  \n "), "no characters", ""},
        {PutFile(temp / "c.txt", std::string(9999, 'x')), "more than 9998 characters", ""},
        {PutFile(temp / "d.txt", std::string(9998, 'x') + std::string(60000, '\n')), "size of", ""},
        {PutFile(temp / "a.bmp", "BM"), "no BMP picture", ""},
        {PutFile(temp / "a.chr", std::string(200, '\n')), "no PCX picture", ""},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.path);
        reports.Clear();
        EXPECT_FALSE(Load(c.path));
        EXPECT_EQ(vTileClip, before);
        ExpectSize(4, 4);
        EXPECT_EQ(reports.Texts().empty(), c.message.empty()) << reports.Texts();
        EXPECT_THAT(reports.Texts(), HasSubstr(c.message));
        EXPECT_THAT(reports.Trace(), testing::Contains(HasSubstr(c.traced)));
    }
    reports.Clear();
    EXPECT_FALSE(SaveTileClip(temp / "no folder/x.qcf"));
    EXPECT_EQ(reports.Texts(), "");
    EXPECT_THAT(reports.Trace(), testing::Contains(HasSubstr("could not be saved")));
}

// --- the dialog --------------------------------------------------------------------------------

TEST_F(TileClip, TheDialogsLoadAndSave) {
    const std::string path = PutFile(temp / "t.txt", "ab\ncd");
    script.ExpectDialog("Tile ClipBoard", [&](ScriptedForm& form) {
        form.Choose(kClipSave);  // empty: not even a file dialog
        form.Shown(kClipPicture).Paint();
        script.ExpectOpenDialog(std::nullopt);
        form.Choose(kClipLoad);
        EXPECT_EQ(form.Shown(kClipPicture).invalidated, 0);
        script.ExpectOpenDialog(path);
        form.Choose(kClipLoad);
        EXPECT_EQ(script.lastFileDialog.filter,
                  "QUILT! ClipBoard Files (*.qcf)|*.qcf|Char Files (*.chr)|*.chr|Char Files "
                  "(*.txt)|*.txt|Bmp Files (*.bmp)|*.bmp|Attrib Files (*.att)|*.att||");
        EXPECT_EQ(form.Shown(kClipPicture).invalidated, 1);
        script.ExpectSaveDialog(temp / "saved.chr");
        form.Choose(kClipSave);
        EXPECT_EQ(script.lastFileDialog.filter, "Char Files (*.chr)|*.chr||");
        form.Click(kIdCancel);
    });
    DoTileClip().Run();
    ExpectSize(2, 2);
    MakeObjectClip();
    vObjectClip->Spawn(world->TakeId(), 4)->Create("child", 2, 2);
    vObjectClip->script = "#end";
    const std::string before = Account(*vObjectClip), object = temp / "x.zobj";
    script.ExpectDialog("Object ClipBoard", [&](ScriptedForm& form) {
        script.ExpectSaveDialog(std::nullopt);
        form.Choose(kObjectSave);
        EXPECT_EQ(script.lastFileDialog.filter, "QUILT! obj files (*.zobj)|*.zobj||");
        EXPECT_EQ(script.lastFileDialog.extension, ".zobj");
        script.ExpectSaveDialog(object);
        form.Choose(kObjectSave);
        vObjectClip->EraseAll();
        vObjectClip->name = "other";
        script.ExpectOpenDialog(std::nullopt);
        form.Choose(kObjectLoad);
        form.Shown(kObjectPicture).invalidated = 0;
        script.ExpectOpenDialog(object);
        form.Choose(kObjectLoad);
        EXPECT_EQ(form.Shown(kObjectPicture).invalidated, 1);
        form.Click(kIdOk);
    });
    DoObjectClipBoard().Run();
    EXPECT_EQ(Account(*vObjectClip), before);
    vObjectClip.reset();
    EXPECT_THAT(temp.Names(), ElementsAre("saved.chr", "t.txt", "x.zobj"));
}

TEST_F(TileClip, OnlyTheButtonForegroundIsForeground) {
    PutRandom(2, 2, 2, 4);
    const std::string path = temp / "c.bmp";
    ASSERT_TRUE(SaveTileClip(path));
    for (const int button : {1002, 1003, int{kIdCancel}}) {
        script.ExpectDialog("Load BMP As", [&](ScriptedForm& form) {
            if (button == kIdCancel)
                form.events.OnControl(form, kIdCancel);  // Escape, the close box
            else
                form.Click(button);
        });
        ASSERT_TRUE(LoadTileClip(path, AskForForeground));
        EXPECT_EQ(vTileClip[0].fg != kNone, button == 1002) << button;
        EXPECT_EQ(vTileClip[0].bg != kNone, button != 1002) << button;
    }
}

namespace {

void Walk(ScriptedWindow& window, Size content, std::mt19937& random) {
    const auto roll = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    auto& viewer = static_cast<DragViewer&>(*window.events);
    const Size room{(window.size.w + 1) / 16, (window.size.h + 1) / 16};
    Point scroll = viewer.Scroll(), press, grab;
    const Point steps[] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};
    bool drags = false;
    const auto bring = [&](Point to) {
        scroll = {std::min(std::max(to.x, room.w - content.w), 0),
                  std::min(std::max(to.y, room.h - content.h), 0)};
    };
    for (int step = 0; step < 400; ++step) {
        const Point at{roll(400) - 100, roll(400) - 100};
        const int wish = roll(5);
        if (wish == 0) {
            window.Send(&WindowEvents::OnLButtonDown, false, at);
            press = at;
            grab = scroll;
            drags = true;
        } else if (wish == 1) {
            window.Send(&WindowEvents::OnLButtonUp, false, at);
            drags = false;
        } else if (wish == 2) {
            const int arrow = roll(4);
            window.Keys({kKeyLeft + arrow});
            bring({scroll.x - steps[arrow].x, scroll.y - steps[arrow].y});
        } else {
            window.Send(&WindowEvents::OnMouseMove, false, at);
            if (drags)
                bring({static_cast<int>((at.x - press.x) / 8.0 + grab.x),
                       static_cast<int>((at.y - press.y) / 8.0 + grab.y)});
        }
        ASSERT_EQ(viewer.Scroll(), scroll) << step << ", " << wish;
        ASSERT_EQ(window.captured, drags);
    }
}

}  // namespace

TEST_F(TileClip, TheClipboardsAreDraggedAndShown) {
    MakeObjectClip();
    world->SetViewSize(100, 90);
    vObjectClip->EraseAll();
    vObjectClip->Create("wide", 100, 3);
    vObjectClip->PutTile(0, 0, 65, 12, 3, 0);
    Dobject* child = vObjectClip->Spawn(world->TakeId(), 4);
    child->Create("child", 2, 2);
    child->PutTile(1, 1, 1, 7, 9, 0);
    std::mt19937 random(5);
    const struct {
        Dtile cell;
        int chr, fg, bg;
    } cells[] = {{{kNone, kNone, kNone, 3}, 177, 15, 1}, {{65, kNone, kNone, kNone}, 65, 15, 1},
                 {{kNone, 7, kNone, kNone}, 177, 7, 0},  {{kNone, kNone, 9, kNone}, 177, 0, 9},
                 {{2, 65534, 1, 0}, 2, -2, 1},           {{66, 12, 13, 0}, 66, 12, 13}};
    const Bitmap expected = MakeBitmap(512, 512);
    for (const bool tiles : {true, false}) {
        clear_bitmap(expected.get());
        script.ExpectDialog(tiles ? "Tile ClipBoard" : "Object ClipBoard", [&](ScriptedForm& form) {
            ScriptedWindow& window = form.Shown(1001);
            window.Paint();
            Walk(window, tiles ? Size{20, 30} : Size{100, 3}, random);
            const Point at = static_cast<DragViewer&>(*window.events).Scroll();
            for (int i = 0; tiles && i < 600; ++i)
                if (i % 20 + at.x >= 0 && i / 20 + at.y >= 0)
                    world->GetFont()->DrawGlyph(expected.get(), cells[i % 6].chr, cells[i % 6].fg,
                                                cells[i % 6].bg, i % 20 + at.x, i / 20 + at.y);
            if (!tiles) {
                blit(vObjectClip->Surface(), expected.get(), -8 * at.x, 0, 0, 0, 512, 24);
                blit(child->Surface(), expected.get(), 8, 8, 8 * at.x + 8, 8, 8, 8);
            }
            window.Paint();
            EXPECT_EQ((Size{window.w, window.h}),
                      (Size{(window.size.w + 15) / 16 * 8, (window.size.h + 15) / 16 * 8}));
            EXPECT_EQ(window.description, tiles ? "20 by 30 tiles" : "wide");
            for (int p = 0; p < window.w * window.h; ++p)
                ASSERT_EQ(window.PixelAt(p % window.w, p / window.w),
                          getpixel(expected.get(), p % window.w, p / window.w));
            form.Click(kIdOk);
        });
        std::vector<Dtile> all;
        for (int i = 0; i < 600; ++i) all.push_back(cells[i % 6].cell);
        Put(20, 30, all);
        tiles ? DoTileClip().Run() : DoObjectClipBoard().Run();
    }
    EXPECT_EQ(world->Root().width, 100) << "the edit view has its masks back";
    vObjectClip.reset();
}
