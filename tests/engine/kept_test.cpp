// The games that are kept: what was altered, replaced or lost in a crash.

#include "engine/kept_games.h"
#include "tests/support/test_world.h"

#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

struct KeptWorlds : WorldTest {
    KeptWorlds() {
        world->New();
        First().PutTile(3, 3, 65, 1, 2, 3);
        EXPECT_TRUE(world->Save(path));
    }
    Dobject& First() { return *world->Root().children.front(); }
    std::size_t Count() const { return ListKept(folder / "kept").size(); }

    TempFolder folder;
    const std::string path = folder / "game.zqlt";
};

TEST_F(KeptWorlds, AWorldIsKeptWhenItIsNotThatOfItsFile) {
    KeptGames kept(folder / "kept");
    world->ShowBoard(-1);
    kept.KeepWorld(path);
    EXPECT_EQ(Count(), 0u) << "what is on view is no change";
    const HandleGuard h(HandleOf(First()));
    for (int change = 0; change < 4; ++change) {
        if (change == 0) First().PutTile(0, 0, 7, 7, 7, 0);
        if (change == 1) First().script = "#end";
        if (change == 2) world->GetFont()->PutGlyphPixel(3, 1, 1, 99);
        if (change == 3) world->videoMode = 2;
        world->SetProperty(h, kViewW, 5);
        world->SetExpanded(h, 1);
        const std::string wanted = Account(world->Root(), Kept::InFile);
        kept.KeepWorld(path);
        ASSERT_EQ(Count(), static_cast<std::size_t>(change) + 1);
        EXPECT_TRUE(world->IsExpanded(h)) << "keeping changes nothing";
        Game game;
        GameFault fault;
        const IdSource none = [] { return 0; };
        ASSERT_TRUE(ReadGame(ListKept(folder / "kept")[0].path, none, game, fault));
        EXPECT_EQ(Account(game.root), wanted);
        ASSERT_TRUE(world->Save(path));
        kept.KeepWorld(path);
        EXPECT_EQ(Count(), static_cast<std::size_t>(change) + 1);
    }
}

TEST_F(KeptWorlds, OfWhatIsReplacedTwentyStay) {
    const std::string first = FileBytes(path);
    KeptGames kept(folder / "kept");
    kept.KeepFile(folder / "missing.zqlt");
    // The oldest of another game, which makes them more than a GiB.
    std::filesystem::resize_file(PutFile(folder / "kept/a 2001-01-01_01.01.01.zqlt", ""), 1 << 30);
    for (int save = 0; save < 21; ++save) {
        First().PutTile(1, 1, save, 1, 1, 0);
        kept.KeepFile(path);
        ASSERT_TRUE(world->Save(path));
        EXPECT_TRUE(save > 0 || FileBytes(ListKept(folder / "kept")[0].path) == first);
    }
    EXPECT_EQ(Count(), KeptGames::kMostOfAGame);
    EXPECT_NE(FileBytes(ListKept(folder / "kept").back().path), first) << "the oldest goes";
    EXPECT_THAT(ListKept(folder / "kept")[0].path,
                testing::ContainsRegex("/game-.* .{19}(-0..)?.z"));
}

TEST_F(KeptWorlds, WhatACrashLostIsToldOnce) {
    for (int glyph : {98, 99}) {
        const pid_t child = fork();
        if (child == 0) {
            KeptGames kept(folder / "kept");
            kept.KeepNowAndThen(path);
            First().PutTile(2, 2, glyph, 1, 1, 0);
            kept.last -= KeptGames::kEvery;
            kept.KeepNowAndThen(path);
            const std::string session = folder / "kept/.session-" + std::to_string(getpid());
            for (int i = 0; FileBytes(session).empty() && i < 5000; ++i) usleep(1000);
            kept.last -= KeptGames::kEvery;
            kept.KeepNowAndThen(path);  // the same again
            usleep(200'000);
            raise(SIGKILL);
        }
        waitpid(child, nullptr, 0);
    }
    ASSERT_EQ(Count(), 2u);
    KeptGames kept(folder / "kept");
    EXPECT_EQ(KeptGames(folder / "kept/other").TakeLost(), "");
    const std::string lost = kept.TakeLost();
    EXPECT_EQ(lost, ListKept(folder / "kept")[0].path) << "the newest";
    EXPECT_EQ(kept.TakeLost(), "");
    ASSERT_TRUE(world->Load(lost));
    EXPECT_EQ(First().GetTile(2, 2)->chr, 99);
}

TEST_F(KeptWorlds, WithoutAFolderOrRoomNothingHappens) {
    setenv("XDG_DATA_HOME", "data", 1);
    for (const std::string home : {"/h", ""}) {
        setenv("HOME", home.c_str(), 1);
        EXPECT_EQ(KeptFolder(), home.empty() ? "" : "/h/.local/share/Tessel Works/QUILT!/kept");
    }
    PutFile(folder / "file", "x");
    First().PutTile(0, 0, 9, 9, 9, 0);
    for (const std::string& place : {std::string(), folder / "file/kept", folder / "kept"}) {
        KeptGames kept(place);
        const FileHook full([](const std::string& asked) { return asked == "Write" ? ENOSPC : 0; });
        if (place != folder / "kept") kept.KeepFile(path);
        kept.KeepWorld(path);
        kept.last -= KeptGames::kEvery;
        kept.KeepNowAndThen(path);
        EXPECT_EQ(kept.TakeLost(), "");
        const bool waits = std::chrono::steady_clock::now() - kept.last < KeptGames::kEvery;
        EXPECT_EQ(waits, place == folder / "kept") << "for the next time";
    }
    for (int i = 0; i < 5000 && !std::filesystem::is_empty(folder / "kept"); ++i) usleep(1000);
    EXPECT_TRUE(std::filesystem::is_empty(folder / "kept")) << "no piece of a game, no session";
}
