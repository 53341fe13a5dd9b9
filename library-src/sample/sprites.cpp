#include "library-src/sample/sprites.h"

#include "engine/dinterface.h"
#include "library-src/pixel_art.h"

namespace {

constexpr int kSide = 16;
constexpr int kGlyphSide = 8;
constexpr int kSheetColumns = 16;

void PutSpritePixel(int glyph, int x, int y, int value) {
    const int part = glyph + y / kGlyphSide * kSheetColumns + x / kGlyphSide;
    vWorld->GetFont()->PutGlyphPixel(part, x % kGlyphSide, y % kGlyphSide, value);
}

}  // namespace

void DrawSprites(const std::filesystem::path& file, Problems& problems) {
    ReadPixelArt(
        file, "sprite", kSide, [](int, const std::string&, int) {}, PutSpritePixel, problems);
}
