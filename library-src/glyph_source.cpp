#include "library-src/glyph_source.h"

#include "library-src/pixel_art.h"

#include <algorithm>

namespace {

size_t PixelIndex(int glyph, int x, int y) {
    int left = glyph % kSheetColumns * kGlyphSize;
    int top = glyph / kSheetColumns * kGlyphSize;
    return static_cast<size_t>((top + y) * kSheetSize + left + x);
}

}  // namespace

uint8_t GlyphPixel(const Sheet& sheet, int glyph, int x, int y) {
    return sheet[PixelIndex(glyph, x, y)];
}

Glyphs ReadGlyphs(const std::filesystem::path& folder, Problems& problems) {
    Glyphs glyphs;
    std::vector<bool> taken(kGlyphCount);
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (const auto& entry : std::filesystem::directory_iterator(folder, error)) {
        if (entry.path().extension() == ".txt") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    for (const auto& file : files) {
        ReadPixelArt(
            file, "glyph", kGlyphSize,
            [&](int number, const std::string& name, int line) {
                const auto at = static_cast<size_t>(number);
                if (taken[at])
                    problems.Add(file, line,
                                 "glyph " + std::to_string(number) + " has been drawn before");
                taken[at] = true;
                glyphs.names[at] = name;
            },
            [&](int number, int x, int y, int value) {
                glyphs.sheet[PixelIndex(number, x, y)] = static_cast<uint8_t>(value);
            },
            problems);
    }
    AddMissing(taken, "glyphs", folder, problems);
    return glyphs;
}
