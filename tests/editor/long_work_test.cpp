// Which commands show that they may take long.

#include "editor/commands.h"
#include "editor/shell/quilt_app.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace {

TEST(LongCommands, ShowTheWaitPointerAndTakeItAway) {
    TempFolder temp;
    ScriptedPlatform script;
    CQuiltApp app;
    ASSERT_TRUE(app.InitInstance(std::filesystem::current_path().string(), ""));
    const std::string game = temp / "a.zqlt";
    const auto ok = [](ScriptedForm& form) { form.Click(platform::kIdOk); };
    struct Long {
        int command;
        std::function<void(int)> run;
        std::string dialog{};
    };
    const auto menu = [&](int command) { script.frame->Choose(command); };
    const auto view = [&](int command) { app.Frame().EditView().OnCommand(command); };
    const auto list = [&](int command) { app.Frame().List().OnCommand(command); };
    script.ExpectSaveDialog(game);
    menu(kCmdFileSave);
    const Long works[] = {
        {kCmdFileNew, menu},      {kCmdFileRecent, menu},
        {kCmdFileSave, menu},     {kCmdCopyBoard, list},
        {kCmdPasteBoard, list},   {kCmdDuplicateBoard, list},
        {kCmdPasteOnBoard, list}, {kCmdFill, view},
        {kCmdFloodFill, view},    {kCmdFadeNormal, view, "Fade"},
    };
    for (const Long& work : works) {
        const int before = script.waits;
        if (!work.dialog.empty()) script.ExpectDialog(work.dialog, ok);
        script.Do([&] { work.run(work.command); });
        EXPECT_GT(script.waits, before) << work.command;
        EXPECT_EQ(script.waiting, 0) << work.command;
    }
    EXPECT_NE(script.frame->notice.find(game + ": 1 board, 0 objects, "), std::string::npos)
        << script.frame->notice;
}

}  // namespace
