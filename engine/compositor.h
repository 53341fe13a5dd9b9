// Draws the tree of nodes into one picture, front to back.
//
// Each node has its pixels in its surface already; what is settled here is who shows where. A
// node's children come before the node, in list order; the first pixel other than 0 met on the
// way stays. Two masks remember what is final, so that nothing behind is painted over it and a
// finished cell costs one byte's look.
//
// A target is an 8-bit memory bitmap whose sides are multiples of 8. Only what some node covers is
// written: the caller clears the target before, or what is left of it afterwards.
#pragma once

#include "engine/bitmap.h"

/// What is known of a target cell: nothing drawn yet, all pixels final, or some are and
/// vSubClipBuffer says which.
enum CellState : unsigned char { kOpen = 0, kFinal = 1, kPartial = 2 };

/// A CellState for each target cell. Null until the first SetViewSize of Dinterface.
extern Bitmap vClipBuffer;
/// A byte for each target pixel, 1 when it is final. To be read in partial cells only.
extern Bitmap vSubClipBuffer;

/// Makes 0 what the last DrawWorld or DrawObjectMode of Dinterface has left of a target as large as
/// the masks. Cheaper than to clear the target before: most pictures are covered whole.
void ClearUncovered(BITMAP* target);
