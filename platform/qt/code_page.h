// Unicode characters as codes of code page 437, whose order the glyphs of a tile font follow.
#pragma once

/// The code, 1 to 255, of a Unicode character, or 0 when the code page has no such character.
/// The characters whose codes would read as Backspace, Tab, Enter or Escape give 0 as well.
int CodePage437(char32_t character);
