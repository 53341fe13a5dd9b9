// What opens while a script is typed: the list of commands behind "#", the list of object paths
// behind ".", and the tip of a command behind its blank.
#pragma once

#include "platform/form.h"

#include <string>

/// Blanks typed since the tip that shows has opened; the fourth closes it.
extern int vCallTipBlanks;
/// vKeywordList in the order that the list needs.
extern std::string vSortedKeywords;

/// The user typed `ch`, and the caret stands behind it. Brings the styles up to date first.
void OnScriptChar(platform::CodeControl& code, int ch);
