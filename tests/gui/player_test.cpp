// A program that the editor starts: a process of its own.

#include "platform/platform.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <QtTest>

TEST(Player, IsAProcessOfItsOwn) {
    const TempFolder temp;
    const std::string folder = temp / "program folder", game = "a 'game' of $HOME \"x\".zqlt";
    std::filesystem::create_directory(folder);
    // What it got, and its session.
    const std::string player = PutFile(folder + "/the player",
                                       "#!/bin/sh\n(echo \"$#|$1|$PWD\"; sed 's/.*) //' "
                                       "/proc/$$/stat) >told.part\nmv told.part told\n");
    EXPECT_FALSE(vPlatform->StartProgram(player, game, folder));
    std::filesystem::permissions(player, std::filesystem::perms::owner_all);
    EXPECT_TRUE(vPlatform->StartProgram(player, game, folder));
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(folder + "/told"); }, 8000));
    std::ifstream told(folder + "/told");
    std::string line, state;
    pid_t parent = 0, group = 0, session = 0;
    std::getline(told, line) >> state >> parent >> group >> session;
    EXPECT_EQ(line, "1|" + game + "|" + folder);
    EXPECT_NE(session, getsid(0)) << "it ends with the editor's terminal";
}
