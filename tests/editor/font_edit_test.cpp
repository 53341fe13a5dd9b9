// The font editor: keys, buttons, the sheet's rows, pictures in and out, and what Cancel undoes.

#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "engine/picture_file.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <random>

using namespace platform;
using testing::HasSubstr;

namespace {

constexpr Brush kBrush{33, 7, 2, 1};

class FontEdit : public WorldTest {
protected:
    FontEdit() {
        ResetBrushes();
        vBrush = kBrush;
        vBrushMode = kBrushBlender;
        vCharScrollX = vCharScrollY = 0;
    }

    Dfont& Glyphs() { return *world->GetFont(); }
    std::string SheetBytes() {
        const BITMAP& sheet = *Glyphs().Sheet();
        std::string bytes = std::to_string(sheet.w) + "x" + std::to_string(sheet.h) + ":";
        for (int y = 0; y < sheet.h; ++y)
            bytes.append(reinterpret_cast<const char*>(sheet.line[y]),
                         static_cast<std::size_t>(sheet.w));
        return bytes;
    }
    /// Opens the editor; what `person` leaves open is ended by OK.
    void Run(std::function<void(ScriptedForm&)> person) {
        script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
            for (const int id : kPictures) Window(form, id).Paint();
            person(form);
            if (!form.result) form.Click(kIdOk);
        });
        DoFontEdit().Run();
    }
    static ScriptedWindow& Window(ScriptedForm& form, int id) {
        return static_cast<ScriptedWindow&>(*form.Picture(id));
    }
    static Point Cursor(ScriptedForm& form) {
        return static_cast<CharEdit*>(Window(form, kFontCharEdit).events)->Cursor();
    }
    static void Press(ScriptedForm& form, std::initializer_list<int> keys) {
        for (const int key : keys) EXPECT_TRUE(form.Press(key)) << key;
    }
    static void Pick(ScriptedForm& form, int glyph) {
        WindowEvents& browser = *Window(form, kFontCharSelect).events;
        const Point at{glyph % 16 * 16, glyph / 16 * 16};
        browser.OnLButtonDown(false, at);
        browser.OnLButtonUp(false, at);
        EXPECT_EQ(vBrush.chr, glyph);
    }
    // The pictures that were asked to repaint since the last call: E, P, S.
    static std::string Repainted(ScriptedForm& form) {
        std::string names;
        for (const int id : kPictures) {
            if (Window(form, id).invalidated) names += "EPS"[id - kFontCharEdit];
            Window(form, id).invalidated = 0;
        }
        return names;
    }
    static std::string Changed(ScriptedForm& form, int button) {
        Repainted(form);
        form.Click(button);
        return Repainted(form);
    }

    static constexpr int kPictures[] = {kFontCharEdit, kFontPreview, kFontCharSelect};
    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

TEST_F(FontEdit, OkDrawsTheBoardsAnewAndTheBrushIsAsItWas) {
    Dobject& board = AddNode(world->Root(), "board", 2, 2);
    board.PutTile(0, 0, 40, 14, 3, 0);
    Run([&](ScriptedForm& form) {
        EXPECT_TRUE(form.IsChecked(kFontCharMode));
        EXPECT_FALSE(form.IsChecked(kFontSpriteMode));
        EXPECT_EQ(vBrushMode, kBrushText) << "the preview shows the raw glyph";
        Pick(form, 40);
        const int before = getpixel(board.Surface(), 0, 0);
        Press(form, {kKeySpace});
        EXPECT_EQ(getpixel(board.Surface(), 0, 0), before) << "not before OK";
        form.Click(kIdOk);
    });
    const int pixel = Glyphs().GetGlyphPixel(40, 0, 0);
    EXPECT_EQ(getpixel(board.Surface(), 0, 0), pixel ? 14 : 3);
    EXPECT_EQ(vBrush, kBrush);
    EXPECT_EQ(vBrushMode, kBrushBlender);
}

TEST_F(FontEdit, SpaceWritesByTheModeAndEnterPicks) {
    Glyphs().PutGlyphPixel(33, 0, 0, 7);
    Glyphs().PutGlyphPixel(33, 1, 0, 0);
    Glyphs().PutGlyphPixel(33, 2, 0, 90);
    Run([&](ScriptedForm& form) {
        const auto pixel = [&](int x) { return Glyphs().GetGlyphPixel(33, x, 0); };
        Repainted(form);
        Press(form, {kKeySpace});
        EXPECT_EQ(pixel(0), 0) << "any colour is cleared";
        EXPECT_EQ(Repainted(form), "EPS");
        Press(form, {kKeySpace});
        EXPECT_EQ(pixel(0), 15);
        Repainted(form);
        Press(form, {kKeyRight});
        EXPECT_EQ(Repainted(form), "E");
        Press(form, {kKeyEnter});
        EXPECT_EQ(Repainted(form), "P");
        EXPECT_EQ(vBrush.fg, 0) << "of a clear pixel";
        Press(form, {kKeyRight, kKeyEnter});
        EXPECT_EQ(vBrush.fg, 90);
        form.Click(kFontSpriteMode);
        Press(form, {kKeyLeft, kKeySpace, kKeySpace});
        EXPECT_EQ(pixel(1), 90) << "not a flip";
        vBrush.fg = -2;
        Press(form, {kKeySpace});
        EXPECT_EQ(pixel(1), 254);
        form.Click(kFontCharMode);
        Press(form, {kKeySpace});
        EXPECT_EQ(pixel(1), 0);
        EXPECT_EQ(form.result, 0) << "Enter does not press OK";
        for (const int other : {int{'A'}, int{kKeyTab}, int{kKeyEscape}, int{kKeyDelete}})
            EXPECT_FALSE(form.Press(other));
    });
}

