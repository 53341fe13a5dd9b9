// The boards of the sample game. Each function adds one, with its objects, to the world.
#pragma once

#include "library-src/sample/painter.h"

/// Ramps, ellipses, lines, and letters through which a beam of light is seen.
void PaintTitle(Painter& p);
/// A town at dusk: fades for sky and sea, primitives, copied houses, sprites, objects.
void PaintHarbour(Painter& p);
/// Depth: a wall with holes before a view, a cat before the wall.
void PaintRoom(Painter& p);
/// A grid twice as wide as what is shown of it, and a waterfall behind a small viewport.
void PaintCave(Painter& p);
