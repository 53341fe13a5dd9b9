// The application on the scripted backend: start, document commands, panels, list and Run.

#include "editor/commands.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/recent_files.h"
#include "editor/view/brush.h"
#include "platform/keys.h"
#include "tests/support/plain_zip.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

class App : public testing::Test {
protected:
    App() { std::filesystem::current_path(programFolder); }

    void Start(const std::string& game = "") {
        app = std::make_unique<CQuiltApp>();
        ASSERT_TRUE(app->InitInstance(programFolder, game));
    }
    ScriptedFrame& Frame() { return *script.frame; }
    ScriptedForm& Panel() { return *Frame().panel; }
    CQuiltDoc& Doc() { return app->Document(); }
    void Choose(int command) { Frame().Choose(command); }
    void SwapPanel(int button) {
        Panel().Click(button);
        script.Pump();
    }
    Dobject& FirstBoard() { return *vWorld->Root().children.front(); }
    Dobject& AddObject(Dobject& parent, const std::string& name) {
        Dobject* node = parent.Spawn(vWorld->TakeId(), 0);
        node->Create(name, 1, 1);
        return *node;
    }

    const std::string programFolder = std::filesystem::current_path().string();
    TempFolder temp;
    ScriptedPlatform script;
    std::unique_ptr<CQuiltApp> app;
};

}  // namespace

TEST_F(App, StartsOnANewGame) {
    std::filesystem::current_path(temp.Path());
    Start();
    EXPECT_EQ(std::filesystem::current_path().string(), programFolder);
    EXPECT_EQ(Frame().caption, "Untitled - Tessel Works's QUILT!");
    EXPECT_TRUE(Frame().shown);
    EXPECT_EQ(Frame().home, &Frame().Edit());
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);
    EXPECT_EQ(FirstBoard().width, 80);
    EXPECT_EQ(script.palette[15], 0xffffffu);
}

// --- documents ---------------------------------------------------------------------------------

TEST_F(App, SavesUnderANameAndOpensItAgain) {
    Start();
    FirstBoard().PutTile(3, 4, 65, 14, 2, 1);
    const std::string path = temp / "my game.zqlt";
    script.ExpectSaveDialog(path);
    Choose(kCmdFileSave);
    EXPECT_EQ(script.lastFileDialog.filter, "QUILT! game Files (*.zqlt)|*.zqlt||");
    EXPECT_EQ(script.lastFileDialog.extension, ".zqlt");
    EXPECT_EQ(std::filesystem::path(script.lastFileDialog.path).filename(), "Quilt.zqlt");
    EXPECT_EQ(Frame().caption, "my game.zqlt - Tessel Works's QUILT!");

    FirstBoard().PutTile(3, 4, 66, 14, 2, 1);
    Choose(kCmdFileSave);  // no dialog
    const std::int32_t oldId = FirstBoard().id;
    Choose(kCmdFileNew);
    EXPECT_EQ(Doc().Title(), "Untitled");
    EXPECT_EQ(FirstBoard().GetTile(3, 4)->chr, 0) << "replaced without a question";

    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent)->text, "&1 " + path);
    Choose(kCmdFileRecent);
    EXPECT_EQ(FirstBoard().GetTile(3, 4)->chr, 66);
    EXPECT_GT(FirstBoard().id, oldId);
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);

    const std::string second = temp / "Untitled2.zqlt";
    script.ExpectSaveDialog(second);
    Choose(kCmdFileSaveAs);
    EXPECT_EQ(Doc().PathName(), second);
    script.ExpectSaveDialog(std::nullopt);
    Choose(kCmdFileSave);  // asks each time, for its name
    EXPECT_EQ(script.lastFileDialog.path, second);
    EXPECT_EQ(Doc().PathName(), second);
    EXPECT_THAT(RecentFiles(), ElementsAre(second, path));
}

TEST_F(App, WhatCannotBeOpenedLeavesTheGameAsItWas) {
    Start();
    const std::string good = temp / "good.zqlt";
    script.ExpectSaveDialog(good);
    Choose(kCmdFileSaveAs);
    FirstBoard().name = "kept";
    const std::string text = PutFile(temp / "text.zqlt", "no archive");
    const std::string empty = PutFile(temp / "empty.zqlt", MakeZip({{"res.dat", "0 0"}}));
    const struct {
        std::string path, message;
    } cases[] = {{temp / "none.zqlt", "could not be opened"},
                 {temp.Path(), "could not be opened"},
                 {text, "could not be loaded"},
                 {empty, "There is no game in this archive"}};
    for (const auto& c : cases) {
        script.ExpectOpenDialog(c.path);
        script.ExpectMessage(c.message);
        Choose(kCmdFileOpen);
        EXPECT_EQ(Doc().PathName(), good) << c.path;
        EXPECT_EQ(FirstBoard().name, "kept") << c.path;
    }
    script.ExpectOpenDialog(std::nullopt);
    Choose(kCmdFileOpen);
    script.ExpectSaveDialog(temp / "no folder/x.zqlt");
    script.ExpectMessage("could not be saved");
    Choose(kCmdFileSaveAs);
    EXPECT_EQ(Doc().PathName(), good);
    EXPECT_EQ(Doc().Title(), "good.zqlt");
    EXPECT_THAT(RecentFiles(), ElementsAre(good));
}

