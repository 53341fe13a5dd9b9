// The area commands from the menus to the tiles, with their dialogs.

#include "editor/view/area_commands.h"
#include "editor/commands.h"
#include "editor/shell/main_frame.h"
#include "editor/tools/do_filter.h"
#include "editor/tools/do_speckle.h"
#include "editor/tools/fade_dialog.h"
#include "editor/view/tool_menus.h"
#include "tests/editor/area_world.h"
#include "tests/support/scripted_platform.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <filesystem>
#include <set>

using namespace platform;

namespace {

class AreaCommandsTest : public AreaTest {
protected:
    AreaCommandsTest() : frame([](int) {}) {
        EXPECT_TRUE(frame.Create());
        for (const FadeSet& set : LoadFadeSets("test")) setNames.push_back(set.name);
        blends = LoadFadeBlends("test");
    }

    // A right drag over the tiles, with the pop-up's choice at its end.
    void Choose(int command, Point from, Point to, bool primitives = false) {
        CQuiltView& view = frame.EditView();
        const auto at = [](Point tile) { return Point{tile.x * 8 + 4, tile.y * 8 + 4}; };
        view.OnRButtonDown(primitives, at(from));
        view.OnMouseMove(primitives, at(to));
        script.ExpectMenu({}, command);
        QueueDialogs();
        view.OnRButtonUp(primitives, at(to));
    }
    // A dialog that the next choice opens, and what is done in it.
    void Expect(const char* caption, std::function<void(ScriptedForm&)> person) {
        dialogs.emplace_back(caption, std::move(person));
    }
    void QueueDialogs() {
        for (auto& [caption, person] : dialogs) script.ExpectDialog(caption, std::move(person));
        dialogs.clear();
    }
    void ExpectDialogsOf(AreaAction action) {
        static const std::map<AreaAction, std::vector<const char*>> kDialogs{
            {AreaAction::Fade, {"Fade"}},
            {AreaAction::Distance, {"Distance Fade"}},
            {AreaAction::Slime, {"Slime fade"}},
            {AreaAction::Speckle, {"Speckle"}},
            {AreaAction::ReplaceFill, {"Filter"}},
            {AreaAction::ReplaceSpeckle, {"Filter", "Speckle"}},
            {AreaAction::Copy, {"Filter"}},
            {AreaAction::NewObject, {"Name"}},
        };
        const auto found = kDialogs.find(action);
        if (found == kDialogs.end()) return;
        for (const char* caption : found->second) Expect(caption, Ok);
    }
    static void Ok(ScriptedForm& form) { form.Click(kIdOk); }
    static void Cancel(ScriptedForm& form) { form.Click(kIdCancel); }

    ScriptedPlatform script;
    CMainFrame frame;
    std::vector<std::pair<const char*, std::function<void(ScriptedForm&)>>> dialogs;
    std::vector<std::string> setNames;
    std::vector<FadeBlend> blends;
};

// The Library folder is elsewhere while this lives.
struct NoLibrary {
    NoLibrary() : home(std::filesystem::current_path()) {
        std::filesystem::current_path(std::filesystem::temp_directory_path());
    }
    ~NoLibrary() { std::filesystem::current_path(home); }
    std::filesystem::path home;
};

}  // namespace

TEST_F(AreaCommandsTest, MenusAndTableNameTheSameCommands) {
    std::multiset<int> inMenus, inTable;
    const std::set<int> others{kCmdZoomIn, kCmdZoomOut, kCmdRuler, kCmdToolCancel, kCmdPrimCancel};
    for (const Menu& menu : {MakeToolMenu(), MakePrimMenu()}) {
        ForEachEntry(menu, [&](const MenuItem& item) {
            EXPECT_TRUE(item.enabled) << item.text;
            if (!others.count(item.command)) inMenus.insert(item.command);
        });
    }
    for (const AreaCommand& row : AreaCommands()) {
        inTable.insert(row.command);
        const bool needs = row.action == AreaAction::Distance || row.action == AreaAction::Slime;
        const bool seeded = row.selection == Selection::Flood || row.selection == Selection::SameAs;
        EXPECT_EQ(row.centre, !needs   ? FadeCentre::None
                              : seeded ? FadeCentre::Seed
                                       : FadeCentre::Box)
            << row.command;
    }
    EXPECT_EQ(inMenus, inTable);
    EXPECT_EQ(inTable.size(), std::set<int>(inTable.begin(), inTable.end()).size());
}

