#include "editor/view/view_marks.h"

#include <algorithm>

using platform::Point;

namespace {

constexpr int kInkA = 15;
constexpr int kInkB = 32;

void PrintPair(BITMAP* to, int x, int y, int a, int b) {
    textprintf_ex(to, font, x, y, kInkA, -1, "%i,%i", a, b);
}

// One ruler line pair for each axis.
void HLine(BITMAP* to, int y, int color) { hline(to, 0, y, to->w - 1, color); }
void VLine(BITMAP* to, int x, int color) { vline(to, x, 0, to->h - 1, color); }

void DrawAttrib(BITMAP* to, int x, int y, int attrib) {
    switch (attrib) {
        case kAttribSolid:
            rect(to, x + 2, y + 2, x + 5, y + 5, kInkA);
            rect(to, x + 3, y + 3, x + 4, y + 4, kInkB);
            break;
        case kAttribBreakable:
            line(to, x + 4, y + 1, x + 4, y + 7, kInkA);
            line(to, x + 1, y + 4, x + 7, y + 4, kInkB);
            break;
        case kAttribWater:
            line(to, x + 1, y + 1, x + 7, y + 7, kInkA);
            line(to, x + 1, y + 2, x + 7, y + 8, kInkB);
            break;
        default:
            break;
    }
}

// The viewport's corner in tiles of the bitmap.
Point CornerOf(Handle h, Point scroll) {
    int x = 0;
    int y = 0;
    vWorld->LocalToWorld(h, x, y);
    return {x + scroll.x, y + scroll.y};
}

}  // namespace

void DrawBoxMark(BITMAP* to, Point first, Point last) {
    const int x0 = first.x * kTileSize;
    const int y0 = first.y * kTileSize;
    const int x1 = last.x * kTileSize + kTileSize - 1;
    const int y1 = last.y * kTileSize + kTileSize - 1;
    rect(to, x0, y0, x1, y1, kInkB);
    rectfill(to, x0 + 1, y0 + 1, x1 - 1, y1 - 1, kInkA);
}

void DrawNodeFrame(BITMAP* to, Handle h, Point scroll, int inner) {
    const Point corner = CornerOf(h, scroll);
    const int x0 = corner.x * kTileSize;
    const int y0 = corner.y * kTileSize;
    const int x1 = (corner.x + vWorld->GetProperty(h, kViewW)) * kTileSize;
    const int y1 = (corner.y + vWorld->GetProperty(h, kViewH)) * kTileSize;
    for (int out = inner; out <= inner + 1; ++out)
        rect(to, x0 - out, y0 - out, x1 + out - 1, y1 + out - 1, kInkA);
}

void DrawAttribOverlay(BITMAP* to, Handle h, Point scroll) {
    const Point corner = CornerOf(h, scroll);
    const int viewx = vWorld->GetProperty(h, kViewX);
    const int viewy = vWorld->GetProperty(h, kViewY);
    // Signs reach one pixel below their cell, so the row above the picture counts as well.
    const int firstRow = std::max(0, -1 - corner.y);
    const int firstColumn = std::max(0, -corner.x);
    const int rows = std::min(vWorld->GetProperty(h, kHeight), to->h / kTileSize - corner.y);
    const int columns = std::min(vWorld->GetProperty(h, kWidth), to->w / kTileSize - corner.x);
    for (int i = firstRow; i < rows; ++i) {
        for (int j = firstColumn; j < columns; ++j) {
            int chr = 0, fg = 0, bg = 0, attrib = 0;
            if (vWorld->GetTile(h, viewx + j, viewy + i, chr, fg, bg, attrib))
                DrawAttrib(to, (corner.x + j) * kTileSize, (corner.y + i) * kTileSize, attrib);
        }
    }
}

void DrawScreenFrame(BITMAP* to, Point scroll, int videoMode) {
    const VideoMode& mode = GetVideoMode(videoMode);
    const int x = scroll.x * kTileSize;
    const int y = scroll.y * kTileSize;
    rect(to, x - 1, y - 1, x + mode.screenW, y + mode.screenH, kInkA);
}

void DrawRulerCross(BITMAP* to, Handle h, Point cursor, Point scroll) {
    const int x = (cursor.x + scroll.x) * kTileSize;
    const int y = (cursor.y + scroll.y) * kTileSize;
    HLine(to, y, kInkA);
    VLine(to, x, kInkA);
    HLine(to, y + 1, kInkB);
    VLine(to, x + 1, kInkB);
    int column = cursor.x;
    int row = cursor.y;
    vWorld->WorldToLocal(h, column, row);
    PrintPair(to, x + 24, y + 8, column, row);
}

void DrawRulerBox(BITMAP* to, Point first, Point last) {
    const int x1 = first.x * kTileSize;
    const int y1 = first.y * kTileSize;
    const int x2 = last.x * kTileSize;
    const int y2 = last.y * kTileSize;
    HLine(to, y1, kInkA);
    VLine(to, x1, kInkA);
    HLine(to, y2 + 8, kInkA);
    VLine(to, x2 + 8, kInkA);
    HLine(to, y1 + 1, kInkB);
    VLine(to, x1 + 1, kInkB);
    HLine(to, y2 + 7, kInkB);
    VLine(to, x2 + 7, kInkB);
    PrintPair(to, x2 + 24, y2 + 8, last.x - first.x + 1, last.y - first.y + 1);
}
