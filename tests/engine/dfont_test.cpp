// The glyph sheet and the drawing of glyphs, beside a reading of both pixel by pixel.

#include "engine/picture_file.h"
#include "tests/support/test_world.h"

using namespace std::literals;

namespace {

struct Font : WorldTest {
    void Scribble(BITMAP* bitmap) {
        for (int i = 0; i < bitmap->w * bitmap->h; ++i)
            putpixel(bitmap, i % bitmap->w, i / bitmap->w, Roll(0, 3) ? Roll(0, 255) : 0);
    }

    Dfont& sheet = *world->GetFont();
};

std::string Little(std::size_t value, int size) {
    std::string bytes;
    for (; size > 0; --size, value >>= 8) bytes += static_cast<char>(value);
    return bytes;
}

}  // namespace

TEST_F(Font, IsWhatAPlainReadingSays) {
    EXPECT_TRUE(sheet.NewSheet(1, 8 * kMaxGlyphs) && !sheet.NewSheet(1024, 2048));
    for (int round = 0; round < 2000 && !HasFailure(); ++round) {
        BITMAP* pixels = sheet.NewSheet(Roll(1, 40), round % 30 + 1);
        ASSERT_EQ(pixels->h, round % 30 + 1);
        Scribble(pixels);
        ASSERT_EQ(sheet.GlyphCount() + sheet.FindGlyphAt(0, 0), -1) << "not laid out";
        sheet.LayoutGlyphs();
        // The glyphs lie in rows; a column or row of a single pixel is none but the first.
        const int columns = std::max((pixels->w + 6) / 8, 1);
        const int count = pixels->h < 2 ? 0 : columns * ((pixels->h + 6) / 8);
        ASSERT_EQ(sheet.GlyphCount(), count);
        ASSERT_EQ(CountGlyphs(pixels->w, pixels->h), count);
        const int chr = Roll(0, 9) ? Roll(-1, count) : Roll(-40'000, 40'000);
        const bool exists = chr >= 0 && chr < count;
        const int column = chr % columns, left = column * 8, top = chr / columns * 8;
        const int next[] = {chr - columns, column + 1 < columns ? chr + 1 : -1,
                            chr + columns < count ? chr + columns : -1, column > 0 ? chr - 1 : -1};
        for (int way = 0; way < 4; ++way)
            ASSERT_EQ(sheet.NeighbourGlyph(chr, way), exists ? std::max(next[way], -1) : -1) << way;
        ASSERT_EQ(sheet.NeighbourGlyph(chr, 4), chr);
        ASSERT_TRUE(!exists || sheet.FindGlyphAt(left, top) == chr);
        ASSERT_EQ(sheet.FindGlyphAt(left, top + 1), -1);
        const auto plain = [&](bool there, int px, int py) {
            return there && exists ? std::max(getpixel(pixels, left + px, top + py), 0) : 0;
        };
        const int x = Roll(0, 7), y = Roll(0, 7);
        sheet.PutGlyphPixel(chr, x, y, 42);
        ASSERT_EQ(sheet.GetGlyphPixel(chr, x, y), plain(true, x, y));
        ASSERT_TRUE(!exists || left + x >= pixels->w || top + y >= pixels->h ||
                    plain(true, x, y) == 42);

        const Bitmap target = MakeBitmap(Roll(1, 30), Roll(1, 30));
        Scribble(target.get());
        const std::string before = Pixels(target.get());
        constexpr int kColors[] = {-5, -2, -1, 0, 7, 15, 255, 256, 300};
        constexpr int kCells[] = {0, 1, 2, 0, 1, 2, INT_MIN, -1, INT_MAX};
        const int fg = kColors[Roll(0, 8)], bg = kColors[Roll(0, 8)];
        const int cx = kCells[Roll(0, 8)], cy = kCells[Roll(0, 8)];
        // A text is a row of glyphs, of which a byte above 127 is none.
        const bool text = chr > 0 && chr < 256 && Roll(0, 1);
        if (text)
            sheet.DrawText(target.get(), std::string(2, char(chr)).c_str(), fg, bg, cx, cy);
        else
            sheet.DrawGlyph(target.get(), chr, fg, bg, cx, cy);
        for (int i = 0; i < target->w * target->h; ++i) {
            const int px = i % target->w, py = i / target->w;
            const int under = static_cast<unsigned char>(before[static_cast<std::size_t>(i)]);
            const int glyph = plain(!text || chr < 128, px % 8, py % 8);
            const int color = glyph ? fg : bg;
            const bool drawn = py / 8 == cy && (px / 8 == cx || (text && px / 8 - 1 == cx));
            const int pixel = fg == -2 || bg == -2 ? glyph : color < 0 ? under : color & 255;
            ASSERT_EQ(getpixel(target.get(), px, py), drawn ? pixel : under)
                << px << ", " << py << ": " << chr << " in " << fg << " on " << bg;
        }
    }
}

