// A window that shows one 8-bit picture and hears the mouse and the keyboard: the panes of the
// main window and every picture control.
//
// The editor implements WindowEvents, the backend implements Window. Everything runs on the one
// user interface thread.
#pragma once

#include "platform/geometry.h"
#include "platform/menu.h"

#include <string>

namespace platform {

/// An 8-bit picture, borrowed for one call: `h` rows of `w` palette indices.
struct Rows8 {
    const unsigned char* const* rows = nullptr;
    int w = 0;
    int h = 0;
};

class Window {
public:
    virtual ~Window() = default;

    /// The size of the window's inside in window pixels, as it is now. A part of a pixel at the
    /// right or bottom edge counts as one.
    virtual Size ClientSize() const = 0;

    /// Asks for one OnDraw of the whole window at the next turn of the event loop; several
    /// requests may merge into one.
    virtual void Invalidate() = 0;

    /// Mouse events keep reaching this window while a button is held, also from outside it.
    virtual void SetCapture() = 0;
    virtual void ReleaseCapture() = 0;

    /// A window point in screen coordinates: where TrackPopupMenu can be asked to open.
    virtual Point ClientToScreen(Point at) const = 0;

    /// Gives this window the keyboard.
    virtual void SetFocus() = 0;

    /// Inside OnDraw only: the picture, through the current palette, at the window's top left
    /// corner, stretched to `shown` by repeating or leaving out whole pixels, never smoothed.
    /// What lies outside the window is cut off.
    virtual void ShowPicture(const Rows8& picture, Size shown) = 0;

    /// Runs a pop-up menu with its top left corner at a screen point, moved as far as needed to
    /// stay on the screen; either mouse button chooses. Gives the chosen command, or 0.
    virtual int TrackPopupMenu(const Menu& menu, Point screen) = 0;

    /// What a screen reader says of the window: its name (a form's picture has the control's
    /// text), and what it shows at present.
    virtual void SetName(const std::string& name) = 0;
    virtual void SetDescription(const std::string& description) = 0;
};

/// What a window tells. Mouse positions are window pixels and may lie outside the window while
/// the mouse is captured; `ctrl` is the Ctrl key at the event.
class WindowEvents {
public:
    virtual ~WindowEvents() = default;

    /// The repaint. Must cover the whole window by ShowPicture: nothing is erased before.
    virtual void OnDraw(Window& window) = 0;

    /// For a picture in a form: whether Tab and a click give it the keyboard. It then hears the
    /// keys that move (arrows, Home, End, Page Up, Page Down, Insert, Delete) and is pressed by
    /// OnPress; the form has all others.
    virtual bool TakesKeys() const { return false; }
    /// Space, or in a panel Enter, on a form's picture; true takes the key.
    virtual bool OnPress() { return false; }

    virtual void OnKeyDown(int /*key*/) {}  ///< platform::Key, with flags; a held key repeats
    virtual void OnKeyUp(int /*key*/) {}    ///< platform::Key; once, when the key is let go
    virtual void OnChar(int /*ch*/) {}      ///< code page 437, 1 to 255; Enter is 13

    virtual void OnLButtonDown(bool /*ctrl*/, Point /*at*/) {}
    virtual void OnLButtonUp(bool /*ctrl*/, Point /*at*/) {}
    /// The second press of a double click, in place of OnLButtonDown.
    virtual void OnLButtonDblClk(bool /*ctrl*/, Point /*at*/) {}
    virtual void OnRButtonDown(bool /*ctrl*/, Point /*at*/) {}
    virtual void OnRButtonUp(bool /*ctrl*/, Point /*at*/) {}
    virtual void OnMouseMove(bool /*ctrl*/, Point /*at*/) {}
    virtual void OnMouseWheel(int /*delta*/) {}  ///< positive is away from the user
};

}  // namespace platform
