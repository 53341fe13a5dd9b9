// What the document's commands drop or replace is kept, and what a crash lost is offered.

#include "editor/commands.h"
#include "editor/shell/quilt_app.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

Dtile& Corner() { return vWorld->Root().children.front()->tiles[0]; }

}  // namespace

TEST(KeptApp, TheCommandsKeepWhatTheyDrop) {
    const TempFolder folder;
    const std::string keep = folder / "kept", game = folder / "game.zqlt";
    const auto count = [&] { return ListKept(keep).size(); };
    ScriptedPlatform script;
    CQuiltApp app(keep);
    ASSERT_TRUE(app.InitInstance(std::filesystem::current_path().string(), ""));
    CQuiltDoc& document = app.Document();
    app.Frame().OnCommand(kCmdFileNew);
    EXPECT_EQ(count(), 0u) << "an unaltered world is not kept";
    Corner().chr = 1;
    app.Frame().OnCommand(kCmdFileNew);
    EXPECT_EQ(count(), 1u);
    script.ExpectSaveDialog(game);
    app.Frame().OnCommand(kCmdFileSaveAs);
    EXPECT_EQ(document.PathName(), game);
    Corner().chr = 2;
    app.Frame().OnCommand(kCmdFileSave);
    EXPECT_EQ(count(), 2u) << "the file that was replaced";
    app.KeepWorld();
    EXPECT_EQ(count(), 2u);
    Corner().chr = 3;
    ASSERT_TRUE(document.OnOpenDocument(game));
    EXPECT_EQ(count(), 3u);
    EXPECT_EQ(Corner().chr, 2);
    // A kept game is saved under a name of its own.
    ASSERT_TRUE(document.OnOpenDocument(ListKept(keep)[0].path));
    EXPECT_EQ(Corner().chr, 3);
    EXPECT_EQ(document.PathName(), "");
    EXPECT_NE(document.Title().find("Untitled"), std::string::npos);
}
