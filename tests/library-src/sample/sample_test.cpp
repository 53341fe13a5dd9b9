// What comes with the program, as it was built.

#include "tests/support/plain_zip.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <zlib.h>
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
          QUILT_LIBRARY " --library " + to + SOURCES, QUILT_LIBRARY " --pictures " + to + SOURCES,
          QUILT_LIBRARY " --icons " + to + SOURCES})
        ASSERT_EQ(std::system(call.c_str()), 0) << call;
    EXPECT_TRUE(FileBytes(to + "/again.zqlt") == FileBytes("Library/samples/lamplight.zqlt"));
    EXPECT_TRUE(FileBytes(to + "/default.zqlt") == FileBytes("Library/default.zqlt"));
    std::vector<unsigned long> sums;
    const auto add = [&](const void* bytes, std::size_t size) {
        sums.push_back(crc32_z(0, static_cast<const Bytef*>(bytes), size));
    };
    for (const char* archive : {"again.zqlt", "default.zqlt"})
        for (const PlainEntry& entry : ReadZip(FileBytes(folder / archive)))
            add(entry.bytes.data(), entry.bytes.size());
    const std::string data = FileBytes(folder / "default.dat");
    add(data.data(), data.size());
    for (const char* picture :
         {"library-glyphs.png", "library-palette.png", "32x32/apps/quilt-edit.png"}) {
        // Without the bytes that fill up a row.
        const QImage image =
            QImage(QString::fromStdString(folder / picture)).convertToFormat(QImage::Format_RGB32);
        add(image.bits(), static_cast<std::size_t>(image.sizeInBytes()));
    }
    EXPECT_THAT(sums, testing::ElementsAre(2259387709, 1934311140, 941387669, 515011117, 2259387709,
                                           1124133209, 3335432231, 515011117, 3738411917,
                                           1693659530, 2035572175, 1160742133));
}