TEST_F(FontEdit, TheCursorWalksOverTheSheetAsOverOnePicture) {
    Run([&](ScriptedForm& form) {
        std::mt19937 random(1);
        // Within 128 by 128 pixels; long ways in one direction, so that it comes to every edge.
        int x = 1 * 8, y = 2 * 8;
        for (int way = 0; way < 40; ++way) {
            constexpr int kKeys[] = {kKeyLeft, kKeyRight, kKeyUp, kKeyDown};
            const int code = kKeys[random() % 4];
            for (int step = static_cast<int>(random() % 150); step > 0; --step) {
                Press(form, {code});
                x = std::clamp(x + (code == kKeyRight) - (code == kKeyLeft), 0, 127);
                y = std::clamp(y + (code == kKeyDown) - (code == kKeyUp), 0, 127);
                ASSERT_EQ(vBrush.chr, y / 8 * 16 + x / 8);
                ASSERT_EQ(Cursor(form), (Point{x % 8, y % 8}));
            }
        }
    });
}

TEST_F(FontEdit, ButtonsChangeTheGlyph) {
    for (int i = 0; i < 64; ++i) Glyphs().PutGlyphPixel(33, i % 8, i / 8, i % 5 ? i : 0);
    const GlyphPixels first = ReadGlyph(33);
    Run([&](ScriptedForm& form) {
        for (const bool vertical : {true, false}) {
            const int button = vertical ? kFontFlipVertical : kFontFlipHorizontal;
            EXPECT_EQ(Changed(form, button), "EPS");
            for (int i = 0; i < 64; ++i)
                ASSERT_EQ(ReadGlyph(33)[static_cast<std::size_t>(i)],
                          first[static_cast<std::size_t>(vertical ? i ^ 56 : i ^ 7)]);
            form.Click(button);
            EXPECT_EQ(ReadGlyph(33), first);
        }
        EXPECT_EQ(Changed(form, kFontCopy), "");
        Pick(form, 50);
        EXPECT_EQ(Changed(form, kFontPaste), "EPS");
        EXPECT_EQ(ReadGlyph(50), first);
        form.Click(kFontSpriteMode);
        EXPECT_EQ(Changed(form, kFontInvert), "EPS");
        for (std::size_t i = 0; i < 64; ++i) ASSERT_EQ(ReadGlyph(50)[i], first[i] ? 0 : 15);
        Pick(form, 51);
        form.Click(kFontPaste);
        EXPECT_EQ(ReadGlyph(51), first) << "the copy stays";
        EXPECT_EQ(ReadGlyph(33), first);
    });
    vBrush.chr = 33;
    Run([&](ScriptedForm& form) { form.Click(kFontPaste); });
    EXPECT_EQ(ReadGlyph(33), GlyphPixels{}) << "nothing was copied in this dialog";
}

TEST_F(FontEdit, RowsComeAndGo) {
    Run([&](ScriptedForm& form) {
        EXPECT_NE(Changed(form, kFontNewLine).find("PS"), std::string::npos);
        EXPECT_EQ(Glyphs().GlyphCount(), 272);
        vBrush.chr = 271;
        form.Click(kFontInvert);
        EXPECT_EQ(Glyphs().GetGlyphPixel(271, 7, 7), 15);
        form.Click(kFontDeleteLine);
        EXPECT_EQ(Glyphs().GlyphCount(), 256);
        EXPECT_EQ(vBrush.chr, 255) << "back in the sheet";
        form.Click(kFontNewLine);
        EXPECT_EQ(Glyphs().GetGlyphPixel(271, 7, 7), 0) << "a new row is clear";
        for (int i = 0; i < 40; ++i) form.Click(kFontDeleteLine);
        EXPECT_EQ(Glyphs().GlyphCount(), 16) << "the last row stays";
        EXPECT_EQ(vBrush.chr, 15);
    });
    EXPECT_EQ(Glyphs().Sheet()->h, 8);
}

