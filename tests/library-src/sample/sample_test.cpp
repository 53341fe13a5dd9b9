// What comes with the program, as it was built.

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <QImage>

// Another build gives the same bytes; and what is drawn is what was drawn last: whoever changes a
// picture on purpose writes its new sum here.
TEST(Sample, AnotherBuildGivesTheSame) {
    EXPECT_EQ(std::system(QUILT_TOOL " check --strict Library/samples/lamplight.zqlt"), 0);
    const TempFolder folder;
    const std::string& to = folder.Path();
    setenv("SOURCE_DATE_EPOCH", "946684800", 1);
    for (const std::string& call :
         {QUILT_SAMPLE " " + to + "/again.zqlt " SPRITES,
          QUILT_LIBRARY " --library " + to + SOURCES, QUILT_LIBRARY " --icons " + to + SOURCES})
        ASSERT_EQ(std::system(call.c_str()), 0) << call;
    EXPECT_TRUE(FileBytes(to + "/again.zqlt") == FileBytes("Library/samples/lamplight.zqlt"));
    EXPECT_TRUE(FileBytes(to + "/default.zqlt") == FileBytes("Library/default.zqlt"));
    std::vector<unsigned long> sums;
    for (const char* archive : {"again.zqlt", "default.zqlt"})
        for (const PlainEntry& entry : ReadZip(FileBytes(folder / archive)))
            sums.push_back(SumOf(entry.bytes));
    sums.push_back(SumOf(FileBytes(folder / "default.dat")));
    // Without the bytes that fill up a row.
    const QImage icon = QImage(QString::fromStdString(folder / "32x32/apps/quilt-edit.png"))
                            .convertToFormat(QImage::Format_RGB32);
    const char* bits = reinterpret_cast<const char*>(icon.bits());
    sums.push_back(SumOf({bits, static_cast<std::size_t>(icon.sizeInBytes())}));
    EXPECT_THAT(sums,
                testing::ElementsAre(2259387709, 1934311140, 941387669, 515011117, 2259387709,
                                     1124133209, 3335432231, 515011117, 3738411917, 1160742133));
}
