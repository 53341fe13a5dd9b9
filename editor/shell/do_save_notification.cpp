#include "editor/shell/do_save_notification.h"

#include "platform/platform.h"

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr const char* kSection = "Notify";
constexpr const char* kKey = "param";

constexpr Control kControls[] = {
    {kNoticeText, ControlKind::Label,
     "QUILT! Edit will now save your file and tell QUILT! Runner to play it.", 7, 7, 148, 20},
    {kNoticeHide, ControlKind::CheckBox, "Hide this message", 7, 29, 148, 10,
     "Without the tick this notice no longer comes"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 76, 41, 38, 13, "Save and play"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 117, 41, 38, 13, "Neither save nor play"},
};
constexpr platform::Form kForm{"Save Notification", 162, 60, "Courier New", 8, kControls};

}  // namespace

bool DoSaveNotification::Confirm() {
    if (vPlatform->GetProfileInt(kSection, kKey, 1) == 0) return true;
    DoSaveNotification notice;
    return vPlatform->RunDialog(kForm, notice) == platform::kIdOk;
}

void DoSaveNotification::OnInit(FormWindow& form) { form.SetCheck(kNoticeHide, true); }

void DoSaveNotification::OnControl(FormWindow& form, int id) {
    if (id != kNoticeHide)
        form.EndDialog(id);
    else if (!form.IsChecked(kNoticeHide))
        // Written at once and never taken back: ticking again or Cancel changes nothing.
        vPlatform->WriteProfileInt(kSection, kKey, 0);
}
