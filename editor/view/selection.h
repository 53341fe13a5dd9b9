// The selection: which tiles of the current object an area tool works on.
//
// Every area command first selects and then acts, so that each selection goes with each action.
// `vMask` is what passes between the two. A selection sets all that is declared here anew: what
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

/// One MaskState for each cell, index row * vMaskW + column. Longer than that if a larger grid
/// was selected from before.
extern std::vector<std::int32_t> vMask;
extern std::int32_t vMaskW, vMaskH;  ///< the grid's size when the selection was made

/// The box that an action walks: around all selected tiles, at least 1 by 1. When nothing can
/// be selected it may lie outside the grid.
extern std::int32_t vRegionX, vRegionY, vRegionW, vRegionH;

/// Where a Distance fade has its centre and a Slime fade its start.
extern std::int32_t vFadeCenterX, vFadeCenterY;

/// The box between the two points. Each corner is clamped into the grid by itself, so a box
/// beside the grid selects the cells of the edge next to it.
void SelectRect(Handle h, platform::Point cursor, platform::Point anchor);

/// The tiles that all four fields have in common with the one under the cursor: those
/// connected to it by their sides, or all of them, with the whole grid as the box. Both give
/// the cursor's place in the grid. Nothing is selected when that lies outside.
platform::Point SelectFlood(Handle h, platform::Point cursor);
platform::Point SelectSameAs(Handle h, platform::Point cursor);

/// The outlines of shapes, without their inside. The grid's edge cuts a line or a rectangle as
/// it would be drawn on a larger grid; an ellipse fits itself into what the grid has of its box.
void SelectLine(Handle h, platform::Point cursor, platform::Point anchor);
void SelectRectOutline(Handle h, platform::Point cursor, platform::Point anchor);
void SelectEllipse(Handle h, platform::Point cursor, platform::Point anchor);

/// Selects one cell if it lies in the box: what Allegro's walkers call for each point.
void MaskPlot(BITMAP* unused, int x, int y, int unusedToo);

/// Clears the mask and makes the box between the points, clamped, with no cell selected yet.
void StartBox(Handle h, platform::Point cursor, platform::Point anchor);

/// A world tile in the node's grid.
platform::Point ToGrid(Handle h, platform::Point tile);

inline std::int32_t& MaskAt(int x, int y) {
    return vMask[static_cast<std::size_t>(y) * static_cast<std::size_t>(vMaskW) +
                 static_cast<std::size_t>(x)];
}

/// Calls act(x, y) for each cell of the box that is in that state, row by row. A cell for which
/// it gives true is done.
template <typename Act>
void VisitCells(MaskState state, Act act) {
    const int right = std::min(vRegionX + vRegionW, vMaskW);
    const int bottom = std::min(vRegionY + vRegionH, vMaskH);
    for (int y = std::max(vRegionY, 0); y < bottom; ++y) {
        std::int32_t* row = vMask.data() + std::ptrdiff_t{y} * vMaskW;
        for (int x = std::max(vRegionX, 0); x < right; ++x)
            if (row[x] == state && act(x, y)) row[x] = kDone;
    }
}

/// The same for the selected cells and an action that does each of them.
template <typename Act>
void ForEachSelected(Act act) {
    VisitCells(kSelected, [&](int x, int y) {
        act(x, y);
        return true;
    });
}
