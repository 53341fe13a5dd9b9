// A picture of tiles at double size that is dragged about: eight window pixels of the mouse
// move it by a tile, and so does an arrow key. Its content stays in view, with its corner at the
// viewer's while it is smaller than that.
#pragma once

#include "editor/tools/picture_control.h"

class DragViewer : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;
    bool TakesKeys() const override { return true; }
    void OnKeyDown(int key) override;

    /// Where the content's corner lies, in tiles: 0 or below.
    platform::Point Scroll() const { return scroll; }

protected:
    /// Paints the content, shifted by the scroll, into a cleared bitmap whose sides are
    /// multiples of a tile's.
    virtual void Compose(BITMAP* to) = 0;
    virtual platform::Size ContentTiles() const = 0;
    virtual const char* Name() const = 0;

private:
    void ScrollTo(platform::Point wanted);

    platform::Point scroll;
    platform::Point press;        ///< window pixels
    platform::Point pressScroll;  ///< the scroll at the press
    platform::Size room;          ///< whole tiles that the viewer shows
    bool dragging = false;
};
