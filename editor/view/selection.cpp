#include "editor/view/selection.h"

#include "engine/report.h"

#include <bit>

using platform::Point;

std::vector<std::int32_t> vMask;
std::int32_t vMaskW = 0, vMaskH = 0;
std::int32_t vRegionX = 0, vRegionY = 0, vRegionW = 1, vRegionH = 1;
std::int32_t vFadeCenterX = 0, vFadeCenterY = 0;

namespace {

void ClearMask(Handle h) {
    vMaskW = vWorld->GetProperty(h, kWidth);
    vMaskH = vWorld->GetProperty(h, kHeight);
    const std::size_t cells = static_cast<std::size_t>(vMaskW) * static_cast<std::size_t>(vMaskH);
    if (vMask.size() < cells) vMask.resize(cells);
    std::fill_n(vMask.begin(), cells, kNotSelected);
}

// A tile as one number: four fields are equal if their numbers are.
std::uint64_t AllFields(const Dtile& tile) { return std::bit_cast<std::uint64_t>(tile); }

// Spreads by runs of like tiles in a row. A run is always taken whole, so the run beside a part
// of it needs a look at that part only.
class Flood {
public:
    Flood(const Dobject& node, Point start)
        : tiles(node.tiles.data()),
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
            if (vMask[IndexOf(run.first, run.y)] == kNotSelected) Take(run);
        }
        vRegionX = left;
        vRegionY = top;
        vRegionW = right - left + 1;
        vRegionH = bottom - top + 1;
    }

private:
    struct Run {
        int first, last, y;
    };

    std::size_t IndexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

    bool Takes(std::size_t i) const {
        return vMask[i] == kNotSelected && AllFields(tiles[i]) == like;
    }

    void Take(Run run) {
        const std::size_t row = IndexOf(0, run.y);
        while (run.first > 0 && Takes(row + static_cast<std::size_t>(run.first - 1))) --run.first;
        while (run.last + 1 < width && Takes(row + static_cast<std::size_t>(run.last + 1)))
            ++run.last;
        std::fill(&MaskAt(run.first, run.y), &MaskAt(run.last, run.y) + 1, kSelected);
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
            if (!Takes(row + static_cast<std::size_t>(x))) continue;
            const int first = x;
            while (x < beside.last && Takes(row + static_cast<std::size_t>(x + 1))) ++x;
            waiting.push_back({first, x, y});
        }
    }

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

void StartBox(Handle h, Point cursor, Point anchor) {
    ClearMask(h);
    const auto clamped = [&](Point tile) {
        const Point at = ToGrid(h, tile);
        return Point{std::clamp(at.x, 0, std::max(vMaskW - 1, 0)),
                     std::clamp(at.y, 0, std::max(vMaskH - 1, 0))};
    };
    const Point a = clamped(cursor);
    const Point b = clamped(anchor);
    vRegionX = std::min(a.x, b.x);
    vRegionY = std::min(a.y, b.y);
    vRegionW = std::max(a.x, b.x) - vRegionX + 1;
    vRegionH = std::max(a.y, b.y) - vRegionY + 1;
}

void SelectRect(Handle h, Point cursor, Point anchor) {
    StartBox(h, cursor, anchor);
    if (vMaskW == 0 || vMaskH == 0) return;
    for (int y = vRegionY; y < vRegionY + vRegionH; ++y)
        std::fill_n(&MaskAt(vRegionX, y), vRegionW, kSelected);
}

Point SelectFlood(Handle h, Point cursor) {
    const Point seed = ToGrid(h, cursor);
    ClearMask(h);
    vRegionX = seed.x;
    vRegionY = seed.y;
    vRegionW = vRegionH = 1;
    Dobject* node = vWorld->Node(h);
    if (node && node->GetTile(seed.x, seed.y)) Flood(*node, seed).Fill();
    return seed;
}

Point SelectSameAs(Handle h, Point cursor) {
    const Point seed = ToGrid(h, cursor);
    ClearMask(h);
    vRegionX = vRegionY = 0;
    vRegionW = std::max(vMaskW, 1);
    vRegionH = std::max(vMaskH, 1);
    Dobject* node = vWorld->Node(h);
    const Dtile* like = node ? node->GetTile(seed.x, seed.y) : nullptr;
    if (!like) return seed;
    std::transform(node->tiles.begin(), node->tiles.end(), vMask.begin(),
                   [fields = AllFields(*like)](const Dtile& tile) {
                       return AllFields(tile) == fields ? kSelected : kNotSelected;
                   });
    return seed;
}
