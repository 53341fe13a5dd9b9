// Pictures of the glyph sheet and of the palette, for people who change them.
#pragma once

#include "library-src/glyph_source.h"
#include "library-src/palette_source.h"

// Each is the bytes of a PNG file.
std::string SheetPicture(const Glyphs& glyphs, const Palette& palette);
std::string PalettePicture(const Glyphs& glyphs, const Palette& palette);
