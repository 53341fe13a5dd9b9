// The application on the scripted backend: start, document commands, menus, panels and list.

#include "editor/commands.h"
#include "editor/shell/panel_ids.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/recent_files.h"
#include "editor/view/brush.h"
#include "engine/compositor.h"
#include "engine/zip_stream.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace platform;
using testing::ElementsAre;

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
    bool Ticked(int command) { return FindEntry(Frame().bar, command)->checked; }
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
    EXPECT_EQ(Frame().idle,
              "Use arrow keys to move cursor.  Ctrl + Left mouse button drags the view.");
    EXPECT_TRUE(Frame().shown);
    EXPECT_TRUE(Frame().statusBar);
    EXPECT_EQ(Frame().leftWidth, 200);
    EXPECT_EQ(Frame().lowerHeight, 135);
    EXPECT_EQ(Frame().home, &Frame().Edit());
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);
    EXPECT_EQ(vWorld->currentObject, FirstBoard().id);
    EXPECT_EQ(FirstBoard().width, 80);
    EXPECT_EQ(script.palette[15], 0xffffffu);
    EXPECT_EQ(Doc().Title(), "Untitled");
    EXPECT_EQ(Doc().PathName(), "");
}

TEST_F(App, EveryMenuEntryStandsInItsPlace) {
    Start();
    std::vector<std::string> lines;
    for (const MenuItem& menu : Frame().bar) {
        std::string line = menu.text + ":";
        for (const MenuItem& item : menu.items) {
            line += item.kind == MenuItem::Kind::Separator ? " |" : " [" + item.text + "]";
            if (!item.key.empty()) line += item.key;
        }
        lines.push_back(line);
    }
    EXPECT_THAT(
        lines,
        ElementsAre("&File: [&New]Ctrl+N [&Open...]Ctrl+O [&Save]Ctrl+S [Save &As...] [&Run]Ctrl+R "
                    "| [Recent File] | [E&xit]",
                    "&Set Video Mode: [320 x 240] [640 x 480] [800 x 600] [1024 x 768] | "
                    "[Windowed]",
                    "&View: [&Status Bar] [&Font Edit]Ctrl+F [&Tile ClipBoard]Ctrl+T "
                    "[&Object Clipboard]Ctrl+C",
                    "&Help: [&About QUILT!...]"));
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileExit)->prompt,
              "Quit QUILT!; prompts to save currently loaded QUILT! game");
    script.ExpectMessage("QUILT!");
    Choose(kCmdAbout);
    EXPECT_EQ(script.lastCaption, "About QUILT!");
    Choose(kCmdStatusBar);
    EXPECT_FALSE(Frame().statusBar);
    EXPECT_FALSE(Ticked(kCmdStatusBar));
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
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent)->prompt, "Open this QUILT! game");
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
    std::string empty = temp / "empty.zqlt";
    {
        ZipWriter archive(empty);
        ZipEntryOutStream out;
        out.open(archive, "res.dat");
        out << "0 0";
        out.close();
    }
    struct Case {
        std::string path, message;
    };
    for (const Case& c : {Case{temp / "none.zqlt", "could not be opened"},
                          {temp.Path(), "could not be opened"},
                          {text, "could not be loaded"},
                          {empty, "There is no game in this archive"}}) {
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
    AddRecentFile("f5");
    EXPECT_THAT(RecentFiles(), ElementsAre("f5", "f8", "f7", "f6", "f4", "f3"));
}

TEST_F(App, ClosingAsks) {
    Start();
    script.ExpectMessage("Do you want to quit?", false);
    Choose(kCmdFileExit);
    EXPECT_FALSE(Frame().closed);
    EXPECT_EQ(script.lastCaption, "Confirm Quit");
    script.ExpectMessage("Do you want to quit?", true);
    Frame().Close();
    EXPECT_TRUE(Frame().closed);
    app.reset();
    EXPECT_EQ(vWorld, nullptr);
    EXPECT_FALSE(vClipBuffer);
}

// --- the frame ---------------------------------------------------------------------------------

TEST_F(App, TheVideoModeIsTickedAndTravelsWithTheGame) {
    Start();
    EXPECT_TRUE(Ticked(kCmdVideoMode + 1));
    EXPECT_TRUE(Ticked(kCmdWindowed));
    Choose(kCmdVideoMode + 3);
    Choose(kCmdWindowed);
    EXPECT_EQ(vWorld->videoMode, 3);
    EXPECT_EQ(vWorld->windowed, 0);
    EXPECT_FALSE(Ticked(kCmdVideoMode + 1));
    EXPECT_TRUE(Ticked(kCmdVideoMode + 3));
    EXPECT_FALSE(Ticked(kCmdWindowed));
    const std::string path = temp / "mode.zqlt";
    script.ExpectSaveDialog(path);
    Choose(kCmdFileSave);
    Choose(kCmdFileNew);
    EXPECT_TRUE(Ticked(kCmdVideoMode + 1));
    script.ExpectOpenDialog(path);
    Choose(kCmdFileOpen);
    EXPECT_TRUE(Ticked(kCmdVideoMode + 3));
    EXPECT_FALSE(Ticked(kCmdWindowed));
    EXPECT_EQ(vWorld->windowed, 0);
}

TEST_F(App, ThePaintPanelWritesAtOnce) {
    Start();
    const auto type = [&](int code) { Frame().Edit().events->OnKeyDown(code); };
    EXPECT_EQ(Panel().GetText(kBrushName), "Brush - Normal");
    type(kKeyTab);
    EXPECT_EQ(Panel().GetText(kBrushName), "Brush - TAB");
    EXPECT_TRUE(Panel().IsChecked(kRadioBrush));
    Panel().Click(kRadioBlender);
    EXPECT_EQ(vBrushMode, kBrushBlender);
    EXPECT_EQ(Panel().GetText(kBrushName), "Brush - Blender");
    Panel().Click(kRadioText);
    EXPECT_EQ(vBrushMode, kBrushText);
    Panel().Click(kRadioBrush);

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
    list.OnMouseMove(false, {20, 27});
    EXPECT_EQ(vWorld->currentObject, object.id) << "a drag runs through the rows";
    list.OnMouseMove(false, {20, 37});
    EXPECT_EQ(vWorld->currentBoard, second);
    list.OnLButtonUp(false, {20, 37});
    EXPECT_FALSE(Frame().List().captured);

    list.OnLButtonDown(true, {50, 50});
    list.OnMouseMove(true, {50, 31});
    list.OnLButtonUp(true, {50, 31});
    list.OnLButtonDown(false, {20, 17});
    EXPECT_EQ(vWorld->currentObject, object.id) << "19 pixels scroll one row";
    list.OnMouseWheel(-120);
    list.OnLButtonDown(false, {20, 15});
    EXPECT_EQ(vWorld->currentObject, FirstBoard().id);
    list.OnLButtonUp(false, {20, 15});

    Frame().List().Paint();
    EXPECT_EQ(Frame().List().shown, (Size{200, 768}));
    list.OnLButtonDblClk(true, {20, 15});
    script.Pump();
    EXPECT_EQ(vPanelMode, kPanelProperties);
    EXPECT_TRUE(Panel().Picture(kPropViewer) != nullptr);
}
