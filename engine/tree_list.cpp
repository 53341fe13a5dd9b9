// The painted list of boards and objects, and which row a click hits.

#include "engine/dinterface.h"

#include <string>

namespace {

constexpr int kRowHeight = 10;
constexpr int kIndent = 10;
constexpr int kMargin = 3;
constexpr int kPaper = 15;
constexpr int kInk = 255;
constexpr int kBoardBand = 1;
constexpr int kSelectedBand = 0;
constexpr int kNoBand = -1;
/// So many that a band runs past the right edge of any pane.
constexpr int kBandLength = 188;

// Calls `use(node, depth)` for the nodes below `parent`, row by row, until it gives false.
template <typename Use>
bool WalkRows(const Dobject& parent, int depth, Use& use) {
    for (const auto& child : parent.children) {
        if (!use(*child, depth)) return false;
        if (!WalkRows(*child, depth + 1, use)) return false;
    }
    return true;
}

}  // namespace

const Dobject* Dinterface::DrawTreeList(int x, int y, BITMAP* bitmap) const {
    clear_to_color(bitmap, kPaper);
    const int left = kMargin - x * kIndent;
    int top = kMargin - y * kRowHeight;
    textout_ex(bitmap, font, "Board / Object List", left, top, kInk, kNoBand);

    const std::string minuses(kBandLength, '-');
    const Dobject* selection = nullptr;
    auto drawRow = [&](const Dobject& node, int depth) {
        top += kRowHeight;
        if (top >= bitmap->h) return false;
        if (top <= -kRowHeight) return true;
        const bool isBoard = depth == 0;
        const bool selected = node.id == currentObject;
        if (selected) selection = &node;
        std::string label = node.hidden ? "[" + node.name + "]" : node.name;
        if (isBoard && node.id == currentBoard) label += " *";
        if (selected) label += (isBoard ? " z = " : " : z = ") + std::to_string(node.posz);
        if (isBoard) label = "-- " + label + " " + minuses;
        const int band = selected ? kSelectedBand : isBoard ? kBoardBand : kNoBand;
        textout_ex(bitmap, font, label.c_str(), left + depth * kIndent, top,
                   band == kNoBand ? kInk : kPaper, band);
        return true;
    };
    WalkRows(*vMain, 0, drawRow);
    return selection;
}

void Dinterface::ClickTreeList(int y0, int y) {
    int row = y0 - kRowHeight;
    const Dobject* hit = nullptr;
    auto testRow = [&](const Dobject& node, int) {
        if (kMargin - row < y && y < kMargin + 8 - row) hit = &node;
        row -= kRowHeight;
        return !hit;
    };
    if (WalkRows(*vMain, 0, testRow)) return;
    currentObject = hit->id;
    const Dobject* board = hit;
    while (board->parent->parent && board->parent->name != kRootName) board = board->parent;
    currentBoard = board->id;
    ShowBoard(board->id);
}
