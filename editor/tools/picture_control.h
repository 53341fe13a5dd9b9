// What the picture controls of the tile tools have in common: an 8-bit bitmap that is made at
// the first repaint, from the window's size then, and kept however the window changes.
#pragma once

#include "engine/bitmap.h"
#include "platform/window.h"

#include <functional>

class PictureControl : public platform::WindowEvents {
public:
    /// The window that the control lives in; null, the default, for none. Another window gets
    /// a bitmap of its own.
    void Attach(platform::Window* own) {
        window = own;
        vBitmap.reset();
    }
    void Invalidate() {
        if (window) window->Invalidate();
    }

protected:
    /// Whether a window point lies in the window: a button may be let go beside it.
    bool Holds(platform::Point at) const;
    /// The bitmap, made now if there is none; null after a report when that fails. A size of 0
    /// counts as 1.
    BITMAP* Buffer(platform::Size size, const char* owner);
    /// The bitmap, a pixel for each window pixel.
    void Show(platform::Window& own) const;
    /// The bitmap, four window pixels for each of its own.
    void ShowDoubled(platform::Window& own) const;

    platform::Window* window = nullptr;
    Bitmap vBitmap;
};

/// One to the right or left, or one down or up, for an arrow key; {} for any other.
platform::Point ArrowStep(int key);

/// Half a window, with the pixel that an odd size leaves over.
inline platform::Size HalfOf(platform::Size size) { return {(size.w + 1) / 2, (size.h + 1) / 2}; }

/// Asks for the repaint of another control; empty where a dialog has none.
using Repaint = std::function<void()>;
inline void Call(const Repaint& repaint) {
    if (repaint) repaint();
}
