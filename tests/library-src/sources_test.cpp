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
    const std::string last = "glyph 255 last\n", eight = Rows(8);
    const std::pair<std::string, std::string> rows[] = {
        {last + Rows(7), ":2296: glyph 255 has 7 rows, not 8"},
        {last + Rows(7) + "..####r.\n", ":2304: pixel r has no value"},
        {"glyph 254 twice\n" + eight, ":2296: glyph 254 has been drawn before"},
        {"\n" + Rows(1), ":2297: a row of pixels outside a glyph"},
        {"", ": glyphs missing: 255"},
        {"color 255 end 0 0 256", ":2: part of a colour 256 is no number from 0 to 255"},
        {"colour 255 end 0 0 0", ":2: colour is neither color nor ramp"},
        {"", ": colours missing: 255"},
    };
    const TempFolder folder;
    for (const auto& [text, expected] : rows) {
        Problems problems;
        PutFile(folder / "glyphs.txt", ManyGlyphs() + text);
        PutFile(folder / "palette", "ramp 0 255 grey 0 0 0 255 255 255\n" + text);
        const bool color = expected.find("colo") != expected.npos || text.starts_with("ramp");
        if (color)
            ReadPalette(folder / "palette", problems);
        else
            ReadGlyphs(folder.Path(), problems);
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
    EXPECT_THAT(problems.List(), ElementsAre());
}
