// The program's icon, read from its tiles in text.
#pragma once

#include "library-src/glyph_source.h"
#include "library-src/palette_source.h"

#include <array>

inline constexpr int kIconTiles = 4;                         ///< a side
inline constexpr int kIconPixels = kIconTiles * kGlyphSize;  ///< a side, at scale 1

struct IconTile {
    int glyph = 0;
    uint8_t color = 0;
    uint8_t background = 0;
};

using Icon = std::array<IconTile, kIconTiles * kIconTiles>;  ///< row by row from the top

// All tiles must be there; the head of the file describes the format.
Icon ReadIcon(const std::filesystem::path& file, Problems& problems);

// The bytes of a PNG file, `scale` of its pixels a side for each of the icon's.
std::string IconPicture(const Icon& icon, const Glyphs& glyphs, const Palette& palette, int scale);
