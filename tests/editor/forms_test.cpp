// One table over all dialogs: what they look like, hold at first, refuse, and leave behind.

#include "editor/script/do_programming.h"
#include "editor/script/scintilla_messages.h"
#include "editor/shell/do_location.h"
#include "editor/shell/do_name.h"
#include "editor/shell/do_object_clip_board.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/do_size.h"
#include "editor/shell/do_viewport.h"
#include "editor/shell/main_frame.h"
#include "editor/tools/do_brush_settings.h"
#include "editor/tools/do_color_select.h"
#include "editor/tools/do_filter.h"
#include "editor/tools/do_font_edit.h"
#include "editor/tools/do_speckle.h"
#include "editor/tools/do_tile_clip.h"
#include "editor/tools/fade_dialog.h"
#include "editor/tools/open_area_dialog.h"
#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>

using namespace platform;

namespace {

struct Refusal {
    int field;
    const char* text;
    const char* message;
};

struct Row {
    std::string caption;
    std::function<void()> open;
    unsigned layout;  ///< digest of the form's table: texts, tips, places, ranges
    std::string look;
    std::vector<Refusal> refused;
    std::function<void(ScriptedForm&)> change;
    std::string after;   ///< by OK
    std::string cancel;  ///< by Cancel; empty where all stays as it was, "-" without a Cancel
};

class Forms : public WorldTest {
protected:
    Forms() : frame([](int) {}) {
        EXPECT_TRUE(frame.Create());
        Reset();
    }
    void Reset() {
        world->Root().EraseAll();
        board = &AddNode(world->Root(), "Attic", 6, 5);
        board->posx = 3;
        board->posy = -4;
        board->vieww = 5;
        world->currentBoard = world->currentObject = board->id;
        ResetBrushes();
        vBrush = {7, -2, 1, 2};
        vTileClipSkip = 0;
        script.WriteProfileInt("Notify", "param", 1);
        SelectRect(HandleGuard(world->GetCurrentObject()), {3, -4}, {8, 0});
        vFadeCenterX = vFadeCenterY = 0;
        std::srand(1);
    }
    std::string State() {
        std::string text = board->name;
        const auto blank = std::count(board->tiles.begin(), board->tiles.end(), Dtile{});
        for (int number :
             {board->posx, board->posy, board->posz, board->width, board->height, board->vieww,
              board->viewh, board->evieww, vBrush.chr, vBrush.fg, vBrush.bg, vBrush.attrib,
              vTileClipSkip, static_cast<int>(board->undoTiles.size()), static_cast<int>(blank),
              script.GetProfileInt("Notify", "param", 1)})
            text += " " + std::to_string(number);
        return text;
    }
    static unsigned Digest(const Form& form) {
        std::string text = form.font;
        for (int number : {form.w, form.h, form.points}) text += " " + std::to_string(number);
        for (const Control& c : form.controls) {
            text += std::string("\n") + c.text + "\t" + c.tip;
            for (int number : {c.id, static_cast<int>(c.kind), c.x, c.y, c.w, c.h, c.low, c.high,
                               c.enabled ? 1 : 0})
                text += " " + std::to_string(number);
        }
        unsigned digest = 2166136261u;
        for (const char c : text) digest = (digest ^ static_cast<unsigned char>(c)) * 16777619u;
        return digest;
    }
    void ExpectRow(const Row& row) {
        for (const int end : {kIdCancel, kIdOk}) {
            if (end == kIdCancel && row.cancel == "-") continue;
            Reset();
            const std::string before = State();
            script.ExpectDialog(row.caption, [&](ScriptedForm& form) {
                EXPECT_EQ(form.Look(), row.look);
                EXPECT_EQ(Digest(form.layout), row.layout) << "a changed table belongs in here";
                for (const Refusal& r : row.refused) {
                    const std::string old = form.GetText(r.field);
                    form.Type(r.field, r.text);
                    form.focus = 0;
                    script.ExpectMessage(r.message);
                    form.Click(kIdOk);
                    EXPECT_EQ(form.focus, r.field) << r.text;
                    EXPECT_EQ(form.result, 0) << r.text;
                    EXPECT_EQ(State(), before) << r.text;
                    form.Type(r.field, old);
                }
                if (row.change) row.change(form);
                if (row.cancel == "?" && end == kIdCancel)
                    script.ExpectMessage("Discard Changes ?");
                form.Click(end);
            });
            script.Do(row.open);
            const bool writes = end == kIdOk || row.cancel.size() > 1;
            EXPECT_EQ(State(), !writes ? before : end == kIdOk ? row.after : row.cancel);
        }
    }