TEST_F(App, TheCommandLineCountsFromTheUsersFolder) {
    std::filesystem::copy_file("Library/default.zqlt", temp / "here.zqlt");
    std::filesystem::current_path(temp.Path());
    Start("here.zqlt");
    EXPECT_EQ(Doc().PathName(), temp / "here.zqlt");
    app.reset();
    script.ExpectMessage("could not be opened");
    CQuiltApp failing;
    EXPECT_FALSE(failing.InitInstance(programFolder, "missing.zqlt"));
}

TEST_F(App, SixRecentFilesAreKept) {
    Start();
    for (int i = 1; i <= 8; ++i) AddRecentFile("f" + std::to_string(i));
    AddRecentFile("x/.././f5");
    std::vector<std::string> shown;
    for (const char* name : {"f5", "f8", "f7", "f6", "f4", "f3"}) shown.push_back(NormalPath(name));
    EXPECT_EQ(RecentFiles(), shown);
}

// --- the frame ---------------------------------------------------------------------------------

TEST_F(App, ThePaintPanelWritesAtOnce) {
    Start();
    const auto type = [&](int code) { Frame().Edit().events->OnKeyDown(code); };
    type(kKeyTab);
    EXPECT_EQ(Panel().GetText(kBrushName), "Brush - TAB");
    EXPECT_TRUE(Panel().IsChecked(kRadioBrush));
    for (const auto& [radio, mode] :
         {std::pair(kRadioBlender, kBrushBlender), std::pair(kRadioText, kBrushText),
          std::pair(kRadioBrush, kBrushNormal)}) {
        Panel().Click(radio);
        EXPECT_EQ(vBrushMode, mode);
        EXPECT_EQ(Panel().GetText(kBrushName), BrushModeName(mode));
    }

    vBrush = {65, -2, 1, 3};
    Panel().Slide(kSlotSlider, 3);
    EXPECT_EQ(vBrush, (Brush{0, 0, 0, 0}));
    Panel().Slide(kSlotSlider, 0);
    EXPECT_EQ(vBrush, (Brush{65, -2, 1, 3}));

    FirstBoard().PutTile(5, 5, 1, 1, 1, 1);
    Panel().Click(kSaveBackup);
    FirstBoard().PutTile(5, 5, 2, 2, 2, 2);
    Panel().Click(kRestoreBackup);
    EXPECT_EQ(*FirstBoard().GetTile(5, 5), (Dtile{1, 1, 1, 1}));

    vWorld->SetProperty(HandleGuard(vWorld->GetCurrentObject()), kViewW, 70);
    Panel().Type(kStepX, "7");
    Panel().Type(kStepY, "");
    Panel().Click(kScrollForward);
    EXPECT_EQ(FirstBoard().viewx, 7);
    Panel().Click(kScrollForward);
    EXPECT_EQ(FirstBoard().viewx, 10) << "not past the end";
    Panel().Click(kScrollBack);
    EXPECT_EQ(FirstBoard().viewx, 3);
    script.ExpectMessage("integer between 0 and 100");
    Panel().Type(kStepY, "101");
    EXPECT_EQ(vStepY, 0);
    EXPECT_EQ(Panel().focus, kStepY);
    EXPECT_EQ(vStepX, 7);
}

TEST_F(App, PanelsSwapAndForgetTheAttributeTick) {
    Start();
    Panel().Click(kShowAttrib);
    EXPECT_TRUE(vShowAttrib);
    vBrushSlot = 4;
    SwapPanel(kToProperties);
    EXPECT_EQ(vPanelMode, kPanelProperties);
    EXPECT_FALSE(vShowAttrib);
    Panel().Click(kFocusMode);
    Panel().Click(kHideObjs);
    EXPECT_EQ(vViewMode, 3);
    Panel().Click(kFocusMode);
    EXPECT_EQ(vViewMode, 1);
    vWorld->SetProperty(HandleGuard(vWorld->GetCurrentObject()), kViewW, 20);
    Panel().Click(kShowAll);
    EXPECT_EQ(FirstBoard().vieww, 80);
    Panel().Click(kShowAll);
    EXPECT_EQ(FirstBoard().vieww, 20);
    EXPECT_EQ(FirstBoard().evieww, 0) << "nothing is kept aside any more";
    SwapPanel(kToPaint);
    EXPECT_EQ(vPanelMode, kPanelPaint);
    EXPECT_FALSE(Panel().IsChecked(kShowAttrib));
    EXPECT_EQ(Panel().GetValue(kSlotSlider), 4);
}

