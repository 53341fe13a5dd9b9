#include "editor/tools/do_font_edit.h"

#include "editor/tools/do_color_select.h"
#include "editor/view/brush.h"
#include "engine/dinterface.h"
#include "engine/picture_file.h"
#include "engine/replace_file.h"
#include "engine/report.h"
#include "platform/keys.h"
#include "platform/platform.h"

#include <algorithm>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;
using platform::Point;

namespace {

constexpr int kSliderRange = 100;
constexpr int kLast = kTileSize - 1;
constexpr const char* kFilter = "Bmp Files (*.bmp)|*.bmp||";
constexpr const char* kExtension = ".bmp";

constexpr Control kControls[] = {
    {kFontCharEdit, ControlKind::Picture, "Char Edit", 7, 7, 148, 148,
     "The glyph; the arrow keys move the cursor, Space changes a pixel, Enter picks its color"},
    {kFontPreview, ControlKind::Picture, "Brush Preview", 160, 7, 71, 148, "An area of the glyph"},
    {kFontCharSelect, ControlKind::Picture, "Char Select", 236, 7, 148, 148,
     "Click or drag to choose a glyph; Ctrl and drag scrolls"},
    {kFontSlider, ControlKind::VSlider, "Scroll of the sheet", 391, 7, 15, 148, "Scrolls the sheet",
     0, kSliderRange},
    {kFontFlipVertical, ControlKind::Button, "Flip Vertical", 7, 160, 61, 13,
     "Top and bottom change places"},
    {kFontFlipHorizontal, ControlKind::Button, "Flip Horizontal", 71, 160, 69, 13,
     "Left and right change places"},
    {kFontInvert, ControlKind::Button, "Invert", 143, 160, 36, 13,
     "Clear pixels are set and set ones cleared"},
    {kFontCopy, ControlKind::Button, "Copy", 182, 160, 30, 13, "Remember this glyph"},
    {kFontPaste, ControlKind::Button, "Paste", 215, 160, 32, 13,
     "Put the remembered glyph in the place of this one"},
    {kFontCharMode, ControlKind::Radio, "Char Mode", 258, 160, 56, 13,
     "Space sets and clears pixels"},
    {kFontSpriteMode, ControlKind::Radio, "Sprite Mode", 320, 160, 64, 13,
     "Space paints with the chosen color"},
    {kFontNewLine, ControlKind::Button, "New Line", 7, 176, 42, 13,
     "A row of glyphs more at the sheet's end"},
    {kFontDeleteLine, ControlKind::Button, "Delete Line", 52, 176, 54, 13,
     "Takes the sheet's last row of glyphs away"},
    {kFontChangeColor, ControlKind::Button, "&Change Color", 109, 176, 60, 13,
     "The color of Sprite Mode (C)"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 334, 176, 34, 13,
     "Draw the boards with the changed glyphs"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 371, 176, 35, 13,
     "Go back to the font as it was"},
};
constexpr platform::Form kForm{"Font Edit", 413, 196, "Courier New", 8, kControls};

Bitmap CopyOf(BITMAP* sheet) {
    Bitmap copy = MakeBitmap(sheet->w, sheet->h);
    if (copy) blit(sheet, copy.get(), 0, 0, 0, 0, sheet->w, sheet->h);
    return copy;
}

}  // namespace

void DoFontEdit::Run() {
    Dfont& glyphs = *vWorld->GetFont();
    Bitmap before = CopyOf(glyphs.Sheet());
    if (!before) {
        Fatal("There is not enough memory to edit the font", __FILE__, __LINE__);
        return;
    }
    const Brush brush = vBrush;
    const BrushMode mode = vBrushMode;
    // The preview shows the raw glyph.
    vBrushMode = kBrushText;
    if (vPlatform->RunDialog(kForm, *this) != platform::kIdOk) glyphs.TakeSheet(std::move(before));
    vBrush = brush;
    vBrushMode = mode;
}

platform::Menu DoFontEdit::FormMenu() {
    return {platform::SubMenu(
        "&File", {platform::Entry("&Load", kFontLoad), platform::Entry("&Save", kFontSave)})};
}

platform::WindowEvents* DoFontEdit::PictureEvents(int id) {
    if (id == kFontCharEdit) return &editor;
    if (id == kFontPreview) return &preview;
    return &browser;
}

void DoFontEdit::OnInit(FormWindow& form) {
    editor.Attach(form.Picture(kFontCharEdit));
    preview.Attach(form.Picture(kFontPreview));
    browser.Attach(form.Picture(kFontCharSelect));
    browser.repaintPreview = [this] { preview.Invalidate(); };
    browser.repaintCharEdit = [this] { editor.Invalidate(); };
    form.SetCheck(kFontCharMode, true);
    SheetChanged();
}

// --- what changes the sheet --------------------------------------------------------------------

void DoFontEdit::Change(const GlyphPixels& pixels) {
    WriteGlyph(vBrush.chr, pixels);
    editor.Invalidate();
    preview.Invalidate();
    browser.Invalidate();
}

