// The picture controls of the tile tools, and the dialogs that are made of them.

#include "editor/tools/brush_preview.h"
#include "editor/tools/char_edit.h"
#include "editor/tools/char_select.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <string>

using namespace platform;

namespace {

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
    static void Click(PictureControl& control, Point at, bool ctrl = false) {
        control.OnLButtonDown(ctrl, at);
        control.OnLButtonUp(ctrl, at);
    }
    Dfont& Glyphs() { return *world->GetFont(); }

    ScriptedPlatform script;
    std::vector<std::unique_ptr<ScriptedWindow>> windows;
};

constexpr Size kGridSize{176, 160};

}  // namespace

TEST_F(Pickers, AColorGridShowsEveryColorAndMarksOne) {
    FgColorSelect grid;
    vBrush.fg = 17;
    const ScriptedWindow& window = Place(grid, {180, 165});
    for (int color = 1; color < 256; ++color) {
        const int x = color % 16 * 11;
        const int y = color / 16 * 10;
        const int edge = color == 17 ? color ^ 15 : color;
        const int inner = color == 17 ? color ^ 32 : color;
        EXPECT_EQ(window.PixelAt(x, y), edge) << color;
        EXPECT_EQ(window.PixelAt(x + 10, y + 9), edge) << color;
        EXPECT_EQ(window.PixelAt(x + 1, y + 1), inner) << color;
        EXPECT_EQ(window.PixelAt(x + 9, y + 8), inner) << color;
        EXPECT_EQ(window.PixelAt(x + 5, y + 5), color);
    }
    EXPECT_EQ(window.PixelAt(0, 0), 15) << "the cross over colour 0";
    EXPECT_EQ(window.PixelAt(5, 0), 0);
    EXPECT_EQ(window.PixelAt(176, 3), 115);
    EXPECT_EQ(window.PixelAt(3, 160), 115);
    EXPECT_EQ(window.shown, (Size{180, 165}));
    EXPECT_EQ(window.description, "Colour 17");

    vBrush.fg = -2;
    windows.back()->Paint();
    EXPECT_EQ(window.PixelAt(11, 10), 17) << "no mark for a sprite brush";
    EXPECT_EQ(window.description, "No colour");
    windows.back()->size = {300, 300};
    windows.back()->Paint();
    EXPECT_EQ(window.shown, (Size{180, 165})) << "the bitmap stays as it was made";
}

TEST_F(Pickers, AColorGridTakesWhatIsPressedOrSweptOver) {
    FgColorSelect fg;
    BgColorSelect bg;
    int told = 0;
    bg.repaintPreview = [&] { ++told; };
    Place(fg, kGridSize);
    ScriptedWindow& window = Place(bg, {190, 170});
    const struct {
        Point at;
        int color;
    } cases[] = {{{11, 10}, 17}, {{10, 9}, 0},  {{175, 159}, 255}, {{176, 3}, 99},
                 {{3, 160}, 99}, {{-1, 5}, 99}, {{5, -1}, 99}};
    for (const auto& c : cases) {
        vBrush.bg = 99;
        Click(bg, c.at);
        EXPECT_EQ(vBrush.bg, c.color) << c.at.x << ", " << c.at.y;
        Click(fg, c.at);  // nobody to tell
    }
    EXPECT_EQ(told, 3);
    EXPECT_EQ(window.invalidated, 3);
    bg.OnMouseMove(false, {0, 0});
    EXPECT_EQ(vBrush.bg, 99) << "no button is held";
    bg.OnLButtonDown(false, {0, 0});
    bg.OnMouseMove(false, {12, 0});
    EXPECT_EQ(vBrush.bg, 1);
    EXPECT_FALSE(window.captured);
    EXPECT_EQ(vBrush.fg, 255) << "the other field is another grid's";
}

