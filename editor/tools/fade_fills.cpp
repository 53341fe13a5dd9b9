#include "editor/tools/fade_fills.h"

#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "engine/report.h"

#include <cmath>
#include <cstdlib>

using platform::Point;

namespace {

// 101 outcomes, so that a percentage of 0 or 99 leaves a rest of chance.
constexpr int kOutcomes = 101;

std::int32_t TileAt(const FadeTiles& tiles, std::uint8_t position) { return tiles[position]; }

void PutGlyph(Handle h, int x, int y, int glyph) {
    vWorld->SetTile(h, x, y, glyph, vBrush.fg, vBrush.bg, vBrush.attrib);
}

// --- Normal fade -------------------------------------------------------------------------------

Bitmap MakePattern(const FadeCells& cells, const FadeTiles& tiles) {
    Bitmap pattern = MakeBitmap(kBlendSide, kBlendSide);
    if (!pattern) return pattern;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        const std::int32_t glyph = tiles[static_cast<std::size_t>(cells[i])];
        pattern->line[i / kBlendSide][i % kBlendSide] = static_cast<unsigned char>(glyph);
    }
    return pattern;
}

int Displacement(int reach) {
    constexpr int kHalf = 50;
    const bool forward = std::rand() % kOutcomes < kHalf;
    const int distance = std::rand() % reach;
    return forward ? distance : -distance;
}

// Every pixel of `area` lands somewhere near its place in `shaken`, later ones on top.
void Shake(const BITMAP& area, BITMAP& shaken, int reach) {
    for (int y = 0; y < area.h; ++y) {
        for (int x = 0; x < area.w; ++x) {
            const int toX = x + Displacement(reach);
            const int toY = y + Displacement(reach);
            if (toX >= 0 && toY >= 0 && toX < shaken.w && toY < shaken.h)
                shaken.line[toY][toX] = area.line[y][x];
        }
    }
}

// --- Slime fade --------------------------------------------------------------------------------

// The wave's phase goes up as it grows, the slower the longer its front is.
class SlimeWave {
public:
    SlimeWave(int random, const FadeTiles& set) : outcomes(random + 1), tiles(set) {}

    /// The glyph for the next cell.
    std::int32_t NextGlyph() {
        // The two ends of the table meet, but one step on the way up is missed out.
        static constexpr std::uint8_t kPositions[] = {1, 3, 3, 4, 3, 2, 1, 0, 1, 2, 3, 4, 3, 2, 1};
        const int r = std::rand() % outcomes;
        const double grown = static_cast<double>(count) / (static_cast<double>(span) + 1);
        const auto k = static_cast<std::size_t>(r * grown + phase);
        if (k < std::size(kPositions)) glyph = TileAt(tiles, kPositions[k]);
        return glyph;
    }

    /// A node has been taken out of a list that has `left` more.
    void Count(std::size_t left) {
        constexpr int kPhases = 8;
        constexpr std::size_t kSpanOfNode = 3;
        if (++count != span) return;
        span = kSpanOfNode * left;
        phase = (phase + 1) % kPhases;
        count = 0;
    }

private:
    int outcomes;
    const FadeTiles& tiles;
    std::int32_t glyph = 0;
    int phase = 3;
    std::size_t count = 0;
    std::size_t span = 3;
};

bool IsSelected(Point at) {
    return at.x >= std::max(vRegionX, 0) && at.y >= std::max(vRegionY, 0) &&
           at.x < std::min(vRegionX + vRegionW, vMaskW) &&
           at.y < std::min(vRegionY + vRegionH, vMaskH) && MaskAt(at.x, at.y) == kSelected;
}

}  // namespace

void DistanceFade(Handle h, int px, int py, int random, const FadeTiles& tiles) {
    static constexpr std::uint8_t kPositions[] = {0, 1, 2, 3, 4, 3, 2, 1};
    // Held in single precision, multiplied in double: 20 columns by 0.35 are just below 7.
    const double xm = static_cast<double>(static_cast<float>(px * 0.01));
    const double ym = static_cast<double>(static_cast<float>(py * 0.01));
    const int outcomes = random + 1;
    ForEachSelected([&](int x, int y) {
        const auto ax = static_cast<std::int64_t>(std::abs(vFadeCenterX - x) * xm);
        const auto ay = static_cast<std::int64_t>(std::abs(vFadeCenterY - y) * ym);
        const int r = std::rand() % outcomes;
        const int d = static_cast<int>(std::sqrt(static_cast<double>(ax * ax + ay * ay)));
        const std::size_t step = static_cast<std::size_t>(r + d) % std::size(kPositions);
        PutGlyph(h, x, y, TileAt(tiles, kPositions[step]));
    });
}

void NormalFade(Handle h, const FadeCells& cells, int random, const FadeTiles& tiles) {
    const Bitmap pattern = MakePattern(cells, tiles);
    const Bitmap area = MakeBitmap(vRegionW, vRegionH);
    const Bitmap shaken = MakeBitmap(vRegionW, vRegionH);
    if (!pattern || !area || !shaken) {
        Fatal("Unable to create the pattern of the fade", __FILE__, __LINE__);
        return;
    }
    stretch_blit(pattern.get(), area.get(), 0, 0, kBlendSide, kBlendSide, 0, 0, vRegionW, vRegionH);
    blit(area.get(), shaken.get(), 0, 0, 0, 0, vRegionW, vRegionH);
    if (random > 0) Shake(*area, *shaken, random);
    ForEachSelected(
        [&](int x, int y) { PutGlyph(h, x, y, shaken->line[y - vRegionY][x - vRegionX]); });
}

void SlimeFade(Handle h, int random, const FadeTiles& tiles) {
    SlimeWave wave(random, tiles);
    // A generation is walked from the cell added last to the one added first.
    std::vector<Point> front{{vFadeCenterX, vFadeCenterY}};
    std::vector<Point> next;
    for (; !front.empty(); std::swap(front, next)) {
        next.clear();
        while (!front.empty()) {
            const Point at = front.back();
            const std::int32_t glyph = wave.NextGlyph();
            if (IsSelected(at)) {
                PutGlyph(h, at.x, at.y, glyph);
                MaskAt(at.x, at.y) = kDone;
                for (const Point beside : {Point{at.x, at.y - 1}, Point{at.x, at.y + 1},
                                           Point{at.x - 1, at.y}, Point{at.x + 1, at.y}})
                    if (IsSelected(beside)) next.push_back(beside);
            }
            front.pop_back();
            wave.Count(front.size() + next.size());
        }
    }
}

void SpeckleFill(Handle h, int percentage) {
    VisitSelected([&](int x, int y) {
        if (std::rand() % kOutcomes > percentage) return false;
        PutGlyph(h, x, y, vBrush.chr);
        return true;
    });
}
