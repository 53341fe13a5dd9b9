// The 64 pixels of a glyph as a value, and what the font editor does with them.
#pragma once

#include <array>

/// Row by row from the top: the pixel at column c, row r has the index 8 * r + c.
using GlyphPixels = std::array<int, 64>;

/// Of the live font; a glyph that does not exist reads as zeros and takes nothing.
GlyphPixels ReadGlyph(int chr);
void WriteGlyph(int chr, const GlyphPixels& pixels);

/// Top and bottom change places.
GlyphPixels FlippedVertically(const GlyphPixels& pixels);
/// Left and right change places.
GlyphPixels FlippedHorizontally(const GlyphPixels& pixels);
/// What is clear becomes set, in the colour of plain glyphs, and all else clear.
GlyphPixels Inverted(const GlyphPixels& pixels);

/// The value of a set pixel of a plain glyph.
inline constexpr int kPlainPixel = 15;
