#include "editor/shell/do_name.h"

#include "platform/platform.h"

#include <algorithm>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr Control kControls[] = {
    {kNameText, ControlKind::Edit, "Name", 7, 7, 192, 12, "One word; blanks become underscores", 0,
     kMaxNameLength},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 203, 7, 36, 12, "Use this name"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 243, 7, 36, 12, "Keep the old name"},
};

constexpr platform::Form kForm{"Name", 286, 26, "Courier New", 8, kControls};

bool IsBlank(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

void DoName::Run() { vPlatform->RunDialog(kForm, *this); }

void DoName::OnInit(FormWindow& form) {
    const char* name = vWorld->GetName(node);
    form.SetText(kNameText, name ? name : "");
    shown = form.GetText(kNameText);
}

void DoName::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdOk) {
        std::string name = form.GetText(kNameText);
        const char* old = vWorld->GetName(node);
        // What the field could not show of a name stays unless somebody edits it.
        if (name != shown || (old && old == shown)) {
            std::replace_if(name.begin(), name.end(), IsBlank, '_');
            vWorld->SetName(node, name);
        }
    }
    if (id == platform::kIdOk || id == platform::kIdCancel) form.EndDialog(id);
}
