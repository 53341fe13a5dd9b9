// Saving cannot lose a game: every operation on files refused in turn, the program killed, and
// what stays beside, around and behind the file.

#include "tests/support/test_world.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>

namespace fs = std::filesystem;
using namespace testing;

struct Saving : WorldTest {
    Saving() {
        PlantRandomWorld(*world, dice);
        EXPECT_TRUE(world->Save(path));
        oldBytes = FileBytes(path);
        world->NewBoard();
    }
    void ExpectRefused(const std::string& place, const std::string& reason) {
        EXPECT_FALSE(world->Save(folder / place)) << reason;
        EXPECT_THAT(reports.Texts(), testing::AllOf(HasSubstr(folder / place), HasSubstr(reason)));
        reports.Clear();
        EXPECT_EQ(FileBytes(path), oldBytes);
    }

    TempFolder folder;
    const std::string path = folder / "game.zqlt";
    std::string oldBytes;
};

TEST_F(Saving, EveryRefusedOperationLeavesAWholeFile) {
    Dobject& board = *world->Root().children.back();
    bool failed = true;
    std::vector<std::string> done;
    for (std::size_t bad = 0; failed; ++bad) {
        PutFile(path, oldBytes);
        board.vieww = 1;
        board.Expand();
        done.clear();
        const FileHook files([&](const std::string& operation) {
            done.push_back(operation);
            return done.size() == bad + 1 ? bad % 2 ? EPERM : ENOSPC : 0;
        });
        const bool saved = world->Save(path);
        failed = done.size() > bad;
        const std::string what = failed ? done[bad] : "";
        SCOPED_TRACE(what + ", operation " + std::to_string(bad));
        const bool renamed = std::count(done.begin(), done.end(), "Rename") && what != "Rename";
        EXPECT_EQ(saved, renamed) << "what has its name is saved";
        EXPECT_EQ(FileBytes(path) == oldBytes, !saved);
        EXPECT_THAT(folder.Names(), ElementsAre("game.zqlt"));
        EXPECT_EQ(board.vieww, 1);
        // A folder that has been flushed may refuse to be closed: nothing hangs on it.
        const bool told = failed && !(saved && what == "Close");
        const std::string text = saved ? " was saved, but" : " could not be saved";
        ASSERT_EQ(reports.messages.size(), told ? 1u : 0u);
        EXPECT_THAT(reports.Texts(), testing::ContainsRegex(told ? path + text + ".*: [NO]" : ""));
        reports.Clear();
    }
    // What the disk has not got must not take the old file's place.
    EXPECT_THAT(
        done, ElementsAre("ReadLink", "Look", "Create", "SetMode", "Write", "Sync", "Close", "Open",
                          "Read", "Read", "Close", "OpenFolder", "Rename", "Sync", "Close"));
    // Not every disk can flush a folder.
    const FileHook files([synced = 0](const std::string& operation) mutable {
        return operation == "Sync" && synced++ ? EINVAL : 0;
    });
    EXPECT_TRUE(world->Save(path) && reports.messages.empty());
    EXPECT_TRUE(world->Load(path));
    EXPECT_EQ(FileLayer().Sync(-1), EBADF) << "the disk is asked";
    EXPECT_LT(FileLayer().FreeMemory(), std::int64_t{1} << 50) << "the system is asked";
}

TEST_F(Saving, WhatReadsBackOtherwiseIsNotTrusted) {
    for (int longer : {-1, 0, 1}) {
        const FileHook files([&](const std::string& operation) {
            if (operation != "Open") return 0;
            const std::string beside = folder / folder.Names().front();
            std::string bytes = FileBytes(beside);
            bytes.resize(bytes.size() + static_cast<std::size_t>(longer), 'x');
            if (longer == 0) bytes[bytes.size() / 2] ^= 1;
            PutFile(beside, bytes);
            return 0;
        });
        ExpectRefused("game.zqlt", "reads back otherwise");
    }
}

// A child is killed while it saves; what killed ones left is swept, what a living one has at work
// is not.
TEST_F(Saving, AChildKilledAtAnyMomentLeavesAVersion) {
    for (int kill = 1; kill <= 40; ++kill) {
        const pid_t child = fork();
        // Each version is one by its number, which stands in the last entry.
        world->videoMode = 1'000'000 * kill;
        while (child == 0 && world->Save(path)) ++world->videoMode;
        if (child == 0) _exit(1);
        usleep(static_cast<useconds_t>(Roll(0, 20'000)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child could not save";
        ASSERT_TRUE(world->Load(path));
        ASSERT_LE(world->videoMode / 1'000'000, kill);
    }
    const std::string own = ".quilt-save-" + std::to_string(getppid()) + "-9";
    PutFile(folder / own, "x");
    PutFile(folder / ".quilt-save-2147483647-0", "x");
    EXPECT_TRUE(world->Save(path));
    EXPECT_THAT(folder.Names(), ElementsAre(own, "game.zqlt"));
}

TEST_F(Saving, LinksAndPermissionsStay) {
    fs::create_directory(folder / "deep");
    fs::rename(path, folder / "deep/real.zqlt");
    fs::create_symlink("real.zqlt", folder / "deep/second.zqlt");
    fs::create_symlink("deep/second.zqlt", path);
    fs::create_symlink(folder / "new.zqlt", folder / "to-new");
    fs::permissions(folder / "deep/real.zqlt", fs::perms{0640});
    const std::string real = folder / "deep/real.zqlt";
    const bool given = chown(real.c_str(), 1234, 1235) == 0;  // only the superuser can
    const mode_t old = umask(037);
    ASSERT_TRUE(world->Save(path) && world->Save(folder / "to-new"));
    umask(old);
    for (const char* link : {"game.zqlt", "deep/second.zqlt", "to-new"})
        EXPECT_TRUE(fs::is_symlink(folder / link)) << link;
    struct stat is = {};
    ASSERT_EQ(stat(real.c_str(), &is), 0);
    EXPECT_TRUE(!given || (is.st_uid == 1234 && is.st_gid == 1235));
    for (const std::string& file : {real, folder / "new.zqlt"}) {
        EXPECT_TRUE(fs::symlink_status(file).type() == fs::file_type::regular);
        EXPECT_EQ(fs::status(file).permissions(), fs::perms{0640}) << file;
        EXPECT_NE(FileBytes(file), oldBytes);
    }
    EXPECT_THAT(folder.Names(), ElementsAre("deep", "game.zqlt", "new.zqlt", "to-new"));
}

TEST_F(Saving, APlaceThatCannotBeWrittenToIsReported) {
    PutFile(folder / "file", "x");
    fs::create_symlink("circle", folder / "circle");
    ExpectRefused("missing/x.zqlt", "in a folder that exists");
    ExpectRefused("file/x.zqlt", "in a folder that exists");
    ExpectRefused(".", "there is something else there");
    ExpectRefused("circle", "circle");
    fs::permissions(path, fs::perms{0444});
    // The superuser may write everywhere.
    if (geteuid() != 0) ExpectRefused("game.zqlt", "write-protected");
}
