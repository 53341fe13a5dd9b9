#include "engine/compositor.h"

#include "engine/dobject.h"
#include "engine/eight_bytes.h"

#include <algorithm>
#include <cstring>

Bitmap vClipBuffer;
Bitmap vSubClipBuffer;

namespace {

enum CellState : unsigned char { kOpen = 0, kFinal = 1, kPartial = 2 };

// How many of the `count` bytes from `from` on are equal to `value`.
int RunOf(const unsigned char* from, int count, unsigned char value) {
    int run = 0;
    while (run + 8 <= count && LoadEight(from + run) == value * kEveryByte) run += 8;
    while (run < count && from[run] == value) ++run;
    return run;
}

int SolidRun(const Dtile* tiles, int count) {
    int run = 0;
    while (run < count && IsSolid(tiles[run])) ++run;
    return run;
}

// A rectangle of target cells and the grid cell at its corner. Wide numbers, because positions
// are any 32-bit numbers and are added up before they are cut.
struct Patch {
    std::int64_t dstX, dstY, srcX, srcY, w, h;

    bool Empty() const { return w < 1 || h < 1; }

    // Keeps the part whose target columns lie in left to right - 1.
    void CutX(std::int64_t left, std::int64_t right) {
        const std::int64_t cut = std::max<std::int64_t>(left - dstX, 0);
        dstX += cut;
        srcX += cut;
        w = std::min(w - cut, right - dstX);
    }
    void CutY(std::int64_t top, std::int64_t bottom) {
        const std::int64_t cut = std::max<std::int64_t>(top - dstY, 0);
        dstY += cut;
        srcY += cut;
        h = std::min(h - cut, bottom - dstY);
    }
};

// Copies the cells of one grid row into one target row by the state of each target cell.
class RowPainter {
public:
    RowPainter(BITMAP* to, BITMAP* from, int targetRow, int gridRow)
        : target(to),
          surf(from),
          states(vClipBuffer->line[targetRow]),
          ty(targetRow * kTileSize),
          sy(gridRow * kTileSize) {}

    void Paint(const Dtile* tiles, int tx, int sx, int count) {
        for (int i = 0; i < count;) {
            unsigned char& state = states[tx + i];
            if (state == kFinal) {
                i += RunOf(&state, count - i, kFinal);
            } else if (IsSolid(tiles[i])) {
                i += state == kOpen ? CopySolid(tiles + i, tx + i, sx + i, count - i)
                                    : FillRest(tx + i, sx + i);
            } else {
                if (!IsEmpty(tiles[i])) DrawHoles(tx + i, sx + i);
                ++i;
            }
        }
    }

private:
    int CopySolid(const Dtile* tiles, int tx, int sx, int count) {
        const int run = SolidRun(tiles, RunOf(states + tx, count, kOpen));
        const auto bytes = static_cast<std::size_t>(run) * kTileSize;
        for (int row = 0; row < kTileSize; ++row)
            std::memcpy(target->line[ty + row] + tx * kTileSize,
                        surf->line[sy + row] + sx * kTileSize, bytes);
        std::memset(states + tx, kFinal, static_cast<std::size_t>(run));
        return run;
    }

    // The pixel mask is left alone: it means nothing in a final cell.
    int FillRest(int tx, int sx) {
        for (int row = 0; row < kTileSize; ++row) {
            unsigned char* to = target->line[ty + row] + tx * kTileSize;
            const std::uint64_t done =
                LoadEight(vSubClipBuffer->line[ty + row] + tx * kTileSize) * 0xff;
            const std::uint64_t pixels = LoadEight(surf->line[sy + row] + sx * kTileSize);
            StoreEight(to, (LoadEight(to) & done) | (pixels & ~done));
        }
        states[tx] = kFinal;
        return 1;
    }

    void DrawHoles(int tx, int sx) {
        const bool open = states[tx] == kOpen;
        std::uint64_t allDone = kEveryByte;
        for (int row = 0; row < kTileSize; ++row) {
            unsigned char* to = target->line[ty + row] + tx * kTileSize;
            unsigned char* marks = vSubClipBuffer->line[ty + row] + tx * kTileSize;
            const std::uint64_t done = open ? 0 : LoadEight(marks);
            const std::uint64_t pixels = LoadEight(surf->line[sy + row] + sx * kTileSize);
            const std::uint64_t painted = SetBytes(pixels) & ~(done * 0xff);
            StoreEight(to, (LoadEight(to) & ~painted) | (pixels & painted));
            const std::uint64_t nowDone = done | (painted & kEveryByte);
            StoreEight(marks, nowDone);
            allDone &= nowDone;
        }
        states[tx] = allDone == kEveryByte ? kFinal : kPartial;
    }

