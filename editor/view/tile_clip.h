// The tile clipboard, and the actions on a selection that read and write it.
//
// It belongs to the run and not to a world: tiles pass from node to node and from game to game.
#pragma once

#include "editor/view/brush.h"
#include "editor/view/selection.h"

#include <cstdint>
#include <vector>

/// vTileClipW by vTileClipH cells, row by row. A field of 65535, read as -1, holds no value and
/// leaves the tile's field as it is when pasted.
extern std::vector<Dtile> vTileClip;
extern std::int32_t vTileClipW, vTileClipH;  ///< 0 while the clipboard is empty
/// 1: cells of four zeros are not pasted.
extern std::int32_t vTileClipSkip;

/// Empty, as at the start of the program.
void ClearTileClip();

/// The box of the selection into the clipboard: of the selected cells those fields that are not
/// -1 in the brush, of the others none.
void CopyRegion(Handle h, TileArea& area, const Brush& brush);

/// The clipboard over the selected cells, from the box's top left corner on and repeated as
/// often as needed. Takes the node's undo snapshot, unless the clipboard is empty.
void PasteRegion(Handle h, TileArea& area);

/// Glyphs that stand side by side on a sheet of 16 columns, from the brush's glyph on, as
/// sprite tiles over the selected cells; cells past the font's last glyph stay. Takes the
/// node's undo snapshot. The brush becomes a sprite brush, with the hint of the last glyph.
void PasteSpriteRegion(Handle h, TileArea& area, Brush& brush);
