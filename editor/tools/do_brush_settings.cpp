#include "editor/tools/do_brush_settings.h"

#include "engine/dtile.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr int kAttributes = 4;

constexpr Control kControls[] = {
    {kBrushGroup, ControlKind::Group, "Char Select", 7, 4, 160, 168},
    {kBrushChar, ControlKind::Picture, "Char Select", 13, 17, 148, 148,
     "Click or drag to choose a glyph, or use the arrow keys; Ctrl and drag scrolls"},
    {kBrushGroup + 1, ControlKind::Group, "Foreground Color", 171, 4, 108, 108},
    {kBrushFg, ControlKind::Picture, "FG color Select", 175, 16, 100, 92,
     "Click or drag to choose the colour of the glyph, or use the arrow keys"},
    {kBrushGroup + 2, ControlKind::Group, "Background Color", 284, 4, 108, 108},
    {kBrushBg, ControlKind::Picture, "BG color Select", 288, 16, 100, 92,
     "Click or drag to choose the colour behind the glyph, or use the arrow keys"},
    {kBrushGroup + 3, ControlKind::Group, "Attribute", 171, 112, 108, 33},
    {kBrushAttrib, ControlKind::Radio, "None", 176, 124, 46, 9, "Nothing special"},
    {kBrushAttrib + 1, ControlKind::Radio, "Solid", 226, 124, 51, 9, "Nothing can enter"},
    {kBrushAttrib + 2, ControlKind::Radio, "Breakable", 176, 134, 50, 9,
     "Solid until it is broken"},
    {kBrushAttrib + 3, ControlKind::Radio, "Water", 226, 134, 51, 9, "Water"},
    {kBrushGroup + 4, ControlKind::Group, "Preview", 284, 112, 108, 60},
    {kBrushSwatch, ControlKind::Picture, "Preview", 289, 124, 98, 25, "The brush"},
    {kBrushNumbers, ControlKind::ReadOnlyEdit, "Numbers of the brush", 289, 154, 98, 13,
     "Glyph, foreground, background and attribute"},
    {kBrushSprite, ControlKind::Button, "Sprite", 171, 147, 52, 12,
     "Paint the glyph in the colours of its own pixels"},
    {kBrushEmpty, ControlKind::Button, "Empty", 227, 147, 52, 12, "Paint empty tiles"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 171, 160, 52, 12, "Use this brush"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 227, 160, 52, 12,
     "Go back to the brush as it was"},
};

constexpr platform::Form kForm{"Brush Settings", 399, 178, "Courier New", 8, kControls};

// "chr fg bg attrib" of the brush.
std::string BrushNumbers() {
    std::string text;
    for (std::int32_t number : {vBrush.chr, vBrush.fg, vBrush.bg, vBrush.attrib})
        text += (text.empty() ? "" : " ") + std::to_string(number);
    return text;
}

}  // namespace

bool DoBrushSettings::Run() {
    before = vBrush;
    return vPlatform->RunDialog(kForm, *this) == platform::kIdOk;
}

platform::WindowEvents* DoBrushSettings::PictureEvents(int id) {
    switch (id) {
        case kBrushChar:
            return &glyphs;
        case kBrushFg:
            return &fg;
        case kBrushBg:
            return &bg;
        default:
            return &preview;
    }
}

void DoBrushSettings::OnInit(FormWindow& form) {
    glyphs.Attach(form.Picture(kBrushChar));
    fg.Attach(form.Picture(kBrushFg));
    bg.Attach(form.Picture(kBrushBg));
    preview.Attach(form.Picture(kBrushSwatch));
    glyphs.repaintPreview = fg.repaintPreview =
        bg.repaintPreview = [this, &form] { ShowBrush(form); };
    ShowBrush(form);
    if (vBrush.attrib >= 0 && vBrush.attrib < kAttributes)
        form.SetCheck(kBrushAttrib + vBrush.attrib, true);
}

// A choice in one control may change what the others mark: a glyph has its hole hint, and
// "Empty" clears both colours.
void DoBrushSettings::ShowBrush(FormWindow& form) {
    form.SetText(kBrushNumbers, BrushNumbers());
    preview.Invalidate();
    glyphs.Invalidate();
    fg.Invalidate();
    bg.Invalidate();
}

void DoBrushSettings::ReadAttrib(const FormWindow& form) {
    for (int i = 0; i < kAttributes; ++i) {
        if (!form.IsChecked(kBrushAttrib + i)) continue;
        vBrush.attrib = i;
        return;
    }
}

void DoBrushSettings::OnControl(FormWindow& form, int id) {
    switch (id) {
        case kBrushSprite:
            vBrush.fg = kSpriteMark;
            UpdateHoleHint();
            ShowBrush(form);
            break;
        case kBrushEmpty:
            vBrush = {};
            ShowBrush(form);
            break;
        case platform::kIdOk:
            ReadAttrib(form);
            form.EndDialog(id);
            break;
        case platform::kIdCancel:
            vBrush = before;
            form.EndDialog(id);
            break;
        default:
            if (id >= kBrushAttrib && id < kBrushAttrib + kAttributes) {
                vBrush.attrib = id - kBrushAttrib;
                ShowBrush(form);
            }
            break;
    }
}
