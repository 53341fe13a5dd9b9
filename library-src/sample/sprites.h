// The coloured glyphs of the sample game.
#pragma once

#include "library-src/source_text.h"

/// The left top glyph of each sprite of 2 by 2 glyphs.
enum SpriteGlyph {
    kKeeper = 128,
    kFisher = 130,
    kCat = 132,
    kGull = 134,
    kBarrel = 136,
    kLantern = 138,
    kChest = 140,
    kMushroom = 142,
};

/// Draws the pictures of the file, whose head describes the format, into the font as the font
/// editor does.
void DrawSprites(const std::filesystem::path& file, Problems& problems);
