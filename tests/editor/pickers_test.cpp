// The picture controls and the font editor: what they show, and random walks of what a person
// does in them beside plain models.

#include "editor/tools/brush_preview.h"
#include "editor/tools/char_edit.h"
#include "editor/tools/char_select.h"
#include "editor/tools/color_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "engine/picture_file.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <random>
#include <set>

using namespace platform;
using Events = WindowEvents;

namespace {

constexpr int kArrows[] = {kKeyLeft, kKeyUp, kKeyRight, kKeyDown};
constexpr Point kSteps[] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};

class Pickers : public WorldTest {
protected:
    Pickers() {
        ResetBrushes();
        vCharScrollX = vCharScrollY = 0;
    }
    // A control in a window of that size, painted once.
    ScriptedWindow& Place(PictureControl& control, Size size) {
        windows.push_back(std::make_unique<ScriptedWindow>(script, &control, size));
        control.Attach(windows.back().get());
        windows.back()->Paint();
        return *windows.back();
    }
    Dfont& Glyphs() { return *world->GetFont(); }
    int Roll(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    // The picture as it is and as it shall be, cut at the smaller one.
    static void ExpectPicture(const ScriptedWindow& window,
                              const std::function<int(int, int)>& at) {
        for (int p = 0; p < window.w * window.h; ++p)
            ASSERT_EQ(window.PixelAt(p % window.w, p / window.w), at(p % window.w, p / window.w))
                << p % window.w << ", " << p / window.w;
    }

    TempFolder temp;
    ScriptedPlatform script;
    std::vector<std::unique_ptr<ScriptedWindow>> windows;
    std::mt19937 random{5};
};

}  // namespace

TEST_F(Pickers, AColorGrid) {
    FgColorSelect grid;
    int told = 0;
    grid.repaintPreview = [&] { ++told; };
    ScriptedWindow& window = Place(grid, {180, 165});
    int color = vBrush.fg, tells = 0;
    bool pressed = false;
    for (int step = 0; step < 3000; ++step) {
        const int before = color;
        const int wish = Roll(6);
        const Point at{Roll(195) - 5, Roll(180) - 5};
        const bool inside = at.x >= 0 && at.y >= 0 && at.x < 176 && at.y < 160;
        bool chosen = false;
        if (wish < 3) {
            const int arrow = Roll(4);
            window.Keys({step % 50 ? kArrows[arrow] : int{kKeyHome}});
            const int from = std::clamp(color, 0, 255);
            const Point to{from % 16 + kSteps[arrow].x, from / 16 + kSteps[arrow].y};
            chosen = step % 50 && to.x >= 0 && to.y >= 0 && to.x < 16 && to.y < 16;
            if (chosen) color = to.y * 16 + to.x;
        } else if (wish == 3) {
            window.Send(&Events::OnLButtonUp, false, at);
            pressed = false;
        } else {
            const bool press = wish == 4;
            window.Send(press ? &Events::OnLButtonDown : &Events::OnMouseMove, false, at);
            pressed |= press;
            chosen = pressed && inside;
            if (chosen) color = at.y / 10 * 16 + at.x / 11;
        }
        tells += chosen;
        ASSERT_EQ(vBrush.fg, color) << step << " from " << before << ", " << wish;
        ASSERT_EQ(told, tells);
        ASSERT_EQ(window.invalidated > 0, chosen);
        if (step % 20 == 0) vBrush.fg = color = Roll(260) - 3;
        if (step % 100) {
            window.invalidated = 0;
            continue;
        }
        window.Paint();
        const bool real = color >= 0 && color < 256;
        EXPECT_EQ(window.description, real ? "Colour " + std::to_string(color) : "No colour");
        const Bitmap cross = MakeBitmap(11, 10);
        clear_bitmap(cross.get());
        line(cross.get(), 0, 0, 10, 9, 15);
        line(cross.get(), 10, 0, 0, 9, 15);
        ExpectPicture(window, [&](int x, int y) {
            if (x >= 176 || y >= 160) return 115;
            const int own = y / 10 * 16 + x / 11, u = x % 11, v = y % 10;
            if (own == 0 && getpixel(cross.get(), u, v)) return 15;
            const bool rim = u == 0 || v == 0 || u == 10 || v == 9;
            const bool inner = !rim && (u == 1 || v == 1 || u == 9 || v == 8);
            return own ^ (own == color ? rim * 15 + inner * 32 : 0);
        });
    }
    EXPECT_EQ(window.shown, (Size{180, 165}));
}

