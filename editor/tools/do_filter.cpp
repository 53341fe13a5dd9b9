#include "editor/tools/do_filter.h"

#include "engine/dtile.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kFilterChar, ControlKind::CheckBox, "Char", 7, 8, 30, 11, "Use the glyph"},
    {kFilterFg, ControlKind::CheckBox, "Fg", 41, 8, 22, 11, "Use the foreground colour"},
    {kFilterBg, ControlKind::CheckBox, "Bg", 67, 8, 22, 11, "Use the background colour"},
    {kFilterAttribute, ControlKind::CheckBox, "Attribute", 93, 8, 51, 11, "Use the game attribute"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 151, 7, 36, 13,
     "Go on with the fields that are ticked"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 191, 7, 36, 13,
     "Leave everything as it is"},
};

constexpr platform::Form kForm{"Filter", 234, 27, "Courier New", 8, kControls};

struct FilterBox {
    int id;
    std::int32_t Brush::*field;
};
constexpr FilterBox kBoxes[] = {
    {kFilterChar, &Brush::chr},
    {kFilterFg, &Brush::fg},
    {kFilterBg, &Brush::bg},
    {kFilterAttribute, &Brush::attrib},
};

}  // namespace

bool DoFilter::Run() { return vPlatform->RunDialog(kForm, *this) == platform::kIdOk; }

void DoFilter::OnInit(FormWindow& form) {
    for (const FilterBox& box : kBoxes) form.SetCheck(box.id, true);
}

void DoFilter::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdOk) {
        for (const FilterBox& box : kBoxes)
            if (!form.IsChecked(box.id)) brush.*box.field = kKeepField;
    }
    if (id == platform::kIdOk || id == platform::kIdCancel) form.EndDialog(id);
}
