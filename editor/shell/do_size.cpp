#include "editor/shell/do_size.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kSizeLabel, ControlKind::Label, "Width", 7, 9, 22, 9},
    {kSizeW, ControlKind::NumberEdit, "Width", 30, 7, 38, 13, "Columns of the grid"},
    {kSizeLabel + 1, ControlKind::Label, "Height", 75, 9, 26, 9},
    {kSizeH, ControlKind::NumberEdit, "Height", 102, 7, 38, 13, "Rows of the grid"},
    {kSizeChangeView, ControlKind::CheckBox, "Change Viewport", 148, 8, 74, 11,
     "Show the whole of the new grid"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 226, 7, 36, 13,
     "Change the grid; what lies outside the new one is lost"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 266, 7, 36, 13, "Leave the grid"},
};

constexpr platform::Form kForm{"Size", 309, 27, "Courier New", 8, kControls};

constexpr PropertyField kFields[] = {
    {kSizeW, kWidth, 1, kMaxGridSide},
    {kSizeH, kHeight, 1, kMaxGridSide},
};

// One side after the other, first the one that does not pass through a grid that is too large.
void Resize(Handle h, int w, int height) {
    const bool widthFirst = CanMakeGrid(w, vWorld->GetProperty(h, kHeight));
    if (widthFirst) vWorld->SetProperty(h, kWidth, w);
    vWorld->SetProperty(h, kHeight, height);
    if (!widthFirst) vWorld->SetProperty(h, kWidth, w);
}

}  // namespace

DoSize::DoSize() : NumberDialog(kForm, kFields) {}

void DoSize::OnInit(FormWindow& form) {
    NumberDialog::OnInit(form);
    form.SetCheck(kSizeChangeView, true);
}

bool DoSize::Write(FormWindow& form, std::span<const int> values) {
    const int w = values[0];
    const int h = values[1];
    if (!CheckGridSize(form, w, h, kSizeW, kSizeH)) return false;
    const platform::WaitCursor wait;
    Resize(node, w, h);
    if (form.IsChecked(kSizeChangeView)) {
        vWorld->SetProperty(node, kViewW, w);
        vWorld->SetProperty(node, kViewH, h);
    }
    return true;
}