TEST_F(Pickers, TheGlyphBrowser) {
    CharSelect browser;
    std::string told, tells;
    browser.repaintPreview = [&] { told += 'p'; };
    browser.repaintCharEdit = [&] { told += 'e'; };
    ScriptedWindow& window = Place(browser, {64, 65});
    EXPECT_EQ(window.shown, (Size{64, 66}));
    int glyph = vBrush.chr;
    Point scroll, press, grab;
    enum { kNothing, kPicks, kScrolls } mode = kNothing;
    bool captured = false;
    const int pairs[] = {kKeyInsert, kKeyPageUp, kKeyDelete, kKeyPageDown};
    for (int step = 0; step < 4000; ++step) {
        told = tells = "";
        const int wish = Roll(8), before = glyph;
        const Point at{Roll(80) - 8, Roll(80) - 8};
        const auto pick = [&] {
            // Cut towards zero before it is looked at, so that a tile more counts at the left.
            const Point to{(at.x - scroll.x * 16) / 16, (at.y - scroll.y * 16) / 16};
            if (to.x < 0 || to.y < 0 || to.x > 15 || to.y > 15) return;
            glyph = to.y * 16 + to.x;
            tells = "pe";
        };
        if (wish < 3) {
            const int arrow = Roll(4);
            window.Keys({(Roll(2) ? kArrows : pairs)[arrow]});
            const Point to{glyph % 16 + kSteps[arrow].x, glyph / 16 + kSteps[arrow].y};
            if (to.x >= 0 && to.y >= 0 && to.x < 16 && to.y < 16) {
                glyph = to.y * 16 + to.x;
                tells = "pe";
                // It scrolls as far as the glyph needs: 4 by 4 tiles are seen.
                scroll = {std::min({std::max(scroll.x, -to.x), 3 - to.x, 0}),
                          std::min({std::max(scroll.y, -to.y), 3 - to.y, 0})};
            }
        } else if (wish < 5) {
            const bool ctrl = Roll(2);
            window.Send(&Events::OnLButtonDown, ctrl, at);
            mode = ctrl ? kScrolls : kPicks;
            captured |= ctrl;
            press = at;
            grab = scroll;
            if (!ctrl) pick();
        } else if (wish < 7) {
            const Point far{at.x * (1 + 9 * (step % 3)), at.y * (1 + 9 * (step % 3))};
            const bool scrolls = mode == kScrolls;
            window.Send(&Events::OnMouseMove, false, scrolls ? far : at);
            const auto moved = [](int by, int from, int lowest) {
                return std::min(std::max(static_cast<int>(by / 8.0 + from), lowest), 0);
            };
            if (scrolls)
                scroll = {moved(far.x - press.x, grab.x, -13), moved(far.y - press.y, grab.y, -12)};
            if (mode == kPicks) pick();
        } else {
            window.Send(&Events::OnLButtonUp, false, at);
            captured &= mode != kScrolls;
            mode = kNothing;
        }
        ASSERT_EQ(vBrush.chr, glyph) << step << ": " << wish << " from " << before;
        ASSERT_EQ((Point{vCharScrollX, vCharScrollY}), scroll) << step << ": " << wish;
        ASSERT_EQ(told, tells) << step;
        ASSERT_EQ(window.captured, captured);
        if (step % 100) continue;
        window.Paint();
        EXPECT_EQ(window.description, "Glyph " + std::to_string(glyph));
        ExpectPicture(window, [&](int x, int y) {
            const int color = getpixel(Glyphs().Sheet(), x - 8 * scroll.x, y - 8 * scroll.y);
            return std::max(color, 0);
        });
    }
}