    ScriptedPlatform script;
    CMainFrame frame;
    Dobject* board = nullptr;
};

}  // namespace

TEST_F(Forms, AllOfThem) {
    const auto type = [](std::vector<std::pair<int, std::string>> texts) {
        return [texts](ScriptedForm& form) {
            for (const auto& [id, text] : texts) form.Type(id, text);
        };
    };
    const auto click = [](std::vector<int> ids) {
        return [ids](ScriptedForm& form) {
            for (int id : ids) form.Click(id);
        };
    };
    const auto slide = [](std::vector<std::pair<int, int>> values, const char* look) {
        return [values, look](ScriptedForm& form) {
            for (const auto& [id, value] : values) form.Slide(id, value);
            EXPECT_EQ(form.Look(), look);
        };
    };
    const std::function<void()> size = [] { DoSize().Run(); };
    const std::function<void()> brush = [this] { frame.EditBrush(); };
    const auto area = [](AreaDialog dialog) { return [dialog] { OpenAreaDialog(dialog); }; };
    const char* const kSide = "an integer between 1 and 32767.";
    const char* const kInteger = "Please enter an integer.";
    const char* const kPercent = "Please enter an integer between 0 and 99.";
    const std::string brushLook = "[ ] [ ] [x] [ ] 'Numbers of the brush'";
    const std::string node = "Attic 3 -4 0 6 5 5 5 0 ";
    const Row rows[] = {
        {"Name",
         [] { DoName().Run(); },
         2739639997u,
         "'Attic'",
         {},
         type({{kNameText, "Big\tHall " + std::string(50, 'n')}}),
         "Big_Hall_" + std::string(41, 'n') + " 3 -4 0 6 5 5 5 0 7 -2 1 2 0 0 30 1",
         ""},
        {"Location",
         [] { DoLocation().Run(); },
         3420602394u,
         "'3' '-4' '0'",
         {{kLocationX, "", kInteger},
          {kLocationY, "2147483648", kInteger},
          {kLocationZ, "1x", kInteger}},
         type({{kLocationX, "-8"}, {kLocationY, "40000"}, {kLocationZ, "10"}}),
         "Attic -8 40000 10 6 5 5 5 0 7 -2 1 2 0 0 30 1",
         ""},
        {"Size",
         size,
         69009994u,
         "'6' '5' [x]",
         {{kSizeW, "0", kSide},
          {kSizeW, "99999999999", kSide},
          {kSizeH, "", kSide},
          {kSizeH, "32768", kSide}},
         type({{kSizeW, "8"}, {kSizeH, "4"}}),
         "Attic 3 -4 0 8 4 8 4 0 7 -2 1 2 0 0 24 1",
         ""},
        {"Size",
         size,
         69009994u,
         "'6' '5' [x]",
         {},
         [&](ScriptedForm& form) {
             form.Click(kSizeChangeView);
             form.Type(kSizeW, "8");
             form.Type(kSizeH, "4");
         },
         "Attic 3 -4 0 8 4 5 4 0 7 -2 1 2 0 0 24 1",
         ""},
        {"Viewport",
         [] { DoViewport().Run(); },
         447038723u,
         "'5' '5'",
         {{kViewportW, "32768", "32768 by 5 tiles is too large"},
          {kViewportH, "32768", "6 by 32768 tiles is"},
          {kViewportH, "", kInteger}},
         type({{kViewportW, "9"}, {kViewportH, "3"}}),
         "Attic 3 -4 0 9 5 9 3 0 7 -2 1 2 0 0 30 1",
         ""},
        {"Speckle",
         area(AreaDialog::Speckle),
         3471196812u,
         "'50'",
         {{kSpecklePercentage, "100", kPercent}, {kSpecklePercentage, "", kPercent}},
         type({{kSpecklePercentage, "99"}}),
         node + "7 -2 1 2 0 30 0 1",
         ""},
        {"Filter",
         area(AreaDialog::Filter),
         2701341678u,
         "[x] [x] [x] [x]",
         {},
         click({kFilterChar, kFilterBg}),
         node + "-1 -2 -1 2 0 0 30 1",
         ""},
        {"Filter",
         area(AreaDialog::Filter),
         2701341678u,
         "[x] [x] [x] [x]",
         {},
         click({kFilterFg, kFilterAttribute}),
         node + "7 -1 1 -1 0 0 30 1",
         ""},
        {"Fade",
         area(AreaDialog::Fade),
         371869297u,
         "'Left to right' =0 'Random: 0' =0",
         {},
         slide({{kFadeRandomSlider, 3}, {kFadeBlendSlider, 1}},
               "'Right to left' =1 'Random: 3' =3"),
         node + "7 -2 1 2 0 30 0 1",
         ""},
        {"Distance Fade",
         area(AreaDialog::Distance),
         2619775281u,
         "'X multiplier: 0.35' =35 'Y multiplier: 0.45' =45 'Random: 4' =4",
         {},
         slide({{kFadeXSlider, 400}, {kFadeYSlider, 205}, {kFadeRandomSlider, 0}},
               "'X multiplier: 4.00' =400 'Y multiplier: 2.05' =205 'Random: 0' =0"),
         node + "7 -2 1 2 0 30 0 1",
         ""},
        {"Slime fade",
         area(AreaDialog::Slime),
         3361920905u,
         "'Random: 5' =5",
         {},
         slide({{kFadeRandomSlider, 15}}, "'Random: 15' =15"),
         node + "7 -2 1 2 0 30 0 1",
         ""},
        {"Brush Settings",
         brush,
         26701032u,
         brushLook,
         {},
         [&](ScriptedForm& form) {
             form.Shown(kBrushChar).Click({32, 0});
             form.Shown(kBrushFg).Click({33, 0});
             form.Shown(kBrushBg).Click({44, 0});
             form.Click(kBrushAttrib + 3);
             EXPECT_EQ(vBrush, (Brush{2, 3, 4, 3})) << "at once";
             for (int id = kBrushChar; id <= kBrushSwatch; ++id)
                 EXPECT_GT(form.Shown(id).invalidated, 0);
             form.Shown(kBrushSwatch).Paint();
             EXPECT_EQ(form.GetText(kBrushNumbers), "2 3 4 3");
             form.Shown(kBrushSwatch).Click({5, 5});
         },
         node + "2 3 4 3 0 0 30 1",
         ""},
        {"Brush Settings",
         brush,
         26701032u,
         brushLook,
         {},
         click({kBrushAttrib + 1, kBrushEmpty}),
         node + "0 0 0 1 0 0 30 1",
         ""},
        {"Brush Settings",
         brush,
         26701032u,
         brushLook,
         {},
         [&](ScriptedForm& form) {
             form.Shown(kBrushFg).Click({99, 90});
             form.Click(kBrushSprite);
             form.Shown(kBrushChar).Click({176, 213});
             EXPECT_EQ(vBrush, (Brush{219, -2, 1, 2})) << "a block has no holes";
             form.Shown(kBrushChar).Click({48, 0});
         },
         node + "3 -2 0 2 0 0 30 1",
         ""},
        {"Color Select",
         [] { DoColorSelect().Run(); },
         3247095315u,
         "",
         {},
         [](ScriptedForm& form) {
             form.Shown(kColorGrid).Click({0, 10});
         },
         node + "7 16 1 2 0 0 30 1",
         node + "7 16 1 2 0 0 30 1"},
        {"Tile ClipBoard",
         [] { DoTileClip().Run(); },
         226471719u,
         "[ ]",
         {},
         click({kClipSkip}),
         node + "7 -2 1 2 1 0 30 1",
         ""},
        {"Save Notification",
         [] { DoSaveNotification::Confirm(); },
         3281432160u,
         "[x]",
         {},
         click({kNoticeHide, kNoticeHide}),
         node + "7 -2 1 2 0 0 30 0",
         node + "7 -2 1 2 0 0 30 0"},
        {"Object ClipBoard",
         [] { DoObjectClipBoard().Run(); },
         3293002876u,
         "",
         {},
         {},
         node + "7 -2 1 2 0 0 30 1",
         "-"},
        {"Font Edit",
         [] { DoFontEdit().Run(); },
         3265399808u,
         "=0 [x] [ ]",
         {},
         {},
         node + "7 -2 1 2 0 0 30 1",
         "?"},
        {"Programming",
         [] { DoProgramming().Run(); },
         3335899143u,
         "",
         {},
         [this](ScriptedForm&) { board->script.clear(); },
         node + "7 -2 1 2 0 0 30 1",
         "?"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.caption + ", row " + std::to_string(&row - rows));
        ExpectRow(row);
    }
    EXPECT_EQ(Digest(CPaintView::Layout()), 2279674750u);
    EXPECT_EQ(Digest(CToolView::Layout()), 3659412913u);
}