// Each row of the table, run on a board where its selection can be told from all others.
TEST_F(AreaCommandsTest, EveryCommandPaintsItsSelection) {
    const std::map<Selection, std::string> shapes{
        {Selection::Rect, "......../.oooo.../.oooo.../.oooo.../......../........"},
        {Selection::Flood, "......../.oo...../.oo...../......../......../........"},
        {Selection::SameAs, "......../.oo...../.oo...../......../......../.......o"},
        {Selection::Line, "......../.o....../..oo..../....o.../......../........"},
        {Selection::RectOutline, "......../.oooo.../.o..o.../.oooo.../......../........"},
        {Selection::Ellipse, "......../.ooo..../....o.../.ooo..../......../........"},
    };
    for (const AreaCommand& row : AreaCommands()) {
        world->currentObject = board->id;
        board->tiles.assign(48, Dtile{});
        Draw("00000000/01100000/01100000/00000000/00000000/00000001");
        board->undoTiles.clear();
        vTileClip = {Dtile{9, 9, 9, 9}};
        vTileClipW = vTileClipH = 1;
        ExpectDialogsOf(row.action);
        const bool primitives = FindEntry(MakePrimMenu(), row.command) != nullptr;
        Choose(row.command, {1, 1}, {4, 3}, primitives);
        std::string done = Mask();
        // A speckle leaves some; a slime reaches what hangs together.
        const bool speckle =
            row.action == AreaAction::Speckle || row.action == AreaAction::ReplaceSpeckle;
        if (speckle) std::replace(done.begin(), done.end(), 'x', 'o');
        EXPECT_EQ(done, shapes.at(row.selection)) << row.command;
        const bool keeps = row.action == AreaAction::Copy || row.action == AreaAction::NewObject;
        EXPECT_EQ(board->undoTiles.empty(), keeps) << row.command;
        const Point centre = row.centre == FadeCentre::Box ? Point{3, 2} : Point{1, 1};
        EXPECT_TRUE(row.centre == FadeCentre::None || (Point{vFadeCenterX, vFadeCenterY} == centre))
            << row.command;
        vBrush = {1, 15, 1, 0};
    }
    EXPECT_EQ(board->children.size(), 1u) << "Make Object";
}

TEST_F(AreaCommandsTest, FilterNarrowsTheBrushForOneCommand) {
    for (Dtile& tile : board->tiles) tile = {5, 6, 7, 8};
    const Brush brush = vBrush = {1, 2, 3, 4};
    Expect("Filter", [](ScriptedForm& form) {
        for (int box : {kFilterChar, kFilterFg, kFilterBg, kFilterAttribute})
            EXPECT_TRUE(form.IsChecked(box));
        for (int box : {kFilterChar, kFilterBg, kFilterAttribute}) form.Click(box);
        Ok(form);
    });
    Choose(kCmdReplaceFill, {0, 0}, {0, 0});
    EXPECT_EQ(At(0, 0), (Dtile{5, 2, 7, 8}));
    EXPECT_EQ(vBrush, brush);

    board->undoTiles.clear();
    Expect("Filter", Cancel);
    Choose(kCmdReplaceFill, {1, 0}, {1, 0});
    EXPECT_EQ(At(1, 0), (Dtile{5, 6, 7, 8}));
    EXPECT_TRUE(board->undoTiles.empty());
    EXPECT_EQ(vBrush, brush);

    Expect("Filter", [](ScriptedForm& form) {
        for (int box : {kFilterChar, kFilterFg, kFilterBg, kFilterAttribute}) form.Click(box);
        Ok(form);
    });
    Choose(kCmdReplaceFill, {1, 0}, {1, 0});
    EXPECT_EQ(At(1, 0), (Dtile{5, 6, 7, 8}));
    EXPECT_FALSE(board->undoTiles.empty());

    vTileClipW = 7;
    Expect("Filter", Cancel);
    Choose(kCmdCopyFill, {0, 0}, {2, 2});
    EXPECT_EQ(vTileClipW, 7) << "the clipboard stays";
}

TEST_F(AreaCommandsTest, SpeckleTakesZeroToNinetyNine) {
    Expect("Speckle", [this](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kSpecklePercentage), "50");
        for (const char* text : {"100", "", "x"}) {
            form.Type(kSpecklePercentage, text);
            form.focus = 0;
            script.ExpectMessage("Please enter an integer between 0 and 99.");
            Ok(form);
            EXPECT_EQ(form.focus, kSpecklePercentage);
            EXPECT_EQ(form.result, 0);
        }
        EXPECT_TRUE(board->undoTiles.empty());
        form.Type(kSpecklePercentage, "99");
        Ok(form);
    });
    std::srand(1);
    Choose(kCmdSpeckle, {0, 0}, {7, 5});
    EXPECT_GT(std::count(board->tiles.begin(), board->tiles.end(), Dtile({1, 15, 1, 0})), 40);
}

