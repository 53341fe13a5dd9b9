// The Allegro datafile that holds the default glyph sheet and the palette.
#pragma once

#include "library-src/glyph_source.h"
#include "library-src/palette_source.h"

// The bytes of an uncompressed datafile: object 0 is the sheet as an 8-bit bitmap, object 1 the
// palette. The objects are named SHEET and PALETTE.
std::string MakeDatafile(const Sheet& sheet, const Palette& palette);
