// The glyphs of the default sheet, read from their pictures in text.
#pragma once

#include "library-src/source_text.h"

#include <array>
#include <cstdint>

inline constexpr int kGlyphCount = 256;
inline constexpr int kGlyphSize = 8;
inline constexpr int kSheetColumns = 16;
inline constexpr int kSheetSize = kSheetColumns * kGlyphSize;

// The sheet's pixels, row after row from the top; kSheetColumns glyphs stand side by side.
using Sheet = std::array<uint8_t, kSheetSize * kSheetSize>;

struct Glyphs {
    Sheet sheet{};
    std::array<std::string, kGlyphCount> names;
};

uint8_t GlyphPixel(const Sheet& sheet, int glyph, int x, int y);

// Reads every .txt file of the folder. Each of the 256 numbers must be drawn exactly once, with 8
// rows of 8 pixels; the head of each file describes the format.
Glyphs ReadGlyphs(const std::filesystem::path& folder, Problems& problems);
