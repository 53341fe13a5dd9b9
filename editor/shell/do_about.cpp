#include "editor/shell/do_about.h"

#include "editor/shell/key_table.h"
#include "platform/platform.h"

#include <filesystem>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

// From the program's folder, in which the program runs.
constexpr const char* kManual = "manual/manual.html";

constexpr Control kControls[] = {
    {kAboutText, ControlKind::Label,
     "QUILT! " QUILT_VERSION
     "\nThe editor of a game-creation kit for tile games.\nFree software under the GNU General "
     "Public License, version 3 or later.",
     7, 7, 366, 27},
    {kAboutKeys, ControlKind::Page, "Keys", 7, 40, 366, 180, "The keys and the mouse"},
    {kAboutManual, ControlKind::Button, "&Manual", 7, 226, 60, 14,
     "Read the manual in the desktop's browser (Alt+M)"},
    {kAboutSample, ControlKind::Button, "&Sample game", 73, 226, 70, 14,
     "Open Lamplight, the game of the manual's pictures (Alt+S)"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 313, 226, 60, 14, "Close"},
};
constexpr platform::Form kForm{"About QUILT!", 380, 247, "Courier New", 8, kControls};

void ShowManual() {
    std::error_code error;
    const std::string path = std::filesystem::absolute(kManual, error).string();
    if (!std::filesystem::exists(path, error) || !vPlatform->ShowDocument(path))
        vPlatform->MessageBox("The manual could not be shown:\n" + path, "QUILT!",
                              platform::Buttons::Ok, platform::Icon::Warning);
}

}  // namespace

bool DoAbout::Run() { return vPlatform->RunDialog(kForm, *this) == kAboutSample; }

void DoAbout::OnInit(FormWindow& form) {
    std::string page;
    for (const KeyTable& table : KeyTables())
        page += (page.empty() ? "" : "<hr>") + KeyTableAsHtml(table);
    form.SetText(kAboutKeys, page);
    form.SetFocus(platform::kIdOk);
}

void DoAbout::OnControl(FormWindow& form, int id) {
    if (id == kAboutManual)
        ShowManual();
    else
        form.EndDialog(id);
}
