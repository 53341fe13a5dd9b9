// The application on the scripted backend: start, document commands, what they
// keep, and Run.

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
    void Start(const std::string& game = "") {
        app = std::make_unique<CQuiltApp>(keep);
        ASSERT_TRUE(app->InitInstance(programFolder, game));
    }
    ScriptedFrame& Frame() { return *script.frame; }
    CQuiltDoc& Doc() { return app->Document(); }
    void Choose(int command) { Frame().Choose(command); }
    Dobject& FirstBoard() { return *vWorld->Root().children.front(); }

    const std::string programFolder = std::filesystem::current_path().string();
    TempFolder temp, keptFolder;
    const std::string keep = keptFolder / "kept";
    ScriptedPlatform script;
    std::unique_ptr<CQuiltApp> app;
};

}  // namespace

TEST_F(App, StartsOnANewGameOrTheOneOfTheCommandLine) {
    std::filesystem::copy_file("Library/default.zqlt", temp / "here.zqlt");
    std::filesystem::current_path(temp.Path());
    Start();
    EXPECT_EQ(std::filesystem::current_path().string(), programFolder);
    EXPECT_EQ(Frame().caption, "Untitled - Tessel Works's QUILT!");
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);
    EXPECT_EQ(FirstBoard().width, 80);
    app.reset();
    // Paths count from the user's folder.
    std::filesystem::current_path(temp.Path());
    Start("here.zqlt");
    EXPECT_EQ(Doc().PathName(), temp / "here.zqlt");
    app.reset();
    script.ExpectMessage("could not be opened");
    CQuiltApp failing;
    EXPECT_FALSE(failing.InitInstance(programFolder, "missing.zqlt"));
}

TEST_F(App, SavesUnderANameOpensItAgainAndKeepsWhatItDrops) {
    Start();
    const auto kept = [&] { return ListKept(keep).size(); };
    Choose(kCmdFileNew);
    EXPECT_EQ(kept(), 0u) << "an unaltered world is not kept";
    FirstBoard().PutTile(3, 4, 65, 14, 2, 1);
    const std::string path = temp / "my game.zqlt";
    script.ExpectFile("save", path);
    Choose(kCmdFileSave);
    EXPECT_EQ(script.lastFileDialog.filter + script.lastFileDialog.extension,
              "QUILT! game Files (*.zqlt)|*.zqlt||.zqlt");
    EXPECT_EQ(std::filesystem::path(script.lastFileDialog.path).filename(), "Quilt.zqlt");
    EXPECT_EQ(Frame().caption, "my game.zqlt - Tessel Works's QUILT!");

    FirstBoard().PutTile(3, 4, 66, 14, 2, 1);
    Choose(kCmdFileSave);  // no dialog
    EXPECT_EQ(kept(), 1u) << "the file that was replaced";
    EXPECT_NE(Frame().notice.find(path + ": 1 board, 0 objects, "), std::string::npos);
    FirstBoard().PutTile(3, 4, 67, 14, 2, 1);
    const std::int32_t oldId = FirstBoard().id;
    Choose(kCmdFileNew);
    EXPECT_EQ(kept(), 2u);
    EXPECT_EQ(Doc().Title(), "Untitled");
    EXPECT_EQ(FirstBoard().GetTile(3, 4)->chr, 0) << "replaced without a question";
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent)->text, "&1 " + path);
    Choose(kCmdFileRecent);
    EXPECT_EQ(FirstBoard().GetTile(3, 4)->chr, 66);
    EXPECT_GT(FirstBoard().id, oldId);
    EXPECT_EQ(vWorld->currentBoard, FirstBoard().id);
    // A kept game is saved under a name of its own.
    ASSERT_TRUE(Doc().OnOpenDocument(ListKept(keep)[0].path));
    EXPECT_EQ(FirstBoard().GetTile(3, 4)->chr, 67);
    EXPECT_EQ(Doc().PathName(), "");

    const std::string second = temp / "Untitled2.zqlt";
    script.ExpectFile("save", second);
    Choose(kCmdFileSaveAs);
    EXPECT_EQ(Doc().PathName(), second);
    script.ExpectFile("save", std::nullopt);
    Choose(kCmdFileSave);  // asks each time, for its name
    EXPECT_EQ(script.lastFileDialog.path, second);
    EXPECT_EQ(Doc().PathName(), second);
    EXPECT_THAT(RecentFiles(), ElementsAre(second, path));

    // Six recent files are kept; one that is not there leaves the list.
    for (int i = 1; i <= 8; ++i) AddRecentFile("f" + std::to_string(i));
    AddRecentFile("x/.././f5");
    app->Frame().UpdateMenuBar();
    script.ExpectMessage("could not be opened");
    Choose(kCmdFileRecent + 1);
    std::vector<std::string> shown;
    for (const char* name : {"f5", "f7", "f6", "f4", "f3"}) shown.push_back(NormalPath(name));
    EXPECT_EQ(RecentFiles(), shown);
    EXPECT_EQ(FindEntry(Frame().bar, kCmdFileRecent + 1)->text, "&2 " + shown[1]);
}

TEST_F(App, WhatCannotBeOpenedLeavesTheGameAsItWas) {
    Start();
    const std::string good = temp / "good.zqlt";
    script.ExpectFile("save", good);
    Choose(kCmdFileSaveAs);
    FirstBoard().name = "kept";
    for (const auto& [path, message] :
         {std::pair(temp / "none.zqlt", "could not be opened"),
          {temp.Path(), "could not be opened"},
          {PutFile(temp / "text.zqlt", "no archive"), "could not be loaded"},
          {PutFile(temp / "empty.zqlt", MakeZip({{"res.dat", "0 0"}})), "There is no game in"}}) {
        script.ExpectFile("open", path);
        script.ExpectMessage(message);
        Choose(kCmdFileOpen);
        EXPECT_EQ(Doc().PathName() + FirstBoard().name, good + "kept") << path;
    }
    script.ExpectFile("save", temp / "no folder/x.zqlt");
    script.ExpectMessage("could not be saved");
    Choose(kCmdFileSaveAs);
    EXPECT_EQ(Doc().PathName(), good);
    EXPECT_EQ(Doc().Title(), "good.zqlt");
    EXPECT_THAT(RecentFiles(), ElementsAre(good));
}

TEST_F(App, RunSavesTheGameAndStartsThePlayerOnIt) {
    std::filesystem::current_path(temp.Path());
    Start();
    const auto run = [this](int button, std::optional<std::string> path, bool asks = true) {
        script.ExpectDialog("Save Notification", [button](ScriptedForm& form) {
            EXPECT_TRUE(form.IsChecked(kNoticeHide)) << "it opens ticked";
            form.Click(button);
        });
        if (asks) script.ExpectFile("save", std::move(path));
        Choose(kCmdRun);
    };
    // Every Cancel leaves all as it was.
    run(kIdCancel, {}, false);
    run(kIdOk, std::nullopt);
    script.answersAll = true;
    run(kIdOk, temp / "no folder/x.zqlt");
    script.answersAll = false;
    EXPECT_THAT(script.asked, ElementsAre(testing::HasSubstr("could not be saved")));
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
    // Without the tick the notice does not come again; this run is cancelled.
    script.ExpectDialog("Save Notification", [&](ScriptedForm& form) {
        form.Click(kNoticeHide);
        form.Click(kIdCancel);
    });
    Choose(kCmdRun);
    EXPECT_EQ(script.started.size(), 4u);
    script.ExpectFile("save", second);
    Choose(kCmdRun);
    EXPECT_EQ(script.started.size(), 5u);
}
