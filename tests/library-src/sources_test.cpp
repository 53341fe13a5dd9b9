// What the generator makes of its sources, and what it says about their faults.

#include "library-src/glyph_source.h"
#include "library-src/palette_source.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

using testing::Contains;
using testing::ElementsAre;
using testing::EndsWith;

namespace {

std::string Rows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i) rows += "..####..\n";
    return rows;
}

// All glyphs but the last: 2295 lines.
std::string ManyGlyphs() {
    std::string text;
    for (int n = 0; n < 255; ++n) text += "glyph " + std::to_string(n) + " some\n" + Rows(8);
    return text;
}

}  // namespace

TEST(Sources, FaultsAreNamedWithTheirLine) {
    const std::string last = "glyph 255 last\n";
    const std::pair<std::string, std::string> glyphs[] = {
        {last + Rows(7), ":2296: glyph 255 has 7 rows, not 8"},
        {last + Rows(4) + "\n" + Rows(4), ":2296: glyph 255 has 4 rows, not 8"},
        {last + Rows(7) + "..####...\n", ":2304: a row of 9 pixels, not 8"},
        {last + Rows(7) + "..####r.\n", ":2304: pixel r has no value"},
        {"glyph 254 twice\n" + Rows(8), ":2296: glyph 254 has been drawn before"},
        {"glyph 256 out\n" + Rows(8), ":2296: glyph 256 is no number from 0 to 255"},
        {"glyph 255\n" + Rows(8), ":2296: a glyph has a number and a name"},
        {"pixel r 256\n", ":2296: pixel value 256 is no number from 1 to 255"},
        {"pixel . 3\n", ":2296: a pixel has a letter and a value"},
        {"\n" + Rows(1), ":2297: a row of pixels outside a glyph"},
        {"", ": glyphs missing: 255"},
    };
    const std::pair<std::string, std::string> colors[] = {
        {"color 255 end 0 0 256", ":2: part of a colour 256 is no number from 0 to 255"},
        {"color 256 end 0 0 0", ":2: colour 256 is no number from 0 to 255"},
        {"color 254 end 0 0 0", ":2: colour 254 has been given before"},
        {"color 255 0 0 0", ":2: a color has a number, a name and three parts"},
        {"ramp 250 9 long 0 0 0 9 9 9", ":2: count 9 is no number from 2 to 6"},
        {"ramp 250 2 odd 0 0 0 9 9",
         ":2: a ramp has a first number, a count, a name and two or more colours"},
        {"colour 255 end 0 0 0", ":2: colour is neither color nor ramp"},
        {"", ": colours missing: 255"},
    };
    const TempFolder folder;
    for (const auto& [text, expected] : glyphs) {
        PutFile(folder / "glyphs.txt", ManyGlyphs() + text);
        Problems problems;
        ReadGlyphs(folder.Path(), problems);
        EXPECT_THAT(problems.List(), Contains(EndsWith(expected))) << text;
    }
    for (const auto& [text, expected] : colors) {
        Problems problems;
        ReadPalette(PutFile(folder / "palette", "ramp 0 255 grey 0 0 0 255 255 255\n" + text),
                    problems);
        EXPECT_THAT(problems.List(), Contains(EndsWith(expected))) << text;
    }
}

TEST(Sources, AreReadInAnyOrder) {
    const TempFolder folder;
    Problems problems;
    PutFile(folder / "many.txt", ManyGlyphs());
    PutFile(folder / "one.txt",
            "; the last\r\npixel r 12\r\n\r\nglyph 255 last of all\r\nr......#\r\n" + Rows(7));
    Glyphs glyphs = ReadGlyphs(folder.Path(), problems);
    EXPECT_EQ(glyphs.names[255], "last of all");
    for (auto [x, value] : {std::pair{0, 12}, {7, 15}, {1, 0}})
        EXPECT_EQ(GlyphPixel(glyphs.sheet, 255, x, 0), value);
    const std::string ramps = "ramp 5 251 rest 0 0 0 8 8 8\nramp 0 5 run 0 0 255 255 0 0 255 255 0";
    Palette palette = ReadPalette(PutFile(folder / "palette", ramps), problems);
    EXPECT_THAT(problems.List(), ElementsAre());
    const int expected[5][3] = {{0, 0, 63}, {32, 0, 32}, {63, 0, 0}, {63, 32, 0}, {63, 63, 0}};
    for (std::size_t i = 0; i < 5; ++i) {
        const auto& color = palette.colors[i];
        EXPECT_THAT((std::array<int, 3>{color.red, color.green, color.blue}),
                    testing::ElementsAreArray(expected[i]));
    }
}
