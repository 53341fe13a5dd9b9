// The Run command and its notice.

#include "editor/commands.h"
#include "editor/shell/do_save_notification.h"
#include "editor/shell/quilt_app.h"
#include "editor/shell/recent_files.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <filesystem>

using namespace platform;
using testing::ElementsAre;
using testing::IsEmpty;

namespace {

constexpr const char* kTitle = "Save Notification";

class Run : public testing::Test {
protected:
    Run() { EXPECT_TRUE(app.InitInstance(programFolder, "")); }

    void Choose() { script.frame->Choose(kCmdRun); }
    void ExpectNotice(int button) {
        script.ExpectDialog(kTitle, [button](ScriptedForm& form) {
            EXPECT_TRUE(form.IsChecked(kNoticeHide)) << "it opens ticked";
            form.Click(button);
        });
    }
    int Shown() { return script.GetProfileInt("Notify", "param", 1); }
    std::array<std::string, 3> Started(const std::string& game) {
        return {programFolder + "/QUILT! Runner", game, programFolder};
    }

    const std::string programFolder = std::filesystem::current_path().string();
    TempFolder temp;
    ScriptedPlatform script;
    CQuiltApp app;
};

}  // namespace

TEST_F(Run, SavesTheGameAndStartsThePlayerOnIt) {
    const std::string game = temp / "my \"best\" game.zqlt";
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(game);
    Choose();
    EXPECT_THAT(script.started, ElementsAre(Started(game)));
    EXPECT_EQ(app.Document().PathName(), game);
    EXPECT_THAT(RecentFiles(), ElementsAre(game));
    const std::string first = FileBytes(game);
    EXPECT_FALSE(first.empty());

    vWorld->Root().children.front()->PutTile(1, 1, 65, 4, 5, 0);
    ExpectNotice(kIdOk);
    Choose();  // no question for a name
    EXPECT_THAT(script.started, ElementsAre(Started(game), Started(game)));
    EXPECT_NE(FileBytes(game), first) << "the player reads what the editor holds";

    // A title with that word is asked for its name although it has a file.
    const std::string second = temp / "Untitled.zqlt";
    ExpectNotice(kIdOk);
    script.ExpectSaveDialog(second);
    script.frame->Choose(kCmdFileNew);
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
    EXPECT_EQ(app.Document().Title(), "Untitled");
    EXPECT_EQ(Shown(), 1);
}

TEST_F(Run, ClearingTheTickHidesTheNoticeForGood) {
    // The value is written at the click: ticking again and Cancel do not take it back.
    script.ExpectDialog(kTitle, [&](ScriptedForm& form) {
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
