// The painted list of boards and objects, in rows of 10 pixels below a title.
#pragma once

#include "engine/allegro_api.h"
#include "engine/dobject.h"

#include <cstdint>
#include <vector>

class TreeList {
public:
    /// The tree outlives the list.
    explicit TreeList(const Dobject& tree) : root(tree) {}

    /// Paints the list, scrolled by (x, y) rows, over the whole bitmap, with the two ids marked.
    /// Gives the selected node, borrowed, if its row is among those painted: no other node is
    /// looked at.
    const Dobject* Draw(int x, int y, BITMAP* bitmap, std::int32_t selected,
                        std::int32_t currentBoard);
    /// The row hit at pixel y of a list scrolled by y0 pixels, from 0 without the title; a miss
    /// is no row's number.
    int RowAt(int y0, int y) const;
    int RowOf(std::int32_t id);  ///< -1 for none
    int RowCount() { return static_cast<int>(Rows().size()); }
    const Dobject* NodeAt(int row);  ///< null when there is no such row

private:
    struct Row {
        const Dobject* node;
        int depth;  ///< 0 for a board
    };
    /// Made anew when the tree has changed since.
    const std::vector<Row>& Rows();

    const Dobject& root;
    std::vector<Row> rows;
    std::uint64_t rowsMadeAt = 0;  ///< `vTreeChanges` then
};
