#include "editor/tools/do_distance.h"

#include "editor/tools/fade_fills.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

// Hundredths of a ring for each tile.
constexpr int kLeastMultiplier = 10;
constexpr int kMostMultiplier = 400;

constexpr Control kControls[] = {
    {kFadeXText, ControlKind::ReadOnlyEdit, "X multiplier", 7, 8, 80, 14,
     "How close the rings follow each other from left to right"},
    {kFadeXSlider, ControlKind::Slider, "X multiplier", 90, 7, 68, 16,
     "How close the rings follow each other from left to right", kLeastMultiplier, kMostMultiplier},
    {kFadeYText, ControlKind::ReadOnlyEdit, "Y multiplier", 7, 33, 80, 14,
     "How close the rings follow each other from top to bottom"},
    {kFadeYSlider, ControlKind::Slider, "Y multiplier", 90, 32, 68, 16,
     "How close the rings follow each other from top to bottom", kLeastMultiplier, kMostMultiplier},
    {kFadeSetButton, ControlKind::Button, "Set: Basic", 165, 8, 83, 14,
     "Choose the five glyphs to shade with"},
    {kFadeRandomText, ControlKind::ReadOnlyEdit, "Random", 165, 33, 48, 14,
     "How far the edges of the rings are frayed"},
    {kFadeRandomSlider, ControlKind::Slider, "Random", 215, 32, 33, 16,
     "How far the edges of the rings are frayed", 0, kMaxFadeRandom},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 255, 8, 44, 14, "Paint the area"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 255, 33, 44, 14,
     "Leave the area as it is"},
};

// Written out from whole numbers, so that the locale has no say in the decimal point.
std::string Multiplier(const char* name, int hundredths) {
    const std::string rest = std::to_string(hundredths % 100);
    return std::string(name) + " multiplier: " + std::to_string(hundredths / 100) +
           (rest.size() < 2 ? ".0" : ".") + rest;
}

}  // namespace

const platform::Form& DoDistance::Layout() {
    static constexpr platform::Form kForm{"Distance Fade", 306, 55, "Courier New", 8, kControls};
    return kForm;
}

void DoDistance::OnInit(FormWindow& form) {
    form.SetValue(kFadeXSlider, 35);
    form.SetValue(kFadeYSlider, 45);
    form.SetValue(kFadeRandomSlider, 4);
    FadeDialog::OnInit(form);
}

void DoDistance::ShowValues(FormWindow& form) {
    form.SetText(kFadeXText, Multiplier("X", form.GetValue(kFadeXSlider)));
    form.SetText(kFadeYText, Multiplier("Y", form.GetValue(kFadeYSlider)));
    form.SetText(kFadeRandomText, "Random: " + std::to_string(form.GetValue(kFadeRandomSlider)));
}

void DoDistance::Paint(FormWindow& form, Handle h) {
    DistanceFade(h, area, brush, form.GetValue(kFadeXSlider), form.GetValue(kFadeYSlider),
                 form.GetValue(kFadeRandomSlider), tiles);
}
