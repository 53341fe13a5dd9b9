// The area tools on a large grid, against what the drawing or Allegro's own fill takes alone.
//
// A benchmark's number is the side of its grid. Those of side 500 fill their grid four times, so
// that each covers as many cells as the one of side 1,000; both are larger than a processor's own
// caches.

#include "bench/bench_world.h"
#include "editor/tools/fade_fills.h"
#include "editor/view/brush.h"
#include "editor/view/fills.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "engine/tile_pen.h"

#include "bench/timed.h"

#include <cstdlib>
#include <cstring>
#include <utility>
#include <vector>

using platform::Point;

namespace {

constexpr int kSide = 1000;
constexpr int kSmallSide = 500;
constexpr int kMaxRandom = 15;
constexpr FadeTiles kSet{32, 176, 177, 178, 219};

struct Area {
    explicit Area(int length) : side(length) {
        Dinterface& world = BenchWorld();
        world.Root().EraseAll();
        node = &AddBenchNode(world.Root(), side, side);
        world.currentObject = node->id;
        node->BackupTiles();
        vBrush = {176, 14, 1, 0};
        for (std::size_t i = 0; i < cells.size(); ++i) cells[i] = static_cast<int>(i % 5);
        handle = world.AddHandle(node);
        SelectRect(vArea, handle, {0, 0}, Last());
        whole = vMask;
    }
    ~Area() { vWorld->ReleaseHandle(handle); }

    Point Last() const { return {side - 1, side - 1}; }
    int Rounds() const { return kSide / side * (kSide / side); }
    /// The whole grid selected, at the price of a copy.
    void Select() { std::memcpy(vMask.data(), whole.data(), whole.size() * sizeof whole[0]); }

