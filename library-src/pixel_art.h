// Pictures in text: the one grammar in which glyphs and sprites are drawn.
#pragma once

#include "library-src/source_text.h"

#include <functional>

// Reads a file of pictures, each a line "WORD NUMBER NAME" and `side` rows of `side` pixels. A "."
// is 0, a "#" is 15; a line "pixel LETTER VALUE" gives a letter another value. `begin` hears each
// head with its line, `put` each pixel. What is not so is a problem, and is left out.
void ReadPixelArt(const std::filesystem::path& file, const std::string& word, int side,
                  const std::function<void(int number, const std::string& name, int line)>& begin,
                  const std::function<void(int number, int x, int y, int value)>& put,
                  Problems& problems);
