// The application on the scripted backend: start, document commands and Run.

#include "editor/commands.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/recent_files.h"
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
    CQuiltDoc& Doc() { return app->Document(); }
    void Choose(int command) { Frame().Choose(command); }
    Dobject& FirstBoard() { return *vWorld->Root().children.front(); }

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
    EXPECT_EQ(Frame().leftWidth, 200);
    EXPECT_EQ(Frame().lowerHeight, 135);
    EXPECT_EQ(Frame().idle,
              "Use arrow keys to move cursor.  Ctrl + Left mouse button drags the view.");
    EXPECT_EQ(Frame().Edit().name + Frame().List().name, "Edit viewBoard / Object List");
    EXPECT_TRUE(Frame().statusBar);
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);
    EXPECT_EQ(FirstBoard().width, 80);
    Frame().lowerHeight = 0;
    app->Frame().OnSize({});
    EXPECT_EQ(Frame().lowerHeight, 135);
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
    app->Frame().UpdateMenuBar();
    script.ExpectMessage("could not be opened");
    Choose(kCmdFileRecent + 1);  // it is not there, and leaves the list
    std::vector<std::string> shown;
    for (const char* name : {"f5", "f7", "f6", "f4", "f3"}) shown.push_back(NormalPath(name));
    EXPECT_EQ(RecentFiles(), shown);
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent + 1)->text, "&2 " + shown[1]);
}

// --- Run ---------------------------------------------------------------------------------------

TEST_F(App, RunSavesTheGameAndStartsThePlayerOnIt) {
    Start();
    const auto shown = [this] { return script.GetProfileInt("Notify", "param", 1); };
    const auto run = [this](int button, std::optional<std::string> path, bool asks = true) {
        script.ExpectDialog("Save Notification", [button](ScriptedForm& form) {
            EXPECT_TRUE(form.IsChecked(kNoticeHide)) << "it opens ticked";
            form.Click(button);
        });
        if (asks) script.ExpectSaveDialog(std::move(path));
        Choose(kCmdRun);
    };
    // Every Cancel leaves all as it was.
    run(kIdCancel, {}, false);
    run(kIdOk, std::nullopt);
    script.answersAll = true;
    run(kIdOk, temp / "no folder/x.zqlt");
    script.answersAll = false;
    ASSERT_EQ(script.asked.size(), 1u);
    EXPECT_THAT(script.asked[0], testing::HasSubstr("could not be saved"));
    EXPECT_THAT(script.started, IsEmpty());
    EXPECT_THAT(temp.Names(), IsEmpty());
    EXPECT_EQ(Doc().Title(), "Untitled");

    const std::string game = temp / "my \"best\" game.zqlt", second = temp / "Untitled.zqlt";
    const std::array<std::string, 3> started{programFolder + "/QUILT! Runner", game, programFolder};
    run(kIdOk, game);
    const std::string first = FileBytes(game);
    FirstBoard().PutTile(1, 1, 65, 4, 5, 0);
    run(kIdOk, {}, false);
    EXPECT_THAT(script.started, ElementsAre(started, started));
    EXPECT_NE(FileBytes(game), first) << "the player reads what the editor holds";
    EXPECT_THAT(RecentFiles(), ElementsAre(game));
    // A title with that word is asked for its name although it has a file.
    Choose(kCmdFileNew);
    run(kIdOk, second);
    run(kIdOk, second);
    EXPECT_EQ(script.lastFileDialog.path, second);
    EXPECT_EQ(shown(), 1);

    // The tick is written at the click: ticking again and Cancel do not take it back.
    script.ExpectDialog("Save Notification", [&](ScriptedForm& form) {
        for (int i = 0; i < 2; ++i) {
            form.Click(kNoticeHide);
            EXPECT_EQ(shown(), 0);
        }
        form.Click(kIdCancel);
    });
    Choose(kCmdRun);
    EXPECT_EQ(script.started.size(), 4u) << "this run is cancelled";
    script.ExpectSaveDialog(second);
    Choose(kCmdRun);
    EXPECT_EQ(script.started.size(), 5u);
}
