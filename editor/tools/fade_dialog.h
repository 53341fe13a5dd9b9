// What the three fade dialogs have in common: the choice of a set, OK and Cancel.
#pragma once

#include "editor/tools/fade_library.h"
#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "engine/dinterface.h"
#include "platform/form.h"

/// Control numbers; not every dialog has all of them.
enum FadeControl : int {
    kFadePicture = 1001,
    kFadeBlendName,
    kFadeBlendSlider,
    kFadeXText,
    kFadeXSlider,
    kFadeYText,
    kFadeYSlider,
    kFadeSetButton,
    kFadeRandomText,
    kFadeRandomSlider,
};

inline constexpr int kMaxFadeRandom = 15;
inline constexpr int kFadeMenuBase = 1024;  ///< the set menu's first command

class FadeDialog : public platform::FormEvents {
public:
    /// Modal. True when it closed with OK; the selection has been painted then.
    bool Run();

    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;
    void OnChange(platform::FormWindow& form, int id) override;

protected:
    FadeDialog(const char* name, TileArea& selected, const Brush& with)
        : area(selected), brush(with), sets(LoadFadeSets(name)) {}

    virtual const platform::Form& Layout() = 0;
    virtual bool CanPaint() const { return !sets.empty(); }
    /// Paints the selection of the node, by the values that the controls have.
    virtual void Paint(platform::FormWindow& form, Handle h) = 0;
    virtual void ShowValues(platform::FormWindow& form) = 0;
    virtual void UseSet(platform::FormWindow& form, const FadeTiles& chosen);

    TileArea& area;      ///< what OK paints
    const Brush& brush;  ///< by what
    FadeTiles tiles{};   ///< of the current set

private:
    void ShowSet(platform::FormWindow& form, const FadeSet& set);
    void ChooseSet(platform::FormWindow& form);

    std::vector<FadeSet> sets;
};