TEST_F(Pickers, TheGlyphEditorShowsEmptyPixelsAndItsCursor) {
    CharEdit editor;
    vBrush.chr = 9;
    for (int i = 0; i < 64; ++i) Glyphs().PutGlyphPixel(9, i % 8, i / 8, i % 9 ? 40 + i : 0);
    ScriptedWindow& window = Place(editor, {259, 259});
    EXPECT_EQ(window.shown, window.size);
    const struct {
        Point at, cursor;
    } cases[] = {
        {{31, 32}, {0, 1}}, {{258, 258}, {7, 7}}, {{-40, 100}, {0, 3}}, {{100, 900}, {3, 7}}};
    for (const auto& c : cases) {
        window.Send(&Events::OnLButtonDown, false, Point{50, 50});
        EXPECT_TRUE(window.captured);
        window.Send(&Events::OnMouseMove, false, c.at);
        window.Send(&Events::OnLButtonUp, false, c.at);
        EXPECT_FALSE(window.captured);
        EXPECT_EQ(editor.Cursor(), c.cursor) << c.at.x << ", " << c.at.y;
    }
    window.Send(&Events::OnMouseMove, false, Point{0, 0});
    EXPECT_EQ(editor.Cursor(), (Point{3, 7})) << "no button is held";
    std::set<int> rims;
    for (int i = 0; i < 20; ++i) {
        window.Paint();
        const int flicker = window.PixelAt(12, 28) ^ (40 + 59);
        rims.insert(flicker);
        ExpectPicture(window, [&](int x, int y) {
            const int own = y / 4 * 8 + x / 4, u = x % 4, v = y % 4;
            const bool rim = own == 59 && (u == 0 || v == 0 || u == 3 || v == 3);
            if (own % 9 == 0) return u == v && (u == 1 || u == 2) ? 15 : 0;
            return (40 + own) ^ (rim ? flicker : 0);
        });
    }
    EXPECT_GT(rims.size(), 5u) << "the cursor flickers";
    EXPECT_EQ(window.description, "Glyph 9, pixel 3 7: colour 99");
}

TEST_F(Pickers, ThePreviewIsCoveredWithTheBrush) {
    BrushPreview preview;
    vBrush = {3, 20, 30, 2};
    ScriptedWindow& window = Place(preview, {60, 37});
    EXPECT_EQ(window.shown, (Size{60, 38}));
    for (vBrushMode = 0; vBrushMode < kBrushModes; ++vBrushMode) {
        window.Paint();
        ExpectPicture(window, [&](int x, int y) {
            const int pixel = Glyphs().GetGlyphPixel(3, x % 8, y % 8);
            return vBrushMode == kBrushNormal ? (pixel ? 20 : 30)
                   : vBrushMode == kBrushText ? pixel
                                              : 0;
        });
    }
    EXPECT_EQ(window.description, "Glyph 3, colour 20 on 30, attribute 2");
    vBrush.fg = -2;
    window.Paint();
    EXPECT_EQ(window.description, "Glyph 3, a sprite, attribute 2");
}

// --- the font editor ---------------------------------------------------------------------------

namespace {

class FontEdit : public Pickers {
protected:
    /// Opens the editor; what `person` leaves open is ended by OK.
    void Run(const std::function<void(ScriptedForm&)>& person) {
        script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id) form.Shown(id).Paint();
            person(form);
            if (!form.result) form.Click(kIdOk);
        });
        DoFontEdit().Run();
    }
    std::string Sheet() { return MakeBmp(Glyphs().Sheet(), Glyphs().GetPalette()); }
};

}  // namespace

