// One table over all dialogs: what they look like, hold at first, refuse, and leave behind. And the
// library from which the fades take their glyphs.

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
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <sstream>

using namespace platform;
using testing::ElementsAre;

namespace {

struct Row {
    std::string caption;
    std::function<void()> open;
    unsigned layout;  ///< digest of the form's table: texts, tips, places, ranges
    std::string look;
    std::string changes;  ///< by a person: "1003" clicks, "1001=8" types, "1001~8" slides,
                          ///< "1001@8,9" clicks into a picture
    std::string after;    ///< the state by OK
    char cancel = ' ';    ///< by Cancel: 'a' as OK, '-' there is none, '?' as it was, but asked
};

struct Refusal {
    int row, field;
    const char *text, *message;
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
    static void Change(ScriptedForm& form, const std::string& changes) {
        std::istringstream words(changes);
        for (std::string word; words >> word;) {
            std::size_t end = 0;
            const int id = std::stoi(word, &end);
            const std::string to = word.substr(std::min(end + 1, word.size()));
            const char kind = end < word.size() ? word[end] : '!';
            if (kind == '!') form.Click(id);
            if (kind == '=') form.Type(id, to);
            if (kind == '~') form.Slide(id, std::stoi(to));
            if (kind != '@') continue;
            form.Shown(id).Click({std::stoi(to), std::stoi(to.substr(to.find(',') + 1))});
        }
    }
    void ExpectRow(const Row& row, int end, const std::vector<Refusal>& refusals) {
        Reset();
        const std::string before = State();
        script.ExpectDialog(row.caption, [&](ScriptedForm& form) {
            EXPECT_EQ(form.Look(), row.look);
            EXPECT_EQ(Digest(form.layout), row.layout) << "a changed table belongs in here";
            for (const Refusal& r : refusals) {
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
            Change(form, row.changes);
            if (row.caption == "Distance Fade") {
                EXPECT_EQ(form.Look(),
                          "'X multiplier: 4.00' =400 'Y multiplier: 2.05' =205 "
                          "'Random: 4' =4");
            }
            if (row.cancel == '?' && end == kIdCancel) script.ExpectMessage("Discard Changes ?");
            if (!form.result) form.Click(end);
        });
        script.Do(row.open);
        EXPECT_EQ(State(), end == kIdOk || row.cancel == 'a' ? row.after : before);
    }

    ScriptedPlatform script;
    CMainFrame frame;
    Dobject* board = nullptr;
};

}  // namespace

TEST_F(Forms, AllOfThem) {
    const std::function<void()> size = [] { DoSize().Run(); };
    const std::function<void()> brush = [this] { frame.EditBrush(); };
    const auto area = [](AreaDialog dialog) { return [dialog] { OpenAreaDialog(dialog); }; };
    const std::string own = "Attic 3 -4 0 6 5 5 5 0 ",
                      brushLook = "[ ] [ ] [x] [ ] 'Numbers of the brush'";
    const std::string rest = " 7 -2 1 2 0 0 ", plain = own + "7 -2 1 2 0 0 30 1",
                      painted = own + "7 -2 1 2 0 30 0 1";
    const std::string name = "Hall_" + std::string(45, 'n');
    const Row rows[] = {
        {"Name", [] { DoName().Run(); }, 2739639997u, "'Attic'", "1001=" + name + "nn",
         name + plain.substr(5)},
        {"Location", [] { DoLocation().Run(); }, 3420602394u, "'3' '-4' '0'",
         "1001=-8 1002=40000 1003=10", "Attic -8 40000 10 6 5 5 5 0" + rest + "30 1"},
        {"Size", size, 69009994u, "'6' '5' [x]", "1001=8 1002=4",
         "Attic 3 -4 0 8 4 8 4 0" + rest + "24 1"},
        {"Size", size, 69009994u, "'6' '5' [x]", "1003 1001=8 1002=4",
         "Attic 3 -4 0 8 4 5 4 0" + rest + "24 1"},
        {"Viewport", [] { DoViewport().Run(); }, 447038723u, "'5' '5'", "1001=9 1002=3",
         "Attic 3 -4 0 9 5 9 3 0" + rest + "30 1"},
        {"Speckle", area(AreaDialog::Speckle), 3471196812u, "'50'", "1002=99", painted},
        {"Filter", area(AreaDialog::Filter), 2701341678u, "[x] [x] [x] [x]", "1001 1003",
         own + "-1 -2 -1 2 0 0 30 1"},
        {"Filter", area(AreaDialog::Filter), 2701341678u, "[x] [x] [x] [x]", "1002 1004",
         own + "7 -1 1 -1 0 0 30 1"},
        {"Fade", area(AreaDialog::Fade), 371869297u, "'Left to right' =0 'Random: 0' =0",
         "1010~3 1003~1", painted},
        {"Distance Fade", area(AreaDialog::Distance), 2619775281u,
         "'X multiplier: 0.35' =35 'Y multiplier: 0.45' =45 'Random: 4' =4", "1005~400 1007~205",
         painted},
        {"Slime fade", area(AreaDialog::Slime), 3361920905u, "'Random: 5' =5", "1010~15", painted},
        {"Brush Settings", brush, 26701032u, brushLook,
         "1001@32,0 1002@33,0 1003@44,0 1009 1004@5,5", own + "2 3 4 3 0 0 30 1"},
        {"Brush Settings", brush, 26701032u, brushLook, "1007 1011", own + "0 0 0 1 0 0 30 1"},
        // A block has no holes, a heart has.
        {"Brush Settings", brush, 26701032u, brushLook, "1002@99,90 1010 1001@176,213",
         own + "219 -2 1 2 0 0 30 1"},
        {"Brush Settings", brush, 26701032u, brushLook, "1001@176,213 1002@0,0 1010 1001@48,0",
         own + "3 -2 0 2 0 0 30 1"},
        {"Color Select", [] { DoColorSelect().Run(); }, 3247095315u, "", "1001@0,10",
         own + "7 16 1 2 0 0 30 1", 'a'},
        {"Tile ClipBoard", [] { DoTileClip().Run(); }, 226471719u, "[ ]", "1002",
         own + "7 -2 1 2 1 0 30 1"},
        {"Save Notification", [] { DoSaveNotification::Confirm(); }, 3281432160u, "[x]",
         "1002 1002", own + "7 -2 1 2 0 0 30 0", 'a'},
        {"Load BMP As", [] { AskForForeground(); }, 2316969139u, "", "1002", plain, '-'},
        {"Object ClipBoard", [] { DoObjectClipBoard().Run(); }, 3293002876u, "", "", plain, '-'},
        {"Font Edit", [] { DoFontEdit().Run(); }, 3265399808u, "=0 [x] [ ]", "", plain, '?'},
        {"Programming", [] { DoProgramming().Run(); }, 3335899143u, "", "", plain, '?'},
    };
    const char* const kSide = "an integer between 1 and 32767.";
    const char* const kInteger = "Please enter an integer.";
    const Refusal refusals[] = {
        {1, kLocationX, "", kInteger},
        {1, kLocationY, "2147483648", kInteger},
        {1, kLocationZ, "1x", kInteger},
        {2, kSizeW, "0", kSide},
        {2, kSizeH, "32768", kSide},
        {2, kSizeH, "", kSide},
        {4, kViewportW, "32768", "32768 by 5 tiles is too large"},
        {4, kViewportH, "32768", "6 by 32768 tiles is"},
        {5, kSpecklePercentage, "100", "Please enter an integer between 0 and 99."},
        {5, kSpecklePercentage, "-1", "Please enter an integer between 0 and 99."},
    };
    for (const Row& row : rows) {
        const int place = static_cast<int>(&row - rows);
        SCOPED_TRACE(row.caption + ", row " + std::to_string(place));
        std::vector<Refusal> refused;
        for (const Refusal& r : refusals)
            if (r.row == place) refused.push_back(r);
        ExpectRow(row, kIdOk, refused);
        if (row.cancel != '-') ExpectRow(row, kIdCancel, {});
    }
    EXPECT_EQ(Digest(CPaintView::Layout()), 2541293384u);
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
            form.Click(kSizeChangeView);
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
            EXPECT_EQ(viewer.w, 80);
            viewer.ExpectPicture(picture.get());
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
        script.ExpectDialog(caption, [&, fade = dialog == AreaDialog::Fade](ScriptedForm& form) {
            EXPECT_EQ(form.GetText(kFadeSetButton), "No fade sets");
            if (fade) {
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
            const bool text = m.lParam > 0xffffff;
            for (const std::uintptr_t number : {std::uintptr_t{m.message}, m.wParam,
                                                text ? 0 : static_cast<std::uintptr_t>(m.lParam)})
                digest = (digest ^ static_cast<unsigned>(number)) * 16777619u;
        }
        EXPECT_EQ(digest, 3435348262u) << "the messages at the start";
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

// --- the library -------------------------------------------------------------------------------

namespace {

class FadeLibrary : public WorldTest {
protected:
    FadeLibrary() {
        std::filesystem::current_path(temp.Path());
        std::filesystem::create_directory("Library");
    }
    ~FadeLibrary() override { std::filesystem::current_path(home); }
    template <typename Record>
    static std::vector<std::string> Names(const char* file, const std::string& text,
                                          std::vector<Record> (*load)(const char*)) {
        PutFile(file, text);
        std::vector<std::string> names;
        for (const Record& record : load("DoFade")) names.push_back(record.name);
        return names;
    }
    static std::vector<std::string> Sets(const std::string& text) {
        return Names("Library/FadeSets.txt", text, LoadFadeSets);
    }
    static std::vector<std::string> Blends(const std::string& text) {
        return Names("Library/FadeBlends.txt", text, LoadFadeBlends);
    }
    static std::string Numbers(int count, const std::string& number = "1") {
        std::string text;
        for (int i = 0; i < count; ++i) text += number + (i % 10 == 9 ? "\n" : " ");
        return text;
    }

    const std::filesystem::path home = std::filesystem::current_path();
    TempFolder temp;
};

}  // namespace

TEST_F(FadeLibrary, SetsAreWordsAndFiveNumbersAndBlendsALineAndAHundred) {
    LoadFadeSets("DoFade");
    LoadFadeBlends("DoFade");
    EXPECT_EQ(reports.Texts(),
              "Unable to load Library/FadeSets.txt\nUnable to load Library/FadeBlends.txt\n");
    reports.Clear();
    EXPECT_THAT(Sets("A 1 2 3 4 5\nB\n-1 +2 3\n4 5 C 1 2 3 4 5"), ElementsAre("A", "B", "C"));
    EXPECT_EQ(LoadFadeSets("DoFade")[1].tiles, (FadeTiles{-1, 2, 3, 4, 5}));
    EXPECT_THAT(Sets("A 1 2 3 4 5\r\n \n\n"), ElementsAre("A")) << "no set without a name";
    EXPECT_THAT(Sets("A 1 2 3 4 5\nB 1 x 3 4 5\nC 1 2 3 4 5"), ElementsAre("A"));
    EXPECT_THAT(Sets("A 1 2 3 4 99999999999 B 1 2 3 4 5"), ElementsAre());

    const std::string one = "left to right\n" + Numbers(100);
    const std::string longest(98, 'n');
    EXPECT_THAT(Blends(one + "b\r\n" + Numbers(99) + "7 dropped\nc\n" + Numbers(100, "-3") +
                       longest + "\n" + Numbers(100)),
                ElementsAre("left to right", "b", "c", longest));
    const auto blends = LoadFadeBlends("DoFade");
    EXPECT_EQ(blends[1].cells[99], 4) << "beyond the set counts as its end";
    EXPECT_EQ(blends[2].cells[0], 0);
    for (const std::string& rest :
         {longest + "n\n" + Numbers(100), "b\n" + Numbers(99),
          "b\n" + Numbers(50) + "? " + Numbers(50), std::string("b"), std::string("\n\n")})
        EXPECT_THAT(Blends(one + rest), ElementsAre("left to right")) << rest;
    reports.Clear();
}
