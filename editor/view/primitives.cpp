// The selections that are shapes: Allegro's walkers over the mask.

#include "editor/view/selection.h"

using platform::Point;

void MaskPlot(BITMAP*, int x, int y, int) {
    if (x < vRegionX || y < vRegionY || x >= vRegionX + vRegionW || y >= vRegionY + vRegionH)
        return;
    if (vMaskW > 0 && vMaskH > 0) MaskAt(x, y) = kSelected;
}

void SelectLine(Handle h, Point cursor, Point anchor) {
    StartBox(h, cursor, anchor);
    const Point c = ToGrid(h, cursor);
    const Point a = ToGrid(h, anchor);
    do_line(nullptr, c.x, c.y, a.x, a.y, 0, MaskPlot);
}

void SelectRectOutline(Handle h, Point cursor, Point anchor) {
    StartBox(h, cursor, anchor);
    const Point c = ToGrid(h, cursor);
    const Point a = ToGrid(h, anchor);
    do_line(nullptr, c.x, c.y, a.x, c.y, 0, MaskPlot);
    do_line(nullptr, a.x, c.y, a.x, a.y, 0, MaskPlot);
    do_line(nullptr, a.x, a.y, c.x, a.y, 0, MaskPlot);
    do_line(nullptr, c.x, a.y, c.x, c.y, 0, MaskPlot);
}

void SelectEllipse(Handle h, Point cursor, Point anchor) {
    StartBox(h, cursor, anchor);
    const int right = vRegionX + vRegionW - 1;
    const int bottom = vRegionY + vRegionH - 1;
    do_ellipse(nullptr, (vRegionX + right) / 2, (vRegionY + bottom) / 2, vRegionW / 2, vRegionH / 2,
               0, MaskPlot);
}
