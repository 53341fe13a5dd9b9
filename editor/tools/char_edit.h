// The brush's glyph, much enlarged, with a cursor on one of its 8 by 8 pixels.
//
// The mouse moves the cursor; the pixels are changed by the keys of the dialog round it.
#pragma once

#include "editor/tools/picture_control.h"

class CharEdit final : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;

    /// Column and row of the glyph, 0 to 7 each.
    platform::Point Cursor() const { return cursor; }
    /// Moves the cursor, no further than the glyph's edge, and repaints.
    void SetCursor(platform::Point pixel);

private:
    void FollowMouse(platform::Point at);

    platform::Point cursor;
    bool pressed = false;
};
