#include "editor/tools/fade_fills.h"

#include "engine/eight_bytes.h"
#include "engine/random.h"
#include "engine/report.h"
#include "engine/tile_pen.h"

#include <cmath>
#include <vector>

using platform::Point;

namespace {

// 101 outcomes, so that a percentage of 0 or 99 leaves a rest of chance.
constexpr int kOutcomes = 101;

std::int32_t TileAt(const FadeTiles& tiles, std::uint8_t position) { return tiles[position]; }

// A draw % sides for sides that are known only when the program runs. A division would cost as
// much as the draw; this is the remainder by two multiplications, exact for 32 bits.
class Dice {
public:
    explicit Dice(int n) : sides(static_cast<std::uint64_t>(n)), inverse(UINT64_MAX / sides + 1) {}

    int Roll() const {
        const std::uint64_t fraction = inverse * static_cast<std::uint64_t>(vRandom.Next());
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

void PutGlyph(TilePen& pen, const Brush& brush, int x, int y, int glyph) {
    pen.Put(x, y, glyph, brush.fg, brush.bg, brush.attrib);
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
    const int direction = 1 - 2 * (vRandom.Next() % kOutcomes >= kHalf);
    return direction * reach.Roll();
}

// Every pixel of `area` lands somewhere near its place in a copy, later ones on top.
void Shake(BITMAP& area, BITMAP& shaken, const Dice& reach) {
    blit(&area, &shaken, 0, 0, 0, 0, area.w, area.h);
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

bool IsSelected(TileArea& area, Point at) {
    return at.x >= std::max(area.x, 0) && at.y >= std::max(area.y, 0) &&
           at.x < std::min(area.x + area.w, area.maskW) &&
           at.y < std::min(area.y + area.h, area.maskH) && area.At(at.x, at.y) == kSelected;
}

std::size_t BoxIndex(const TileArea& area, Point at) {
    return static_cast<std::size_t>(at.y - area.y) * static_cast<std::size_t>(area.w) +
           static_cast<std::size_t>(at.x - area.x);
}

// Lets the wave run over the selection: the positions of the cells of the box that it reached.
// They are written afterwards, row by row, since the wave's front lies across all rows of the
// picture and would touch memory far apart with every cell.
std::vector<std::uint8_t> SpreadSlime(TileArea& area, int random) {
    std::vector<std::uint8_t> positions(static_cast<std::size_t>(area.w) *
                                        static_cast<std::size_t>(area.h));
    SlimeWave wave(random);
    // A generation is walked from the cell added last to the one added first.
    std::vector<Point> front{{area.centerX, area.centerY}};
    std::vector<Point> next;
    for (; !front.empty(); std::swap(front, next)) {
        while (!front.empty()) {
            const Point at = front.back();
            const std::uint8_t position = wave.NextPosition();
            if (IsSelected(area, at)) {
                positions[BoxIndex(area, at)] = position;
                area.At(at.x, at.y) = kReached;
                for (const Point beside : {Point{at.x, at.y - 1}, Point{at.x, at.y + 1},
                                           Point{at.x - 1, at.y}, Point{at.x + 1, at.y}})
                    if (IsSelected(area, beside)) next.push_back(beside);
            }
            front.pop_back();
            wave.Count(front.size() + next.size());
        }
    }
    return positions;
}

}  // namespace

void DistanceFade(Handle h, TileArea& area, const Brush& brush, int px, int py, int random,
                  const FadeTiles& tiles) {
    static constexpr std::uint8_t kPositions[] = {0, 1, 2, 3, 4, 3, 2, 1};
    const auto columns = SquaredSteps(area.x, area.w, area.centerX, px);
    const auto rows = SquaredSteps(area.y, area.h, area.centerY, py);
    const Dice dice(random + 1);
    TilePen pen(vWorld->Editable(h));
    ForEachSelected(area, [&](int x, int y) {
        const std::int64_t square = columns[static_cast<std::size_t>(x - area.x)] +
                                    rows[static_cast<std::size_t>(y - area.y)];
        const int d = static_cast<int>(std::sqrt(static_cast<double>(square)));
        const std::size_t step = static_cast<std::size_t>(dice.Roll() + d) % std::size(kPositions);
        PutGlyph(pen, brush, x, y, TileAt(tiles, kPositions[step]));
    });
}

void NormalFade(Handle h, TileArea& area, const Brush& brush, const FadeCells& cells, int random,
                const FadeTiles& tiles) {
    const Bitmap pattern = MakePattern(cells, tiles);
    const Bitmap plain = MakeBitmap(area.w, area.h);
    const Bitmap shaken = random > 0 ? MakeBitmap(area.w, area.h) : Bitmap();
    if (!pattern || !plain || (random > 0 && !shaken)) {
        Fatal("Unable to create the pattern of the fade", __FILE__, __LINE__);
        return;
    }
    stretch_blit(pattern.get(), plain.get(), 0, 0, kBlendSide, kBlendSide, 0, 0, area.w, area.h);
    if (shaken) Shake(*plain, *shaken, Dice(random));
    const BITMAP& shown = shaken ? *shaken : *plain;
    TilePen pen(vWorld->Editable(h));
    ForEachRun(area, [&](int x, int y, int count) {
        const unsigned char* glyph = shown.line[y - area.y] + (x - area.x);
        for (int alike = 0; count > 0; count -= alike, x += alike, glyph += alike) {
            alike = RunOf(glyph, count, *glyph);
            pen.PutRun(x, y, alike, *glyph, brush.fg, brush.bg, brush.attrib);
        }
    });
}

void SlimeFade(Handle h, TileArea& area, const Brush& brush, int random, const FadeTiles& tiles) {
    const std::vector<std::uint8_t> positions = SpreadSlime(area, random);
    TilePen pen(vWorld->Editable(h));
    VisitCells(area, kReached, [&](int x, int y) {
        PutGlyph(pen, brush, x, y, TileAt(tiles, positions[BoxIndex(area, {x, y})]));
        return true;
    });
}

void SpeckleFill(Handle h, TileArea& area, const Brush& brush, int percentage) {
    TilePen pen(vWorld->Editable(h));
    VisitCells(area, kSelected, [&](int x, int y) {
        if (vRandom.Next() % kOutcomes > percentage) return false;
        PutGlyph(pen, brush, x, y, brush.chr);
        return true;
    });
}
