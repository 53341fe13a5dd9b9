// The font editor: the glyphs of the live tile font pixel by pixel, the rows of the sheet, and
// the sheet as a BMP picture.
//
// The glyph being edited is the brush's; the colour that Sprite Mode paints is the brush's
// foreground. The boards show the changes only after OK.
#pragma once

#include "editor/tools/brush_preview.h"
#include "editor/tools/char_edit.h"
#include "editor/tools/char_select.h"
#include "editor/tools/glyph_pixels.h"
#include "platform/form.h"

enum FontEditControl : int {
    kFontCharEdit = 1001,
    kFontPreview,
    kFontCharSelect,
    kFontSlider,
    kFontNewLine,
    kFontDeleteLine,
    kFontFlipVertical,
    kFontFlipHorizontal,
    kFontCopy,
    kFontPaste,
    kFontInvert,
    kFontChangeColor,
    kFontCharMode,
    kFontSpriteMode,
};
enum FontEditCommand : int { kFontLoad = 1, kFontSave = 2 };

class DoFontEdit final : public platform::FormEvents {
public:
    /// Modal. Without OK the sheet is as it was; the brush and its mode are in any case.
    void Run();

    platform::Menu FormMenu() override;
    platform::WindowEvents* PictureEvents(int id) override;
    void OnInit(platform::FormWindow& form) override;
    bool OnFormKey(platform::FormWindow& form, int code) override;
    void OnCommand(platform::FormWindow& form, int command) override;
    void OnControl(platform::FormWindow& form, int id) override;
    void OnChange(platform::FormWindow& form, int id) override;

private:
    void Change(const GlyphPixels& pixels);
    void WritePixel();
    void PickColor();
    void MoveCursor(int dx, int dy);
    void SheetChanged();
    void Load();
    void Save();

    CharEdit editor;
    BrushPreview preview{PreviewRole::FontEditor};
    CharSelect browser;
    GlyphPixels copied{};  ///< by the last Copy
    bool spriteMode = false;
};
