// The dialog "Slime fade": a wave that grows from the fade centre.
#pragma once

#include "editor/tools/fade_dialog.h"

class DoSlime final : public FadeDialog {
public:
    DoSlime(TileArea& selected, const Brush& with) : FadeDialog("DoSlime", selected, with) {}

    void OnInit(platform::FormWindow& form) override;

private:
    const platform::Form& Layout() override;
    void Paint(platform::FormWindow& form, Handle h) override;
    void ShowValues(platform::FormWindow& form) override;
};
