// The selections that are shapes: Allegro's walkers over the mask.

#include "editor/view/selection.h"

using platform::Point;

namespace {

// Selects one cell if it lies in the box. The walkers hand on what they are given as a bitmap.
void MaskPlot(BITMAP* given, int x, int y, int) {
    TileArea& area = *reinterpret_cast<TileArea*>(given);
    if (x < area.x || y < area.y || x >= area.x + area.w || y >= area.y + area.h) return;
    if (area.maskW > 0 && area.maskH > 0) area.At(x, y) = kSelected;
}

BITMAP* Given(TileArea& area) { return reinterpret_cast<BITMAP*>(&area); }

}  // namespace

void SelectLine(TileArea& area, Handle h, Point cursor, Point anchor) {
    StartBox(area, h, cursor, anchor);
    const Point c = ToGrid(h, cursor);
    const Point a = ToGrid(h, anchor);
    do_line(Given(area), c.x, c.y, a.x, a.y, 0, MaskPlot);
}

void SelectRectOutline(TileArea& area, Handle h, Point cursor, Point anchor) {
    StartBox(area, h, cursor, anchor);
    const Point c = ToGrid(h, cursor);
    const Point a = ToGrid(h, anchor);
    do_line(Given(area), c.x, c.y, a.x, c.y, 0, MaskPlot);
    do_line(Given(area), a.x, c.y, a.x, a.y, 0, MaskPlot);
    do_line(Given(area), a.x, a.y, c.x, a.y, 0, MaskPlot);
    do_line(Given(area), c.x, a.y, c.x, c.y, 0, MaskPlot);
}

void SelectEllipse(TileArea& area, Handle h, Point cursor, Point anchor) {
    StartBox(area, h, cursor, anchor);
    const int right = area.x + area.w - 1;
    const int bottom = area.y + area.h - 1;
    do_ellipse(Given(area), (area.x + right) / 2, (area.y + bottom) / 2, area.w / 2, area.h / 2, 0,
               MaskPlot);
}
