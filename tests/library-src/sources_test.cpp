// What the generator says about faults of its sources.

#include "library-src/glyph_source.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

namespace {

std::string Rows(int count) {
    std::string rows;
    for (int i = 0; i < count; ++i) rows += "..####..\n";
    return rows;
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
