#include "editor/tools/color_select.h"

#include <string>

namespace {

constexpr int kColumns = 16;
constexpr int kColors = 256;
constexpr int kCellW = 11;
constexpr int kCellH = 10;
constexpr int kPaper = 115;
constexpr int kMark = 15;
constexpr int kInnerMark = 32;

void MarkCell(BITMAP* to, int x, int y) {
    xor_mode(TRUE);
    rect(to, x, y, x + kCellW - 1, y + kCellH - 1, kMark);
    rect(to, x + 1, y + 1, x + kCellW - 2, y + kCellH - 2, kInnerMark);
    xor_mode(FALSE);
}

}  // namespace

void ColorSelect::OnDraw(platform::Window& own) {
    BITMAP* to = Buffer(own.ClientSize(), name);
    if (!to) return;
    const int current = vBrush.*field;
    clear_to_color(to, kPaper);
    for (int color = 0; color < kColors; ++color) {
        const int x = color % kColumns * kCellW;
        const int y = color / kColumns * kCellH;
        rectfill(to, x, y, x + kCellW - 1, y + kCellH - 1, color);
        if (color == current) MarkCell(to, x, y);
    }
    line(to, 0, 0, kCellW - 1, kCellH - 1, kMark);
    line(to, kCellW - 1, 0, 0, kCellH - 1, kMark);
    Show(own);
    own.SetDescription(current >= 0 && current < kColors ? "Colour " + std::to_string(current)
                                                         : "No colour");
}

void ColorSelect::Choose(platform::Point at) {
    const bool inside =
        at.x >= 0 && at.x < kColumns * kCellW && at.y >= 0 && at.y < kColors / kColumns * kCellH;
    if (!inside) return;
    vBrush.*field = at.x / kCellW + kColumns * (at.y / kCellH);
    Invalidate();
    Call(repaintPreview);
}

void ColorSelect::OnLButtonDown(bool, platform::Point at) {
    pressed = true;
    Choose(at);
}

void ColorSelect::OnMouseMove(bool, platform::Point at) {
    if (pressed) Choose(at);
}
