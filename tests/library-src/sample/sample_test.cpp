// The sample game as it was built: that it shows what it is for, and that its scripts are scripts.

#include "editor/script/command_table.h"
#include "tests/support/plain_zip.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>
#include <zlib.h>
#include <QImage>

#include <set>
#include <sstream>

using testing::ElementsAre;

namespace {

constexpr const char* kSample = "Library/samples/lamplight.zqlt";

template <typename Act>
void ForEachNode(const Dobject& parent, Act act) {
    for (const auto& child : parent.children) {
        act(*child);
        ForEachNode(*child, act);
    }
}

class Sample : public WorldTest {
protected:
    Sample() {
        world->SetViewSize(80, 60);
        EXPECT_TRUE(world->Load(kSample));
    }
};

TEST_F(Sample, ToolFindsNothingToSay) {
    EXPECT_EQ(std::system(QUILT_TOOL " check --strict Library/samples/lamplight.zqlt"), 0);
}

// Another build gives the same bytes; and what is drawn is what was drawn last: whoever changes a
// picture on purpose writes its new sum here.
TEST_F(Sample, AnotherBuildGivesTheSame) {
    const TempFolder folder;
    setenv("SOURCE_DATE_EPOCH", "946684800", 1);
    ASSERT_EQ(std::system((QUILT_SAMPLE " " + (folder / "again.zqlt") + " " SPRITES).c_str()), 0);
    ASSERT_EQ(std::system((QUILT_LIBRARY " --library " + folder.Path() + " " SOURCES).c_str()), 0);
    ASSERT_EQ(std::system((QUILT_LIBRARY " --pictures " + folder.Path() + " " SOURCES).c_str()), 0);
    ASSERT_EQ(std::system((QUILT_LIBRARY " --icons " + folder.Path() + " " SOURCES).c_str()), 0);
    EXPECT_TRUE(FileBytes(folder / "again.zqlt") == FileBytes(kSample));
    EXPECT_TRUE(FileBytes(folder / "default.zqlt") == FileBytes("Library/default.zqlt"));
    const auto sum = [](const std::string& bytes) {
        return crc32(0, reinterpret_cast<const Bytef*>(bytes.data()),
                     static_cast<uInt>(bytes.size()));
    };
    std::vector<unsigned long> sums;
    for (const char* archive : {"again.zqlt", "default.zqlt"})
        for (const PlainEntry& entry : ReadZip(FileBytes(folder / archive)))
            sums.push_back(sum(entry.bytes));
    sums.push_back(sum(FileBytes(folder / "default.dat")));
    for (const char* picture :
         {"library-glyphs.png", "library-palette.png", "32x32/apps/quilt-edit.png"}) {
        // Without the bytes that fill up a row.
        const QImage image =
            QImage(QString::fromStdString(folder / picture)).convertToFormat(QImage::Format_RGB32);
        sums.push_back(sum(std::string(reinterpret_cast<const char*>(image.bits()),
                                       static_cast<std::size_t>(image.sizeInBytes()))));
    }
    EXPECT_THAT(sums,
                ElementsAre(2259387709, 1934311140, 941387669, 515011117, 2259387709, 1124133209,
                            3335432231, 515011117, 3738411917, 1693659530, 2035572175, 1160742133));
}

// Every command is one of the program's, and what a command names is there.
TEST_F(Sample, ScriptsSpeakOfWhatThereIs) {
    std::set<std::string> boards, objects;
    for (const auto& board : world->Root().children) boards.insert(board->name);
    ForEachNode(world->Root(), [&](const Dobject& node) { objects.insert(node.name); });
    const std::string known = " " + std::string(vKeywordList) + " ";
    int commands = 0;
    ForEachNode(world->Root(), [&](const Dobject& node) {
        std::istringstream script(node.script);
        for (std::string line; std::getline(script, line);) {
            if (line.starts_with("@")) {
                EXPECT_EQ(line, "@" + node.name);
            }
            if (!line.starts_with("#")) continue;
            std::istringstream words(line);
            std::string command, name;
            words >> command >> name;
            EXPECT_NE(known.find(" " + command + " "), known.npos) << node.name << ": " << line;
            const std::string label = "\n:" + name + "\n";
            const bool there = command == "#board"   ? boards.contains(name)
                               : command == "#focus" ? objects.contains(name)
                               : command == "#zap" || command == "#restore"
                                   ? (node.script + "\n").find(label) != label.npos
                                   : true;
            EXPECT_TRUE(there) << node.name << ": " << line;
            ++commands;
        }
    });
    EXPECT_GT(commands, 60);
}

}  // namespace
