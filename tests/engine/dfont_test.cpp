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

std::string Little(std::size_t value, int size) {
    std::string bytes;
    for (; size > 0; --size, value >>= 8) bytes += static_cast<char>(value);
    return bytes;
}

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
    for (const auto& [bytes, why] :
         {std::pair{good.substr(0, good.size() - 1), "it ends before its last pixel"},
          {good.substr(0, 10) + "5" + std::string(3, '\0') + good.substr(14),
           "its pixels begin at an unlikely place"}}) {
        sheet.ImportBitmap(PutFile(folder / "s.bmp", bytes));
        EXPECT_EQ(reports.Texts(),
                  "Unable to import font\n" + folder / "s.bmp" + ": " + why + "\n");
        EXPECT_EQ(sheet.GlyphCount(), 256) << "the default font instead";
        reports.Clear();
    }
}

TEST_F(Font, EveryFormOfPictureIsReadOrRefusedWithItsReason) {
    using namespace std::literals;
    const auto fields = [](std::uint32_t red, std::uint32_t green, std::uint32_t blue) {
        return Little(red, 4) + Little(green, 4) + Little(blue, 4);
    };
    const std::string rows = "\4\5\6\0\1\2\3\0"s, pairs = "\x45\x60\0\0\x12\x30\0\0"s;
    const std::string few = "\0\x7c\xe0\3\x1f\0\0\0\xff\x7f\0\0\x1f\0\0\0"s;
    const std::string many = "\0\xf8\xe0\7\x1f\0\0\0\xff\xff\0\0\x1f\0\0\0"s;
    const std::string whole = "\xff\xff\xff.\0\0\0.\xff\0\0.\0\0\xff.\0\xff\0.\xff\0\0."s;
    const std::string packed = "its packed pixels lead out of it",
                      cut = "it ends before its last pixel";
    const std::string packing = "its packing does not fit its bits a pixel";
    // The bits a pixel, the packing, the header, what lies between it and the pixels, the pixels.
    const struct {
        int depth, packing, header;
        std::string between, pixels, expected;
        int h = 2, w = 3;
    } cases[] = {
        {8, 0, 40, std::string(1024, 'p'), rows, "123456"},
        {8, 0, 12, std::string(21, 'p'), rows, "123456"},
        {8, 0, 40, std::string(5000, 'p'), rows, "123456"},
        {4, 0, 12, std::string(48, 'p'), pairs, "123456"},
        {1, 0, 40, "pppppppp", "\xa0\0\0\0\x40\0\0\0"s, "010101"},
        {16, 0, 40, "", few, "W?BRGB"},
        {16, 3, 40, fields(0x7c00, 0x3e0, 0x1f), few, "W?BRGB"},
        {16, 3, 40, fields(0xf800, 0x7e0, 0x1f), many, "W?BRGB"},
        {24, 0, 12, "", "\0\0\xff\0\xff\0\xff\0\0...\xff\xff\xff\0\0\0\xff\0\0..."s, "W?BRGB"},
        {32, 0, 40, "gap", whole, "RGBW?B"},
        {32, 3, 40, fields(0xff0000, 0xff00, 0xff), whole, "RGBW?B"},
        {8, 1, 40, "", "\0\3\4\5\6.\0\0\2\1\1\2\0\1"s, "112456"},
        {8, 1, 40, "gap", "\1\7\0\2\1\1\1\5\0\1"s, "005700"},
        {4, 2, 40, "", "\0\3\x45\x60\0\0\3\x12"s + "\0\0"s, "121456"},
        {4, 2, 40, "", "\0\5\x45\x67\x80\0\0\1"s, "45678", 1, 5},
        {8, 0, 40, "", rows, "its rows run from the top down", -2},
        {8, 0, 40, "", rows, "a picture of 3 by 0 pixels cannot be taken", 0},
        {8, 0, 40, "", rows.substr(1), cut},
        {8, 0, 108, "", rows, "its form of BMP is not known"},
        {2, 0, 40, "", rows, "its number of bits a pixel is not known"},
        {8, 4, 40, "", rows, "its packing is not known"},
        {16, 3, 40, fields(0xf00, 0xf0, 0xf), few, "its bit fields are not known"},
        {32, 3, 40, fields(0xf800, 0x7e0, 0x1f), whole, "its bit fields are not known"},
        {16, 3, 40, fields(0x7c00, 0x3e0, 0x1f) + "gap", few,
         "its pixels do not follow its bit fields"},
        {24, 1, 40, "", "\0\1"s, packing},
        {8, 2, 40, "", "\0\1"s, packing},
        {8, 1, 40, "", "\4\1\0\1"s, packed},
        {8, 1, 40, "", "\0\4\1\1\1\1\0\1"s, packed},
        {8, 1, 40, "", "\0\2\0\2\1\1\0\1"s, packed},
        {8, 1, 40, "", "\0\2\3\xff\0\2\0\xff\0\1"s, packed},
        {4, 2, 40, "", "\3\x11\0\2\0\1\1\1\0\1"s, packed},
        {8, 1, 40, "", "\3\1\0\0\3\1"s, cut},
        {8, 1, 40, "", "\0\3\1\1\1"s, cut},
        {8, 1, 40, "", "\0\2\1"s, cut},
    };
    const std::string colors = {char(makecol8(255, 0, 0)), char(makecol8(0, 255, 0)),
                                char(makecol8(0, 0, 255)), char(makecol8(255, 255, 255))};
    for (const auto& c : cases) {
        const std::size_t start = 14 + static_cast<std::size_t>(c.header) + c.between.size();
        std::string bytes = "BM" + Little(0, 8) + Little(start, 4) + Little(c.header, 4);
        const int side = c.header == 12 ? 2 : 4;
        bytes += Little(c.w, side) + Little(c.h, side) + Little(1, 2) + Little(c.depth, 2);
        if (c.header > 12) bytes += Little(c.packing, 4) + std::string(c.header - 20, '\0');
        std::string shown;
        const Bitmap picture = ReadBmp(bytes + c.between + c.pixels, shown);
        for (int i = 0; picture && i < picture->w * picture->h; ++i) {
            const int pixel = getpixel(picture.get(), i % picture->w, i / picture->w);
            const auto color = colors.find(static_cast<char>(pixel));
            shown += c.depth <= 8 ? static_cast<char>('0' + pixel) : "RGBW?"[std::min(color, 4ul)];
        }
        EXPECT_EQ(shown, c.expected) << c.depth << ", " << c.packing << ", " << c.header;
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
