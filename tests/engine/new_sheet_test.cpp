// A sheet that is new and not laid out.

#include "tests/support/test_world.h"

TEST_F(WorldTest, ANewSheetHasNoGlyphsUntilItIsLaidOut) {
    Dfont& sheet = *world->GetFont();
    clear_to_color(sheet.NewSheet(16, 8), 7);
    EXPECT_EQ(sheet.GlyphCount(), 0);
    EXPECT_EQ(sheet.FindGlyphAt(0, 0), -1);
    EXPECT_EQ(sheet.GetGlyphPixel(1, 0, 0), 0);
    sheet.LayoutGlyphs();
    EXPECT_EQ(sheet.GetGlyphPixel(1, 0, 0), 7);
}
