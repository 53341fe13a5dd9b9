// The tile font: a sheet of 8 by 8 pixel glyphs that tiles select by number, and the palette.
//
// A glyph is a picture, edited by the user and saved with the game. Coloured drawing asks only
// whether a sheet pixel is zero; sprite drawing copies the pixels with their own values.
#pragma once

#include "engine/bitmap.h"

#include <cstdint>
#include <string>
#include <vector>

class Dobject;

/// Largest number of glyphs: a tile's glyph number goes through 16 bits with a sign.
inline constexpr int kMaxGlyphs = 32767;

/// A sheet that a tile font can have: at least a pixel, at most kMaxGlyphs cells, those that
/// are cut by an edge included.
bool IsSheetSize(std::int64_t w, std::int64_t h);
/// How many glyphs such a sheet holds: a cell of a single pixel column or row is none.
int CountGlyphs(int w, int h);

class Dfont {
public:
    Dfont() = default;
    Dfont(const Dfont&) = delete;
    Dfont& operator=(const Dfont&) = delete;

    /// Loads sheet and palette from "Library/default.dat" and makes the palette Allegro's
    /// current one. Without it the program cannot go on: Fatal, then exit with status 1.
    void LoadDefault();

    /// Replaces the sheet by one of w by h pixels, not cleared and not laid out: it has no glyphs
    /// yet. Null, with the old sheet in place, when a font cannot have such a sheet or there is
    /// no memory.
    BITMAP* NewSheet(int w, int h);
    /// Takes over a sheet read elsewhere, not null, and lays it out.
    void TakeSheet(Bitmap sheet);
    /// Finds the place of every glyph from the sheet's size, row by row.
    void LayoutGlyphs();

    /// The sheet; null only before the first load. Its pixels may be written, followed by
    /// RedrawAll of Dinterface.
    BITMAP* Sheet() const { return vSheet.get(); }
    int GlyphCount() const { return glyphCount; }
    /// 256 entries, components 0 to 63.
    const RGB* GetPalette() const { return palette; }

    /// One glyph into an 8-bit bitmap at a cell, cut at its right and bottom edge; nothing at a
    /// cell outside it. Colours are signed: -1 leaves the pixels of its half as they are, -2 in
    /// either copies the sheet's pixels, others are stored by their low 8 bits. A glyph that
    /// does not exist, and the part of one beyond the sheet, reads as pixels of value 0.
    void DrawGlyph(BITMAP* target, int chr, int fg, int bg, int cellX, int cellY) const;
    /// The same into a node's surface, at a cell of its grid.
    void DrawTile(Dobject& node, int chr, int fg, int bg, int x, int y) const;
    /// A row of glyphs, one for each byte, without wrapping. Null draws nothing.
    void DrawText(BITMAP* target, const char* text, int fg, int bg, int cellX, int cellY) const;

    /// The glyph with its top left corner on that sheet pixel, or -1.
    int FindGlyphAt(int x, int y) const;
    /// The glyph beside `chr` on the sheet, or -1. Directions count clockwise from 0, up; one
    /// outside 0 to 3 gives `chr`.
    int NeighbourGlyph(int chr, int direction) const;

    /// A pixel of a glyph, x and y 0 to 7; 0 and no effect beyond the sheet.
    int GetGlyphPixel(int chr, int x, int y) const;
    void PutGlyphPixel(int chr, int x, int y, int value);

    /// A row of glyphs more or less at the sheet's bottom. A sheet that would hold too many
    /// glyphs, or none, stays as it is.
    void AddRow();
    void RemoveRow();

    /// A BMP file becomes the sheet at its own size. On failure Fatal, and the default font.
    void ImportBitmap(const std::string& path);

private:
    struct Corner {
        int x;
        int y;
    };

    void ResizeSheet(int h);
    /// A row of a glyph as 8 bytes, the left pixel in the lowest-addressed one.
    std::uint64_t GlyphRow(Corner corner, int row) const;
    bool CornerOf(int chr, Corner& corner) const;
    void DrawOpaque(BITMAP* target, Corner corner, int fg, int bg, int x, int y) const;
    void DrawAt(BITMAP* target, int chr, int fg, int bg, int x, int y) const;

    Bitmap vSheet;
    PALETTE palette = {};
    std::vector<Corner> corners;  ///< left top pixel of each glyph laid out
    int glyphCount = 0;
};
