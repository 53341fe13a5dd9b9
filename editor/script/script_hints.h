// What opens while a script is typed: the list of commands behind "#", the list of object paths
// behind ".", and the tip of a command behind its blank.
#pragma once

#include "platform/form.h"

#include <string>

/// Blanks typed since the tip that shows has opened; the fourth closes it.
extern int vCallTipBlanks;
/// vKeywordList in the order that the list needs.
extern std::string vSortedKeywords;

/// Enter or Tab is about to reach the control. A list that has nothing to add to what is typed
/// closes, and the key is typed; else the key takes the word that is offered.
void OnTakingKey(platform::CodeControl& code);

/// The user typed `ch`, and the caret stands behind it. Brings the styles up to date first.
void OnScriptChar(platform::CodeControl& code, int ch);
