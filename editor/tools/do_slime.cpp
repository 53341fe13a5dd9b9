#include "editor/tools/do_slime.h"

#include "editor/tools/fade_fills.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kFadeSetButton, ControlKind::Button, "Set: Basic", 7, 7, 76, 14,
     "Choose the five glyphs to shade with"},
    {kFadeRandomText, ControlKind::ReadOnlyEdit, "Random", 90, 7, 50, 14,
     "How much the wave is stirred"},
    {kFadeRandomSlider, ControlKind::Slider, "Random", 143, 7, 58, 14,
     "How much the wave is stirred", 0, kMaxFadeRandom},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 208, 7, 44, 14, "Paint the area"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 255, 7, 44, 14, "Leave the area as it is"},
};

}  // namespace

const platform::Form& DoSlime::Layout() {
    static constexpr platform::Form kForm{"Slime fade", 306, 28, "Courier New", 8, kControls};
    return kForm;
}

void DoSlime::OnInit(FormWindow& form) {
    form.SetValue(kFadeRandomSlider, 5);
    FadeDialog::OnInit(form);
}

void DoSlime::ShowValues(FormWindow& form) {
    form.SetText(kFadeRandomText, "Random: " + std::to_string(form.GetValue(kFadeRandomSlider)));
}

void DoSlime::Paint(FormWindow& form, Handle h) {
    SlimeFade(h, area, brush, form.GetValue(kFadeRandomSlider), tiles);
}
