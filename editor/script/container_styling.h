// Keeps the styles of a script in the text control up to date.
//
// The control asks for styles up to a place (StyleNeeded) and tells what was edited (Changed).
// Which lines have their styles is noted in the control itself, as the state of each line, which
// moves along when lines come and go: so a typed character costs the styling of its own line,
// however much text of that window stands behind it.
#pragma once

#include "platform/form.h"

/// The text at `position`, and the next `linesAdded` lines behind its line, are new or changed.
void MarkChanged(platform::CodeControl& code, std::intptr_t position, std::intptr_t linesAdded);

/// Styles what lacks its styles up to the end of the line of `position`.
void StyleTo(platform::CodeControl& code, std::intptr_t position);
