#include "editor/shell/paint_view.h"

#include "editor/commands.h"
#include "editor/number_field.h"
#include "editor/shell/panel_ids.h"
#include "editor/view/brush.h"
#include "editor/view/view_state.h"
#include "engine/dinterface.h"
#include "platform/keys.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr int kMaxStep = 100;

constexpr Control kControls[] = {
    {kBrushPreview, ControlKind::Picture, "Brush Preview", 3, 3, 39, 48,
     "The brush; click, Enter or Space for its settings. Home and End: foreground, Page Up and "
     "Page Down: background, Insert and Delete: glyph"},
    {kBrushName, ControlKind::ReadOnlyEdit, "Brush mode", 45, 3, 93, 12,
     "How the keys paint; Tab lets every step of the cursor paint"},
    {kSlotSlider, ControlKind::Slider, "Brush slot", 45, 19, 112, 13, "Nine brushes to choose from",
     0, kBrushSlots - 1},
    {kRadioBrush, ControlKind::Radio, "&Brush", 45, 37, 31, 14,
     "Space and Shift stamp the brush (Alt+B)"},
    {kRadioBlender, ControlKind::Radio, "B&lender", 78, 37, 37, 14,
     "Space and Shift step a tile through the shades (Alt+L)"},
    {kRadioText, ControlKind::Radio, "&Add Text", 117, 37, 41, 14, "Type into the tiles (Alt+A)"},
    {kShowAttrib, ControlKind::CheckBox, "Show Attrib", 166, 6, 55, 10,
     "Mark solid, breakable and water tiles"},
    {kRestoreBackup, ControlKind::Button, "&Restore Backup", 162, 20, 63, 14,
     "Bring back the tiles as they were at the last backup (Alt+R)"},
    {kSaveBackup, ControlKind::Button, "&Save Backup", 162, 37, 63, 14,
     "Remember the tiles as they are now"},
    {kToProperties, ControlKind::Button, "PROPERTIES", 228, 3, 56, 14,
     "Select, move and change objects (Ctrl and double click in the list)"},
    {kStepX, ControlKind::NumberEdit, "Columns a scroll step", 229, 20, 25, 14,
     "Columns that F1 and F2 scroll", 0, kMaxStep},
    {kStepY, ControlKind::NumberEdit, "Rows a scroll step", 259, 20, 25, 14,
     "Rows that F1 and F2 scroll", 0, kMaxStep},
    {kScrollBack, ControlKind::Button, "< F1", 229, 37, 25, 14,
     "Scroll the object's view back (F1)"},
    {kScrollForward, ControlKind::Button, "F2 >", 259, 37, 25, 14,
     "Scroll the object's view forward (F2)"},
};

struct ModeRadio {
    int id;
    BrushMode mode;
};
constexpr ModeRadio kRadios[] = {
    {kRadioBrush, kBrushNormal},
    {kRadioBlender, kBrushBlender},
    {kRadioText, kBrushText},
};

int RadioOf(int mode) {
    switch (mode) {
        case kBrushText:
            return kRadioText;
        case kBrushBlender:
        case kBrushBlenderTab:
            return kRadioBlender;
        default:
            return kRadioBrush;
    }
}

void ShowMode(FormWindow& form) {
    form.SetText(kBrushName, BrushModeName(vBrushMode));
    for (const ModeRadio& radio : kRadios) form.SetCheck(radio.id, radio.id == RadioOf(vBrushMode));
}

std::optional<int> ParseStep(const std::string& text) { return ParseNumber(text, 0, kMaxStep); }

// Writing a text that is there already would move the caret of who is typing.
void ShowStep(FormWindow& form, int id, int value) {
    if (ParseStep(form.GetText(id)) != value) form.SetText(id, std::to_string(value));
}

void ShowBackup(FormWindow& form) {
    form.Enable(kRestoreBackup, vWorld->HasBackup(HandleGuard(vWorld->GetCurrentObject())));
}

void ShowSteps(FormWindow& form) {
    ShowStep(form, kStepX, vStepX);
    ShowStep(form, kStepY, vStepY);
}

}  // namespace

const platform::Form& CPaintView::Layout() {
    static constexpr platform::Form kForm{"", 287, 54, "OCR A Extended", 10, kControls};
    return kForm;
}

platform::WindowEvents* CPaintView::PictureEvents(int id) {
    return id == kBrushPreview ? &preview : nullptr;
}

void CPaintView::OnInit(FormWindow& form) {
    form.SetValue(kSlotSlider, vBrushSlot);
    preview.Attach(form.Picture(kBrushPreview));
    preview.openSettings = [this] {
        host.EditBrush();
        host.Changed(Change::BrushDialog);
        host.FocusEditView();
    };
    ShowSteps(form);
    vShowAttrib = false;
    ShowMode(form);
}

void CPaintView::OnFormPaint(FormWindow& form) {
    ShowMode(form);
    ShowSteps(form);
    ShowBackup(form);
}

bool CPaintView::OnFormKey(FormWindow& form, int code) {
    // These leave a step box: one that was left empty shows its number again.
    if (code == platform::kKeyEnter || code == platform::kKeyEscape) ShowSteps(form);
    return false;
}

void CPaintView::OnControl(FormWindow& form, int id) {
    host.EndBox();
    host.Changed(Run(form, id));
}

Change CPaintView::Run(FormWindow& form, int id) {
    for (const ModeRadio& radio : kRadios) {
        if (radio.id != id) continue;
        vBrushMode = radio.mode;
        ShowMode(form);
        return Change::Brush;
    }
    const platform::WaitCursor wait;
    const HandleGuard h(vWorld->GetCurrentObject());
    switch (id) {
        case kShowAttrib:
            vShowAttrib = form.IsChecked(kShowAttrib);
            return Change::World;
        case kSaveBackup:
            vWorld->BackupTiles(h);
            ShowBackup(form);
            break;
        case kRestoreBackup:
            if (!vWorld->HasBackup(h)) break;
            vWorld->RestoreTiles(h);
            return Change::World;
        case kToProperties:
            vPanelMode = kPanelProperties;
            host.PostCommand(kCmdShowPropertiesPanel);
            break;
        case kScrollBack:
            ScrollBack();
            return Change::View;
        case kScrollForward:
            ScrollForward();
            return Change::View;
        default:
            break;
    }
    return Change::Nothing;
}

void CPaintView::OnChange(FormWindow& form, int id) {
    if (id == kSlotSlider) {
        ChooseBrushSlot(form.GetValue(kSlotSlider));
        host.Changed(Change::Brush);
    } else if (id == kStepX || id == kStepY) {
        ReadStep(form, id);
    }
}

void CPaintView::ReadStep(FormWindow& form, int id) {
    const std::string text = form.GetText(id);
    if (text.empty()) return;
    const std::optional<int> step = ParseStep(text);
    if (step) {
        (id == kStepX ? vStepX : vStepY) = *step;
        return;
    }
    ShowNumberRange(0, kMaxStep);
    form.SetText(id, std::to_string(id == kStepX ? vStepX : vStepY));
    form.SetFocus(id);
}
