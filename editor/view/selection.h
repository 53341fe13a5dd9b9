// The selection: which tiles of the current object an area tool works on.
//
// Every area command first selects and then acts, so that each selection goes with each action.
// A TileArea is what passes between the two. A selection sets all of it but the centre anew: what
// an earlier command left behind has no effect.
//
// Cursor and anchor are world tiles; everything else is in grid coordinates of the node. A bad
// handle, or a node without cells, selects nothing.
#pragma once

#include "engine/allegro_api.h"
#include "engine/dinterface.h"
#include "platform/geometry.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

enum MaskState : std::int32_t {
    kNotSelected = 0,
    kSelected = 1,  ///< and still to do
    kDone = 2,
    kReached = 3,  ///< decided on, but not yet written: within an action only
};

/// What a selection gives to an action. The box is around all selected tiles, at least 1 by 1.
/// When nothing can be selected it may lie outside the grid.
struct TileArea {
    /// One MaskState for each cell, index row * maskW + column. Longer than that if a larger
    /// grid was selected from before.
    std::vector<std::int32_t> mask;
    std::int32_t maskW = 0, maskH = 0;        ///< the grid's size when the selection was made
    std::int32_t x = 0, y = 0, w = 1, h = 1;  ///< the box
    std::int32_t centerX = 0, centerY = 0;    ///< of a Distance fade, the start of a Slime fade

    std::int32_t& At(int column, int row) {
        return mask[static_cast<std::size_t>(row) * static_cast<std::size_t>(maskW) +
                    static_cast<std::size_t>(column)];
    }
};

/// The selection that the area commands work on, and its parts by their own names.
extern TileArea vArea;
inline std::vector<std::int32_t>& vMask = vArea.mask;
inline std::int32_t &vMaskW = vArea.maskW, &vMaskH = vArea.maskH;
inline std::int32_t &vRegionX = vArea.x, &vRegionY = vArea.y;
inline std::int32_t &vRegionW = vArea.w, &vRegionH = vArea.h;
inline std::int32_t &vFadeCenterX = vArea.centerX, &vFadeCenterY = vArea.centerY;

/// The box between the two points. Each corner is clamped into the grid by itself, so a box
/// beside the grid selects the cells of the edge next to it.
void SelectRect(TileArea& area, Handle h, platform::Point cursor, platform::Point anchor);

/// The tiles that all four fields have in common with the one under the cursor: those
/// connected to it by their sides, or all of them, with the whole grid as the box. Both give
/// the cursor's place in the grid. Nothing is selected when that lies outside.
platform::Point SelectFlood(TileArea& area, Handle h, platform::Point cursor);
platform::Point SelectSameAs(TileArea& area, Handle h, platform::Point cursor);

/// The outlines of shapes, without their inside. The grid's edge cuts a line or a rectangle as
/// it would be drawn on a larger grid; an ellipse fits itself into what the grid has of its box.
void SelectLine(TileArea& area, Handle h, platform::Point cursor, platform::Point anchor);
void SelectRectOutline(TileArea& area, Handle h, platform::Point cursor, platform::Point anchor);
void SelectEllipse(TileArea& area, Handle h, platform::Point cursor, platform::Point anchor);

/// Clears the mask and makes the box between the points, clamped, with no cell selected yet.
void StartBox(TileArea& area, Handle h, platform::Point cursor, platform::Point anchor);

/// A world tile in the node's grid.
platform::Point ToGrid(Handle h, platform::Point tile);

/// Calls act(row, y, left, right) for each row of the box within the grid: its cells of the mask,
/// and the columns from `left` to before `right`.
template <typename Act>
void ForEachRow(TileArea& area, Act act) {
    const int left = std::max(area.x, 0);
    const int right = std::min(area.x + area.w, area.maskW);
    const int bottom = std::min(area.y + area.h, area.maskH);
    for (int y = std::max(area.y, 0); y < bottom; ++y)
        act(area.mask.data() + std::ptrdiff_t{y} * area.maskW, y, left, right);
}

/// Calls act(x, y) for each cell of the box that is in that state, row by row. A cell for which
/// it gives true is done.
template <typename Act>
void VisitCells(TileArea& area, MaskState state, Act act) {
    ForEachRow(area, [&](std::int32_t* row, int y, int left, int right) {
        for (int x = left; x < right; ++x)
            if (row[x] == state && act(x, y)) row[x] = kDone;
    });
}

/// Calls act(x, y, count) for each run of selected cells, row by row; all of them are done.
template <typename Act>
void ForEachRun(TileArea& area, Act act) {
    ForEachRow(area, [&](std::int32_t* row, int y, int left, int right) {
        for (int x = left; x < right; ++x) {
            const int first = x;
            while (x < right && row[x] == kSelected) row[x++] = kDone;
            if (x > first) act(first, y, x - first);
        }
    });
}

/// The same for the selected cells and an action that does each of them.
template <typename Act>
void ForEachSelected(TileArea& area, Act act) {
    VisitCells(area, kSelected, [&](int x, int y) {
        act(x, y);
        return true;
    });
}
