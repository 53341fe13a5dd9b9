// What a file cannot hold is refused before it is written, and a world without boards is safe.

#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>

using testing::ElementsAre;
using testing::HasSubstr;

class Unstorable : public WorldTest {
protected:
    TempFolder folder;
};

TEST_F(Unstorable, ALineThatAFileTakesForAMarkIsRefused) {
    Dobject& board = AddNode(world->Root(), "yard", 1, 1);
    for (const char* line : {"~pe", "~peek", "~pb", "~pbx"}) {
        board.script = std::string("#end\n") + line + "\nlast";
        EXPECT_FALSE(world->Save(folder / "g.zqlt")) << line;
        EXPECT_FALSE(world->Export(HandleOf(board), folder / "g.zobj")) << line;
        EXPECT_THAT(reports.Texts(), HasSubstr("In the script of 'yard', line 2 begins with ~p"));
        EXPECT_EQ(reports.Messages().size(), 2u);
        reports.Clear();
    }
    EXPECT_TRUE(folder.Names().empty());
}

TEST_F(Unstorable, AWorldWithoutBoardsSelectsNothing) {
    EXPECT_EQ(world->GetCurrentObject(), kNoHandle);
    EXPECT_EQ(world->GetCurrentBoard(), kNoHandle);
    world->SetName(kRootHandle, "other");
    world->SetProperty(kRootHandle, kWidth, 4);
    world->SetTile(kRootHandle, 0, 0, 1, 2, 3, 4);
    EXPECT_EQ(world->Root().name, kRootName);
    EXPECT_EQ(world->Root().width, 0);
}

TEST_F(Unstorable, WhatAKilledSaveLeftIsSweptWhenItsProcessIsGone) {
    const pid_t gone = fork();
    if (gone == 0) _exit(0);
    waitpid(gone, nullptr, 0);
    const std::string own = ".quilt-save-" + std::to_string(getpid()) + "-9";
    PutFile(folder / (".quilt-save-" + std::to_string(gone) + "-0"), "x");
    PutFile(folder / own, "x");
    EXPECT_TRUE(world->Save(folder / "g.zqlt"));
    EXPECT_THAT(folder.Names(), ElementsAre(own, "g.zqlt"));
}
