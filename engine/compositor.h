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

/// A byte for each target cell: 0 nothing drawn yet, 1 all pixels final, 2 some are and
/// vSubClipBuffer says which. Null until the first SetViewSize of Dinterface.
extern Bitmap vClipBuffer;
/// A byte for each target pixel, 1 when it is final. To be read in cells of value 2 only.
extern Bitmap vSubClipBuffer;

/// Makes 0 what no node has covered since vClipBuffer was last cleared, which who draws with it
/// does at the start. The target is as large as the masks. Cheaper than a clear one underneath:
/// most pictures are covered whole.
void ClearUncovered(BITMAP* target);
