// The dialog "Brush Settings": glyph, colours and attribute of the brush.
//
// Its pickers write vBrush at once, so that the preview shows it; Cancel takes that back.
#pragma once

#include "editor/tools/brush_preview.h"
#include "editor/tools/char_select.h"
#include "editor/tools/color_select.h"
#include "editor/view/brush.h"
#include "platform/form.h"

enum BrushSettingsControl : int {
    kBrushChar = 1001,
    kBrushFg,
    kBrushBg,
    kBrushSwatch,
    kBrushNumbers,
    kBrushAttrib,  ///< the radio button "None", and the three numbers behind it
    kBrushSprite = kBrushAttrib + 4,
    kBrushEmpty,
    kBrushGroup,  ///< and the numbers behind it, the frames
};

class DoBrushSettings final : public platform::FormEvents {
public:
    /// Modal. True when it closed with OK.
    bool Run();

    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    void OnControl(platform::FormWindow& form, int id) override;

private:
    void ShowBrush(platform::FormWindow& form);
    void ReadAttrib(const platform::FormWindow& form);

    Brush before;
    CharSelect glyphs;
    FgColorSelect fg;
    BgColorSelect bg;
    BrushPreview preview{PreviewRole::Settings};
};
