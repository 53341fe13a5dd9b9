// The colour grids: the 256 colours of the palette in 16 rows of 16, for a colour of the brush.
//
// A press and a drag put the colour under the mouse into vBrush at once; a place beside the
// cells does nothing. A drag ends at the control's edge: the mouse is not captured. The arrow
// keys go on from the colour that is chosen, no further than the grid's edge.
#pragma once

#include "editor/tools/picture_control.h"
#include "editor/view/brush.h"

class ColorSelect : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool, platform::Point) override { pressed = false; }
    void OnMouseMove(bool ctrl, platform::Point at) override;
    bool TakesKeys() const override { return true; }
    void OnKeyDown(int key) override;

    Repaint repaintPreview;  ///< after a choice; empty in a dialog without a preview

protected:
    ColorSelect(std::int32_t Brush::*brushField, const char* ownName)
        : field(brushField), name(ownName) {}

private:
    void Choose(int color);
    void ChooseAt(platform::Point at);
    platform::Size Cell() const;  ///< window pixels

    std::int32_t Brush::*field;
    const char* name;
    bool pressed = false;
};

class FgColorSelect final : public ColorSelect {
public:
    FgColorSelect() : ColorSelect(&Brush::fg, "FgColorSelect") {}
};

class BgColorSelect final : public ColorSelect {
public:
    BgColorSelect() : ColorSelect(&Brush::bg, "BgColorSelect") {}
};
