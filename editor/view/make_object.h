// Turning a selection into an object.
#pragma once

#include "editor/view/selection.h"

/// A new child of the node, "NewObject", with a grid of the size of the selection's box and its
/// selected tiles. It stands at its parent's corner and becomes the current object; the tiles
/// that it was made from stay. False, with nothing made, for a node without cells or when the
/// grid cannot be made.
bool MakeObject(Handle h, TileArea& area);
