// Saving cannot lose a game: every operation on files refused in turn, the program killed at
// any moment, and what stays beside, around and behind the file.

#include "engine/file_layer.h"

#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <csignal>

using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// Counts the operations of a save and refuses one of them. A refused close closes, and a
// refused write writes a part, as a full disk does.
class FailingFiles final : public FileLayer {
public:
    FailingFiles(int failing, int errorNumber) : bad(failing), error(errorNumber) {
        before = vFiles;
        vFiles = this;
    }
    ~FailingFiles() override { vFiles = before; }

    int ReadLink(const std::string& path, std::string& target) override {
        return Fails("link") ? error : FileLayer::ReadLink(path, target);
    }
    int Look(const std::string& path, Status& status) override {
        return Fails("look") ? error : FileLayer::Look(path, status);
    }
    int Create(const std::string& path, unsigned mode, int& file) override {
        return Fails("create") ? error : FileLayer::Create(path, mode, file);
    }
    int Open(const std::string& path, int& file) override {
        return Fails("open") ? error : FileLayer::Open(path, file);
    }
    int OpenFolder(const std::string& path, int& file) override {
        return Fails("folder") ? error : FileLayer::OpenFolder(path, file);
    }
    int SetMode(int file, const Status& like) override {
        return Fails("mode") ? error : FileLayer::SetMode(file, like);
    }
    int Write(int file, const char* data, std::size_t count) override {
        if (!Fails("write")) return FileLayer::Write(file, data, count);
        FileLayer::Write(file, data, count / 2);
        return error;
    }
    int Read(int file, char* data, std::size_t count, std::size_t& got) override {
        if (Fails("read")) return error;
        const int result = FileLayer::Read(file, data, count, got);
        if (spoil && got > 0) data[got / 2] ^= 1;
        return result;
    }
    int Sync(int file) override { return Fails("sync") ? error : FileLayer::Sync(file); }
    int Close(int file) override {
        const bool fails = Fails("close");
        const int result = FileLayer::Close(file);
        return fails ? error : result;
    }
    int Rename(const std::string& from, const std::string& to) override {
        return Fails("rename") ? error : FileLayer::Rename(from, to);
    }

    bool Failed() const { return done > bad; }
    const std::string& What() const { return what; }
    const std::string& All() const { return all; }
    bool renamed = false;
    bool spoil = false;

private:
    bool Fails(const char* operation) {
        all += std::string(operation) + " ";
        if (std::string(operation) == "rename" && done != bad) renamed = true;
        if (done++ != bad) return false;
        what = operation;
        return true;
    }

    FileLayer* before;
    int bad;
    int error;
    int done = 0;
    std::string what;
    std::string all;
};

class Saving : public WorldTest {
protected:
    Saving() {
        std::mt19937 random(3);
        PlantRandomWorld(*world, random);
        EXPECT_TRUE(world->Save(path));
        oldBytes = FileBytes(path);
        world->NewBoard();
        Expand();
    }

    void Expand() {
        Dobject& board = *world->Root().children.back();
        board.vieww = 1;
        world->SetExpanded(HandleGuard(HandleOf(board)), 1);
    }
    bool Collapsed() {
        return world->Root().children.back()->evieww == 0 &&
               world->Root().children.back()->vieww == 1;
    }

    TempFolder folder;
    const std::string path = folder / "game.zqlt";
    std::string oldBytes;
};

}  // namespace

TEST_F(Saving, EveryRefusedOperationLeavesAWholeFile) {
    for (int error : {ENOSPC, EACCES, EIO}) {
        bool failed = true;
        for (int n = 0; failed; ++n) {
            ASSERT_LT(n, 100);
            PutFile(path, oldBytes);
            Expand();
            FailingFiles files(n, error);
            const bool saved = world->Save(path);
            failed = files.Failed();
            SCOPED_TRACE(files.What() + ", operation " + std::to_string(n));
            EXPECT_EQ(saved, !failed || files.renamed) << "what has its name is saved";
            EXPECT_EQ(FileBytes(path) == oldBytes, !saved);
            EXPECT_THAT(folder.Names(), ElementsAre("game.zqlt"));
            EXPECT_TRUE(Collapsed());
            // A folder that has been flushed may refuse to be closed: nothing hangs on it.
            const bool told = failed && !(saved && files.What() == "close");
            EXPECT_EQ(reports.Messages().size(), told ? 1u : 0u);
            if (told) {
                EXPECT_THAT(reports.Texts(), HasSubstr(path));
                EXPECT_THAT(reports.Texts(),
                            HasSubstr(saved ? "was saved, but" : "could not be saved"));
            }
            reports.Clear();
            // What the disk has not got must not take the old file's place.
            if (!failed) {
                EXPECT_EQ(files.All(),
                          "link look create mode write sync close open read read close folder "
                          "rename sync close ");
            }
        }
        EXPECT_TRUE(world->Load(path));
    }
    EXPECT_EQ(FileLayer().Sync(-1), EBADF) << "the disk is asked";
}

