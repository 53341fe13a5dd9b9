// What a desktop makes of the program's files, by their names and by their first bytes.

#include "tests/support/plain_zip.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gtest/gtest.h>
#include <QFileInfo>
#include <QMimeDatabase>
#include <cstdlib>
#include <filesystem>

namespace {

class FileTypes : public WorldTest {
protected:
    static std::string TypeOf(const std::string& path, QMimeDatabase::MatchMode by) {
        const QFileInfo file(QString::fromStdString(path));
        return QMimeDatabase().mimeTypeForFile(file, by).name().toStdString();
    }

    TempFolder temp;
};

TEST_F(FileTypes, GamesAndObjectsAreKnownByNameAndByContent) {
    // Only what the package brings: the system's own list knows nothing of these files.
    const std::string packages = temp / "share/mime/packages";
    std::filesystem::create_directories(packages);
    std::filesystem::copy(SOURCE_FOLDER "/packaging/quilt-edit.xml", packages);
    setenv("XDG_DATA_DIRS", (temp / "share").c_str(), 1);
    setenv("XDG_DATA_HOME", (temp / "none").c_str(), 1);
    const std::string game = temp / "castle.zqlt";
    ASSERT_TRUE(world->Save(game));
    // The entry's name, and with it the magic's place, is as long as the file's.
    const std::string object = temp / "a door with a name of some length.zobj";
    ASSERT_TRUE(world->Export(HandleOf(AddNode(world->Root(), "Door", 2, 2)), object));
    const std::string other = PutFile(temp / "other.zip", MakeZip({{"readme.txt", "font.hdr"}}));
    for (const auto by : {QMimeDatabase::MatchExtension, QMimeDatabase::MatchContent}) {
        EXPECT_EQ(TypeOf(game, by), "application/x-quilt-game");
        EXPECT_EQ(TypeOf(object, by), "application/x-quilt-object");
        EXPECT_EQ(TypeOf(other, by).find("quilt"), std::string::npos);
    }
}

}  // namespace