void DoFontEdit::SheetChanged() {
    // A glyph whose row has gone cannot be edited: the last one is next to it.
    // A sheet of a single pixel row has no glyph at all.
    const int last = std::max(vWorld->GetFont()->GlyphCount() - 1, 0);
    vBrush.chr = std::clamp(vBrush.chr, 0, last);
    editor.Invalidate();
    preview.Invalidate();
    browser.Invalidate();
}

void DoFontEdit::WritePixel() {
    const Point at = editor.Cursor();
    GlyphPixels pixels = ReadGlyph(vBrush.chr);
    int& pixel = pixels[static_cast<std::size_t>(at.y * kTileSize + at.x)];
    pixel = spriteMode ? vBrush.fg & 0xff : pixel ? 0 : kPlainPixel;
    Change(pixels);
}

void DoFontEdit::PickColor() {
    const Point at = editor.Cursor();
    vBrush.fg = vWorld->GetFont()->GetGlyphPixel(vBrush.chr, at.x, at.y);
    preview.Invalidate();
}

// The cursor walks from glyph to glyph as if the sheet were one picture.
void DoFontEdit::MoveCursor(int dx, int dy) {
    enum Direction { kUp, kRight, kDown, kLeft };
    Point to{editor.Cursor().x + dx, editor.Cursor().y + dy};
    if (to.x < 0 || to.y < 0 || to.x > kLast || to.y > kLast) {
        const int direction = dx < 0 ? kLeft : dx > 0 ? kRight : dy < 0 ? kUp : kDown;
        const int next = vWorld->GetFont()->NeighbourGlyph(vBrush.chr, direction);
        if (next < 0) return;
        vBrush.chr = next;
        to = {(to.x + kTileSize) % kTileSize, (to.y + kTileSize) % kTileSize};
    }
    editor.SetCursor(to);
}

// --- keys, buttons, menu -----------------------------------------------------------------------

bool DoFontEdit::OnFormKey(FormWindow& form, int code) {
    switch (code) {
        case platform::kKeyLeft:
            MoveCursor(-1, 0);
            return true;
        case platform::kKeyRight:
            MoveCursor(1, 0);
            return true;
        case platform::kKeyUp:
            MoveCursor(0, -1);
            return true;
        case platform::kKeyDown:
            MoveCursor(0, 1);
            return true;
        case platform::kKeySpace:
            WritePixel();
            return true;
        case platform::kKeyEnter:
            PickColor();
            return true;
        case 'C':
            OnControl(form, kFontChangeColor);
            return true;
        default:
            return false;
    }
}

void DoFontEdit::OnControl(FormWindow& form, int id) {
    Dfont& glyphs = *vWorld->GetFont();
    switch (id) {
        case kFontCopy:
            copied = ReadGlyph(vBrush.chr);
            break;
        case kFontPaste:
            Change(copied);
            break;
        case kFontFlipVertical:
            Change(FlippedVertically(ReadGlyph(vBrush.chr)));
            break;
        case kFontFlipHorizontal:
            Change(FlippedHorizontally(ReadGlyph(vBrush.chr)));
            break;
        case kFontInvert:
            Change(Inverted(ReadGlyph(vBrush.chr)));
            break;
        case kFontNewLine:
            glyphs.AddRow();
            SheetChanged();
            break;
        case kFontDeleteLine:
            glyphs.RemoveRow();
            SheetChanged();
            break;
        case kFontCharMode:
        case kFontSpriteMode:
            spriteMode = id == kFontSpriteMode;
            break;
        case kFontChangeColor:
            DoColorSelect().Run();
            preview.Invalidate();
            break;
        case platform::kIdOk:
            vWorld->RedrawAll();
            form.EndDialog(id);
            break;
        case platform::kIdCancel:
            if (vPlatform->MessageBox("Discard Changes ?", "Confirm Cancel",
                                      platform::Buttons::OkCancel, platform::Icon::Question))
                form.EndDialog(id);
            break;
        default:
            break;
    }
}

void DoFontEdit::OnChange(FormWindow& form, int id) {
    if (id == kFontSlider)
        browser.ScrollDown(form.GetValue(kFontSlider) / static_cast<double>(kSliderRange));
}

void DoFontEdit::OnCommand(FormWindow&, int command) {
    if (command == kFontLoad) Load();
    if (command == kFontSave) Save();
}

void DoFontEdit::Load() {
    const auto path = vPlatform->OpenFileDialog({"", kFilter, kExtension, ""});
    if (!path) return;
    vWorld->GetFont()->ImportBitmap(*path);
    SheetChanged();
}

void DoFontEdit::Save() {
    const auto path = vPlatform->SaveFileDialog({"", kFilter, kExtension, ""});
    if (!path) return;
    const Dfont& glyphs = *vWorld->GetFont();
    std::string why = *path + " could not be saved: there is not enough memory.";
    const std::string bytes = MakeBmp(glyphs.Sheet(), glyphs.GetPalette());
    if (!bytes.empty()) ReplaceFile(*path, bytes, why);
    if (!why.empty()) Trace("%s\n", why.c_str());
}
