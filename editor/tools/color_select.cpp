#include "editor/tools/color_select.h"

#include <algorithm>
#include <string>

namespace {

constexpr int kColumns = 16;
constexpr int kColors = 256;
constexpr int kLeastW = 11;
constexpr int kLeastH = 10;
constexpr int kPaper = 115;
constexpr int kMark = 15;
constexpr int kInnerMark = 32;

void MarkCell(BITMAP* to, int x, int y, platform::Size cell) {
    xor_mode(TRUE);
    rect(to, x, y, x + cell.w - 1, y + cell.h - 1, kMark);
    rect(to, x + 1, y + 1, x + cell.w - 2, y + cell.h - 2, kInnerMark);
    xor_mode(FALSE);
}

}  // namespace

// Where a screen's pixels are smaller than those for which the forms were drawn, the window has
// more of them and the cells fill it.
platform::Size ColorSelect::Cell() const {
    if (!vBitmap) return {kLeastW, kLeastH};
    return {std::max(vBitmap->w / kColumns, kLeastW),
            std::max(vBitmap->h / (kColors / kColumns), kLeastH)};
}

void ColorSelect::OnDraw(platform::Window& own) {
    BITMAP* to = Buffer(own.ClientSize(), name);
    if (!to) return;
    const int current = vBrush.*field;
    const platform::Size cell = Cell();
    clear_to_color(to, kPaper);
    for (int color = 0; color < kColors; ++color) {
        const int x = color % kColumns * cell.w;
        const int y = color / kColumns * cell.h;
        rectfill(to, x, y, x + cell.w - 1, y + cell.h - 1, color);
        if (color == current) MarkCell(to, x, y, cell);
    }
    line(to, 0, 0, cell.w - 1, cell.h - 1, kMark);
    line(to, cell.w - 1, 0, 0, cell.h - 1, kMark);
    Show(own);
    own.SetDescription(current >= 0 && current < kColors ? "Colour " + std::to_string(current)
                                                         : "No colour");
}

void ColorSelect::Choose(int color) {
    vBrush.*field = color;
    Invalidate();
    Call(repaintPreview);
}

void ColorSelect::ChooseAt(platform::Point at) {
    const platform::Size cell = Cell();
    const bool inside =
        at.x >= 0 && at.x < kColumns * cell.w && at.y >= 0 && at.y < kColors / kColumns * cell.h;
    if (inside) Choose(at.x / cell.w + kColumns * (at.y / cell.h));
}

void ColorSelect::OnLButtonDown(bool, platform::Point at) {
    pressed = true;
    ChooseAt(at);
}

void ColorSelect::OnMouseMove(bool, platform::Point at) {
    if (pressed) ChooseAt(at);
}

void ColorSelect::OnKeyDown(int code) {
    const platform::Point step = ArrowStep(code);
    if (step == platform::Point{}) return;
    const int from = std::clamp(vBrush.*field, 0, kColors - 1);
    const int to = from + step.x + step.y * kColumns;
    const bool beside = from % kColumns + step.x < 0 || from % kColumns + step.x >= kColumns;
    if (!beside && to >= 0 && to < kColors) Choose(to);
}