    BITMAP* target;
    BITMAP* surf;
    unsigned char* states;
    int ty;
    int sy;
};

void PaintCells(BITMAP* target, Dobject& node, Patch patch) {
    // A viewport that reaches past the grid shows empty cells there.
    patch.CutX(patch.dstX - patch.srcX, patch.dstX - patch.srcX + node.width);
    patch.CutY(patch.dstY - patch.srcY, patch.dstY - patch.srcY + node.height);
    if (patch.Empty()) return;
    BITMAP* surf = node.Surface();
    if (!surf) return;
    const int tx = static_cast<int>(patch.dstX);
    const int sx = static_cast<int>(patch.srcX);
    for (int row = 0; row < patch.h; ++row) {
        const int gridRow = static_cast<int>(patch.srcY) + row;
        RowPainter painter(target, surf, static_cast<int>(patch.dstY) + row, gridRow);
        painter.Paint(node.GetTile(sx, gridRow), tx, sx, static_cast<int>(patch.w));
    }
}

// What a run of cells, all open or all partial, has not been painted on.
void ClearRest(BITMAP* target, int tx, int ty, int run, bool open) {
    for (int y = ty * kTileSize; y < (ty + 1) * kTileSize; ++y) {
        unsigned char* to = target->line[y] + tx * kTileSize;
        const unsigned char* marks = vSubClipBuffer->line[y] + tx * kTileSize;
        const int pixels = run * kTileSize;
        if (open) std::memset(to, 0, static_cast<std::size_t>(pixels));
        for (int x = 0; !open && x < pixels; x += kTileSize)
            StoreEight(to + x, LoadEight(to + x) & LoadEight(marks + x) * 0xff);
    }
}

// Goes by the size of the grid, not of the viewport.
bool IsOutside(const Dobject& node, int limitW, int limitH) {
    return node.posx >= limitW || std::int64_t{node.posx} + node.width <= 0 ||
           node.posy >= limitH || std::int64_t{node.posy} + node.height <= 0;
}

}  // namespace

void ClearUncovered(BITMAP* target) {
    for (int row = 0; row < vClipBuffer->h; ++row) {
        const unsigned char* states = vClipBuffer->line[row];
        for (int x = 0, run = 0; x < vClipBuffer->w; x += run) {
            run = RunOf(states + x, vClipBuffer->w - x, states[x]);
            if (states[x] != kFinal) ClearRest(target, x, row, run, states[x] == kOpen);
        }
    }
}

void Dobject::DrawChildren(BITMAP* target) {
    clear_bitmap(vClipBuffer.get());
    for (const auto& child : children) {
        if (!IsOutside(*child, width - viewx, height - viewy) && !child->hidden)
            child->Draw(target, viewx, viewy, width - viewx, height - viewy, 0, 0, width, height);
    }
}

void Dobject::Draw(BITMAP* target, int ox, int oy, int limitW, int limitH, int clipX, int clipY,
                   int clipW, int clipH) {
    if (IsOutside(*this, limitW, limitH)) return;
    const std::int64_t originX = ox;
    const std::int64_t originY = oy;
    Patch patch{posx + originX, posy + originY, viewx, viewy, vieww, viewh};
    patch.CutX(originX, originX + limitW);
    patch.CutY(originY, originY + limitH);
    patch.CutX(clipX, std::int64_t{clipX} + clipW);
    patch.CutY(clipY, std::int64_t{clipY} + clipH);
    // What is cut away whole hides its children too: they show through this rectangle only.
    if (patch.Empty()) return;
    if (drawChildren) {
        const int gridX = posx - viewx + ox;
        const int gridY = posy - viewy + oy;
        for (const auto& child : children) {
            if (!IsOutside(*child, width, height) && !child->hidden)
                child->Draw(target, gridX, gridY, width, height, static_cast<int>(patch.dstX),
                            static_cast<int>(patch.dstY), static_cast<int>(patch.w),
                            static_cast<int>(patch.h));
        }
    }
    PaintCells(target, *this, patch);
}
