// The files of the Library folder as they were built: the sheet, the palette and the new game.

#include "engine/bitmap.h"
#include "library-src/glyph_source.h"
#include "library-src/palette_source.h"
#include "tests/support/plain_zip.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <set>

namespace {

constexpr int kFullBlock = 219;

// The built datafile, and the sources that it was built from.
class Library : public testing::Test {
protected:
    static void SetUpTestSuite() {
        StartAllegro();
        objects = load_datafile("Library/default.dat");
        Problems problems;
        ramps = ReadPalette(LIBRARY_SOURCES "/palette.txt", problems).ramps;
    }
    static void TearDownTestSuite() {
        unload_datafile(objects);
        objects = nullptr;
    }
    void SetUp() override { ASSERT_NE(objects, nullptr); }

    static BITMAP* Sheet() { return static_cast<BITMAP*>(objects[0].dat); }
    static const RGB& Color(int c) { return static_cast<const RGB*>(objects[1].dat)[c]; }

    static bool Set(int glyph, int x, int y) {
        return getpixel(Sheet(), glyph % 16 * 8 + x, glyph / 16 * 8 + y) != 0;
    }
    // The glyph as 64 characters, row after row.
    static std::string Look(int glyph) {
        std::string look;
        for (int i = 0; i < 64; ++i) look += Set(glyph, i % 8, i / 8) ? '#' : '.';
        return look;
    }
    // How far apart two colours look: black and white are 765 apart.
    static double Distance(int a, int b) {
        auto part = [](int weight, int x, int y) {
            double d = (x - y) * 255.0 / 63.0;
            return weight * d * d;
        };
        return std::sqrt(part(2, Color(a).r, Color(b).r) + part(4, Color(a).g, Color(b).g) +
                         part(3, Color(a).b, Color(b).b));
    }
    static int Luminance(int c) { return 2 * Color(c).r + 4 * Color(c).g + Color(c).b; }

    inline static DATAFILE* objects = nullptr;
    inline static std::vector<Ramp> ramps;
};

TEST_F(Library, SheetIsAsDrawn) {
    Problems problems;
    Glyphs drawn = ReadGlyphs(LIBRARY_SOURCES "/glyphs", problems);
    ASSERT_TRUE(problems.Empty());
    for (int n = 0; n < 256; ++n)
        for (int i = 0; i < 64; ++i)
            ASSERT_EQ(getpixel(Sheet(), n % 16 * 8 + i % 8, n / 16 * 8 + i / 8),
                      GlyphPixel(drawn.sheet, n, i % 8, i / 8))
                << n;
}

TEST_F(Library, GlyphsAreTheirOwnAndShadesAreEven) {
    std::set<std::string> seen;
    for (int n = 0; n < 256; ++n) {
        const bool blank = n == 0 || n == ' ' || n == 255;
        EXPECT_EQ(Look(n) == std::string(64, '.'), blank) << n;
        EXPECT_TRUE(blank || seen.insert(Look(n)).second) << n << " looks like another";
    }
    // Of eight pixels side by side, also over the edges to the same tile again.
    for (int i = 0; i < 3 * 64; ++i) {
        const int shade = i / 64 + 1;
        int count = 0;
        for (int k = 0; k < 8; ++k) count += Set(175 + shade, (i + k % 4) % 8, (i / 8 + k / 4) % 8);
        EXPECT_EQ(count, 2 * shade) << "at " << i;
    }
    EXPECT_EQ(Look(kFullBlock), std::string(64, '#'));
    EXPECT_EQ(Look(kFullBlock + 1), std::string(32, '.') + std::string(32, '#'));
}

// The lines of 179 to 218 towards up, right, down and left: 0 none, 1 single, 2 double.
const char* const kBoxLines[] = {"1010", "1011", "1012", "2021", "0021", "0012", "2022", "2020",
                                 "0022", "2002", "2001", "1002", "0011", "1100", "1101", "0111",
                                 "1110", "0101", "1111", "1210", "2120", "2200", "0220", "2202",
                                 "0222", "2220", "0202", "2222", "1202", "2101", "0212", "0121",
                                 "2100", "1200", "0210", "0120", "2121", "1212", "1001", "0110"};

TEST_F(Library, BoxLinesMeetAtTheEdgesOfTheCell) {
    const std::string edges[] = {"........", "...##...", ".##..##."};
    int n = 179;
    for (const std::string lines : kBoxLines) {
        for (std::size_t side = 0; side < 4; ++side) {
            std::string edge;
            for (int i = 0; i < 8; ++i)
                edge += (side % 2 ? Set(n, side == 1 ? 7 : 0, i) : Set(n, i, side == 2 ? 7 : 0))
                            ? '#'
                            : '.';
            EXPECT_EQ(edge, edges[lines[side] - '0']) << n << ", side " << side;
        }
        ++n;
    }
    EXPECT_EQ(n, kFullBlock);
}

TEST_F(Library, ColoursAreInTheirOrder) {
    for (int c = 1; c < 16; ++c) {
        // Bits 0 to 2 are blue, green and red; a part that is on outshines one that is off.
        const int parts[] = {Color(c).b, Color(c).g, Color(c).r};
        for (int pair = 0; pair < 9; ++pair) {
            const bool outshines = (c >> pair % 3 & 1) && !(c >> pair / 3 & 1);
            EXPECT_TRUE(!outshines || parts[pair % 3] > parts[pair / 3]) << c;
        }
        EXPECT_TRUE(c <= 8 || Luminance(c) > Luminance(c - 8)) << c;
    }
    EXPECT_EQ(Luminance(0) + Luminance(255), 0) << "both show as black";
    EXPECT_EQ(Luminance(15), 7 * 63);
    int next = 16;
    for (const Ramp& ramp : ramps) {
        EXPECT_EQ(ramp.first, next) << ramp.name;
        next = ramp.first + ramp.count;
        for (int c = ramp.first; c < next - 1; ++c) {
            EXPECT_GT(Luminance(c + 1), Luminance(c)) << ramp.name << ", " << c;
            EXPECT_LT(Distance(c, c + 1), ramp.count < 16 ? 90 : 60) << ramp.name << ", " << c;
        }
    }
    EXPECT_EQ(next, 255);
    // Marks are seen on every colour, also where two of them lie over each other.
    for (int i = 0; i < 3 * 256; ++i) {
        constexpr int kMarks[] = {15, 32, 15 ^ 32};
        EXPECT_GE(Distance(i % 256, i % 256 ^ kMarks[i / 256]), 100) << i;
    }
}

TEST(NewGame, WorldIsOneBoardWithABorder) {
    // Runs of one tile go from row to row: a row and the first tile of the next, then the 58 rows
    // between, each with the end of its row and the start of the next.
    std::string tiles = "-81 176 16 32 1";
    for (int row = 1; row < 59; ++row)
        tiles += " -78 0 255 255 0 " + std::string(row < 58 ? "-2" : "-81") + " 176 16 32 1";
    const std::vector<PlainEntry> entries = ReadZip(FileBytes("Library/default.zqlt"));
    ASSERT_EQ(entries.size(), 4u);
    EXPECT_EQ(entries[2].bytes,
              "~endvars\r\n~endimports\r\n~ob Board1 0\r\n0 0 80 60\r\n0 0 80 60\r\n" + tiles +
                  "\r\n~pb\r\n~pe\r\n~oe\r\n");
    EXPECT_EQ(entries[3].bytes, "1 1");
}

}  // namespace
