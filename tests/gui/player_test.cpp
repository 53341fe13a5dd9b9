// Processes: a program that the editor starts, and the editor's own end by a signal.

#include "platform/platform.h"
#include "platform/qt/termination.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>
#include <unistd.h>
#include <QtTest>

#include <csignal>

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

TEST(Termination, LeavesFirstAndDiesOfTheSignal) {
    const auto leave = [] { std::fputs("left", stderr); };
    for (const int number : {SIGTERM, SIGHUP, SIGINT})
        EXPECT_EXIT((OnTermination([] {}, leave), std::raise(number), QTest::qWait(8000)),
                    testing::KilledBySignal(number), "^left$");
}
