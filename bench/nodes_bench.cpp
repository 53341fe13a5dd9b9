// Worlds of many nodes: copying, reading, moving and finding them. A benchmark's number is that
// of the objects on one board.

#include "bench/bench_world.h"
#include "bench/timed.h"
#include "engine/copy_object.h"

#include <malloc.h>
#include <unistd.h>

#include <string>
#include <vector>

namespace {

struct ManyObjects {
    explicit ManyObjects(benchmark::State& state) {
        BenchWorld().Root().EraseAll();
        board = &AddBenchNode(BenchWorld().Root(), 1, 1);
        // By falling z: each comes to stand behind the others, as the last of the list.
        for (auto i = static_cast<int>(state.range(0)); i-- > 0;)
            AddBenchNode(*board, 1, 1, i / 10);
        // Whatever ran before: all start without memory to use again, as a program does.
        malloc_trim(0);
    }
    ~ManyObjects() { BenchWorld().Root().EraseAll(); }

    Dobject* board;
};

// Each copy stays, as a user's does: memory that was just given back would flatter the small ones.
void Copy(benchmark::State& state) {
    const ManyObjects many(state);
    for (auto _ : state) benchmark::DoNotOptimize(CopyObject(vWorld->Root(), *many.board));
}

void Read(benchmark::State& state) {
    const ManyObjects many(state);
    const std::string path = "nodes-bench-" + std::to_string(getpid()) + ".zqlt";
    vWorld->Save(path);
    for (auto _ : state) {
        state.PauseTiming();
        vWorld->Root().EraseAll();
        malloc_trim(0);
        state.ResumeTiming();
        if (!vWorld->Load(path)) state.SkipWithError("the game does not load");
    }
    unlink(path.c_str());
}

// The first object behind all others and back.
void Move(benchmark::State& state) {
    const ManyObjects many(state);
    const HandleGuard h(vWorld->AddHandle(many.board->children.front().get()));
    const std::int32_t z = vWorld->GetProperty(h, kPosZ);
    for (auto _ : state) {
        vWorld->SetProperty(h, kPosZ, -1);
        vWorld->SetProperty(h, kPosZ, z);
    }
}

// A hundred objects from all over the board, each found by its id.
void Find(benchmark::State& state) {
    const ManyObjects many(state);
    constexpr std::size_t kFinds = 100;
    std::vector<std::int32_t> ids;
    std::size_t at = 0;
    for (const auto& child : many.board->children)
        if (at++ % (many.board->children.size() / kFinds) == 0) ids.push_back(child->id);
    for (auto _ : state)
        for (std::int32_t id : ids) {
            const HandleGuard found(vWorld->GetHandleById(kRootHandle, id));
            if (vWorld->GetId(found) != id) state.SkipWithError("another node was found");
        }
}

TIMED(Copy)->Arg(1'000)->Iterations(100);
TIMED(Copy)->Arg(100'000)->Iterations(1);
TIMED(Read)->Arg(1'000)->Arg(100'000);
TIMED(Move)->Arg(1'000)->Arg(100'000);
TIMED(Find)->Arg(1'000)->Arg(100'000);

}  // namespace

BENCHMARK_MAIN();
