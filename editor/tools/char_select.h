// The browser of the glyph sheet: each sheet pixel is two by two window pixels, or more where
// that leaves a window half empty.
//
// A press and a drag put the glyph under the mouse into vBrush; Ctrl at the press scrolls
// instead, a tile for each eight pixels. The current glyph is not marked. The arrow keys go on to
// the glyph beside it, and so do Insert and Delete (back, on), Page Up and Page Down (up, down),
// for a dialog that has another use for the arrows; the sheet scrolls along.
#pragma once

#include "editor/tools/picture_control.h"

#include <cstdint>

/// The scroll of the sheet in tiles, 0 or below. It outlives the dialogs, so that the browser
/// keeps its place.
extern std::int32_t vCharScrollX;
extern std::int32_t vCharScrollY;

class CharSelect final : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;
    bool TakesKeys() const override { return true; }
    void OnKeyDown(int key) override;

    /// Scrolls to a part of the way down the sheet: 0 shows its top, 1 its bottom.
    void ScrollDown(double part);

    Repaint repaintPreview;
    Repaint repaintCharEdit;  ///< empty in a dialog that has no glyph editor

private:
    enum DragMode { kIdle, kScrolling, kPicking };

    void Pick(int glyph);
    void PickAt(platform::Point at);
    void ScrollTo(int glyph);
    void Scroll(platform::Point at);

    DragMode mode = kIdle;
    int cell = 16;                ///< window pixels a side of a glyph
    platform::Point press;        ///< window pixels
    platform::Point pressScroll;  ///< the scroll at the press
};

/// Writes into the brush's `bg` whether the glyph of a sprite brush has holes.
void UpdateHoleHint();
