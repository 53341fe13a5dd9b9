// The marks that the edit view draws over the world, in XOR with two palette indices so that
// they show on any picture.
//
// All take the 8-bit bitmap of the view and positions in its tiles (scroll already added),
// while Allegro's drawing mode is XOR.
#pragma once

#include "engine/allegro_api.h"
#include "engine/dinterface.h"
#include "platform/geometry.h"

/// A mark over the box between two tiles, both included, given as its top left and bottom
/// right. One tile's mark is a box of one tile.
void DrawBoxMark(BITMAP* to, platform::Point first, platform::Point last);

/// Two lines around the viewport of a node, `inner` and inner + 1 pixels outside it. A bad
/// handle frames nothing at the world's corner.
void DrawNodeFrame(BITMAP* to, Handle h, platform::Point scroll, int inner);

/// A sign on each cell of the node that has a game attribute.
void DrawAttribOverlay(BITMAP* to, Handle h, platform::Point scroll);

/// The area that the game shows, its corner at world tile (0, 0).
void DrawScreenFrame(BITMAP* to, platform::Point scroll, int videoMode);

/// A cross through the cursor's tile, with the cursor's place in the node's grid beside it.
void DrawRulerCross(BITMAP* to, Handle h, platform::Point cursor, platform::Point scroll);

/// Lines along the sides of the box between two tiles, with its size beside it. Corners that
/// are not in order give sizes of 0 and below.
void DrawRulerBox(BITMAP* to, platform::Point first, platform::Point last);
