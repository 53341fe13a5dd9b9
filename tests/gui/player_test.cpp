// A player that Run starts from the program's folder: a process of its own.

#include "tests/gui/main_window.h"

#include <unistd.h>
#include <sstream>

namespace {

// Writes down what it got, waits to be told to end, and says that it has ended by itself.
constexpr const char* kPlayer = R"(#!/bin/sh
{ echo "$#|$1|$PWD"; echo "$$"; } >told.part
mv told.part told
i=0
while [ ! -e end ] && [ $i -lt 200 ]; do sleep 0.05; i=$((i + 1)); done
echo done >ended
)";

}  // namespace

TEST_F(MainWindow, RunStartsThePlayerAsAProcessOfItsOwn) {
    // A program folder of the test's own, so that it can hold a player.
    const std::string folder = temp / "program folder", player = folder + "/QUILT! Runner";
    const std::string game = temp / "a 'game' of $HOME \"x\".zqlt";
    std::filesystem::create_directory(folder);
    std::filesystem::create_directory_symlink(programFolder + "/Library", folder + "/Library");
    std::filesystem::copy_file("Library/default.zqlt", game);
    Start(game, folder);
    // Without a player, and with one that cannot be started, nothing is said.
    for (const int state : {0, 1, 2}) {
        if (state == 1) PutFile(player, kPlayer);
        if (state == 2) std::filesystem::permissions(player, std::filesystem::perms::owner_all);
        person.OnDialog([](QDialog& dialog) { Key(dialog, Qt::Key_Return); });
        Choose("&File", "&Run");
    }
    const auto waitFor = [&](const char* file) {
        const std::string path = folder + "/" + file;
        EXPECT_TRUE(QTest::qWaitFor([&] { return std::filesystem::exists(path); }, 8000));
        return FileBytes(path);
    };
    std::istringstream told(waitFor("told"));
    std::string line;
    pid_t id = 0;
    std::getline(told, line) >> id;
    EXPECT_EQ(line, "1|" + game + "|" + folder);
    EXPECT_NE(getsid(id), getsid(0)) << "it ends with the editor's terminal";

    app.reset();
    EXPECT_FALSE(std::filesystem::exists(folder + "/ended"));
    PutFile(folder + "/end", "");
    EXPECT_EQ(waitFor("ended"), "done\n") << "the player outlives the application";
}
