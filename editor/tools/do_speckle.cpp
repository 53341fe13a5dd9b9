#include "editor/tools/do_speckle.h"

#include "editor/number_field.h"
#include "editor/tools/fade_fills.h"
#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr int kMaxPercentage = 99;

constexpr Control kControls[] = {
    {kSpeckleLabel, ControlKind::Label, "Percentage of Frequency", 7, 7, 93, 8},
    {kSpecklePercentage, ControlKind::NumberEdit, "Percentage of Frequency", 7, 17, 22, 14,
     "How many of a hundred tiles take the brush, 0 to 99", 0, kMaxPercentage},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 32, 17, 31, 14, "Paint the area"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 66, 17, 34, 14, "Leave the area as it is"},
};

constexpr platform::Form kForm{"Speckle", 107, 38, "Courier New", 8, kControls};

}  // namespace

bool DoSpeckle::Run() { return vPlatform->RunDialog(kForm, *this) == platform::kIdOk; }

void DoSpeckle::OnInit(FormWindow& form) {
    form.SetText(kSpecklePercentage, "50");
    form.SetFocus(kSpecklePercentage);
}

void DoSpeckle::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdCancel) form.EndDialog(id);
    if (id != platform::kIdOk) return;
    const std::optional<int> percentage =
        ReadNumberField(form, kSpecklePercentage, 0, kMaxPercentage);
    if (!percentage) return;
    const platform::WaitCursor wait;
    const HandleGuard h(vWorld->GetCurrentObject());
    vWorld->BackupTiles(h);
    SpeckleFill(h, area, brush, *percentage);
    form.EndDialog(id);
}