TEST_F(Pickers, KeysGoOnFromWhatIsChosen) {
    FgColorSelect grid;
    CharSelect browser;
    int previews = 0;
    grid.repaintPreview = browser.repaintPreview = [&] { ++previews; };
    Place(grid, kGridSize);
    Place(browser, {64, 64});  // 4 by 4 tiles of the sheet's 16 by 16
    struct Case {
        WindowEvents& picker;
        int code;
        int from;
        int to;
    };
    const Case cases[] = {
        {grid, kKeyRight, 17, 18},   {grid, kKeyLeft, 17, 16},
        {grid, kKeyDown, 17, 33},    {grid, kKeyUp, 17, 1},
        {grid, kKeyRight, 31, 31},   {grid, kKeyLeft, 16, 16},
        {grid, kKeyUp, 3, 3},        {grid, kKeyDown, 250, 250},
        {grid, kKeyDown, -2, 16},    {grid, kKeyHome, 17, 17},
        {browser, kKeyRight, 2, 3},  {browser, kKeyDelete, 3, 4},
        {browser, kKeyLeft, 3, 2},   {browser, kKeyInsert, 2, 1},
        {browser, kKeyDown, 1, 17},  {browser, kKeyPageDown, 17, 33},
        {browser, kKeyUp, 17, 1},    {browser, kKeyPageUp, 33, 17},
        {browser, kKeyLeft, 16, 16}, {browser, kKeyDown, 240, 240},
    };
    for (const Case& c : cases) {
        const bool isGrid = &c.picker == &grid;
        (isGrid ? vBrush.fg : vBrush.chr) = c.from;
        previews = 0;
        c.picker.OnKeyDown(c.code);
        EXPECT_EQ(isGrid ? vBrush.fg : vBrush.chr, c.to) << c.code << " from " << c.from;
        EXPECT_EQ(previews, c.from != c.to) << c.code << " from " << c.from;
    }

    // The sheet scrolls as far as the glyph needs.
    vCharScrollX = vCharScrollY = 0;
    vBrush.chr = 3;
    browser.OnKeyDown(kKeyRight);
    EXPECT_EQ(vCharScrollX, -1);
    for (int i = 0; i < 4; ++i) browser.OnKeyDown(kKeyDown);
    EXPECT_EQ(vCharScrollY, -1);
    for (int i = 0; i < 4; ++i) browser.OnKeyDown(kKeyLeft);
    EXPECT_EQ(vBrush.chr, 64);
    EXPECT_EQ(vCharScrollX, 0);
}

TEST_F(Pickers, TheGlyphBrowserPicksAndScrolls) {
    CharSelect browser;
    int previews = 0;
    int edits = 0;
    browser.repaintPreview = [&] { ++previews; };
    ScriptedWindow& window = Place(browser, {64, 65});
    const BITMAP* sheet = Glyphs().Sheet();
    EXPECT_EQ(window.w, 32);
    EXPECT_EQ(window.shown, (Size{64, 66}));
    EXPECT_EQ(window.PixelAt(9, 11), getpixel(Glyphs().Sheet(), 9, 11));
    Click(browser, {16, 33});
    EXPECT_EQ(vBrush.chr, Glyphs().FindGlyphAt(8, 16));
    browser.repaintCharEdit = [&] { ++edits; };
    browser.OnLButtonDown(false, {0, 0});
    browser.OnMouseMove(true, {17, 0});
    EXPECT_EQ(vBrush.chr, 1) << "the choice follows the drag, and Ctrl comes too late";
    browser.OnLButtonUp(false, {17, 0});
    EXPECT_EQ(previews, 3);
    EXPECT_EQ(edits, 2);

    // Ctrl at the press scrolls, eight pixels a tile, no further than the sheet.
    browser.OnLButtonDown(true, {60, 60});
    EXPECT_TRUE(window.captured);
    browser.OnMouseMove(false, {60 - 23, 60 + 40});
    EXPECT_EQ(vCharScrollX, -2);
    EXPECT_EQ(vCharScrollY, 0);
    EXPECT_EQ(vBrush.chr, 1);
    browser.OnMouseMove(false, {-5000, -5000});
    EXPECT_EQ(vCharScrollX, -1 - ((sheet->w - 32) >> 3));
    EXPECT_EQ(vCharScrollY, -1 - ((sheet->h - 33) >> 3));
    browser.OnLButtonUp(false, {});
    EXPECT_FALSE(window.captured);
    Click(browser, {60, 2});
    EXPECT_EQ(vBrush.chr, 1) << "right of the sheet";
    vCharScrollX = -2;
    vCharScrollY = 0;
    Click(browser, {0, 0});
    EXPECT_EQ(vBrush.chr, 2);
    window.Paint();
    EXPECT_EQ(window.PixelAt(3, 3), getpixel(Glyphs().Sheet(), 19, 3));
    EXPECT_EQ(window.description, "Glyph 2");
}

