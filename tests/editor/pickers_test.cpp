// The picture controls and the font editor: what they show, and random walks of
// what a person does in them beside plain models.

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

#include <random>

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

    TempFolder temp;
    ScriptedPlatform script;
    std::vector<std::unique_ptr<ScriptedWindow>> windows;
    std::mt19937 random{5};
};

}  // namespace

TEST_F(Pickers, TheGlyphBrowser) {
    CharSelect browser;
    std::string told;
    browser.repaintPreview = [&] { told += 'p'; };
    browser.repaintCharEdit = [&] { told += 'e'; };
    ScriptedWindow& window = Place(browser, {64, 65});
    EXPECT_EQ(window.shown, (Size{64, 66}));
    int glyph = vBrush.chr;
    Point scroll, press, grab;
    enum { kNothing, kPicks, kScrolls } mode = kNothing;
    bool captured = false;
    for (int step = 0; step < 4000; ++step) {
        const int wish = Roll(8), arrow = Roll(4);
        const bool other = Roll(2);
        const Point at{Roll(80) - 8, Roll(80) - 8};
        bool picked = false;
        told = "";
        const auto pick = [&](Point to) {
            picked = to.x >= 0 && to.y >= 0 && to.x < 16 && to.y < 16;
            if (picked) glyph = to.y * 16 + to.x;
        };
        if (wish < 3) {
            const int pairs[] = {kKeyInsert, kKeyPageUp, kKeyDelete, kKeyPageDown};
            window.Key((other ? pairs : kArrows)[arrow]);
            const Point to{glyph % 16 + kSteps[arrow].x, glyph / 16 + kSteps[arrow].y};
            pick(to);
            // It scrolls as far as the glyph needs: 4 by 4 tiles are seen.
            if (picked)
                scroll = {std::min({std::max(scroll.x, -to.x), 3 - to.x, 0}),
                          std::min({std::max(scroll.y, -to.y), 3 - to.y, 0})};
        } else if (wish < 5) {
            window.Send(&Events::OnLButtonDown, other, at);
            mode = other ? kScrolls : kPicks;
            captured |= other;
            press = at;
            grab = scroll;
        } else if (wish < 7) {
            window.Send(&Events::OnMouseMove, false, at);
            if (mode == kScrolls)
                scroll = {std::clamp(static_cast<int>((at.x - press.x) / 8.0 + grab.x), -13, 0),
                          std::clamp(static_cast<int>((at.y - press.y) / 8.0 + grab.y), -12, 0)};
        } else {
            window.Send(&Events::OnLButtonUp, false, at);
            captured &= mode != kScrolls;
            mode = kNothing;
        }
        // Cut towards zero before it is looked at, so that a tile more counts at the left.
        if (mode == kPicks && wish >= 3)
            pick({(at.x - scroll.x * 16) / 16, (at.y - scroll.y * 16) / 16});
        ASSERT_EQ(vBrush.chr, glyph) << step << ": " << wish;
        ASSERT_EQ((Point{vCharScrollX, vCharScrollY}), scroll) << step << ": " << wish;
        ASSERT_EQ(told, picked ? "pe" : "") << step;
        ASSERT_EQ(window.captured, captured);
        if (step % 100) continue;
        window.Paint();
        EXPECT_EQ(window.description, "Glyph " + std::to_string(glyph));
        window.ExpectPicture([&](int x, int y) {
            return std::max(getpixel(Glyphs().Sheet(), x - 8 * scroll.x, y - 8 * scroll.y), 0);
        });
    }
}

