#include "engine/tree_list.h"

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

const std::vector<TreeList::Row>& TreeList::Rows() {
    if (rowsMadeAt == vTreeChanges) return rows;
    rows.clear();
    const auto add = [this](const auto& self, const Dobject& parent, int depth) -> void {
        for (const auto& child : parent.children) {
            rows.push_back({child.get(), depth});
            self(self, *child, depth + 1);
        }
    };
    add(add, root, 0);
    rowsMadeAt = vTreeChanges;
    return rows;
}

const Dobject* TreeList::Draw(int x, int y, BITMAP* bitmap, std::int32_t selected,
                              std::int32_t currentBoard) {
    clear_to_color(bitmap, kPaper);
    const int left = kMargin - x * kIndent;
    int top = kMargin - y * kRowHeight;
    textout_ex(bitmap, font, "Board / Object List", left, top, kInk, kNoBand);

    const std::string minuses(kBandLength, '-');
    const Dobject* selection = nullptr;
    const std::vector<Row>& list = Rows();
    // The row before the first whole one shows its lowest pixels.
    for (auto row = static_cast<std::size_t>(std::max(y - 2, 0)); row < list.size(); ++row) {
        const std::int64_t at = kMargin + (static_cast<std::int64_t>(row) + 1 - y) * kRowHeight;
        if (at >= bitmap->h) break;
        top = static_cast<int>(at);
        const auto& [node, depth] = list[row];
        const bool isBoard = depth == 0;
        const bool isSelected = node->id == selected;
        if (isSelected) selection = node;
        std::string label = node->hidden ? "[" + node->name + "]" : node->name;
        if (isBoard && node->id == currentBoard) label += " *";
        if (isSelected) label += (isBoard ? " z = " : " : z = ") + std::to_string(node->posz);
        if (isBoard) label = "-- " + label + " " + minuses;
        const int band = isSelected ? kSelectedBand : isBoard ? kBoardBand : kNoBand;
        textout_ex(bitmap, font, label.c_str(), left + depth * kIndent, top,
                   band == kNoBand ? kInk : kPaper, band);
    }
    return selection;
}

int TreeList::RowOf(std::int32_t id) {
    const std::vector<Row>& list = Rows();
    const auto found =
        std::find_if(list.begin(), list.end(), [id](const Row& row) { return row.node->id == id; });
    return found == list.end() ? -1 : static_cast<int>(found - list.begin());
}

int TreeList::RowAt(int y0, int y) const {
    constexpr int kGlyphHeight = 8;
    // Rows count from 1, below the title; of each only the inside of its text can be hit.
    const std::int64_t from = std::int64_t{y0} + y - kMargin;
    const std::int64_t within = from % kRowHeight;
    return within >= 1 && within < kGlyphHeight ? static_cast<int>(from / kRowHeight) - 1 : -1;
}

const Dobject* TreeList::NodeAt(int row) {
    return row < 0 || row >= RowCount() ? nullptr : Rows()[static_cast<std::size_t>(row)].node;
}
