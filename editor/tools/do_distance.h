// The dialog "Distance Fade": rings of a set's glyphs round the fade centre.
#pragma once

#include "editor/tools/fade_dialog.h"

class DoDistance final : public FadeDialog {
public:
    DoDistance(TileArea& selected, const Brush& with) : FadeDialog("DoDistance", selected, with) {}

    void OnInit(platform::FormWindow& form) override;

private:
    const platform::Form& Layout() override;
    void Paint(platform::FormWindow& form, Handle h) override;
    void ShowValues(platform::FormWindow& form) override;
};
