// The compositor against plain copies and against painting back to front.

#include "bench/bench_world.h"

#include "bench/timed.h"

#include <cstring>
#include <random>
#include <vector>

namespace {

constexpr int kW = 128;
constexpr int kH = 96;

struct Scene {
    Dinterface& world = BenchWorld();
    Bitmap target = MakeBitmap(kW * 8, kH * 8);
    Dobject* board = nullptr;
    std::mt19937 random{1};

    Scene() {
        world.Root().EraseAll();
        world.SetViewSize(kW, kH);
        board = &AddBenchNode(world.Root(), kW, kH);
        Fill(*board, 15, 1);
        clear_bitmap(target.get());
    }

    int Roll(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    void Fill(Dobject& node, int fg, int bg) {
        for (int y = 0; y < node.height; ++y)
            for (int x = 0; x < node.width; ++x) node.PutTile(x, y, Roll(33, 126), fg, bg, 0);
    }

    void Draw() {
        vWorld->DrawWorld(target.get(), 0, 0);
        benchmark::ClobberMemory();
    }

    // Painter's order: the board, then its children from the rear, holes left out.
    void DrawBackToFront() {
        blit(board->vSurf.get(), target.get(), 0, 0, 0, 0, kW * 8, kH * 8);
        for (auto child = board->children.rbegin(); child != board->children.rend(); ++child) {
            const Dobject& node = **child;
            masked_blit(node.vSurf.get(), target.get(), 0, 0, node.posx * 8, node.posy * 8,
                        node.width * 8, node.height * 8);
        }
        benchmark::ClobberMemory();
    }

    void AddHoleyLayer() { Fill(AddBenchNode(*board, kW, kH), 14, 0); }

    void AddObjects() {
        for (int i = 0; i < 1000; ++i) {
            Dobject& node = AddBenchNode(*board, 10, 10);
            Fill(node, Roll(1, 15), 0);
            node.posx = Roll(-9, kW - 1);
            node.posy = Roll(-9, kH - 1);
        }
    }

    // Half of them off the target, half behind the finished cells of a solid object in front.
    void AddUnseen(int count) {
        Dobject& cover = AddBenchNode(*board, 20, 20, 5);
        Fill(cover, 15, 1);
        for (int i = 0; i < count; ++i) {
            // At the list's end at once: Spawn would walk the list for each.
            board->children.push_back(std::make_unique<Dobject>(vWorld->TakeId()));
            Dobject& node = *board->children.back();
            node.parent = board;
            node.Create("node", 1, 1);
            node.PutTile(0, 0, 1, 15, 1, 0);
            node.posx = i % 2 ? -100 - i : i % 20;
            node.posy = i % 2 ? 5 : i / 20 % 20;
        }
    }
};

void BoardFillsTarget(benchmark::State& state) {
    Scene scene;
    for (auto _ : state) scene.Draw();
}

void CopyRows(benchmark::State& state) {
    Scene scene;
    for (auto _ : state) {
        for (int y = 0; y < kH * 8; ++y)
            std::memcpy(scene.target->line[y], scene.board->vSurf->line[y], kW * 8);
        benchmark::ClobberMemory();
    }
}

template <void (Scene::*Prepare)(), void (Scene::*Run)()>
void Picture(benchmark::State& state) {
    Scene scene;
    (scene.*Prepare)();
    for (auto _ : state) (scene.*Run)();
}

// The covered scene itself; then with 100,000 more nodes; and a look at as many nodes alone.
void Covered(benchmark::State& state) {
    Scene scene;
    scene.AddUnseen(static_cast<int>(state.range(0)));
    for (auto _ : state) scene.Draw();
}

void WalkNodes(benchmark::State& state) {
    Scene scene;
    scene.AddUnseen(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        int seen = 0;
        for (const auto& child : scene.board->children) seen += child->posx + child->hidden;
        benchmark::DoNotOptimize(seen);
    }
}

TIMED(BoardFillsTarget);
TIMED(CopyRows);
TIMED_TEMPLATE(Picture, &Scene::AddHoleyLayer, &Scene::Draw)->Name("HoleyLayer");
TIMED_TEMPLATE(Picture, &Scene::AddHoleyLayer, &Scene::DrawBackToFront)
    ->Name("HoleyLayerBackToFront");
TIMED_TEMPLATE(Picture, &Scene::AddObjects, &Scene::Draw)->Name("ManyObjects");
TIMED_TEMPLATE(Picture, &Scene::AddObjects, &Scene::DrawBackToFront)
    ->Name("ManyObjectsBackToFront");
TIMED(Covered)->Arg(0)->Arg(100000);
TIMED(WalkNodes)->Arg(100000);

}  // namespace

BENCHMARK_MAIN();