TEST_F(Pickers, TheGlyphEditorShowsEmptyPixelsAndItsCursor) {
    CharEdit editor;
    vBrush.chr = 9;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) Glyphs().PutGlyphPixel(9, x, y, x == y ? 0 : 40 + x);
    ScriptedWindow& window = Place(editor, {259, 259});
    EXPECT_EQ(window.w, 32);
    EXPECT_EQ(window.shown, (Size{259, 259}));
    EXPECT_EQ(window.PixelAt(4 * 5 + 1, 4 * 2 + 2), 45);
    EXPECT_EQ(window.PixelAt(4 * 5 + 1, 4 * 5 + 1), 15) << "a tick";
    EXPECT_EQ(window.PixelAt(4 * 5 + 2, 4 * 5 + 2), 15);
    EXPECT_EQ(window.PixelAt(4 * 5 + 3, 4 * 5), 0);
    const struct {
        Point at, cursor;
    } cases[] = {{{0, 0}, {0, 0}},
                 {{31, 32}, {0, 1}},
                 {{258, 258}, {7, 7}},
                 {{-40, 100}, {0, 3}},
                 {{100, 900}, {3, 7}}};
    for (const auto& c : cases) {
        editor.OnLButtonDown(false, {50, 50});
        EXPECT_TRUE(window.captured);
        editor.OnMouseMove(false, c.at);
        editor.OnLButtonUp(false, c.at);
        EXPECT_EQ(editor.Cursor(), c.cursor) << c.at.x << ", " << c.at.y;
    }
    editor.OnMouseMove(false, {0, 0});
    EXPECT_EQ(editor.Cursor(), (Point{3, 7})) << "no button is held";
    window.Paint();
    EXPECT_EQ(window.description, "Glyph 9, pixel 3 7: colour 43");
    bool flickers = false;
    const int first = window.PixelAt(12, 28);
    for (int i = 0; i < 20; ++i) {
        window.Paint();
        flickers |= window.PixelAt(12, 28) != first;
        EXPECT_EQ(window.PixelAt(13, 29), 43) << "the cursor is an outline";
    }
    EXPECT_TRUE(flickers);
}

TEST_F(Pickers, ThePreviewIsCoveredWithTheBrush) {
    BrushPreview preview;
    vBrush = {3, 20, 30, 2};
    ScriptedWindow& window = Place(preview, {60, 37});
    EXPECT_EQ(window.w, 30);
    EXPECT_EQ(window.h, 19);
    for (int mode = 0; mode < kBrushModes; ++mode) {
        vBrushMode = mode;
        window.Paint();
        for (int y = 0; y < window.h; ++y) {
            for (int x = 0; x < window.w; ++x) {
                const int pixel = Glyphs().GetGlyphPixel(3, x % 8, y % 8);
                const int wanted = mode == kBrushNormal ? (pixel ? 20 : 30)
                                   : mode == kBrushText ? pixel
                                                        : 0;
                ASSERT_EQ(window.PixelAt(x, y), wanted) << mode << ": " << x << ", " << y;
            }
        }
    }
    EXPECT_EQ(window.description, "Glyph 3, colour 20 on 30, attribute 2");
    int opened = 0;
    preview.openSettings = [&] { ++opened; };
    Click(preview, {5, 5});
    EXPECT_EQ(opened, 1);
    preview.role = PreviewRole::FontEditor;
    Click(preview, {5, 5});
    EXPECT_EQ(opened, 1);
}

TEST_F(Pickers, ColorSelectTakesTheArrowKeys) {
    struct Case {
        int fg, code, then;
    };
    script.ExpectDialog("Color Select", [&](ScriptedForm& form) {
        auto& grid = static_cast<ScriptedWindow&>(*form.Picture(kColorGrid));
        const Case cases[] = {{0, kKeyLeft, 0},    {5, kKeyLeft, 4},     {255, kKeyRight, 255},
                              {15, kKeyRight, 16}, {250, kKeyDown, 255}, {3, kKeyDown, 19},
                              {10, kKeyUp, 0},     {40, kKeyUp, 24},     {-2, kKeyLeft, 0}};
        for (const Case& c : cases) {
            vBrush.fg = c.fg;
            EXPECT_TRUE(form.Press(c.code));
            EXPECT_EQ(vBrush.fg, c.then) << c.fg;
            EXPECT_EQ(grid.invalidated, 1);
            grid.Paint();
        }
        EXPECT_FALSE(form.Press(kKeySpace));
        vBrush.fg = 12;
        form.Click(kIdCancel);
    });
    DoColorSelect().Run();
    EXPECT_EQ(vBrush.fg, 12) << "Cancel keeps the choice";
}

