#include "editor/view/fills.h"

#include "engine/tile_pen.h"

#include <cmath>
#include <vector>

using platform::Point;

namespace {

constexpr int kFullBlock = 219;
constexpr int kUnseen = 255;  // the colour behind a full block

// Summed up entry by entry in single precision, which decides where a band ends.
std::vector<std::uint8_t> MakeRamp(const Brush& brush, std::size_t length) {
    const auto [low, high] = std::minmax(brush.fg, brush.bg);
    const float step =
        length > 1 ? static_cast<float>(high - low) / static_cast<float>(length - 1) : 0.0f;
    std::vector<std::uint8_t> ramp(length);
    float color = static_cast<float>(low);
    for (std::uint8_t& entry : ramp) {
        entry = static_cast<std::uint8_t>(static_cast<int>(color));
        color += step;
    }
    return ramp;
}

}  // namespace

void FillRegion(Handle h, TileArea& area, const Brush& brush) {
    vWorld->BackupTiles(h);
    TilePen pen(vWorld->Editable(h));
    ForEachRun(area, [&](int x, int y, int count) {
        pen.PutRun(x, y, count, brush.chr, brush.fg, brush.bg, brush.attrib);
    });
}

void BlendRegion(Handle h, TileArea& area, const Brush& brush, Point cursor, Point anchor) {
    vWorld->BackupTiles(h);
    const double dx = static_cast<double>(cursor.x) - anchor.x;
    const double dy = static_cast<double>(cursor.y) - anchor.y;
    const auto length = static_cast<std::size_t>(std::sqrt(dx * dx + dy * dy));
    if (length == 0) return;
    const std::vector<std::uint8_t> ramp = MakeRamp(brush, length);
    const double last = static_cast<double>(length - 1);
    const double distance = std::sqrt(dx * dx + dy * dy);
    const Point zero = ToGrid(h, cursor);
    const int attrib = brush.attrib;
    TilePen pen(vWorld->Editable(h));
    ForEachSelected(area, [&](int x, int y) {
        // The projection on the line. Whole numbers up to the one division: cells that lie
        // across from each other come out alike, which sine and cosine would not give.
        const double t = (dx * (x - zero.x) + dy * (y - zero.y)) / distance;
        const double i = std::clamp(-std::trunc(t), 0.0, last);
        pen.Put(x, y, kFullBlock, ramp[static_cast<std::size_t>(i)], kUnseen, attrib);
    });
}