TEST_F(Pickers, ShowWhatThereIsToChoose) {
    FgColorSelect colors;
    ScriptedWindow& grid = Place(colors, {180, 165});
    const Bitmap cross = MakeBitmap(11, 10);
    clear_bitmap(cross.get());
    line(cross.get(), 0, 0, 10, 9, 15);
    line(cross.get(), 10, 0, 0, 9, 15);
    for (const int color : {37, -2}) {
        vBrush.fg = color;
        grid.Paint();
        EXPECT_EQ(grid.description, color == 37 ? "Colour 37" : "No colour");
        grid.ExpectPicture([&](int x, int y) {
            if (x >= 176 || y >= 160) return 115;
            const int own = y / 10 * 16 + x / 11, u = x % 11, v = y % 10;
            if (own == 0 && getpixel(cross.get(), u, v)) return 15;
            const bool rim = u == 0 || v == 0 || u == 10 || v == 9;
            const bool inner = !rim && (u == 1 || v == 1 || u == 9 || v == 8);
            return own ^ (own == color ? rim * 15 + inner * 32 : 0);
        });
    }

    CharEdit editor;
    vBrush = {9, 20, 30, 2};
    for (int i = 0; i < 64; ++i) Glyphs().PutGlyphPixel(9, i % 8, i / 8, i % 9 ? 40 + i : 0);
    ScriptedWindow& glyph = Place(editor, {259, 259});
    for (const auto& [at, cursor] : {std::pair(Point{31, 32}, Point{0, 1}),
                                     {{258, 258}, {7, 7}},
                                     {{-40, 100}, {0, 3}},
                                     {{100, 900}, {3, 7}}}) {
        glyph.Drag({50, 50}, at);
        EXPECT_EQ(editor.Cursor(), cursor) << at.x << ", " << at.y;
    }
    glyph.Paint();
    EXPECT_EQ(glyph.description, "Glyph 9, pixel 3 7: colour 99");
    const int flicker = glyph.PixelAt(12, 28) ^ (40 + 59);  // of the cursor's rim
    glyph.ExpectPicture([&](int x, int y) {
        const int own = y / 4 * 8 + x / 4, u = x % 4, v = y % 4;
        const bool rim = own == 59 && (u == 0 || v == 0 || u == 3 || v == 3);
        if (own % 9 == 0) return u == v && (u == 1 || u == 2) ? 15 : 0;
        return (40 + own) ^ (rim ? flicker : 0);
    });

    BrushPreview preview(PreviewRole::Panel);
    ScriptedWindow& swatch = Place(preview, {60, 37});
    EXPECT_EQ(swatch.shown, (Size{60, 38}));
    EXPECT_EQ(swatch.description, "Glyph 9, colour 20 on 30, attribute 2");
    for (vBrushMode = 0; vBrushMode < kBrushModes; ++vBrushMode) {
        swatch.Paint();
        swatch.ExpectPicture([&](int x, int y) {
            const int pixel = Glyphs().GetGlyphPixel(9, x % 8, y % 8);
            if (vBrushMode == kBrushNormal) return pixel ? 20 : 30;
            return vBrushMode == kBrushText ? pixel : 0;
        });
    }
}

// --- the font editor
// ---------------------------------------------------------------------------

TEST_F(Pickers, TheFontEditorDoesWhatAPlainSheetDoes) {
    using Pixels = std::array<int, 64>;
    std::vector<int> sheet;  // pixels, 128 a row
    for (int i = 0; i < 128 * 128; ++i) sheet.push_back(Glyphs().Sheet()->line[i / 128][i % 128]);
    Pixels old{}, copied{};
    const std::pair<int, std::function<int(std::size_t)>> changes[] = {
        {kFontPaste, [&](std::size_t i) { return copied[i]; }},
        {kFontFlipVertical, [&](std::size_t i) { return old[i ^ 56]; }},
        {kFontFlipHorizontal, [&](std::size_t i) { return old[i ^ 7]; }},
        {kFontInvert, [&](std::size_t i) { return old[i] ? 0 : 15; }}};
    int x = 8, y = 16, fg = 15;  // the cursor on the whole sheet
    bool sprite = false;
    vBrush = {33, fg, 2, 1};
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
        form.Shown(kFontCharSelect).Paint();
        for (int step = 0; step < 6000; ++step) {
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id)
                form.Shown(id).invalidated = 0;
            const int wish = Roll(step % 20 ? 30 : 36), arrow = Roll(4);
            int& pixel = sheet[static_cast<std::size_t>(y * 128 + x)];
            const auto at = [&](std::size_t i) -> int& {
                return (&pixel)[(static_cast<int>(i / 8) - y % 8) * 128 + static_cast<int>(i % 8) -
                                x % 8];
            };
            for (std::size_t i = 0; i < 64; ++i) old[i] = at(i);
            std::string repaints = "EPS", seen;
            if (wish < 18) {
                EXPECT_TRUE(form.Press(kArrows[arrow]));
                const Point to{x + kSteps[arrow].x, y + kSteps[arrow].y};
                const bool in = to.x >= 0 && to.y >= 0 && to.x < 128 &&
                                to.y < static_cast<int>(sheet.size()) / 128;
                if (in) x = to.x, y = to.y;
                repaints = in ? "E" : "";
            } else if (wish < 24) {
                EXPECT_TRUE(form.Press(kKeySpace));
                pixel = sprite ? fg & 255 : pixel ? 0 : 15;
            } else if (wish < 27) {
                EXPECT_TRUE(form.Press(kKeyEnter));
                fg = pixel;
                repaints = "P";
            } else if (wish < 28) {
                sprite = Roll(2);
                form.Click(sprite ? kFontSpriteMode : kFontCharMode);
                repaints = "";
            } else if (wish < 29) {
                form.Click(kFontCopy);
                copied = old;
                repaints = "";
            } else if (wish < 30) {
                script.ExpectDialog("Color Select", [&](ScriptedForm& colors) {
                    EXPECT_TRUE(colors.Press(kArrows[arrow]));
                    colors.Click(Roll(2) ? kIdOk : kIdCancel);
                });
                EXPECT_TRUE(form.Press('C'));
                fg = std::clamp(fg + kSteps[arrow].x + 16 * kSteps[arrow].y, 0, 255);
                repaints = "P";
            } else if (wish < 34) {
                const auto& [button, changed] = changes[wish - 30];
                form.Click(button);
                for (std::size_t i = 0; i < 64; ++i) at(i) = changed(i);
            } else {
                const bool more = wish == 34;
                form.Click(more ? kFontNewLine : kFontDeleteLine);
                if (more || sheet.size() > 1024)
                    sheet.resize(more ? sheet.size() + 1024 : sheet.size() - 1024);
                const int last = static_cast<int>(sheet.size()) / 1024 - 1;
                if (y / 8 > last) x = 120 + x % 8, y = last * 8 + y % 8;
            }
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id)
                if (form.Shown(id).invalidated) seen += "EPS"[id - kFontCharEdit];
            ASSERT_EQ(seen, repaints) << step << ": " << wish;
            const Point cursor = static_cast<CharEdit&>(*form.Shown(kFontCharEdit).events).Cursor();
            ASSERT_EQ((Point{vBrush.chr % 16 * 8 + cursor.x, vBrush.chr / 16 * 8 + cursor.y}),
                      (Point{x, y}));
            ASSERT_EQ(vBrush.fg, fg);
            ASSERT_EQ(Glyphs().Sheet()->h, static_cast<int>(sheet.size()) / 128);
            for (std::size_t i = 0; step % 10 == 0 && i < sheet.size(); ++i)
                ASSERT_EQ(Glyphs().Sheet()->line[i / 128][i % 128], sheet[i])
                    << step << ": " << wish;
        }
        board.PutTile(0, 0, 0, 14, 3, 0);
        Glyphs().PutGlyphPixel(0, 0, 0, !Glyphs().GetGlyphPixel(0, 0, 0));
        EXPECT_EQ(vBrushMode, kBrushText) << "the preview shows the raw glyph";
        form.Click(kIdOk);
    });
    DoFontEdit().Run();
    EXPECT_EQ(getpixel(board.Surface(), 0, 0), Glyphs().GetGlyphPixel(0, 0, 0) ? 14 : 3);
    EXPECT_EQ(vBrush, (Brush{33, 15, 2, 1}));
    EXPECT_EQ(vBrushMode, kBrushNormal);
}

