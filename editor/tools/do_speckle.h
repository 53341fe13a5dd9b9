// The dialog "Speckle": the brush into a random part of the selection.
#pragma once

#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "platform/form.h"

enum SpeckleControl : int { kSpeckleLabel = 1001, kSpecklePercentage };

class DoSpeckle final : public platform::FormEvents {
public:
    DoSpeckle(TileArea& selected, const Brush& with) : area(selected), brush(with) {}

    /// Modal. True when it closed with OK; the selection has been painted then.
    bool Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    TileArea& area;      ///< what OK paints
    const Brush& brush;  ///< by what
};
