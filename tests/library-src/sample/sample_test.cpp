// What comes with the program, as it was built.

#include "tests/support/plain_zip.h"
#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>
#include <QImage>

// Whoever draws is told of all faults at once, each with its place.
TEST(Sample, FaultsOfTheSourcesAreTold) {
    const TempFolder folder;
    std::filesystem::copy(SOURCES, folder.Path(), std::filesystem::copy_options::recursive);
    for (const auto& [file, text] :
         {std::pair("icon.txt", "tile 255 255 255\ntile 256 256 256\ntile 1 -1\ntile x 1 1\n"),
          {"palette.txt",
           "colour\ncolor 9 x 1 2\nramp 1 2 x 1 2 3\ncolor 9 x 1 2 256\ncolor 9 x 1 2 3"},
          {"glyphs/z.txt",
           "glyph 1\n########\npixel ab 1\npixel b 0\nglyph 65 A\n#\nzb......\nglyph 9 B\n"}})
        PutFile(folder / file, text);
    const std::string call = "cd " + folder.Path() +
                             " && (" QUILT_LIBRARY " --library . .; echo $?; " QUILT_LIBRARY
                             " --library . no; " QUILT_LIBRARY " --library; echo $?; " QUILT_SAMPLE
                             " x; echo $?; cd $OLDPWD; " QUILT_SAMPLE " /dev/null/x " SPRITES
                             "; echo $?; " QUILT_LIBRARY " --icons /dev/null/x " SOURCES
                             "; echo $?) >said 2>&1";
    EXPECT_EQ(std::system(call.c_str()), 0);
    EXPECT_EQ(SumOf(FileBytes(folder / "said")), 3968302698u) << FileBytes(folder / "said");
}

// Another build gives the same bytes; and what is drawn is what was drawn last: whoever changes a
// picture on purpose writes its new sum here.
TEST(Sample, AnotherBuildGivesTheSame) {
    EXPECT_EQ(std::system(QUILT_TOOL " check --strict Library/samples/lamplight.zqlt"), 0);
    const TempFolder folder;
    const std::string& to = folder.Path();
    setenv("SOURCE_DATE_EPOCH", "946684800", 1);
    for (const std::string& call : {QUILT_SAMPLE " " + to + "/again.zqlt " SPRITES,
                                    QUILT_LIBRARY " --library " + to + " " SOURCES,
                                    QUILT_LIBRARY " --icons " + to + " " SOURCES})
        ASSERT_EQ(std::system(call.c_str()), 0) << call;
    EXPECT_TRUE(FileBytes(to + "/again.zqlt") == FileBytes("Library/samples/lamplight.zqlt"));
    EXPECT_TRUE(FileBytes(to + "/default.zqlt") == FileBytes("Library/default.zqlt"));
    std::vector<unsigned long> sums{SumOf(FileBytes(folder / "default.dat"))};
    for (const char* archive : {"again.zqlt", "default.zqlt"})
        for (const PlainEntry& each : ReadZip(FileBytes(folder / archive)))
            sums.push_back(SumOf(each.bytes));
    // Without the bytes that fill up a row.
    const QImage icon = QImage(QString::fromStdString(folder / "32x32/apps/quilt-edit.png"))
                            .convertToFormat(QImage::Format_RGB32);
    const char* bits = reinterpret_cast<const char*>(icon.bits());
    sums.push_back(SumOf({bits, static_cast<std::size_t>(icon.sizeInBytes())}));
    const unsigned long drawn[] = {3738411917, 2259387709, 1934311140, 941387669, 515011117,
                                   2259387709, 1124133209, 3335432231, 515011117, 1160742133};
    EXPECT_THAT(sums, testing::ElementsAreArray(drawn));
}