TEST_F(AreaCommandsTest, FadeShowsTheBlendThroughTheSet) {
    const auto sets = LoadFadeSets("test");
    for (const FadeSet& set : sets)
        for (int tile : set.tiles) EXPECT_LT(tile, world->GetFont()->GlyphCount()) << set.name;
    const auto shows = [&](ScriptedForm& form, std::size_t set, std::size_t blend) {
        auto* viewer = static_cast<ScriptedWindow*>(form.Picture(kFadePicture));
        EXPECT_GT(viewer->invalidated, 0);
        viewer->Paint();
        const Bitmap picture = MakeBitmap(80, 80);
        for (int i = 0; i < 100; ++i) {
            const auto position =
                static_cast<std::size_t>(blends[blend].cells[static_cast<std::size_t>(i)]);
            world->GetFont()->DrawGlyph(picture.get(), sets[set].tiles[position], vBrush.fg,
                                        vBrush.bg, i % 10, i / 10);
        }
        for (int p = 0; p < 6400; ++p)
            ASSERT_EQ(viewer->PixelAt(p % 80, p / 80), getpixel(picture.get(), p % 80, p / 80));
        EXPECT_EQ(form.GetText(kFadeBlendName), blends[blend].name);
        EXPECT_EQ(form.GetText(kFadeSetButton), "Set: " + setNames[set]);
    };
    for (int end : {kIdOk, kIdCancel}) {
        Expect("Fade", [&](ScriptedForm& form) {
            shows(form, 0, 0);
            form.Slide(kFadeBlendSlider, 8);
            shows(form, 0, 8);
            std::vector<std::string> items = setNames;
            items.insert(items.end(), {"-", "&Cancel"});
            script.ExpectMenu(items, kFadeMenuBase + 2);
            form.Click(kFadeSetButton);
            shows(form, 2, 8);
            script.ExpectMenu(items, 0);
            form.Click(kFadeSetButton);
            form.Slide(kFadeRandomSlider, 3);
            EXPECT_EQ(form.GetText(kFadeRandomText), "Random: 3");
            shows(form, 2, 8);
            form.Slide(kFadeRandomSlider, 0);
            form.Click(end);
        });
        MakeBoard(10, 10);
        Choose(kCmdFadeNormal, {0, 0}, {9, 9});
        for (std::size_t i = 0; i < 100 && end == kIdOk; ++i)
            ASSERT_EQ(board->tiles[i].chr,
                      sets[2].tiles[static_cast<std::size_t>(blends[8].cells[i])]);
    }
    EXPECT_TRUE(board->undoTiles.empty()) << "Cancel leaves everything";
}

TEST_F(AreaCommandsTest, DistanceAndSlimeStartWithTheirOwnValues) {
    Expect("Distance Fade", [](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kFadeXText), "X multiplier: 0.35");
        EXPECT_EQ(form.GetText(kFadeYText), "Y multiplier: 0.45");
        EXPECT_EQ(form.GetText(kFadeRandomText), "Random: 4");
        form.Slide(kFadeXSlider, 400);
        form.Slide(kFadeRandomSlider, 0);
        EXPECT_EQ(form.GetText(kFadeXText), "X multiplier: 4.00");
        Ok(form);
    });
    Choose(kCmdFadeDistance, {1, 1}, {3, 1});
    const FadeTiles tiles = LoadFadeSets("test").front().tiles;
    EXPECT_EQ(std::vector<int>({At(1, 1).chr, At(2, 1).chr, At(3, 1).chr}),
              std::vector<int>({tiles[4], tiles[0], tiles[4]}));
    Expect("Slime fade", [](ScriptedForm& form) {
        EXPECT_EQ(form.GetText(kFadeRandomText), "Random: 5");
        form.Slide(kFadeRandomSlider, 0);
        Ok(form);
    });
    Choose(kCmdFadeSlime, {5, 5}, {5, 5});
    EXPECT_EQ(At(5, 5).chr, tiles[4]);
}

TEST_F(AreaCommandsTest, WithoutSetsOrBlendsNothingCanBePainted) {
    const NoLibrary moved;
    for (const auto& [command, caption] :
         {std::pair(kCmdFadeNormal, "Fade"), std::pair(kCmdFadeDistance, "Distance Fade"),
          std::pair(kCmdFadeSlime, "Slime fade")}) {
        Expect(caption, [](ScriptedForm& form) {
            EXPECT_EQ(form.GetText(kFadeSetButton), "No fade sets");
            if (Window* picture = form.Picture(kFadePicture))
                static_cast<ScriptedWindow*>(picture)->Paint();
            form.events.OnControl(form, kIdOk);  // Enter, though the button is disabled
            EXPECT_EQ(form.result, 0);
            Cancel(form);
        });
        Choose(command, {0, 0}, {3, 3});
    }
    EXPECT_THAT(reports.Texts(), testing::HasSubstr("Unable to load Library/FadeBlends.txt"));
    reports.Clear();
    EXPECT_TRUE(board->undoTiles.empty());
}
