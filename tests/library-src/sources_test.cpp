// What the generator says about faults of its sources.

#include "library-src/glyph_source.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

TEST(Sources, FaultsAreNamedWithTheirLine) {
    const std::string last = "glyph 255 last\n", row = "..####..\n";
    const std::string seven = row + row + row + row + row + row + row, eight = seven + row;
    const std::pair<std::string, std::string> rows[] = {
        {last + seven, ":2296: glyph 255 has 7 rows, not 8"},
        {last + seven + "..####r.\n", ":2304: pixel r has no value"},
        {"glyph 254 twice\n" + eight, ":2296: glyph 254 has been drawn before"},
        {"\n" + row, ":2297: a row of pixels outside a glyph"},
        {"", ": glyphs missing: 255"},
    };
    const TempFolder folder;
    std::string many;  // all glyphs but the last: 2295 lines
    for (int n = 0; n < 255; ++n) many += "glyph " + std::to_string(n) + " some\n" + eight;
    for (const auto& [text, expected] : rows) {
        Problems problems;
        PutFile(folder / "glyphs.txt", many + text);
        ReadGlyphs(folder.Path(), problems);
        EXPECT_THAT(problems.List(), testing::Contains(testing::EndsWith(expected))) << text;
    }
}
