#include "editor/tools/do_fade.h"

#include "editor/tools/fade_fills.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kFadePicture, ControlKind::Picture, "Preview", 7, 7, 145, 139,
     "The pattern in the colours of the brush"},
    {kFadeBlendName, ControlKind::ReadOnlyEdit, "Blend", 7, 149, 78, 14,
     "The pattern that is stretched over the area"},
    {kFadeSetButton, ControlKind::Button, "Set: Basic", 88, 149, 64, 14,
     "Choose the five glyphs to shade with"},
    {kFadeBlendSlider, ControlKind::Slider, "Blend", 7, 166, 145, 12, "Choose the pattern"},
    {kFadeRandomText, ControlKind::ReadOnlyEdit, "Random", 7, 181, 50, 14,
     "How far the tiles are scattered"},
    {kFadeRandomSlider, ControlKind::Slider, "Random", 60, 182, 92, 12,
     "How far the tiles are scattered", 0, kMaxFadeRandom},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 47, 199, 51, 14, "Paint the area"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 101, 199, 51, 14,
     "Leave the area as it is"},
};

}  // namespace

DoFade::DoFade(TileArea& selected, const Brush& with)
    : FadeDialog("DoFade", selected, with),
      blends(LoadFadeBlends("DoFade")),
      viewer(brush),
      controls(std::begin(kControls), std::end(kControls)) {
    for (Control& control : controls)
        if (control.id == kFadeBlendSlider && !blends.empty())
            control.high = static_cast<int>(blends.size()) - 1;
    layout = {"Fade", 159, 220, "Courier New", 8, controls};
}

platform::WindowEvents* DoFade::PictureEvents(int id) {
    return id == kFadePicture ? &viewer : nullptr;
}

void DoFade::RedrawViewer(FormWindow& form) {
    if (platform::Window* picture = form.Picture(kFadePicture)) picture->Invalidate();
}

void DoFade::UseSet(FormWindow& form, const FadeTiles& chosen) {
    tiles = viewer.tiles = chosen;
    RedrawViewer(form);
}

void DoFade::ShowValues(FormWindow& form) {
    const auto blend = static_cast<std::size_t>(form.GetValue(kFadeBlendSlider));
    form.SetText(kFadeBlendName, blends.empty() ? "No blends" : blends.at(blend).name);
    if (!blends.empty()) viewer.cells = blends.at(blend).cells;
    form.Enable(kFadeBlendSlider, !blends.empty());
    form.SetText(kFadeRandomText, "Random: " + std::to_string(form.GetValue(kFadeRandomSlider)));
    RedrawViewer(form);
}

void DoFade::Paint(FormWindow& form, Handle h) {
    NormalFade(h, area, brush, viewer.cells, form.GetValue(kFadeRandomSlider), tiles);
}
