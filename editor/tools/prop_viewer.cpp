#include "editor/tools/prop_viewer.h"

#include "engine/dinterface.h"

#include <string>

namespace {

constexpr int kInk = 15;
constexpr int kPaper = 255;

}  // namespace

void PropViewer::OnDraw(platform::Window& own) {
    BITMAP* to = Buffer(own.ClientSize(), "PropViewer");
    if (!to) return;
    clear_to_color(to, kPaper);
    const HandleGuard h(vWorld->GetCurrentObject());
    const auto number = [&](int property) {
        return std::to_string(vWorld->GetProperty(h, property));
    };
    const char* name = vWorld->GetName(h);
    const std::string lines[] = {
        name ? name : "",
        "Location: " + number(kPosX) + " x " + number(kPosY) + " z " + number(kPosZ),
        "Size: " + number(kWidth) + " x " + number(kHeight),
        "View: " + number(kViewW) + " x " + number(kViewH),
    };
    int row = 1;
    std::string description;
    for (const std::string& text : lines) {
        vWorld->GetFont()->DrawText(to, text.c_str(), kInk, kPaper, 1, row);
        row += 2;
        description += (description.empty() ? "" : ", ") + text;
    }
    Show(own);
    own.SetDescription(description);
}