TEST_F(Pickers, AFontScrollsGoesOutAndInAndCancelBringsItBack) {
    const auto sheet = [this] { return MakeBmp(Glyphs().Sheet(), Glyphs().GetPalette()); };
    const std::string path = temp / "sheet.bmp";
    const std::string before = sheet();
    script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
        form.Shown(kFontCharSelect).Paint();
        for (const auto& answer : {std::optional<std::string>(), std::optional(path)}) {
            script.ExpectFile("save", answer);
            form.Choose(kFontSave);
        }
        EXPECT_EQ(script.lastFileDialog.filter + script.lastFileDialog.extension,
                  "Bmp Files (*.bmp)|*.bmp||.bmp");
        for (int i = 0; i < 9; ++i) form.Click(kFontNewLine);
        const int shown = (form.Shown(kFontCharSelect).size.h + 1) / 2;
        for (const int position : {100, 50, 33, 1, 0}) {
            form.Slide(kFontSlider, position);
            const int lowest = -1 - (25 * 8 - shown) / 8;
            EXPECT_EQ(vCharScrollY, static_cast<int>(lowest * (position / 100.0))) << position;
        }
        const auto load = [&](const std::string& file) {
            script.ExpectFile("open", file);
            form.Choose(kFontLoad);
        };
        load(path);
        EXPECT_EQ(sheet(), before);
        // Pictures of any size: glyphs that are cut by an edge, and a sheet without any.
        for (const auto& [w, h, glyphs] : {std::array{20, 10, 6}, {5, 1, 0}, {1, 9, 1}}) {
            const Bitmap odd = MakeBitmap(w, h);
            clear_to_color(odd.get(), 3);
            vBrush.chr = 33;
            load(PutFile(temp / "odd.bmp", MakeBmp(odd.get(), Glyphs().GetPalette())));
            EXPECT_EQ(Glyphs().GlyphCount(), glyphs);
            EXPECT_EQ(vBrush.chr, std::max(glyphs - 1, 0));
            for (int id = kFontNewLine; id <= kFontInvert; ++id) form.Click(id);
            for (int code : {kKeyLeft, kKeySpace, kKeyUp, kKeyRight, kKeyEnter}) form.Press(code);
            for (int id = kFontCharEdit; id <= kFontCharSelect; ++id) form.Shown(id).Paint();
        }
        load(PutFile(temp / "odd.bmp", "BM"));
        EXPECT_NE(reports.Texts().find("Unable to import font"), std::string::npos);
        reports.Clear();
        for (const bool sure : {false, true}) {
            EXPECT_EQ(form.result, 0);
            script.ExpectMessage("Discard Changes ?", sure);
            form.Click(kIdCancel);
        }
    });
    DoFontEdit().Run();
    EXPECT_EQ(sheet(), before);
}
