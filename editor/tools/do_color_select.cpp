#include "editor/tools/do_color_select.h"

#include "platform/keys.h"
#include "platform/platform.h"

#include <algorithm>

using platform::Control;
using platform::ControlKind;
using platform::FormWindow;

namespace {

constexpr int kLastColor = 255;
constexpr int kRow = 16;

constexpr Control kControls[] = {
    {kColorGrid, ControlKind::Picture, "FG color Select", 7, 7, 100, 92,
     "Click or drag to choose, or use the arrow keys"},
    {platform::kIdOk, ControlKind::DefaultButton, "OK", 7, 102, 48, 14, "Use this colour"},
    {platform::kIdCancel, ControlKind::Button, "Cancel", 59, 102, 48, 14,
     "Close; the colour stays"},
};

constexpr platform::Form kForm{"Color Select", 114, 123, "Courier New", 8, kControls};

struct ColorKey {
    int key;
    int step;
};
constexpr ColorKey kKeys[] = {
    {platform::kKeyLeft, -1},
    {platform::kKeyRight, 1},
    {platform::kKeyUp, -kRow},
    {platform::kKeyDown, kRow},
};

}  // namespace

void DoColorSelect::Run() { vPlatform->RunDialog(kForm, *this); }

platform::WindowEvents* DoColorSelect::PictureEvents(int id) {
    return id == kColorGrid ? &grid : nullptr;
}

void DoColorSelect::OnInit(FormWindow& form) { grid.Attach(form.Picture(kColorGrid)); }

bool DoColorSelect::OnFormKey(FormWindow&, int code) {
    for (const ColorKey& binding : kKeys) {
        if (binding.key != code) continue;
        vBrush.fg = std::clamp(vBrush.fg + binding.step, 0, kLastColor);
        grid.Invalidate();
        return true;
    }
    return false;
}

void DoColorSelect::OnControl(FormWindow& form, int id) {
    if (id == platform::kIdOk || id == platform::kIdCancel) form.EndDialog(id);
}
