// Key codes of OnKeyDown and OnKeyUp. The numbers are those of the key tables of the edit
// view and the dialogs; a backend translates its own codes and drops keys that have none here.
// Letters and digits are delivered with their upper-case ASCII code.
//
// The panes of the main window hear of Ctrl as well, as flags beside the code; the forms' pictures
// and the forms never do.
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
    kKeyApps = 93,  ///< the menu key, or Shift and F10
    kKeyF1 = 112,
    kKeyF2 = 113,
    kKeyF4 = 115,
};

inline constexpr int kWithCtrl = 0x100;
inline constexpr int kWithShift = 0x200;  ///< only beside kWithCtrl, and not of Shift itself

/// The key's code without the flags.
constexpr int PlainKey(int key) { return key & 0xff; }

}  // namespace platform
