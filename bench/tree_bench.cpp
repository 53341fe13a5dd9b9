// The list of boards and objects on the Qt backend, off screen: its repaint and its clicks, with
// as many nodes as fill the pane and with many more.

#include "editor/shell/quilt_app.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"

#include <QApplication>
#include <filesystem>
#include "bench/timed.h"

namespace {

constexpr int kRowsATurn = 5;  ///< of the wheel

// The program with a world of that many nodes: boards of 99 objects, some in others.
struct TreeWorld {
    explicit TreeWorld(int nodes) {
        app.InitInstance(std::filesystem::current_path().string(), "");
        Dobject* board = vWorld->Root().children.front().get();
        constexpr int kPerBoard = 100;
        for (int i = 1; i < nodes; ++i) {
            if (i % kPerBoard == 0) {
                board = vWorld->Root().Spawn_Back(vWorld->TakeId(), 0);
                board->Create("board", 1, 1);
                continue;
            }
            Dobject& parent =
                i % 3 == 2 && !board->children.empty() ? *board->children.back() : *board;
            // Names as long at the end as at the top: their pixels are not what is compared.
            parent.Spawn(vWorld->TakeId(), 0)->Create("object" + std::to_string(10'000 + i), 1, 1);
        }
        auto& frame = static_cast<QtFrame&>(app.Frame().Window());
        list = frame.findChild<QWidget*>(QStringLiteral("list"));
        QApplication::processEvents();
    }
    CSelectView& List() { return app.Frame().List(); }

    CQuiltApp app;
    QWidget* list = nullptr;
};

const Dobject& LastNode(const Dobject& node) {
    return node.children.empty() ? node : LastNode(*node.children.back());
}

void Scroll(TreeWorld& world, int rows) {
    constexpr int kTurn = 120;
    for (int row = 0; row < rows; row += kRowsATurn) world.List().OnMouseWheel(kTurn);
}

// With the last node selected, which is the farthest to look for.
void Repaint(benchmark::State& state) {
    TreeWorld world(static_cast<int>(state.range(0)));
    vWorld->currentObject = LastNode(vWorld->Root()).id;
    Scroll(world, static_cast<int>(state.range(1)));
    for (auto _ : state) world.list->repaint();
}

std::int64_t SumIds(const Dobject& node) {
    std::int64_t sum = node.id;
    for (const auto& child : node.children) sum += SumIds(*child);
    return sum;
}

void WalkNodes(benchmark::State& state) {
    const TreeWorld world(static_cast<int>(state.range(0)));
    for (auto _ : state) benchmark::DoNotOptimize(SumIds(vWorld->Root()));
}

// A click on the last row, of a list scrolled down to it.
void Click(benchmark::State& state) {
    const int rows = static_cast<int>(state.range(0));
    TreeWorld world(rows);
    Scroll(world, rows - kRowsATurn);
    constexpr int kRowHeight = 10;
    const int y = kRowsATurn * kRowHeight + kRowHeight / 2;
    for (auto _ : state) {
        world.List().OnLButtonDown(false, {20, y});
        world.List().OnLButtonUp(false, {20, y});
    }
    if (vWorld->currentObject != LastNode(vWorld->Root()).id)
        state.SkipWithError("the click missed the last row");
}

TIMED(Repaint)->Args({100, 0})->Args({10'000, 0})->Args({10'000, 9'900});
TIMED(WalkNodes)->Arg(10'000);
TIMED(Click)->Arg(100)->Arg(10'000);

}  // namespace

int main(int argc, char** argv) {
    setenv("QT_QPA_PLATFORM", "offscreen", 1);
    const QtPlatform qt(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
