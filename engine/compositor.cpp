#include "engine/compositor.h"

#include "engine/dobject.h"
#include "engine/eight_bytes.h"

#include <algorithm>
#include <cstring>

Bitmap vClipBuffer;
Bitmap vSubClipBuffer;

namespace {

constexpr int kGlance = 8;

// Whether so many cells are solid at a glance: they have both colours, and none is a sprite.
bool AreSolid(const Dtile* tiles) {
    using TwoCells = std::uint16_t __attribute__((vector_size(2 * sizeof(Dtile))));
    constexpr std::uint16_t kSet = 0xffff;
    constexpr TwoCells kColors{0, kSet, kSet, 0, 0, kSet, kSet, 0};
    constexpr TwoCells kFg{0, kSet, 0, 0, 0, kSet, 0, 0};
    TwoCells holes = {};
    for (int i = 0; i < kGlance; i += 2) {
        TwoCells cells;
        std::memcpy(&cells, tiles + i, sizeof cells);
        holes |= ((cells == 0) & kColors) | ((cells == kSpriteColor) & kFg);
    }
    std::uint64_t halves[2];
    std::memcpy(halves, &holes, sizeof halves);
    return (halves[0] | halves[1]) == 0;
}

int SolidRun(const Dtile* tiles, int count) {
    int run = 0;
    while (run + kGlance <= count && AreSolid(tiles + run)) run += kGlance;
    while (run < count && IsSolid(tiles[run])) ++run;
    return run;
}

int HoleyRun(const Dtile* tiles, int count) {
    int run = 0;
    while (run < count && !IsSolid(tiles[run]) && !IsEmpty(tiles[run])) ++run;
    return run;
}

// Calls `use` with the place of every sixteen bytes, and of the last eight of an odd number of
// them.
template <typename Use>
void InSixteens(int count, Use use) {
    int at = 0;
    for (; at + 16 <= count; at += 16) use(at, Sixteen{});
    if (at < count) use(at, Eight{});
}

// Target cells from left and top on to before right and bottom. Wide numbers, because positions
// are any 32-bit numbers and are added up before they are cut.
struct Box {
    std::int64_t left, top, right, bottom;

    Box And(const Box& other) const {
        return {std::max(left, other.left), std::max(top, other.top), std::min(right, other.right),
                std::min(bottom, other.bottom)};
    }
    bool Empty() const { return left >= right || top >= bottom; }
};

Box BoxAt(std::int64_t x, std::int64_t y, std::int64_t w, std::int64_t h) {
    return {x, y, x + w, y + h};
}

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
                                    : FillRest(tiles + i, tx + i, sx + i, count - i);
            } else {
                i += IsEmpty(tiles[i]) ? 1 : DrawHoles(tiles + i, tx + i, sx + i, count - i);
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
    int FillRest(const Dtile* tiles, int tx, int sx, int count) {
        const int run = SolidRun(tiles, RunOf(states + tx, count, kPartial));
        for (int row = 0; row < kTileSize; ++row) {
            unsigned char* to = target->line[ty + row] + tx * kTileSize;
            const unsigned char* from = surf->line[sy + row] + sx * kTileSize;
            const unsigned char* marks = vSubClipBuffer->line[ty + row] + tx * kTileSize;
            InSixteens(run * kTileSize, [&]<typename Bytes>(int at, Bytes) {
                const Bytes left = BytesAt<Bytes>(marks + at) == 0;
                PutBytes(to + at,
                         (BytesAt<Bytes>(to + at) & ~left) | (BytesAt<Bytes>(from + at) & left));
            });
        }
        std::memset(states + tx, kFinal, static_cast<std::size_t>(run));
        return run;
    }

    // A run of cells that are all open or all partial; `unpainted` is 0xff where nothing is yet.
    int DrawHoles(const Dtile* tiles, int tx, int sx, int count) {
        constexpr int kMost = 16;
        const unsigned char state = states[tx];
        const int run = HoleyRun(tiles, RunOf(states + tx, std::min(count, kMost), state));
        unsigned char unpainted[kMost * kTileSize] = {};
        for (int row = 0; row < kTileSize; ++row) {
            unsigned char* to = target->line[ty + row] + tx * kTileSize;
            const unsigned char* from = surf->line[sy + row] + sx * kTileSize;
            unsigned char* marks = vSubClipBuffer->line[ty + row] + tx * kTileSize;
            InSixteens(run * kTileSize, [&]<typename Bytes>(int at, Bytes none) {
                const Bytes done = state == kOpen ? none : BytesAt<Bytes>(marks + at);
                const Bytes pixels = BytesAt<Bytes>(from + at);
                const Bytes painted = (pixels != 0) & (done == 0);
                PutBytes(to + at, (BytesAt<Bytes>(to + at) & ~painted) | (pixels & painted));
                const Bytes nowDone = done | (painted & 1);
                PutBytes(marks + at, nowDone);
                PutBytes(unpainted + at, BytesAt<Bytes>(unpainted + at) | (nowDone == 0));
            });
        }
        for (int i = 0; i < run; ++i)
            states[tx + i] = LoadEight(unpainted + i * kTileSize) ? kPartial : kFinal;
        return run;
    }

    BITMAP* target;
    BITMAP* surf;
    unsigned char* states;
    int ty;
    int sy;
};

