// The glyph sheet and the drawing of glyphs.

#include "engine/picture_file.h"
#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <climits>
#include <tuple>

namespace {

class Font : public WorldTest {
protected:
    Font() : sheet(*world->GetFont()), target(MakeBitmap(20, 12)) {
        // A glyph with a set pixel in each corner of two colours and holes between.
        for (int i = 0; i < 64; ++i) sheet.PutGlyphPixel(5, i % 8, i / 8, 0);
        sheet.PutGlyphPixel(5, 0, 0, 9);
        sheet.PutGlyphPixel(5, 7, 7, 100);
        clear_to_color(target.get(), 50);
    }
    int At(int x, int y) { return getpixel(target.get(), x, y); }

    Dfont& sheet;
    Bitmap target;
};

}  // namespace

TEST_F(Font, GlyphsAreLaidOutInRows) {
    EXPECT_EQ(sheet.GlyphCount(), 256);
    EXPECT_EQ(sheet.FindGlyphAt(8, 8), 17);
    EXPECT_EQ(sheet.FindGlyphAt(8, 9), -1);
    EXPECT_EQ(sheet.NeighbourGlyph(0, 0), -1);
    EXPECT_EQ(sheet.NeighbourGlyph(0, 3), -1);
    EXPECT_EQ(sheet.NeighbourGlyph(15, 1), -1);
    EXPECT_EQ(sheet.NeighbourGlyph(0, 2), 16);
    EXPECT_EQ(sheet.NeighbourGlyph(7, 4), 7);
    EXPECT_EQ(sheet.NeighbourGlyph(999, 1), -1);
    // Cells of a single pixel column or row are none.
    for (auto [w, h, count] : {std::tuple{16, 8, 2}, {17, 9, 2}, {18, 10, 6}, {1, 16, 2}}) {
        sheet.NewSheet(w, h);
        sheet.LayoutGlyphs();
        EXPECT_EQ(sheet.GlyphCount(), count) << w << " by " << h;
    }
}

TEST_F(Font, RowsComeAndGoAtTheBottom) {
    const int corner = getpixel(sheet.Sheet(), 127, 126);
    sheet.PutGlyphPixel(255, 7, 7, 42);
    sheet.AddRow();
    EXPECT_EQ(sheet.GlyphCount(), 272);
    EXPECT_EQ(getpixel(sheet.Sheet(), 127, 127), 42);
    EXPECT_EQ(getpixel(sheet.Sheet(), 127, 126), corner);
    EXPECT_EQ(sheet.GetGlyphPixel(271, 0, 0), 0) << "a new row is empty";
    for (int rows = 0; rows < 20; ++rows) sheet.RemoveRow();
    EXPECT_EQ(sheet.GlyphCount(), 16) << "the last row stays";
    EXPECT_EQ(sheet.NewSheet(8, 8 * (kMaxGlyphs + 1)), nullptr);
    ASSERT_NE(sheet.NewSheet(8, 8 * kMaxGlyphs), nullptr);
    sheet.LayoutGlyphs();
    sheet.AddRow();
    EXPECT_EQ(sheet.GlyphCount(), kMaxGlyphs);
}

TEST_F(Font, APictureBecomesTheSheetWhenItIsWhole) {
    const TempFolder folder;
    const Bitmap picture = MakeBitmap(24, 8);
    for (int i = 0; i < 24 * 8; ++i) putpixel(picture.get(), i % 24, i / 24, i);
    const std::string good = MakeBmp(picture.get(), sheet.GetPalette());
    sheet.ImportBitmap(PutFile(folder / "s.bmp", good));
    ASSERT_EQ(sheet.GlyphCount(), 3);
    for (int i = 0; i < 24 * 8; ++i) ASSERT_EQ(getpixel(sheet.Sheet(), i % 24, i / 24), i);
    const auto with = [&](std::size_t at, int value) {
        std::string bytes = good;
        bytes[at] = static_cast<char>(value);
        return bytes;
    };
    std::string topDown = good;
    topDown.replace(22, 4, "\xf8\xff\xff\xff");
    // Cut by a byte, no picture, another form, from the top down, packed, odd bits, no width.
    for (const std::string& bad :
         {good.substr(0, good.size() - 1), good.substr(0, 53), with(0, 'C'), with(14, 12), topDown,
          with(30, 1), with(28, 7), with(18, 0), with(11, 0xff), std::string()}) {
        sheet.NewSheet(8, 8);
        sheet.ImportBitmap(PutFile(folder / "s.bmp", bad));
        EXPECT_EQ(reports.Texts(), "Unable to import font\n");
        EXPECT_EQ(sheet.GlyphCount(), 256) << "the default font instead";
        reports.Clear();
    }
}

TEST_F(Font, ColorsFollowOneRule) {
    const struct {
        int fg, bg;
        int set, clear;
    } cases[] = {{15, 3, 15, 3}, {15, -1, 15, 50}, {-1, 0, 50, 0},  {256, 7, 0, 7},
                 {-2, 7, 9, 0},  {7, -2, 9, 0},    {-5, -5, 50, 50}};
    for (const auto& c : cases) {
        clear_to_color(target.get(), 50);
        sheet.DrawGlyph(target.get(), 5, c.fg, c.bg, 0, 0);
        EXPECT_EQ(At(0, 0), c.set) << c.fg << ", " << c.bg;
        EXPECT_EQ(At(1, 0), c.clear) << c.fg << ", " << c.bg;
    }
    EXPECT_EQ(At(8, 0), 50);
}

TEST_F(Font, DrawingIsCutAtTheTargetAndReadsZeroBeyondTheSheet) {
    sheet.DrawGlyph(target.get(), 5, 15, 3, 2, 1);
    EXPECT_EQ(At(16, 8), 15);
    EXPECT_EQ(At(19, 11), 3);
    for (auto [x, y] : {std::pair{-1, 0}, {0, -1}, {3, 0}, {0, 2}, {INT_MAX, 0}, {0, INT_MIN}}) {
        clear_to_color(target.get(), 50);
        sheet.DrawGlyph(target.get(), 5, 15, 3, x, y);
        for (int pixel = 0; pixel < 240; ++pixel) ASSERT_EQ(At(pixel % 20, pixel / 20), 50);
    }
    for (int chr : {-1, 256, 32767, -32768}) {
        clear_to_color(target.get(), 50);
        sheet.DrawGlyph(target.get(), chr, 15, 3, 0, 0);
        EXPECT_EQ(At(7, 7), 3) << chr;
    }
    // The last column of glyphs is two pixels wide.
    clear_to_color(sheet.NewSheet(10, 8), 9);
    sheet.LayoutGlyphs();
    sheet.DrawGlyph(target.get(), 1, -2, -2, 0, 0);
    EXPECT_EQ(At(1, 7), 9);
    EXPECT_EQ(At(2, 7), 0);
}

TEST_F(Font, TextIsARowOfGlyphs) {
    sheet.DrawText(target.get(), "\x05\x05", 15, 3, 0, 0);
    EXPECT_EQ(At(0, 0), 15);
    EXPECT_EQ(At(8, 0), 15);
    sheet.DrawText(target.get(), "\xff", 15, 4, 0, 0);
    EXPECT_EQ(At(0, 0), 4) << "a byte above 127 counts as negative";
    sheet.DrawText(target.get(), nullptr, 1, 1, 0, 0);
}
