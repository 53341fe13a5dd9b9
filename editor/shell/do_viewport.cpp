#include "editor/shell/do_viewport.h"

#include "editor/number_field.h"

#include <algorithm>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kViewportLabel, ControlKind::Label, "Width", 7, 9, 22, 9},
    {kViewportW, ControlKind::NumberEdit, "Width", 30, 7, 38, 13,
     "Columns shown; the grid grows with them"},
    {kViewportLabel + 1, ControlKind::Label, "Height", 74, 9, 26, 9},
    {kViewportH, ControlKind::NumberEdit, "Height", 101, 7, 38, 13,
     "Rows shown; the grid grows with them"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 146, 7, 33, 13, "Show that much"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 183, 7, 33, 13, "Leave the viewport"},
};

constexpr platform::Form kForm{"Viewport", 223, 27, "Courier New", 8, kControls};

constexpr PropertyField kFields[] = {
    {kViewportW, kViewW, kAnyLow, kAnyHigh},
    {kViewportH, kViewH, kAnyLow, kAnyHigh},
};

}  // namespace

DoViewport::DoViewport() : NumberDialog(kForm, kFields) {}

bool DoViewport::Write(FormWindow& form, std::span<const int> values) {
    const int w = std::max(values[0], vWorld->GetProperty(node, kWidth));
    const int h = std::max(values[1], vWorld->GetProperty(node, kHeight));
    return CheckGridSize(form, w, h, kViewportW, kViewportH) && NumberDialog::Write(form, values);
}
