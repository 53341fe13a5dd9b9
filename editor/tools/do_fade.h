// The dialog "Fade": a blend of a set's glyphs over the whole selection.
#pragma once

#include "editor/tools/fade_dialog.h"
#include "editor/tools/fade_viewer.h"

class DoFade final : public FadeDialog {
public:
    DoFade(TileArea& selected, const Brush& with);

    platform::WindowEvents* PictureEvents(int id) override;

private:
    const platform::Form& Layout() override { return layout; }
    bool CanPaint() const override { return FadeDialog::CanPaint() && !blends.empty(); }
    void Paint(platform::FormWindow& form, Handle h) override;
    void ShowValues(platform::FormWindow& form) override;
    void UseSet(platform::FormWindow& form, const FadeTiles& chosen) override;
    void RedrawViewer(platform::FormWindow& form);

    std::vector<FadeBlend> blends;
    FadeViewer viewer;
    std::vector<platform::Control> controls;  ///< with the blend slider's range
    platform::Form layout;
};
