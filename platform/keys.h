// Key codes of OnKeyDown and OnKeyUp. The numbers are those of the key tables of the edit
// view and the dialogs; a backend translates its own codes and drops keys that have none here.
// Letters and digits are delivered with their upper-case ASCII code.
#pragma once

namespace platform {

enum Key : int {
    kKeyBackspace = 8,
    kKeyTab = 9,
    kKeyEnter = 13,
    kKeyShift = 16,
    kKeyEscape = 27,
    kKeySpace = 32,
    kKeyPageUp = 33,
    kKeyPageDown = 34,
    kKeyEnd = 35,
    kKeyHome = 36,
    kKeyLeft = 37,
    kKeyUp = 38,
    kKeyRight = 39,
    kKeyDown = 40,
    kKeyInsert = 45,
    kKeyDelete = 46,
    kKeyApps = 93,  ///< the menu key
    kKeyF1 = 112,
    kKeyF2 = 113,
};

}  // namespace platform
