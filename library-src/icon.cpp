#include "library-src/icon.h"

#include "library-src/png.h"

namespace {

constexpr size_t kWords = 4;

}  // namespace

Icon ReadIcon(const std::filesystem::path& file, Problems& problems) {
    Icon icon;
    size_t count = 0;
    int line = 0;
    for (const std::string& text : ReadLines(file, problems)) {
        ++line;
        if (IsComment(text)) continue;
        const std::vector<std::string> words = SplitWords(text);
        if (words[0] != "tile" || words.size() != kWords) {
            problems.Add(file, line, "a tile has a glyph, a color and a background");
        } else if (count == icon.size()) {
            problems.Add(file, line, "there are too many tiles");
        } else {
            const auto number = [&](size_t at, int end, const char* what) {
                return ReadNumber(words[at], 0, end - 1, what, file, line, problems);
            };
            icon[count++] = {number(1, kGlyphCount, "glyph"),
                             static_cast<uint8_t>(number(2, kColorCount, "color")),
                             static_cast<uint8_t>(number(3, kColorCount, "background"))};
        }
    }
    if (count < icon.size()) problems.Add(file, 0, "there are too few tiles");
    return icon;
}

std::string IconPicture(const Icon& icon, const Glyphs& glyphs, const Palette& palette, int scale) {
    Picture picture(kIconPixels * scale, kIconPixels * scale, 0);
    for (int y = 0; y < kIconPixels; ++y) {
        for (int x = 0; x < kIconPixels; ++x) {
            const int place = y / kGlyphSize * kIconTiles + x / kGlyphSize;
            const IconTile& tile = icon[static_cast<size_t>(place)];
            const bool set =
                GlyphPixel(glyphs.sheet, tile.glyph, x % kGlyphSize, y % kGlyphSize) != 0;
            picture.Fill(x * scale, y * scale, scale, scale, set ? tile.color : tile.background);
        }
    }
    return MakePng(picture, palette);
}
