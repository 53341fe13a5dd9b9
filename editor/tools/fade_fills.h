// The actions of the fade dialogs: they paint a selection of a node with the brush and a choice of
// glyphs.
//
// Each writes selected cells only, with the brush's colours and attribute, and leaves what it
// wrote done in the mask. The caller takes the undo snapshot. Chance is the C library's rand,
// which nobody seeds, drawn in a fixed order: with the same draws the result is the same.
#pragma once

#include "editor/tools/fade_library.h"
#include "editor/view/brush.h"
#include "editor/view/selection.h"

/// Rings of the set's glyphs round the fade centre, there and back through the set. `px` and
/// `py` are hundredths of a band for each column and row from the centre, 10 to 400; `random`
/// frays the edges by up to that many bands, 0 to 15.
void DistanceFade(Handle h, TileArea& area, const Brush& brush, int px, int py, int random,
                  const FadeTiles& tiles);

/// The blend's pattern stretched over the box. A `random` of 2 to 15 scatters the cells by up
/// to one less than that. The glyphs' low 8 bits are used.
void NormalFade(Handle h, TileArea& area, const Brush& brush, const FadeCells& cells, int random,
                const FadeTiles& tiles);

/// A wave that grows from the fade centre through the selected cells that are connected to it,
/// and changes its glyph as it grows; `random` 0 to 15 stirs the choice. Nothing when the
/// centre is not selected.
void SlimeFade(Handle h, TileArea& area, const Brush& brush, int random, const FadeTiles& tiles);

/// The whole brush into about `percentage` of 100 cells. The others stay selected.
void SpeckleFill(Handle h, TileArea& area, const Brush& brush, int percentage);
