// The area tools on a large grid, against what the drawing or Allegro's own fill takes alone.
//
// A benchmark's number is the side of its grid. Those of side 250 fill their grid 16 times, so
// that each covers as many cells as the one of side 1,000.

#include "bench/bench_world.h"
#include "editor/tools/fade_fills.h"
#include "editor/view/brush.h"
#include "editor/view/fills.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"

#include <benchmark/benchmark.h>

#include <cstdlib>
#include <cstring>

using platform::Point;

namespace {

constexpr int kSide = 1000;
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
        SelectRect(handle, {0, 0}, Last());
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

void Fill(Area& area) { FillRegion(area.handle); }
void Blend(Area& area) { BlendRegion(area.handle, {0, 0}, area.Last()); }
void Paste(Area& area) { PasteRegion(area.handle); }
void Normal(Area& area) {
    vWorld->BackupTiles(area.handle);
    NormalFade(area.handle, area.cells, 0, kSet);
}
void ScatteredNormal(Area& area) {
    vWorld->BackupTiles(area.handle);
    NormalFade(area.handle, area.cells, kMaxRandom, kSet);
}
void Distance(Area& area) {
    vWorld->BackupTiles(area.handle);
    vFadeCenterX = vFadeCenterY = area.side / 2;
    DistanceFade(area.handle, 35, 45, kMaxRandom, kSet);
}
void Slime(Area& area) {
    vWorld->BackupTiles(area.handle);
    vFadeCenterX = vFadeCenterY = area.side / 2;
    SlimeFade(area.handle, kMaxRandom, kSet);
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

void Flood(benchmark::State& state) {
    Area area(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        for (int round = 0; round < area.Rounds(); ++round) SelectFlood(area.handle, area.Last());
        benchmark::ClobberMemory();
    }
}

void AllegroFloodfill(benchmark::State& state) {
    BenchWorld();
    const Bitmap bitmap = MakeBitmap(kSide, kSide);
    clear_bitmap(bitmap.get());
    int color = 0;
    for (auto _ : state) {
        color = color % 200 + 1;
        floodfill(bitmap.get(), kSide - 1, kSide - 1, color);
        benchmark::ClobberMemory();
    }
}

// What a scattered Normal fade draws by chance, without doing anything with it.
void FourDraws(benchmark::State& state) {
    for (auto _ : state)
        for (int i = 0; i < 4 * kSide * kSide; ++i) benchmark::DoNotOptimize(std::rand());
}

void SelectOneByRect(benchmark::State& state) {
    Area area(kSide);
    for (auto _ : state) {
        SelectRect(area.handle, {500, 500}, {500, 500});
        benchmark::ClobberMemory();
    }
}

void SelectOneByFlood(benchmark::State& state) {
    Area area(kSide);
    area.node->PutTile(500, 500, 1, 1, 1, 1);
    for (auto _ : state) {
        SelectFlood(area.handle, {500, 500});
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

#define BENCH_ACTION(name) BENCHMARK_TEMPLATE(Act, name)->Name(#name)->Arg(kSide)->Arg(250)
BENCH_ACTION(Fill);
BENCH_ACTION(Blend);
BENCH_ACTION(Paste);
BENCH_ACTION(Normal);
BENCH_ACTION(ScatteredNormal);
BENCH_ACTION(Distance);
BENCH_ACTION(Slime);
BENCHMARK(DrawTiles);
BENCHMARK(FourDraws);
BENCHMARK(Flood)->Arg(kSide)->Arg(250);
BENCHMARK(AllegroFloodfill);
BENCHMARK(SelectOneByRect);
BENCHMARK(SelectOneByFlood);
BENCHMARK(ClearMaskAlone);

}  // namespace

BENCHMARK_MAIN();