// Neither side of a grid passes through one that is too large.
TEST_F(Forms, SizesOfExtremeShapes) {
    const struct {
        const char *w, *h;
        int focus;  ///< on a refusal
    } cases[] = {{"2", "32000", 0},
                 {"32000", "2", 0},
                 {"30000", "20000", kSizeW},
                 {"20000", "30000", kSizeH}};
    for (const auto& c : cases) {
        script.ExpectDialog("Size", [&](ScriptedForm& form) {
            form.Type(kSizeW, c.w);
            form.Type(kSizeH, c.h);
            if (c.focus) script.ExpectMessage("is too large");
            form.Click(kIdOk);
            EXPECT_EQ(form.result == 0, c.focus != 0);
            EXPECT_EQ(form.focus, c.focus);
            if (c.focus) form.Click(kIdCancel);
        });
        script.Do([] { DoSize().Run(); });
        const std::string shape =
            std::to_string(board->width) + " " + std::to_string(board->height);
        EXPECT_EQ(shape == std::string(c.w) + " " + c.h, c.focus == 0);
    }
}

TEST_F(Forms, FadeShowsTheBlendThroughTheSet) {
    const auto sets = LoadFadeSets("test");
    const auto blends = LoadFadeBlends("test");
    vBrush = {1, 14, 3, 0};
    script.ExpectDialog("Fade", [&](ScriptedForm& form) {
        const auto shows = [&](std::size_t set, std::size_t blend) {
            ScriptedWindow& viewer = form.Shown(kFadePicture);
            EXPECT_GT(viewer.invalidated, 0);
            viewer.Paint();
            const Bitmap picture = MakeBitmap(80, 80);
            for (int i = 0; i < 100; ++i) {
                const int cell = blends[blend].cells[static_cast<std::size_t>(i)];
                world->GetFont()->DrawGlyph(picture.get(),
                                            sets[set].tiles[static_cast<std::size_t>(cell)], 14, 3,
                                            i % 10, i / 10);
            }
            for (int p = 0; p < 6400; ++p)
                ASSERT_EQ(viewer.PixelAt(p % 80, p / 80), getpixel(picture.get(), p % 80, p / 80));
            EXPECT_EQ(form.GetText(kFadeBlendName), blends[blend].name);
            EXPECT_EQ(form.GetText(kFadeSetButton), "Set: " + sets[set].name);
        };
        shows(0, 0);
        form.Slide(kFadeBlendSlider, 8);
        shows(0, 8);
        std::vector<std::string> items;
        for (const FadeSet& set : sets) items.push_back(set.name);
        items.insert(items.end(), {"-", "&Cancel"});
        for (const int choice : {kFadeMenuBase + 2, 0}) {
            script.ExpectMenu(items, choice);
            form.Click(kFadeSetButton);
            form.Slide(kFadeRandomSlider, 0);
            shows(2, 8);
        }
        form.Click(kIdOk);
    });
    board->Create("even", 10, 10);
    SelectRect(HandleGuard(world->GetCurrentObject()), {3, -4}, {12, 5});
    script.Do([] { OpenAreaDialog(AreaDialog::Fade); });
    for (std::size_t i = 0; i < 100; ++i)
        ASSERT_EQ(board->tiles[i].chr, sets[2].tiles[static_cast<std::size_t>(blends[8].cells[i])]);
}