// Whether nothing behind can show there any more.
bool IsCovered(const Box& box) {
    const auto left = static_cast<int>(box.left);
    const auto count = static_cast<int>(box.right) - left;
    for (auto row = static_cast<int>(box.top); row < box.bottom; ++row)
        if (RunOf(vClipBuffer->line[row] + left, count, kFinal) < count) return false;
    return true;
}

// The part of a node that shows in the box; its grid begins at (gridX, gridY).
void PaintCells(BITMAP* target, Dobject& node, std::int64_t gridX, std::int64_t gridY, Box box) {
    // A viewport that reaches past the grid shows empty cells there.
    box = box.And(BoxAt(gridX, gridY, node.width, node.height));
    if (box.Empty()) return;
    BITMAP* surf = node.Surface();
    if (!surf) return;
    const int tx = static_cast<int>(box.left);
    const int sx = static_cast<int>(box.left - gridX);
    const int count = static_cast<int>(box.right - box.left);
    for (auto row = static_cast<int>(box.top); row < box.bottom; ++row) {
        const int gridRow = static_cast<int>(row - gridY);
        RowPainter painter(target, surf, row, gridRow);
        painter.Paint(node.GetTile(sx, gridRow), tx, sx, count);
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
            PutBytes(to + x, BytesAt(to + x) & (BytesAt(marks + x) != 0));
    }
}

// Goes by the size of the grid, not of the viewport.
bool IsOutside(const Dobject& node, int limitW, int limitH) {
    return node.posx >= limitW || std::int64_t{node.posx} + node.width <= 0 ||
           node.posy >= limitH || std::int64_t{node.posy} + node.height <= 0;
}

void DrawNode(BITMAP* target, Dobject& node, int ox, int oy, const Box& box);

// What shows in a window of a node, whose parent's grid begins at (ox, oy). Most nodes of a large
// world do not show, and a call for each to find that out would add an eighth to them.
[[gnu::always_inline]] inline void DrawShown(BITMAP* target, Dobject& node, int ox, int oy,
                                             int limitW, int limitH, const Box& window) {
    if (IsOutside(node, limitW, limitH)) return;
    const Box box = window.And(
        BoxAt(std::int64_t{node.posx} + ox, std::int64_t{node.posy} + oy, node.vieww, node.viewh));
    // What is cut away whole hides its children too: they show through this part only.
    if (!box.Empty() && !IsCovered(box)) DrawNode(target, node, ox, oy, box);
}

// What shows through a box of the children of a grid that begins at (ox, oy). Nodes that do not
// show take the time in which their memory comes: it is asked for some nodes ahead.
void DrawNodes(BITMAP* target, const Dobject::Children& nodes, int ox, int oy, int limitW,
               int limitH, const Box& through) {
    const Box window = through.And(BoxAt(ox, oy, limitW, limitH));
    constexpr std::size_t kAhead = 32;
    for (std::size_t i = 0; i < nodes.size(); ++i) {
        if (i + kAhead < nodes.size()) __builtin_prefetch(&nodes[i + kAhead]->posx);
        if (!nodes[i]->hidden) DrawShown(target, *nodes[i], ox, oy, limitW, limitH, window);
    }
}

// The part `box` of a node and of what it holds.
void DrawNode(BITMAP* target, Dobject& node, int ox, int oy, const Box& box) {
    const std::int64_t x = std::int64_t{node.posx} + ox;
    const std::int64_t y = std::int64_t{node.posy} + oy;
    if (node.drawChildren && !node.children.empty())
        DrawNodes(target, node.children, node.posx - node.viewx + ox, node.posy - node.viewy + oy,
                  node.width, node.height, box);
    PaintCells(target, node, x - node.viewx, y - node.viewy, box);
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
    DrawNodes(target, children, viewx, viewy, width - viewx, height - viewy,
              BoxAt(0, 0, width, height));
}

void Dobject::Draw(BITMAP* target, int ox, int oy, int limitW, int limitH, int clipX, int clipY,
                   int clipW, int clipH) {
    DrawShown(target, *this, ox, oy, limitW, limitH,
              BoxAt(ox, oy, limitW, limitH).And(BoxAt(clipX, clipY, clipW, clipH)));
}