TEST_F(FontEdit, CancelAsksAndBringsTheSheetBack) {
    const std::string before = SheetBytes();
    Run([&](ScriptedForm& form) {
        form.Click(kFontNewLine);
        form.Click(kFontInvert);
        Press(form, {kKeyRight, kKeySpace});
        script.ExpectMessage("Discard Changes ?", false);
        form.Click(kIdCancel);
        EXPECT_EQ(script.lastCaption, "Confirm Cancel");
        EXPECT_EQ(form.result, 0) << "back in the editor";
        EXPECT_EQ(Glyphs().GlyphCount(), 272);
        script.ExpectMessage("Discard Changes ?", true);
        form.Click(kIdCancel);
    });
    EXPECT_EQ(SheetBytes(), before);
    EXPECT_EQ(Glyphs().GlyphCount(), 256);
    EXPECT_EQ(vBrush, kBrush);
    EXPECT_EQ(vBrushMode, kBrushBlender);
}

TEST_F(FontEdit, TheSliderRunsFromTheTopToTheEndOfTheSheet) {
    Run([&](ScriptedForm& form) {
        for (int i = 0; i < 20; ++i) form.Click(kFontNewLine);
        const int shown = (Window(form, kFontCharSelect).size.h + 1) / 2;
        const int lowest = -1 - ((Glyphs().Sheet()->h - shown) >> 3);
        for (const int position : {100, 50, 33, 1, 0}) {
            Repainted(form);
            form.Slide(kFontSlider, position);
            EXPECT_EQ(vCharScrollY, static_cast<int>(lowest * (position / 100.0))) << position;
            EXPECT_EQ(Repainted(form), "S");
        }
    });
}

TEST_F(FontEdit, TheSheetGoesOutAndInAsAPicture) {
    const std::string path = temp / "sheet.bmp";
    const std::string before = SheetBytes();
    Run([&](ScriptedForm& form) {
        script.ExpectSaveDialog(std::nullopt);
        form.Choose(kFontSave);
        EXPECT_EQ(script.lastFileDialog.filter, "Bmp Files (*.bmp)|*.bmp||");
        EXPECT_EQ(script.lastFileDialog.extension, ".bmp");
        script.ExpectSaveDialog(path);
        form.Choose(kFontSave);
        for (int i = 0; i < 9; ++i) form.Click(kFontDeleteLine);
        Pick(form, 60);
        form.Click(kFontInvert);
        script.ExpectOpenDialog(path);
        form.Choose(kFontLoad);
        EXPECT_EQ(SheetBytes(), before);
    });
    EXPECT_EQ(temp.Names(), std::vector<std::string>{"sheet.bmp"});
}

TEST_F(FontEdit, APictureThatIsNoneGivesTheDefaultFontUntilCancel) {
    Glyphs().PutGlyphPixel(33, 0, 0, 77);
    const std::string before = SheetBytes();
    const std::string bad = PutFile(temp / "bad.bmp", "BM");
    Run([&](ScriptedForm& form) {
        script.ExpectOpenDialog(bad);
        form.Choose(kFontLoad);
        EXPECT_THAT(reports.Texts(), HasSubstr("Unable to import font"));
        reports.Clear();
        EXPECT_NE(Glyphs().GetGlyphPixel(33, 0, 0), 77);
        EXPECT_EQ(Glyphs().GlyphCount(), 256);
        script.ExpectMessage("Discard Changes ?");
        form.Click(kIdCancel);
    });
    EXPECT_EQ(SheetBytes(), before);
}

// Pictures of any size: glyphs that are cut by an edge, and a sheet without any.
TEST_F(FontEdit, OddSheetsCanBeEdited) {
    const struct {
        int w, h, glyphs;
    } cases[] = {{20, 10, 6}, {5, 1, 0}, {1, 1, 0}, {1, 9, 1}, {128, 3, 16}};
    for (const auto& c : cases) {
        SCOPED_TRACE(testing::Message() << c.w << " by " << c.h);
        const Bitmap picture = MakeBitmap(c.w, c.h);
        clear_to_color(picture.get(), 3);
        const std::string path =
            PutFile(temp / "odd.bmp", MakeBmp(picture.get(), Glyphs().GetPalette()));
        Run([&](ScriptedForm& form) {
            script.ExpectOpenDialog(path);
            form.Choose(kFontLoad);
            EXPECT_EQ(Glyphs().GlyphCount(), c.glyphs);
            EXPECT_EQ(vBrush.chr, std::max(std::min(33, c.glyphs - 1), 0));
            for (const int id : {int{kFontCopy}, int{kFontInvert}, int{kFontFlipHorizontal},
                                 int{kFontPaste}, int{kFontDeleteLine}, int{kFontNewLine}})
                form.Click(id);
            Press(form, {kKeyLeft, kKeySpace, kKeyUp, kKeySpace, kKeyDown, kKeyRight, kKeyEnter});
            for (const int id : kPictures) Window(form, id).Paint();
        });
        Glyphs().LoadDefault();
    }
}