// --- Brush Settings ----------------------------------------------------------------------------

namespace {

// Runs the dialog on a brush and gives the brush that it leaves.
Brush Settings(ScriptedPlatform& script, Brush brush, std::function<void(ScriptedForm&)> person) {
    script.ExpectDialog("Brush Settings", std::move(person));
    vBrush = brush;
    DoBrushSettings().Run();
    return vBrush;
}

std::string Checked(ScriptedForm& form) {
    std::string checked;
    for (int i = 0; i < 4; ++i) checked += form.IsChecked(kBrushAttrib + i) ? 'x' : '.';
    return checked;
}

WindowEvents& Events(ScriptedForm& form, int id) {
    return *static_cast<ScriptedWindow&>(*form.Picture(id)).events;
}

}  // namespace

TEST_F(Pickers, BrushSettingsWritesTheBrushAndCancelBringsItBack) {
    const Brush first{7, -2, 1, 2};
    const auto choose = [&](int end) {
        return [end](ScriptedForm& form) {
            EXPECT_EQ(Checked(form), "..x.");
            for (int id : {kBrushChar, kBrushFg, kBrushBg, kBrushSwatch})
                static_cast<ScriptedWindow&>(*form.Picture(id)).Paint();
            EXPECT_EQ(form.GetText(kBrushNumbers), "7 -2 1 2");
            Events(form, kBrushChar).OnLButtonDown(false, {2 * 16, 0});
            Events(form, kBrushFg).OnLButtonDown(false, {33, 0});
            Events(form, kBrushBg).OnLButtonDown(false, {44, 0});
            form.Click(kBrushAttrib + 3);
            EXPECT_EQ(vBrush, (Brush{2, 3, 4, 3})) << "at once";
            auto& preview = static_cast<ScriptedWindow&>(*form.Picture(kBrushSwatch));
            EXPECT_EQ(preview.invalidated, 4);
            preview.Paint();
            EXPECT_EQ(form.GetText(kBrushNumbers), "2 3 4 3");
            form.Click(end);
        };
    };
    EXPECT_EQ(Settings(script, first, choose(kIdOk)), (Brush{2, 3, 4, 3}));
    EXPECT_EQ(Settings(script, first, choose(kIdCancel)), first);
}

TEST_F(Pickers, SpriteEmptyAndTheAttributeOfOk) {
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) Glyphs().PutGlyphPixel(5, x, y, 7);
    Glyphs().PutGlyphPixel(6, 3, 3, 0);
    EXPECT_EQ(Settings(script, {5, 9, 9, 1},
                       [](ScriptedForm& form) {
                           form.Click(kBrushSprite);
                           EXPECT_EQ(vBrush, (Brush{5, -2, 1, 1}));
                           Events(form, kBrushChar).OnLButtonDown(false, {6 * 16, 0});
                           form.Click(kIdOk);
                       }),
              (Brush{6, -2, 0, 1}));
    EXPECT_EQ(Settings(script, {5, 9, 9, 0},
                       [](ScriptedForm& form) {
                           form.Click(kBrushAttrib + 1);
                           form.Click(kBrushEmpty);
                           EXPECT_EQ(vBrush, Brush{});
                           EXPECT_EQ(Checked(form), ".x..");
                           static_cast<ScriptedWindow&>(*form.Picture(kBrushSwatch)).Paint();
                           EXPECT_EQ(form.GetText(kBrushNumbers), "0 0 0 0");
                           form.Click(kIdOk);
                       }),
              (Brush{0, 0, 0, 1}));
    EXPECT_EQ(Settings(script, {1, 2, 3, 77},
                       [](ScriptedForm& form) {
                           EXPECT_EQ(Checked(form), "....");
                           form.Click(kIdOk);
                       }),
              (Brush{1, 2, 3, 77}))
        << "with none checked the attribute stays";
}