// --- the list ----------------------------------------------------------------------------------

TEST_F(App, TheListSelectsScrollsAndSwaps) {
    Start();
    WindowEvents& list = *Frame().List().events;
    Dobject& object = AddObject(FirstBoard(), "object");
    const std::int32_t second = vWorld->NewBoard();
    list.OnLButtonDown(false, {20, 15});
    EXPECT_EQ(vWorld->currentObject, FirstBoard().id);
    EXPECT_EQ(vWorld->Root().children.back()->posy, 480) << "the other board is parked";
    list.OnMouseMove(false, {20, 37});
    EXPECT_EQ(vWorld->currentBoard, second) << "a drag runs through the rows";
    list.OnLButtonUp(false, {20, 37});

    list.OnLButtonDown(true, {50, 50});
    list.OnMouseMove(true, {50, 31});
    list.OnLButtonUp(true, {50, 31});
    list.OnLButtonDown(false, {20, 17});
    EXPECT_EQ(vWorld->currentObject, object.id) << "19 pixels scroll one row";
    list.OnMouseWheel(-120);
    list.OnLButtonDown(false, {20, 15});
    EXPECT_EQ(vWorld->currentObject, FirstBoard().id);
    list.OnLButtonUp(false, {20, 15});

    list.OnLButtonDblClk(true, {20, 15});
    script.Pump();
    EXPECT_EQ(vPanelMode, kPanelProperties);
    EXPECT_TRUE(Panel().Picture(kPropViewer) != nullptr);
}

// --- Run ---------------------------------------------------------------------------------------

namespace {

class Run : public App {
protected:
    Run() { Start(); }
    void Choose() { App::Choose(kCmdRun); }
    void ExpectNotice(int button) {
        script.ExpectDialog("Save Notification", [button](ScriptedForm& form) {
            EXPECT_TRUE(form.IsChecked(kNoticeHide)) << "it opens ticked";
            form.Click(button);
        });
    }
    int Shown() { return script.GetProfileInt("Notify", "param", 1); }
    std::array<std::string, 3> Started(const std::string& game) {
        return {programFolder + "/QUILT! Runner", game, programFolder};
    }
};

}  // namespace

TEST_F(Run, SavesTheGameAndStartsThePlayerOnIt) {
    const std::string game = temp / "my \"best\" game.zqlt";
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(game);
    Choose();
    EXPECT_THAT(script.started, ElementsAre(Started(game)));
    EXPECT_EQ(Doc().PathName(), game);
    EXPECT_THAT(RecentFiles(), ElementsAre(game));
    const std::string first = FileBytes(game);
    EXPECT_FALSE(first.empty());

    FirstBoard().PutTile(1, 1, 65, 4, 5, 0);
    ExpectNotice(kIdOk);
    Choose();  // no question for a name
    EXPECT_THAT(script.started, ElementsAre(Started(game), Started(game)));
    EXPECT_NE(FileBytes(game), first) << "the player reads what the editor holds";

    // A title with that word is asked for its name although it has a file.
    const std::string second = temp / "Untitled.zqlt";
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(second);
    App::Choose(kCmdFileNew);
    Choose();
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(second);
    Choose();
    EXPECT_EQ(script.lastFileDialog.path, second);
    EXPECT_EQ(script.started.size(), 4u);
}

TEST_F(Run, EveryCancelLeavesAllAsItWas) {
    ExpectNotice(kIdCancel);
    Choose();
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(std::nullopt);
    Choose();
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(temp / "no folder/x.zqlt");
    script.ExpectMessage("could not be saved");
    Choose();
    EXPECT_THAT(script.started, IsEmpty());
    EXPECT_THAT(temp.Names(), IsEmpty());
    EXPECT_EQ(Doc().Title(), "Untitled");
    EXPECT_EQ(Shown(), 1);
}

TEST_F(Run, ClearingTheTickHidesTheNoticeForGood) {
    // The value is written at the click: ticking again and Cancel do not take it back.
    script.ExpectDialog("Save Notification", [&](ScriptedForm& form) {
        EXPECT_EQ(Shown(), 1);
        form.Click(kNoticeHide);
        EXPECT_EQ(Shown(), 0);
        form.Click(kNoticeHide);
        EXPECT_EQ(Shown(), 0);
        form.Click(kIdCancel);
    });
    Choose();
    EXPECT_THAT(script.started, IsEmpty()) << "this run is cancelled";
    script.ExpectSaveDialog(temp / "a.zqlt");
    Choose();
    EXPECT_EQ(script.started.size(), 1u);
    EXPECT_EQ(Shown(), 0);
}
