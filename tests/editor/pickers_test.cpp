// The font editor with its picture controls: a random walk of all that a person does in it beside a
// plain sheet.

#include "editor/tools/char_edit.h"
#include "editor/tools/char_select.h"
#include "editor/tools/do_font_edit.h"
#include "editor/view/brush.h"
#include "engine/picture_file.h"
#include "tests/support/scripted_platform.h"

#include <cmath>

using namespace platform;
using Events = WindowEvents;

namespace {

constexpr int kArrows[] = {kKeyLeft, kKeyUp, kKeyRight, kKeyDown};
constexpr int kPairs[] = {kKeyInsert, kKeyPageUp, kKeyDelete, kKeyPageDown};
constexpr Point kSteps[] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};

struct Pickers : WorldTest {
    Pickers() {
        ResetBrushes();
        vCharScrollX = vCharScrollY = 0;
    }
    Dfont& glyphs = *world->GetFont();
    TempFolder temp;
    ScriptedPlatform script;
};

}  // namespace

TEST_F(Pickers, TheFontEditorDoesWhatAPlainSheetDoes) {
    using Pixels = std::array<int, 64>;
    std::vector<int> sheet;  // pixels, 128 a row
    for (int i = 0; i < 128 * 128; ++i)
        sheet.push_back(glyphs.Sheet()->line[i / 128][i % 128] ^= Roll(0, 1));
    Pixels old{}, copied{};
    const int changes[] = {kFontPaste, kFontFlipVertical, kFontFlipHorizontal, kFontInvert};
    int x = 8, y = 16, fg = 15;  // the cursor on the whole sheet
    bool sprite = false;
    Point scroll, press, grab;  // of the glyphs' window, in which 9 by 9 are seen
    enum { kNothing, kPicks, kScrolls } mode = kNothing;
    vBrush = {33, fg, 2, 1};
    Dobject& board = AddNode(world->Root(), "board", 1, 1);
    script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
        ScriptedWindow &editor = form.Shown(kFontCharEdit), &preview = form.Shown(kFontPreview),
                       &browser = form.Shown(kFontCharSelect);
        browser.Paint();
        editor.Send(&Events::OnMouseMove, false, Point{60, 60});  // no button is held
        for (int step = 0; step < 8000; ++step) {
            editor.invalidated = preview.invalidated = browser.invalidated = 0;
            int wish = Roll(0, 39);
            if (step % 20 && wish >= 30 && wish < 36) wish = 36;
            const int arrow = Roll(0, 3), rows = static_cast<int>(sheet.size()) / 1024;
            const Point at{Roll(0, 189) - 20, Roll(0, 189) - 20};
            const auto pixel = [&](std::size_t i) -> int& {
                const auto row = static_cast<std::size_t>(y / 8 * 8) + i / 8;
                return sheet[row * 128 + static_cast<std::size_t>(x / 8 * 8) + i % 8];
            };
            int& here = pixel(static_cast<std::size_t>(y % 8 * 8 + x % 8));
            for (std::size_t i = 0; i < 64; ++i) old[i] = pixel(i);
            std::string repaints, seen;
            const auto pick = [&](Point glyph, const char* shown) {
                if (glyph.x < 0 || glyph.y < 0 || glyph.x >= 16 || glyph.y >= rows) return;
                x = glyph.x * 8 + x % 8, y = glyph.y * 8 + y % 8;
                repaints = shown;
                if (repaints != "EPS") return;
                // It scrolls as far as the glyph needs.
                scroll = {std::min({std::max(scroll.x, -glyph.x), 8 - glyph.x, 0}),
                          std::min({std::max(scroll.y, -glyph.y), 8 - glyph.y, 0})};
            };
            if (wish < 14) {
                EXPECT_TRUE(form.Press(kArrows[arrow]));
                const Point to{x + kSteps[arrow].x, y + kSteps[arrow].y};
                const bool in = to.x >= 0 && to.y >= 0 && to.x < 128 && to.y < rows * 8;
                if (in) x = to.x, y = to.y;
                repaints = in ? "E" : "";
            } else if (wish < 20) {
                EXPECT_TRUE(form.Press(kKeySpace));
                here = sprite ? fg & 255 : here ? 0 : 15;
                repaints = "EPS";
            } else if (wish < 23) {
                EXPECT_TRUE(form.Press(kKeyEnter));
                fg = here;
                repaints = "P";
            } else if (wish < 24) {
                sprite = Roll(0, 1);
                form.Click(sprite ? kFontSpriteMode : kFontCharMode);
            } else if (wish < 25) {
                form.Click(kFontCopy);
                copied = old;
            } else if (wish < 26) {
                script.ExpectDialog("Color Select", [&](ScriptedForm& colors) {
                    EXPECT_TRUE(colors.Press(kArrows[arrow]));
                    colors.Click(Roll(0, 1) ? kIdOk : kIdCancel);
                });
                EXPECT_TRUE(form.Press('C'));
                fg = std::clamp(fg + kSteps[arrow].x + 16 * kSteps[arrow].y, 0, 255);
                repaints = "P";
            } else if (wish < 28) {
                editor.Drag({9, 9}, at);
                editor.Send(&Events::OnMouseMove, false, Point{9, 9});
                x = x / 8 * 8 + std::clamp(at.x / 18, 0, 7);
                y = y / 8 * 8 + std::clamp(at.y / 18, 0, 7);
                repaints = "E";
            } else if (wish < 30) {
                browser.Key((wish == 28 ? kPairs : kArrows)[arrow]);
                pick({x / 8 + kSteps[arrow].x, y / 8 + kSteps[arrow].y}, "EPS");
            } else if (wish < 34) {
                form.Click(changes[wish - 30]);
                const std::size_t flips[] = {0, 56, 7, 0};
                for (std::size_t i = 0; i < 64; ++i) {
                    pixel(i) = (wish == 30 ? copied : old)[i ^ flips[wish - 30]];
                    if (wish == 33) pixel(i) = old[i] ? 0 : 15;
                }
                repaints = "EPS";
            } else if (wish < 36) {
                const bool more = wish == 34;
                form.Click(more ? kFontNewLine : kFontDeleteLine);
                if (more || rows > 1) sheet.resize(sheet.size() + 1024 - (more ? 0 : 2048));
                const int last = static_cast<int>(sheet.size()) / 1024 - 1;
                if (y / 8 > last) x = 120 + x % 8, y = last * 8 + y % 8;
                repaints = "EPS";
            } else if (wish < 37) {
                const bool ctrl = Roll(0, 1);
                browser.Send(&Events::OnLButtonDown, ctrl, at);
                mode = ctrl ? kScrolls : kPicks;
                press = at;
                grab = scroll;
            } else if (wish < 39) {
                browser.Send(&Events::OnMouseMove, false, at);
                const auto move = [](int& place, int by, int from, int size) {
                    const int lowest = -1 - static_cast<int>(std::floor((size - 74) / 8.0));
                    place = std::min(std::max(static_cast<int>(by / 8.0 + from), lowest), 0);
                };
                if (mode == kScrolls) {
                    move(scroll.x, at.x - press.x, grab.x, 128);
                    move(scroll.y, at.y - press.y, grab.y, rows * 8);
                    repaints = "S";
                }
            } else {
                browser.Send(&Events::OnLButtonUp, false, at);
                mode = kNothing;
            }
            // Cut towards zero before it is looked at, so that a tile more counts at the left.
            if (mode == kPicks && wish >= 36)
                pick({(at.x - scroll.x * 16) / 16, (at.y - scroll.y * 16) / 16}, "EP");
            if (editor.invalidated) seen += "E";
            if (preview.invalidated) seen += "P";
            if (browser.invalidated) seen += "S";
            SCOPED_TRACE(testing::Message() << step << ": " << wish);
            ASSERT_EQ(seen, repaints);
            const Point cursor = static_cast<CharEdit&>(*editor.events).Cursor();
            ASSERT_EQ((Point{vBrush.chr % 16 * 8 + cursor.x, vBrush.chr / 16 * 8 + cursor.y}),
                      (Point{x, y}));
            ASSERT_EQ(vBrush.fg, fg);
            ASSERT_EQ((Point{vCharScrollX, vCharScrollY}), scroll);
            ASSERT_TRUE(mode != kScrolls || browser.captured);
            ASSERT_EQ(glyphs.Sheet()->h, static_cast<int>(sheet.size()) / 128);
            for (std::size_t i = 0; step % 10 == 0 && i < sheet.size(); ++i)
                ASSERT_EQ(glyphs.Sheet()->line[i / 128][i % 128], sheet[i]);
            if (step % 100) continue;
            for (ScriptedWindow* window : {&editor, &preview, &browser}) window->Paint();
            const int glyph = y / 8 * 16 + x / 8, inner = y % 8 * 8 + x % 8;
            EXPECT_EQ(browser.description, "Glyph " + std::to_string(glyph));
            browser.ExpectPicture([&](int u, int v) {
                return std::max(getpixel(glyphs.Sheet(), u - 8 * scroll.x, v - 8 * scroll.y), 0);
            });
            preview.ExpectPicture(
                [&](int u, int v) { return glyphs.GetGlyphPixel(glyph, u % 8, v % 8); });
            const int shown = glyphs.GetGlyphPixel(glyph, x % 8, y % 8);
            const int flicker = editor.PixelAt(x % 8 * 4, y % 8 * 4) ^ shown;  // the cursor's rim
            editor.ExpectPicture([&](int u, int v) {
                const int own = glyphs.GetGlyphPixel(glyph, u / 4, v / 4), a = u % 4, b = v % 4;
                const bool rim = v / 4 * 8 + u / 4 == inner && (a % 3 == 0 || b % 3 == 0);
                return !own && a == b && a % 3 ? 15 : own ^ (rim ? flicker : 0);
            });
        }
        board.PutTile(0, 0, 0, 14, 3, 0);
        glyphs.PutGlyphPixel(0, 0, 0, !glyphs.GetGlyphPixel(0, 0, 0));
        form.Click(kIdOk);
    });
    DoFontEdit().Run();
    EXPECT_EQ(getpixel(board.Surface(), 0, 0), glyphs.GetGlyphPixel(0, 0, 0) ? 14 : 3);
    EXPECT_EQ(vBrush, (Brush{33, 15, 2, 1}));
    EXPECT_EQ(vBrushMode, kBrushNormal);
}

TEST_F(Pickers, AFontGoesOutAndInAndCancelBringsItBack) {
    const auto sheet = [this] { return MakeBmp(glyphs.Sheet(), glyphs.GetPalette()); };
    const std::string before = sheet();
    script.ExpectDialog("Font Edit", [&](ScriptedForm& form) {
        script.ExpectFile("save", temp / "sheet.bmp");
        form.Choose(kFontSave);
        form.Shown(kFontCharSelect).Paint();
        form.Slide(kFontSlider, 50);
        EXPECT_EQ(vCharScrollY, -3);
        form.Click(kFontNewLine);
        script.ExpectFile("open", temp / "sheet.bmp");
        form.Choose(kFontLoad);
        EXPECT_EQ(sheet(), before);
        form.Click(kFontNewLine);
        script.ExpectMessage("Discard Changes ?");
        form.Click(kIdCancel);
    });
    DoFontEdit().Run();
    EXPECT_EQ(sheet(), before);
}
