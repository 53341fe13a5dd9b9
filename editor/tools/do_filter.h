// The dialog "Filter": which fields of the brush the next action uses.
#pragma once

#include "editor/view/brush.h"
#include "platform/form.h"

enum FilterControl : int { kFilterChar = 1001, kFilterFg, kFilterBg, kFilterAttribute };

/// OK sets the fields of the brush whose box is off to kKeepField. The caller saves the brush
/// before and restores it after its work.
class DoFilter final : public platform::FormEvents {
public:
    explicit DoFilter(Brush& filtered) : brush(filtered) {}

    /// Modal. True when it closed with OK.
    bool Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    Brush& brush;
};
