#include "editor/view/selection.h"

#include "engine/report.h"

#include <bit>

using platform::Point;

TileArea vArea;

namespace {

void ClearMask(TileArea& area, Handle h) {
    area.maskW = vWorld->GetProperty(h, kWidth);
    area.maskH = vWorld->GetProperty(h, kHeight);
    const std::size_t cells =
        static_cast<std::size_t>(area.maskW) * static_cast<std::size_t>(area.maskH);
    if (area.mask.size() < cells) area.mask.resize(cells);
    std::fill_n(area.mask.begin(), cells, kNotSelected);
}

// A tile as one number: four fields are equal if their numbers are.
std::uint64_t AllFields(const Dtile& tile) { return std::bit_cast<std::uint64_t>(tile); }

// Spreads by runs of like tiles in a row. A run is always taken whole: what its first tile is in
// the mask all of it is, and the run beside a part of it needs a look at that part only.
class Flood {
public:
    Flood(TileArea& selection, const Dobject& node, Point start)
        : area(selection),
          mask(selection.mask.data()),
          tiles(node.tiles.data()),
          width(node.width),
          height(node.height),
          like(AllFields(tiles[IndexOf(start.x, start.y)])),
          left(start.x),
          top(start.y),
          right(start.x),
          bottom(start.y),
          waiting{{start.x, start.x, start.y}} {}

    void Fill() {
        while (!waiting.empty()) {
            const Run run = waiting.back();
            waiting.pop_back();
            if (mask[IndexOf(run.first, run.y)] == kNotSelected) Take(run);
        }
        area.x = left;
        area.y = top;
        area.w = right - left + 1;
        area.h = bottom - top + 1;
    }

private:
    struct Run {
        int first, last, y;
    };

    std::size_t IndexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

    bool IsLike(std::size_t i) const { return AllFields(tiles[i]) == like; }

    // How many of at most `count` tiles from i on are like the seed, or are not, by eights.
    template <bool kWanted>
    int Count(std::size_t i, int count) const {
        constexpr int kBlock = 8;
        int n = 0;
        const auto step = [&](int end) {
            while (n < end && IsLike(i + static_cast<std::size_t>(n)) == kWanted) ++n;
            return n == end;
        };
        if (!step(std::min(kBlock, count))) return n;
        for (; n + kBlock <= count; n += kBlock) {
            // What differs at all, and whether each does: of any number but 0 either it or its
            // negative has the highest bit.
            std::uint64_t some = 0, all = ~std::uint64_t{0};
            for (int k = n; k < n + kBlock; ++k) {
                const std::uint64_t differ =
                    AllFields(tiles[i + static_cast<std::size_t>(k)]) ^ like;
                some |= differ;
                all &= differ | (0 - differ);
            }
            if (kWanted ? some != 0 : all >> 63 == 0) break;
        }
        step(count);
        return n;
    }

    void Take(Run run) {
        const std::size_t row = IndexOf(0, run.y);
        while (run.first > 0 && IsLike(row + static_cast<std::size_t>(run.first - 1))) --run.first;
        run.last += Count<true>(row + static_cast<std::size_t>(run.last + 1), width - 1 - run.last);
        std::fill(&area.At(run.first, run.y), &area.At(run.last, run.y) + 1, kSelected);
        if (vTraceOn)
            for (int x = run.first; x <= run.last; ++x) Trace("%i,%i\n", x, run.y);
        left = std::min(left, run.first);
        right = std::max(right, run.last);
        top = std::min(top, run.y);
        bottom = std::max(bottom, run.y);
        if (run.y + 1 < height) AddRuns(run, run.y + 1);
        if (run.y > 0) AddRuns(run, run.y - 1);
    }

    void AddRuns(const Run& beside, int y) {
        const std::size_t row = IndexOf(0, y);
        for (int x = beside.first; x <= beside.last; ++x) {
            x += Count<false>(row + static_cast<std::size_t>(x), beside.last + 1 - x);
            if (x > beside.last) return;
            const std::size_t i = row + static_cast<std::size_t>(x);
            const int count = Count<true>(i, beside.last + 1 - x);
            if (mask[i] == kNotSelected) waiting.push_back({x, x + count - 1, y});
            x += count;
        }
    }

    TileArea& area;
    std::int32_t* mask;
    const Dtile* tiles;
    int width, height;
    std::uint64_t like;
    int left, top, right, bottom;
    std::vector<Run> waiting;
};

}  // namespace

Point ToGrid(Handle h, Point tile) {
    vWorld->WorldToLocal(h, tile.x, tile.y);
    return tile;
}

void StartBox(TileArea& area, Handle h, Point cursor, Point anchor) {
    ClearMask(area, h);
    const auto clamped = [&](Point tile) {
        const Point at = ToGrid(h, tile);
        return Point{std::clamp(at.x, 0, std::max(area.maskW - 1, 0)),
                     std::clamp(at.y, 0, std::max(area.maskH - 1, 0))};
    };
    const Point a = clamped(cursor);
    const Point b = clamped(anchor);
    area.x = std::min(a.x, b.x);
    area.y = std::min(a.y, b.y);
    area.w = std::max(a.x, b.x) - area.x + 1;
    area.h = std::max(a.y, b.y) - area.y + 1;
}

void SelectRect(TileArea& area, Handle h, Point cursor, Point anchor) {
    StartBox(area, h, cursor, anchor);
    if (area.maskW == 0 || area.maskH == 0) return;
    for (int y = area.y; y < area.y + area.h; ++y)
        std::fill_n(&area.At(area.x, y), area.w, kSelected);
}

Point SelectFlood(TileArea& area, Handle h, Point cursor) {
    const Point seed = ToGrid(h, cursor);
    ClearMask(area, h);
    area.x = seed.x;
    area.y = seed.y;
    area.w = area.h = 1;
    Dobject* node = vWorld->Node(h);
    if (node && node->GetTile(seed.x, seed.y)) Flood(area, *node, seed).Fill();
    return seed;
}

Point SelectSameAs(TileArea& area, Handle h, Point cursor) {
    const Point seed = ToGrid(h, cursor);
    ClearMask(area, h);
    area.x = area.y = 0;
    area.w = std::max(area.maskW, 1);
    area.h = std::max(area.maskH, 1);
    Dobject* node = vWorld->Node(h);
    const Dtile* like = node ? node->GetTile(seed.x, seed.y) : nullptr;
    if (!like) return seed;
    std::transform(node->tiles.begin(), node->tiles.end(), area.mask.begin(),
                   [fields = AllFields(*like)](const Dtile& tile) {
                       return AllFields(tile) == fields ? kSelected : kNotSelected;
                   });
    return seed;
}
