#include "editor/tools/fade_fills.h"

#include "editor/view/brush.h"
#include "editor/view/selection.h"
#include "engine/report.h"

#include <cmath>
#include <cstdlib>
#include <vector>

using platform::Point;

namespace {

// 101 outcomes, so that a percentage of 0 or 99 leaves a rest of chance.
constexpr int kOutcomes = 101;

std::int32_t TileAt(const FadeTiles& tiles, std::uint8_t position) { return tiles[position]; }

// rand() % sides for sides that are known only when the program runs. A division would cost as
// much as the draw; this is the remainder by two multiplications, exact for 32 bits.
class Dice {
public:
    explicit Dice(int n) : sides(static_cast<std::uint64_t>(n)), inverse(UINT64_MAX / sides + 1) {}

    int Roll() const {
        const std::uint64_t fraction = inverse * static_cast<std::uint64_t>(std::rand());
        return static_cast<int>(HighHalf(fraction));
    }

private:
    __extension__ using Wide = unsigned __int128;
    std::uint64_t HighHalf(std::uint64_t fraction) const {
        constexpr int kBits = 64;
        return static_cast<std::uint64_t>((Wide{fraction} * sides) >> kBits);
    }

    std::uint64_t sides;
    std::uint64_t inverse;  ///< 2 to the 64th over the sides, rounded up; 0 for one side
};

void PutGlyph(Handle h, int x, int y, int glyph) {
    vWorld->SetTile(h, x, y, glyph, vBrush.fg, vBrush.bg, vBrush.attrib);
}

// --- Distance fade -----------------------------------------------------------------------------

// For each column or row of the box its distance from the centre in whole steps, squared.
std::vector<std::int64_t> SquaredSteps(int first, int count, int center, int hundredths) {
    // Held in single precision, multiplied in double: 20 columns by 0.35 are just below 7.
    const double step = static_cast<double>(static_cast<float>(hundredths * 0.01));
    std::vector<std::int64_t> squares(static_cast<std::size_t>(count));
    for (std::int64_t& square : squares) {
        const auto steps = static_cast<std::int64_t>(std::abs(center - first++) * step);
        square = steps * steps;
    }
    return squares;
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

int Displacement(const Dice& reach) {
    constexpr int kHalf = 50;
    const int direction = 1 - 2 * (std::rand() % kOutcomes >= kHalf);
    return direction * reach.Roll();
}

// Every pixel of `area` lands somewhere near its place in `shaken`, later ones on top.
void Shake(const BITMAP& area, BITMAP& shaken, const Dice& reach) {
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
    explicit SlimeWave(int random) : dice(random + 1) {}

    /// The position in the set for the next cell.
    std::uint8_t NextPosition() {
        // The two ends of the table meet, but one step on the way up is missed out.
        static constexpr std::uint8_t kPositions[] = {1, 3, 3, 4, 3, 2, 1, 0, 1, 2, 3, 4, 3, 2, 1};
        const int r = dice.Roll();
        const double grown = static_cast<double>(count) / (static_cast<double>(span) + 1);
        const auto k = static_cast<std::size_t>(r * grown + phase);
        if (k < std::size(kPositions)) position = kPositions[k];
        return position;
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
    Dice dice;
    std::uint8_t position = 0;
    int phase = 3;
    std::size_t count = 0;
    std::size_t span = 3;
};

bool IsSelected(Point at) {
    return at.x >= std::max(vRegionX, 0) && at.y >= std::max(vRegionY, 0) &&
           at.x < std::min(vRegionX + vRegionW, vMaskW) &&
           at.y < std::min(vRegionY + vRegionH, vMaskH) && MaskAt(at.x, at.y) == kSelected;
}

std::size_t BoxIndex(Point at) {
    return static_cast<std::size_t>(at.y - vRegionY) * static_cast<std::size_t>(vRegionW) +
           static_cast<std::size_t>(at.x - vRegionX);
}

// Lets the wave run over the selection: the positions of the cells of the box that it reached.
// They are written afterwards, row by row, since the wave's front lies across all rows of the
// picture and would touch memory far apart with every cell.
std::vector<std::uint8_t> SpreadSlime(int random) {
    std::vector<std::uint8_t> positions(static_cast<std::size_t>(vRegionW) *
                                        static_cast<std::size_t>(vRegionH));
    SlimeWave wave(random);
    // A generation is walked from the cell added last to the one added first.
    std::vector<Point> front{{vFadeCenterX, vFadeCenterY}};
    std::vector<Point> next;
    for (; !front.empty(); std::swap(front, next)) {
        while (!front.empty()) {
            const Point at = front.back();
            const std::uint8_t position = wave.NextPosition();
            if (IsSelected(at)) {
                positions[BoxIndex(at)] = position;
                MaskAt(at.x, at.y) = kReached;
                for (const Point beside : {Point{at.x, at.y - 1}, Point{at.x, at.y + 1},
                                           Point{at.x - 1, at.y}, Point{at.x + 1, at.y}})
                    if (IsSelected(beside)) next.push_back(beside);
            }
            front.pop_back();
            wave.Count(front.size() + next.size());
        }
    }
    return positions;
}

}  // namespace

void DistanceFade(Handle h, int px, int py, int random, const FadeTiles& tiles) {
    static constexpr std::uint8_t kPositions[] = {0, 1, 2, 3, 4, 3, 2, 1};
    const auto columns = SquaredSteps(vRegionX, vRegionW, vFadeCenterX, px);
    const auto rows = SquaredSteps(vRegionY, vRegionH, vFadeCenterY, py);
    const Dice dice(random + 1);
    ForEachSelected([&](int x, int y) {
        const std::int64_t square = columns[static_cast<std::size_t>(x - vRegionX)] +
                                    rows[static_cast<std::size_t>(y - vRegionY)];
        const int d = static_cast<int>(std::sqrt(static_cast<double>(square)));
        const std::size_t step = static_cast<std::size_t>(dice.Roll() + d) % std::size(kPositions);
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
    if (random > 0) Shake(*area, *shaken, Dice(random));
    ForEachSelected(
        [&](int x, int y) { PutGlyph(h, x, y, shaken->line[y - vRegionY][x - vRegionX]); });
}

void SlimeFade(Handle h, int random, const FadeTiles& tiles) {
    const std::vector<std::uint8_t> positions = SpreadSlime(random);
    VisitCells(kReached, [&](int x, int y) {
        PutGlyph(h, x, y, TileAt(tiles, positions[BoxIndex({x, y})]));
        return true;
    });
}

void SpeckleFill(Handle h, int percentage) {
    VisitCells(kSelected, [&](int x, int y) {
        if (std::rand() % kOutcomes > percentage) return false;
        PutGlyph(h, x, y, vBrush.chr);
        return true;
    });
}
