// The painted list of boards and objects, and which row a click hits.

#include "engine/dinterface.h"

#include <algorithm>
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

}  // namespace

const std::vector<Dinterface::TreeRow>& Dinterface::TreeRows() const {
    if (rowsMadeAt == vTreeChanges) return rows;
    rows.clear();
    const auto add = [this](const auto& self, const Dobject& parent, int depth) -> void {
        for (const auto& child : parent.children) {
            rows.push_back({child.get(), depth});
            self(self, *child, depth + 1);
        }
    };
    add(add, *vMain, 0);
    rowsMadeAt = vTreeChanges;
    return rows;
}

const Dobject* Dinterface::DrawTreeList(int x, int y, BITMAP* bitmap) const {
    clear_to_color(bitmap, kPaper);
    const int left = kMargin - x * kIndent;
    int top = kMargin - y * kRowHeight;
    textout_ex(bitmap, font, "Board / Object List", left, top, kInk, kNoBand);

    const std::string minuses(kBandLength, '-');
    const Dobject* selection = nullptr;
    const std::vector<TreeRow>& list = TreeRows();
    // The row before the first whole one shows its lowest pixels.
    for (auto row = static_cast<std::size_t>(std::max(y - 2, 0)); row < list.size(); ++row) {
        const std::int64_t at = kMargin + (static_cast<std::int64_t>(row) + 1 - y) * kRowHeight;
        if (at >= bitmap->h) break;
        top = static_cast<int>(at);
        const auto& [node, depth] = list[row];
        const bool isBoard = depth == 0;
        const bool selected = node->id == currentObject;
        if (selected) selection = node;
        std::string label = node->hidden ? "[" + node->name + "]" : node->name;
        if (isBoard && node->id == currentBoard) label += " *";
        if (selected) label += (isBoard ? " z = " : " : z = ") + std::to_string(node->posz);
        if (isBoard) label = "-- " + label + " " + minuses;
        const int band = selected ? kSelectedBand : isBoard ? kBoardBand : kNoBand;
        textout_ex(bitmap, font, label.c_str(), left + depth * kIndent, top,
                   band == kNoBand ? kInk : kPaper, band);
    }
    return selection;
}

int Dinterface::SelectedTreeRow() const {
    const std::vector<TreeRow>& list = TreeRows();
    const auto found = std::find_if(list.begin(), list.end(), [this](const TreeRow& row) {
        return row.node->id == currentObject;
    });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

void Dinterface::ClickTreeList(int y0, int y) {
    constexpr int kGlyphHeight = 8;
    // Rows count from 1, below the title; of each only the inside of its text can be hit.
    const std::int64_t from = std::int64_t{y0} + y - kMargin;
    const std::int64_t row = from / kRowHeight;
    const std::int64_t within = from % kRowHeight;
    if (within >= 1 && within < kGlyphHeight && row <= TreeRowCount())
        SelectTreeRow(static_cast<int>(row) - 1);
}

void Dinterface::SelectTreeRow(int row) {
    const std::vector<TreeRow>& list = TreeRows();
    if (row < 0 || row >= TreeRowCount()) return;
    const Dobject* hit = list[static_cast<std::size_t>(row)].node;
    currentObject = hit->id;
    const Dobject* board = hit;
    while (board->parent->parent && !board->IsBoard()) board = board->parent;
    currentBoard = board->id;
    ShowBoard(board->id);
}