TEST_F(Forms, WithoutSetsOrBlendsNothingCanBePainted) {
    const auto home = std::filesystem::current_path();
    std::filesystem::current_path(std::filesystem::temp_directory_path());
    for (const auto& [dialog, caption] :
         {std::pair(AreaDialog::Fade, "Fade"), std::pair(AreaDialog::Distance, "Distance Fade"),
          std::pair(AreaDialog::Slime, "Slime fade")}) {
        script.ExpectDialog(caption, [&](ScriptedForm& form) {
            EXPECT_EQ(form.GetText(kFadeSetButton), "No fade sets");
            if (dialog == AreaDialog::Fade) {
                EXPECT_EQ(form.Look(), "'No blends' ! !=0 'Random: 0' =0 !");
                form.Shown(kFadePicture).Paint();
            }
            form.events.OnControl(form, kIdOk);  // Enter, though the button is disabled
            EXPECT_EQ(form.result, 0);
            form.Click(kIdCancel);
        });
        script.Do([&, own = dialog] { OpenAreaDialog(own); });
    }
    reports.Clear();
    EXPECT_TRUE(board->undoTiles.empty());
    std::filesystem::current_path(home);
}

TEST_F(Forms, ProgrammingSetsTheTextUpAndRemembersTheFace) {
    vFontFaces.clear();
    script.faces = {"Mono", "R&D Mono", std::string(64, 'x'), "Mono"};
    script.ExpectDialog("Programming", [&](ScriptedForm& form) {
        unsigned digest = 2166136261u;
        for (const auto& m : static_cast<ScriptedCode*>(form.Code(kScriptText))->sent) {
            // A text's place in memory says nothing.
            const bool text = m.message == SCI_SETTEXT || m.message == SCI_STYLESETFONT ||
                              m.message == SCI_TEXTWIDTH;
            for (const std::uintptr_t number : {std::uintptr_t{m.message}, m.wParam,
                                                text ? 0 : static_cast<std::uintptr_t>(m.lParam)})
                digest = (digest ^ static_cast<unsigned>(number)) * 16777619u;
        }
        EXPECT_EQ(digest, 2954773187u) << "the messages at the start";
        script.ExpectMenu({"Mono", "R&&D Mono", "-", "&Cancel"}, kFaceMenuBase + 1);
        form.Click(kChangeFont);
        EXPECT_TRUE(script.lastMenu[0].checked) << "the first face is the default";
        EXPECT_EQ(script.GetProfileString("Font", "Face", ""), "R&D Mono") << "at once";
        script.ExpectMenu({}, 0);
        form.Click(kChangeFont);
        EXPECT_FALSE(script.lastMenu[0].checked);
        EXPECT_TRUE(script.lastMenu[1].checked);
        form.Click(kIdOk);
    });
    DoProgramming().Run();
    for (int i = 0; i < 300; ++i) script.faces.push_back("Face " + std::to_string(i));
    [[maybe_unused]] const DoProgramming opened;
    EXPECT_EQ(vFontFaces.size(), kMaxFontFaces);
    vFontFaces.clear();
}
