// The game archive that a new document starts with.
#pragma once

#include "library-src/glyph_source.h"

// One board of the size of the screen at 640 by 480, with a ring of border tiles around black,
// and the given sheet. Empty when there is no memory.
std::string NewGame(const Sheet& sheet);