TEST_F(Font, EveryFormOfPictureIsReadOrRefusedWithItsReason) {
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
        std::size_t gap = 0;
    } cases[] = {
        {8, 0, 40, std::string(1024, 'p'), rows, "123456"},
        {8, 0, 12, std::string(5000, 'p'), rows, "123456"},
        {4, 0, 12, std::string(48, 'p'), pairs, "123456"},
        {1, 0, 40, "pppppppp", "\xa0\0\0\0\x40\0\0\0"s, "010101"},
        {16, 0, 40, "", few, "W?BRGB"},
        {16, 3, 40, fields(0x7c00, 0x3e0, 0x1f), few, "W?BRGB"},
        {16, 3, 40, fields(0xf800, 0x7e0, 0x1f), many, "W?BRGB"},
        {24, 0, 12, "", "\0\0\xff\0\xff\0\xff\0\0...\xff\xff\xff\0\0\0\xff\0\0..."s, "W?BRGB"},
        {32, 0, 40, "gap", whole, "RGBW?B"},
        {32, 3, 40, fields(0xff0000, 0xff00, 0xff), whole, "RGBW?B"},
        {8, 1, 40, "", "\0\3\4\5\6.\0\0\2\1\1\2\0\1"s, "112456"},
        {4, 2, 40, "", "\0\3\x45\x60\0\0\3\x12"s + "\0\0"s, "121456"},
        {8, 0, 40, "", rows, "its rows run from the top down", -2},
        {8, 0, 40, "", rows, "a picture of 3 by 0 pixels cannot be taken", 0},
        {8, 0, 40, "", rows, "its pixels begin at an unlikely place", 2, 3, 9},
        {8, 0, 40, "", rows.substr(1), cut},
        {16, 3, 40, fields(0xf00, 0xf0, 0xf), few, "its bit fields are not known"},
        {16, 3, 40, fields(0x7c00, 0x3e0, 0x1f) + "gap", few,
         "its pixels do not follow its bit fields"},
        {24, 1, 40, "", "\0\1"s, packing},
        {8, 1, 40, "", "\4\1\0\1"s, packed},
        {8, 1, 40, "", "\0\4\1\1\1\1\0\1"s, packed},
        {8, 1, 40, "", "\0\2\3\xff\0\2\0\xff\0\1"s, packed},
        {4, 2, 40, "", "\3\x11\0\2\0\1\1\1\0\1"s, packed},
        {8, 1, 40, "", "\3\1\0\0\3\1"s, cut},
        {8, 1, 40, "", "\0\3\1\1\1"s, cut},
    };
    const std::string colors = {char(makecol8(255, 0, 0)), char(makecol8(0, 255, 0)),
                                char(makecol8(0, 0, 255)), char(makecol8(255, 255, 255))};
    for (const auto& c : cases) {
        const std::size_t head = 14 + static_cast<std::size_t>(c.header);
        std::string bytes = "BM" + Little(0, 8) + Little(head + c.between.size() + c.gap, 4);
        bytes += Little(head - 14, 4);
        const int side = c.header == 12 ? 2 : 4;
        bytes += Little(c.w, side) + Little(c.h, side) + Little(1, 2) + Little(c.depth, 2);
        bytes += Little(c.packing, 4);
        bytes.resize(head);
        std::string shown;
        const Bitmap picture = ReadBmp(bytes + c.between + c.pixels, shown);
        for (const char pixel : Pixels(picture.get())) {
            const auto color = colors.find(pixel);
            shown += c.depth <= 8 ? static_cast<char>('0' + pixel) : "RGBW?"[std::min(color, 4ul)];
        }
        EXPECT_EQ(shown, c.expected) << c.depth << ", " << c.packing << ", " << c.header;
    }
}
