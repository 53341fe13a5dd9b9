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

// Spreads row by row: a waiting point stands for the whole run of like tiles around it.
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
          waiting{start} {}

    void Run() {
        while (!waiting.empty()) {
            const Point at = waiting.back();
            waiting.pop_back();
            if (Takes(at.x, at.y)) TakeRun(at);
        }
        vRegionX = left;
        vRegionY = top;
        vRegionW = right - left + 1;
        vRegionH = bottom - top + 1;
    }

private:
    std::size_t IndexOf(int x, int y) const {
        return static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
               static_cast<std::size_t>(x);
    }

    bool Takes(int x, int y) const {
        Trace("%i,%i\n", x, y);
        const std::size_t i = IndexOf(x, y);
        return AllFields(tiles[i]) == like && vMask[i] == kNotSelected;
    }

    void TakeRun(Point at) {
        int first = at.x;
        int last = at.x;
        while (first > 0 && Takes(first - 1, at.y)) --first;
        while (last + 1 < width && Takes(last + 1, at.y)) ++last;
        std::fill(&MaskAt(first, at.y), &MaskAt(last, at.y) + 1, kSelected);
        left = std::min(left, first);
        right = std::max(right, last);
        top = std::min(top, at.y);
        bottom = std::max(bottom, at.y);
        if (at.y + 1 < height) AddRuns(first, last, at.y + 1);
        if (at.y > 0) AddRuns(first, last, at.y - 1);
    }

    void AddRuns(int first, int last, int y) {
        bool inRun = false;
        for (int x = first; x <= last; ++x) {
            const bool takes = Takes(x, y);
            if (takes && !inRun) waiting.push_back({x, y});
            inRun = takes;
        }
    }

    const Dtile* tiles;
    int width, height;
    std::uint64_t like;
    int left, top, right, bottom;
    std::vector<Point> waiting;
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
    if (node && node->GetTile(seed.x, seed.y)) Flood(*node, seed).Run();
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