TEST_F(FontEdit, KeysAndButtonsDoWhatAPlainSheetDoes) {
    std::vector<int> sheet;  // pixels, 128 a row
    for (int i = 0; i < 128 * 128; ++i) sheet.push_back(Glyphs().Sheet()->line[i / 128][i % 128]);
    std::array<int, 64> copied{};
    int x = 8, y = 16, fg = 15;  // the cursor on the whole sheet
    bool sprite = false;
    vBrush = {33, fg, 2, 1};
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    Run([&](ScriptedForm& form) {
        const auto at = [&](int i) -> int& {
            return sheet[static_cast<std::size_t>((y / 8 * 8 + i / 8) * 128 + x / 8 * 8 + i % 8)];
        };
        for (int step = 0; step < 6000; ++step) {
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id)
                form.Shown(id).invalidated = 0;
            const int wish = Roll(step % 20 ? 30 : 40), arrow = Roll(4);
            std::string repaints;
            std::array<int, 64> old{};
            for (int i = 0; i < 64; ++i) old[static_cast<std::size_t>(i)] = at(i);
            const auto change = [&](int button, const std::function<int(int)>& pixel) {
                form.Click(button);
                for (int i = 0; i < 64; ++i) at(i) = pixel(i);
                repaints = "EPS";
            };
            const auto was = [&](int i) { return old[static_cast<std::size_t>(i)]; };
            if (wish < 18) {
                EXPECT_TRUE(form.Press(kArrows[arrow]));
                const Point to{x + kSteps[arrow].x, y + kSteps[arrow].y};
                const bool in = to.x >= 0 && to.y >= 0 && to.x < 128 &&
                                to.y < static_cast<int>(sheet.size()) / 128;
                if (in) x = to.x, y = to.y, repaints = "E";
            } else if (wish < 24) {
                EXPECT_TRUE(form.Press(kKeySpace));
                int& pixel = sheet[static_cast<std::size_t>(y * 128 + x)];
                pixel = sprite ? fg & 255 : pixel ? 0 : 15;
                repaints = "EPS";
            } else if (wish < 27) {
                EXPECT_TRUE(form.Press(kKeyEnter));
                fg = sheet[static_cast<std::size_t>(y * 128 + x)];
                repaints = "P";
            } else if (wish < 28) {
                sprite = Roll(2);
                form.Click(sprite ? kFontSpriteMode : kFontCharMode);
            } else if (wish < 29) {
                for (const int other : {int{'A'}, int{kKeyTab}, int{kKeyEscape}, int{kKeyDelete}})
                    EXPECT_FALSE(form.Press(other));
                form.Click(kFontCopy);
                copied = old;
            } else if (wish < 30) {
                script.ExpectDialog("Color Select", [&](ScriptedForm& colors) {
                    EXPECT_TRUE(colors.Press(kArrows[arrow]));
                    EXPECT_FALSE(colors.Press(kKeySpace));
                    EXPECT_EQ(colors.Shown(1001).invalidated, 1);
                    colors.Click(Roll(2) ? kIdOk : kIdCancel);
                });
                if (Roll(2))
                    EXPECT_TRUE(form.Press('C'));
                else
                    form.Click(kFontChangeColor);
                fg = std::clamp(fg + kSteps[arrow].x + 16 * kSteps[arrow].y, 0, 255);
                repaints = "P";
            } else if (wish < 32) {
                change(kFontPaste, [&](int i) { return copied[static_cast<std::size_t>(i)]; });
            } else if (wish < 34) {
                change(kFontFlipVertical, [&](int i) { return was(i ^ 56); });
            } else if (wish < 36) {
                change(kFontFlipHorizontal, [&](int i) { return was(i ^ 7); });
            } else if (wish < 38) {
                change(kFontInvert, [&](int i) { return was(i) ? 0 : 15; });
            } else {
                const bool more = Roll(2);
                form.Click(more ? kFontNewLine : kFontDeleteLine);
                if (more || sheet.size() > 1024)
                    sheet.resize(more ? sheet.size() + 1024 : sheet.size() - 1024);
                const int last = static_cast<int>(sheet.size()) / 1024 - 1;
                if (y / 8 > last) x = 120 + x % 8, y = last * 8 + y % 8;
                repaints = "EPS";
            }
            std::string seen;
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id)
                if (form.Shown(id).invalidated) seen += "EPS"[id - kFontCharEdit];
            ASSERT_EQ(seen, repaints) << step << ": " << wish;
            auto& editor = static_cast<CharEdit&>(*form.Shown(kFontCharEdit).events);
            ASSERT_EQ(vBrush.chr * 64 + editor.Cursor().y * 8 + editor.Cursor().x,
                      (y / 8 * 16 + x / 8) * 64 + y % 8 * 8 + x % 8);
            ASSERT_EQ(vBrush.fg, fg);
            ASSERT_EQ(Glyphs().Sheet()->h, static_cast<int>(sheet.size()) / 128);
            if (step % 10) continue;
            for (std::size_t i = 0; i < sheet.size(); ++i)
                ASSERT_EQ(Glyphs().Sheet()->line[i / 128][i % 128], sheet[i])
                    << step << ": " << wish;
        }
        board.PutTile(0, 0, 0, 14, 3, 0);
        Glyphs().PutGlyphPixel(0, 0, 0, !Glyphs().GetGlyphPixel(0, 0, 0));
        EXPECT_EQ(vBrushMode, kBrushText) << "the preview shows the raw glyph";
        form.Click(kIdOk);
    });
    EXPECT_EQ(getpixel(board.Surface(), 0, 0), Glyphs().GetGlyphPixel(0, 0, 0) ? 14 : 3);
    EXPECT_EQ(vBrush, (Brush{33, 15, 2, 1}));
    EXPECT_EQ(vBrushMode, kBrushNormal);
}