    int side;
    Dobject* node = nullptr;
    Handle handle = kNoHandle;
    FadeCells cells;
    std::vector<std::int32_t> whole;
};

void Fill(Area& area) { FillRegion(area.handle, vArea, vBrush); }
// What the others are compared to.
void FillCells(Area& area) {
    vWorld->BackupTiles(area.handle);
    TilePen pen(vWorld->Editable(area.handle));
    ForEachSelected(vArea, [&](int x, int y) {
        pen.Put(x, y, vBrush.chr, vBrush.fg, vBrush.bg, vBrush.attrib);
    });
}
void Blend(Area& area) { BlendRegion(area.handle, vArea, vBrush, {0, 0}, area.Last()); }
void Paste(Area& area) { PasteRegion(area.handle, vArea); }
void Normal(Area& area) {
    vWorld->BackupTiles(area.handle);
    NormalFade(area.handle, vArea, vBrush, area.cells, 0, kSet);
}
void ScatteredNormal(Area& area) {
    vWorld->BackupTiles(area.handle);
    NormalFade(area.handle, vArea, vBrush, area.cells, kMaxRandom, kSet);
}
void Distance(Area& area) {
    vWorld->BackupTiles(area.handle);
    vFadeCenterX = vFadeCenterY = area.side / 2;
    DistanceFade(area.handle, vArea, vBrush, 35, 45, kMaxRandom, kSet);
}
void Slime(Area& area) {
    vWorld->BackupTiles(area.handle);
    vFadeCenterX = vFadeCenterY = area.side / 2;
    SlimeFade(area.handle, vArea, vBrush, kMaxRandom, kSet);
}

// Only the action is timed; selecting again is not.
template <void (*Action)(Area&)>
void Act(benchmark::State& state) {
    Area area(static_cast<int>(state.range(0)));
    vTileClipW = vTileClipH = 3;
    vTileClip.assign(9, {177, 14, 1, 0});
    for (auto _ : state) {
        for (int round = 0; round < area.Rounds(); ++round) {
            state.PauseTiming();
            area.Select();
            state.ResumeTiming();
            Action(area);
        }
    }
}

// The same loop around the drawing alone.
void DrawTiles(benchmark::State& state) {
    Area area(kSide);
    const Dfont& glyphs = *vWorld->GetFont();
    for (auto _ : state) {
        for (int y = 0; y < kSide; ++y)
            for (int x = 0; x < kSide; ++x) glyphs.DrawTile(*area.node, 176, 14, 1, x, y);
        benchmark::ClobberMemory();
    }
}

// What a flood goes round: nothing, cells at random, the gaps of a comb, one long winding way.
enum Shape { kPlain, kNoise, kComb, kSerpentine };

bool IsWall(Shape shape, int x, int y) {
    if (x == kSide - 1 && y == kSide - 1) return false;
    // The same cells in each turn, by a hash of the place; the last column leads past them.
    if (shape == kNoise) {
        std::uint32_t hash = static_cast<std::uint32_t>(y * kSide + x) * 2654435761u;
        hash = (hash ^ hash >> 15) * 2246822519u;
        return x != kSide - 1 && (hash ^ hash >> 13) % 10 < 3;
    }
    if (shape == kComb) return x % 2 == 0 && y > 0;
    return shape == kSerpentine && y % 2 == 0 && x != (y % 4 == 0 ? 0 : kSide - 1);
}

template <Shape shape>
void Flood(benchmark::State& state) {
    Area area(static_cast<int>(state.range(0)));
    for (int y = 0; y < area.side; ++y)
        for (int x = 0; x < area.side; ++x)
            if (IsWall(shape, x, y)) area.node->PutTile(x, y, 219, 1, 1, 0);
    for (auto _ : state) {
        for (int round = 0; round < area.Rounds(); ++round)
            SelectFlood(vArea, area.handle, area.Last());
        benchmark::ClobberMemory();
    }
}

template <Shape shape>
void AllegroFlood(benchmark::State& state) {
    BenchWorld();
    const Bitmap bitmap = MakeBitmap(kSide, kSide);
    for (int y = 0; y < kSide; ++y)
        for (int x = 0; x < kSide; ++x)
            if (IsWall(shape, x, y)) bitmap->line[y][x] = 255;
    int color = 0;
    for (auto _ : state) {
        color = color % 200 + 1;
        floodfill(bitmap.get(), kSide - 1, kSide - 1, color);
        benchmark::ClobberMemory();
    }
}

// As many draws, by chance, as a fade of the whole grid makes, without doing anything with them.
void Draw(benchmark::State& state, std::int64_t draws) {
    for (auto _ : state)
        for (std::int64_t i = 0; i < draws; ++i) benchmark::DoNotOptimize(std::rand());
}
void NormalDraws(benchmark::State& state) { Draw(state, 4LL * kSide * kSide); }
void DistanceDraws(benchmark::State& state) { Draw(state, 1LL * kSide * kSide); }

// The wave comes to a cell once for each neighbour that it had reached before.
void SlimeDraws(benchmark::State& state) {
    std::vector<char> open(static_cast<std::size_t>(kSide) * kSide, 1);
    std::vector<Point> front{{kSide / 2, kSide / 2}};
    std::vector<Point> next;
    std::int64_t draws = 0;
    const auto at = [&](Point p) -> char* {
        const bool inside = p.x >= 0 && p.y >= 0 && p.x < kSide && p.y < kSide;
        return inside ? &open[static_cast<std::size_t>(p.y * kSide + p.x)] : nullptr;
    };
    for (; !front.empty(); std::swap(front, next))
        for (; !front.empty(); ++draws) {
            const Point p = front.back();
            front.pop_back();
            if (!std::exchange(*at(p), 0)) continue;
            for (const Point q :
                 {Point{p.x, p.y - 1}, {p.x, p.y + 1}, {p.x - 1, p.y}, {p.x + 1, p.y}})
                if (at(q) && *at(q)) next.push_back(q);
        }
    Draw(state, draws);
}

void ClearSurface(benchmark::State& state) {
    const Area area(kSide);
    BITMAP& surface = *area.node->Surface();
    const auto bytes = static_cast<std::size_t>(surface.w) * static_cast<std::size_t>(surface.h);
    for (auto _ : state) {
        std::memset(surface.line[0], 7, bytes);
        benchmark::ClobberMemory();
    }
}

void SelectOneByRect(benchmark::State& state) {
    Area area(kSide);
    for (auto _ : state) {
        SelectRect(vArea, area.handle, {500, 500}, {500, 500});
        benchmark::ClobberMemory();
    }
}

void SelectOneByFlood(benchmark::State& state) {
    Area area(kSide);
    area.node->PutTile(500, 500, 1, 1, 1, 1);
    for (auto _ : state) {
        SelectFlood(vArea, area.handle, {500, 500});
        benchmark::ClobberMemory();
    }
}

void ClearMaskAlone(benchmark::State& state) {
    Area area(kSide);
    for (auto _ : state) {
        std::fill(vMask.begin(), vMask.end(), 0);
        benchmark::ClobberMemory();
    }
}

#define BENCH_ACTION(name) TIMED_TEMPLATE(Act, name)->Name(#name)->Arg(kSide)->Arg(kSmallSide)
BENCH_ACTION(Fill);
BENCH_ACTION(FillCells);
BENCH_ACTION(Blend);
BENCH_ACTION(Paste);
BENCH_ACTION(Normal);
BENCH_ACTION(ScatteredNormal);
BENCH_ACTION(Distance);
BENCH_ACTION(Slime);
TIMED(DrawTiles);
TIMED(NormalDraws);
TIMED(DistanceDraws);
TIMED(SlimeDraws);
TIMED(ClearSurface);
#define BENCH_FLOOD(name, shape)                                  \
    TIMED_TEMPLATE(Flood, shape)->Name("Flood" name)->Arg(kSide); \
    TIMED_TEMPLATE(AllegroFlood, shape)->Name("AllegroFlood" name)
BENCH_FLOOD("Plain", kPlain);
TIMED_TEMPLATE(Flood, kPlain)->Name("FloodPlain")->Arg(kSmallSide);
BENCH_FLOOD("Noise", kNoise);
BENCH_FLOOD("Comb", kComb);
BENCH_FLOOD("Serpentine", kSerpentine);
TIMED(SelectOneByRect);
TIMED(SelectOneByFlood);
TIMED(ClearMaskAlone);

}  // namespace

BENCHMARK_MAIN();