TEST_F(Saving, WhatReadsBackOtherwiseIsNotTrusted) {
    FailingFiles files(-1, 0);
    files.spoil = true;
    EXPECT_FALSE(world->Save(path));
    EXPECT_THAT(reports.Texts(), HasSubstr("reads back otherwise"));
    reports.Clear();
    EXPECT_EQ(FileBytes(path), oldBytes);
}

TEST_F(Saving, AChildKilledAtAnyMomentLeavesAVersion) {
    constexpr int kKills = 100;
    std::mt19937 random(std::random_device{}());
    // A slow or busy machine gets longer.
    const auto start = std::chrono::steady_clock::now();
    ASSERT_TRUE(world->Save(path));
    const std::chrono::duration<double, std::micro> save = std::chrono::steady_clock::now() - start;
    std::uniform_real_distribution<double> moment(0, std::max(20'000., 4 * save.count()));
    int changed = 0;
    std::int32_t last = world->videoMode;
    for (int kill = 0; kill < kKills && !HasFailure(); ++kill) {
        const pid_t child = fork();
        if (child == 0) {
            // Each version is one by its number, which stands in the last entry.
            for (world->videoMode = 1000 * (kill + 1);; ++world->videoMode)
                if (!world->Save(path)) _exit(1);
        }
        usleep(static_cast<useconds_t>(moment(random)));
        ::kill(child, SIGKILL);
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status)) << "the child could not save";
        ASSERT_TRUE(world->Load(path));
        const std::int32_t now = std::exchange(last, world->videoMode);
        EXPECT_TRUE(last == now || last / 1000 == kill + 1) << last << " after " << now;
        changed += now != last;
    }
    EXPECT_GT(changed, kKills / 10) << "hardly a save came to its end";
    // What the killed ones left is swept, what a living one has at work is not.
    const std::string own = ".quilt-save-" + std::to_string(getpid()) + "-9";
    PutFile(folder / own, "x");
    EXPECT_TRUE(world->Save(path));
    EXPECT_THAT(folder.Names(), ElementsAre(own, "game.zqlt"));
}

TEST_F(Saving, LinksAndPermissionsStay) {
    const std::string deep = folder / "deep";
    std::filesystem::create_directory(deep);
    std::filesystem::rename(path, deep + "/real.zqlt");
    std::filesystem::create_symlink("real.zqlt", deep + "/second.zqlt");
    std::filesystem::create_symlink("deep/second.zqlt", path);
    std::filesystem::create_symlink(folder / "new.zqlt", folder / "to-new");
    ASSERT_EQ(chmod((deep + "/real.zqlt").c_str(), 0640), 0);
    const mode_t old = umask(037);
    ASSERT_TRUE(world->Save(path) && world->Save(folder / "to-new"));
    umask(old);
    for (const std::string& link : {path, deep + "/second.zqlt", folder / "to-new"})
        EXPECT_TRUE(std::filesystem::is_symlink(link)) << link;
    for (const std::string& file : {deep + "/real.zqlt", folder / "new.zqlt"}) {
        struct stat status = {};
        EXPECT_EQ(lstat(file.c_str(), &status), 0);
        EXPECT_EQ(status.st_mode, unsigned{S_IFREG | 0640}) << file;
        EXPECT_NE(FileBytes(file), oldBytes);
    }
    EXPECT_THAT(folder.Names(), ElementsAre("deep", "game.zqlt", "new.zqlt", "to-new"));
}

TEST_F(Saving, APlaceThatCannotBeWrittenToIsReported) {
    // The superuser may write everywhere, so the refusals that need permissions are told by
    // the layer, in EveryRefusedOperationLeavesAWholeFile.
    PutFile(folder / "file", "x");
    std::filesystem::create_symlink("circle", folder / "circle");
    chmod(path.c_str(), 0444);
    for (auto [place, advice] : {std::pair{"missing/x.zqlt", "in a folder that exists"},
                                 {"file/x.zqlt", "in a folder that exists"},
                                 {".", "there is something else there"},
                                 {"circle", "circle"},
                                 {"game.zqlt", "write-protected"}}) {
        if (geteuid() == 0 && place == std::string("game.zqlt")) continue;
        EXPECT_FALSE(world->Save(folder / place));
        EXPECT_THAT(reports.Texts(), HasSubstr(advice));
        reports.Clear();
    }
    EXPECT_EQ(FileBytes(path), oldBytes);
}