TEST_F(FontEdit, TheSheetScrollsGoesOutAndInAndCancelBringsItBack) {
    const std::string path = temp / "sheet.bmp", bad = PutFile(temp / "bad.bmp", "BM");
    const std::string before = Sheet();
    Run([&](ScriptedForm& form) {
        script.ExpectSaveDialog(std::nullopt);
        form.Choose(kFontSave);
        EXPECT_EQ(script.lastFileDialog.filter, "Bmp Files (*.bmp)|*.bmp||");
        EXPECT_EQ(script.lastFileDialog.extension, ".bmp");
        script.ExpectSaveDialog(path);
        form.Choose(kFontSave);
        for (int i = 0; i < 9; ++i) form.Click(kFontNewLine);
        const int shown = (form.Shown(kFontCharSelect).size.h + 1) / 2;
        for (const int position : {100, 50, 33, 1, 0}) {
            form.Shown(kFontCharSelect).invalidated = 0;
            form.Slide(kFontSlider, position);
            const int lowest = -1 - (25 * 8 - shown) / 8;
            EXPECT_EQ(vCharScrollY, static_cast<int>(lowest * (position / 100.0))) << position;
            EXPECT_EQ(form.Shown(kFontCharSelect).invalidated, 1);
        }
        script.ExpectOpenDialog(path);
        form.Choose(kFontLoad);
        EXPECT_EQ(Sheet(), before);
        script.ExpectOpenDialog(bad);
        form.Choose(kFontLoad);
        EXPECT_THAT(reports.Texts(), testing::HasSubstr("Unable to import font"));
        reports.Clear();
        form.Click(kFontInvert);
        for (const bool sure : {false, true}) {
            EXPECT_EQ(form.result, 0);
            script.ExpectMessage("Discard Changes ?", sure);
            form.Click(kIdCancel);
            EXPECT_EQ(script.lastCaption, "Confirm Cancel");
        }
    });
    EXPECT_EQ(Sheet(), before);
    EXPECT_EQ(temp.Names(), (std::vector<std::string>{"bad.bmp", "sheet.bmp"}));
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
        vBrush.chr = 33;
        Run([&](ScriptedForm& form) {
            script.ExpectOpenDialog(path);
            form.Choose(kFontLoad);
            EXPECT_EQ(Glyphs().GlyphCount(), c.glyphs);
            EXPECT_EQ(vBrush.chr, std::max(std::min(33, c.glyphs - 1), 0));
            for (int id = kFontNewLine; id <= kFontInvert; ++id) form.Click(id);
            for (int code :
                 {kKeyLeft, kKeySpace, kKeyUp, kKeySpace, kKeyDown, kKeyRight, kKeyEnter})
                form.Press(code);
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id) form.Shown(id).Paint();
        });
        Glyphs().LoadDefault();
    }
}
