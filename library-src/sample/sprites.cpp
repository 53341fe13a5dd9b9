#include "library-src/sample/sprites.h"

#include "engine/dinterface.h"

#include <map>

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
    std::map<char, int> values{{'.', 0}};
    int sprite = 0, row = kSide, line = 0;
    for (const std::string& text : ReadLines(file, problems)) {
        ++line;
        const std::vector<std::string> words = SplitWords(text);
        if (IsComment(text)) continue;
        if (words[0] == "pixel" && words.size() == 3) {
            values[words[1][0]] = ReadNumber(words[2], 1, 255, "pixel value", file, line, problems);
        } else if (words[0] == "sprite" && words.size() == 3) {
            if (row != kSide) problems.Add(file, line, "the sprite before has too few rows");
            sprite = ReadNumber(words[1], 1, 255, "glyph", file, line, problems);
            row = 0;
        } else if (text.size() != kSide || row == kSide) {
            problems.Add(file, line, "not a row of a sprite, which has 16 of 16 pixels");
        } else {
            for (int x = 0; x < kSide; ++x) {
                const auto value = values.find(text[static_cast<std::size_t>(x)]);
                if (value == values.end())
                    problems.Add(file, line, "a pixel without a value");
                else
                    PutSpritePixel(sprite, x, row, value->second);
            }
            ++row;
        }
    }
}
