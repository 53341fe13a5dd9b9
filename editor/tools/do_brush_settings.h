// The dialog "Brush Settings": glyph, colours and attribute of the brush.
//
// Its pickers write vBrush while it is open. OK keeps what is there, Cancel brings back what
// was there when it opened.
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
    void ShowBrush();
    void ReadAttrib(const platform::FormWindow& form);

    Brush before;
    CharSelect glyphs;
    FgColorSelect fg;
    BgColorSelect bg;
    BrushPreview preview;
};
