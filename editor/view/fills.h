// The plain actions on a selection. Each takes the node's undo snapshot, writes the selected
// cells of the box and leaves them done in the mask.
#pragma once

#include "editor/view/brush.h"
#include "editor/view/selection.h"

/// The brush into every selected cell.
void FillRegion(Handle h, TileArea& area, const Brush& brush);

/// A straight colour ramp in full blocks, from the lower of the brush's two colours at the
/// cursor to the higher at the anchor (world tiles); what lies beyond a point takes the colour
/// at its end. Two points on the same tile give no direction, and nothing is written.
void BlendRegion(Handle h, TileArea& area, const Brush& brush, platform::Point cursor,
                 platform::Point anchor);
