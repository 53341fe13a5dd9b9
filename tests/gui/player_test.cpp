// A player that Run starts from the program's folder: a process of its own.

#include "editor/shell/do_save_notification.h"
#include "tests/gui/main_window.h"

#include <gmock/gmock.h>
#include <sys/wait.h>
#include <unistd.h>
#include <QCheckBox>
#include <cerrno>
#include <cstdlib>
#include <sstream>

namespace {

// Writes down what it got, waits to be told to end, and says that it has ended by itself.
constexpr const char* kPlayer = R"(#!/bin/sh
{ echo "$#"; printf '%s\n' "$1"; pwd; echo "$$"; echo "$PPID"; env; } >told.part
mv told.part told
i=0
while [ ! -e end ] && [ $i -lt 200 ]; do sleep 0.05; i=$((i + 1)); done
echo done >ended
)";

// A program folder of the test's own, so that it can hold a player.
class Player : public MainWindow {
protected:
    Player() {
        std::filesystem::create_directory(temp / "program folder");
        std::filesystem::create_directory_symlink(programFolder + "/Library", Program("Library"));
        Start("", temp / "program folder");
    }
    std::string Program(const std::string& file) const { return temp / ("program folder/" + file); }
};

}  // namespace

TEST_F(Player, RunStartsThePlayerAsAProcessOfItsOwn) {
    const std::string player = PutFile(Program("QUILT! Runner"), kPlayer);
    std::filesystem::permissions(player, std::filesystem::perms::owner_all);
    const std::string folder = temp / "it's \"my\" games";
    std::filesystem::create_directory(folder);
    const std::string game = folder + "/a 'game' of $HOME \"x\".zqlt";
    std::filesystem::copy_file("Library/default.zqlt", game);
    ASSERT_TRUE(app->Document().OnOpenDocument(game));
    const std::string before = FileBytes(game);
    vWorld->Root().children.front()->PutTile(1, 1, 65, 4, 5, 0);
    setenv("QUILT_TEST_MARK", "as the editor has it", 1);
    person.OnDialog([](QDialog& dialog) {
        EXPECT_EQ(dialog.windowTitle().toStdString(), "Save Notification");
        EXPECT_TRUE(In<QCheckBox>(dialog, kNoticeHide).isChecked());
        Key(dialog, Qt::Key_Return);
    });
    Choose("&File", "&Run");
    EXPECT_NE(FileBytes(game), before) << "saved before the start";
    ASSERT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(Program("told")); }, 8000));

    std::istringstream told(FileBytes(Program("told")));
    std::string count, argument, workingFolder, id, parent;
    for (std::string* line : {&count, &argument, &workingFolder, &id, &parent})
        std::getline(told, *line);
    EXPECT_EQ(count, "1");
    EXPECT_EQ(argument, game);
    EXPECT_EQ(workingFolder, temp / "program folder");
    EXPECT_THAT(told.str(), testing::HasSubstr("\nQUILT_TEST_MARK=as the editor has it\n"));
    EXPECT_NE(parent, std::to_string(getpid()));
    EXPECT_NE(getsid(std::stoi(id)), getsid(0)) << "it ends with the editor's terminal";
    errno = 0;
    EXPECT_EQ(waitpid(-1, nullptr, WNOHANG), -1)
        << "the editor has a child that it never waits for";
    EXPECT_EQ(errno, ECHILD);

    app.reset();
    EXPECT_FALSE(std::filesystem::exists(Program("ended")));
    PutFile(Program("end"), "");
    EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(Program("ended")); }, 8000))
        << "the player outlives the application";
    unsetenv("QUILT_TEST_MARK");
}

TEST_F(Player, WithoutAPlayerTheGameIsSavedAndNothingIsSaid) {
    for (const bool refused : {false, true}) {
        if (refused) PutFile(Program("QUILT! Runner"), "no program");
        std::filesystem::remove(temp / "Untitled.zqlt");
        person.OnDialog([](QDialog& dialog) { Key(dialog, Qt::Key_Return); });
        person.AnswerFileDialog(temp / "Untitled.zqlt");
        Choose("&File", "&Run");
        EXPECT_TRUE(std::filesystem::exists(temp / "Untitled.zqlt"));
    }
}
