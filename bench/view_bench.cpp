// The edit view on the Qt backend: a whole repaint, from an event to the flushed pixels in windows
// of three sizes, and the start of the program.
//
// One mode a process, since a program starts once: no option runs the benchmarks of the
// repaint; --start and --empty-start start, paint a first window and end.

#include "bench/timed.h"
#include "editor/commands.h"
#include "editor/shell/quilt_app.h"
#include "platform/keys.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"

#include <QPainter>
#include <chrono>
#include <cstring>
#include <filesystem>
#include <string_view>
#include <thread>
#include <utility>
#include <vector>

namespace {

constexpr int kW = 1024;
constexpr int kH = 768;

std::string ProgramPath() { return std::filesystem::current_path().string(); }

// A widget that shows an 8-bit picture by Qt's own means.
class IndexedWidget final : public QWidget {
public:
    IndexedWidget() : picture(kW, kH, QImage::Format_Indexed8) {
        QList<QRgb> colors;
        for (int i = 0; i < 256; ++i) colors << qRgb(i, 255 - i, i / 2);
        picture.setColorTable(colors);
        for (int y = 0; y < kH; ++y)
            for (int x = 0; x < kW; ++x)
                picture.scanLine(y)[x] = static_cast<unsigned char>(x * 7 + y * 13);
        setAttribute(Qt::WA_OpaquePaintEvent);
        resize(kW, kH);
    }

protected:
    void paintEvent(QPaintEvent*) override { QPainter(this).drawImage(0, 0, picture); }

private:
    QImage picture;
};

void DrawIndexedImage(benchmark::State& state) {
    IndexedWidget widget;
    widget.show();
    QApplication::processEvents();
    for (auto _ : state) widget.repaint();
}

// --- from event to flushed pixels
// -----------------------------------------------------------------

constexpr int kLargeBoard = 1000;

// The program with a board of 1,000 by 1,000 and an edit view of that size.
struct LargeBoard {
    LargeBoard(int w, int h, int zoom) {
        app.InitInstance(ProgramPath(), "");
        Dobject& board = *vWorld->Root().children.front();
        board.Resize(kLargeBoard, kLargeBoard);
        vWorld->currentObject = board.id;
        board.vieww = board.viewh = kLargeBoard;
        unsigned seed = 1;
        for (int y = 0; y < kLargeBoard; ++y)
            for (int x = 0; x < kLargeBoard; ++x) {
                seed = seed * 1664525 + 1013904223;
                board.PutTile(x, y, seed >> 24, 1 + (seed >> 16) % 200, 1 + (seed >> 8) % 200, 0);
            }
        auto& frame = static_cast<QtFrame&>(app.Frame().Window());
        edit = frame.findChild<QWidget*>(QStringLiteral("edit"));
        frame.setMinimumSize(frame.width() + w - edit->width(),
                             frame.height() + h - edit->height());
        if (zoom == 2) View().OnCommand(kCmdZoomOut);
        // A window system takes its time to give the size; then the memory is touched once.
        for (int i = 0; i < 1000 && edit->size() != QSize(w, h); ++i) {
            QApplication::processEvents();
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        for (int i = 0; i < 10; ++i) {
            View().Invalidate();
            QApplication::processEvents();
        }
    }
    CQuiltView& View() { return app.Frame().EditView(); }

    CQuiltApp app;
    QWidget* edit = nullptr;
};

// A key: the cursor's mark moves.
void Key(benchmark::State& state) {
    LargeBoard world(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                     static_cast<int>(state.range(2)));
    if (world.edit->width() != state.range(0)) state.SkipWithError("the view has another size");
    int step = 0;
    for (auto _ : state) {
        world.View().OnKeyDown(++step % 2 ? platform::kKeyRight : platform::kKeyLeft);
        QApplication::processEvents();
    }
}

// A drag: everything changes.
void Drag(benchmark::State& state) {
    LargeBoard world(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                     static_cast<int>(state.range(2)));
    world.View().OnLButtonDown(true, {100, 100});
    int step = 0;
    for (auto _ : state) {
        world.View().OnMouseMove(true, {100 + 16 * (++step % 2), 100});
        QApplication::processEvents();
    }
    world.View().OnLButtonUp(true, {100, 100});
}

// What a key cannot do without: the world composed, and compared with the one before.
void ComposeAndCompare(benchmark::State& state) {
    const int zoom = static_cast<int>(state.range(2));
    const LargeBoard world(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)),
                           zoom);
    const int w = vWorld->Root().width * kTileSize;
    const int h = vWorld->Root().height * kTileSize;
    const Bitmap picture = MakeBitmap(w, h);
    const Bitmap before = MakeBitmap(w, h);
    vWorld->DrawWorld(before.get(), 0, 0);
    vWorld->DrawWorld(picture.get(), 0, 0);
    for (auto _ : state) {
        clear_bitmap(picture.get());
        vWorld->DrawWorld(picture.get(), 0, 0);
        for (int y = 0; y < h; y += zoom)
            benchmark::DoNotOptimize(
                std::memcmp(picture->line[y], before->line[y], static_cast<std::size_t>(w)));
    }
}

void Copy32(benchmark::State& state) {
    const auto pixels = static_cast<std::size_t>(state.range(0) * state.range(1));
    std::vector<std::uint32_t> from(pixels, 1);
    std::vector<std::uint32_t> to(pixels, 2);
    for (auto _ : state) {
        std::memcpy(to.data(), from.data(), pixels * sizeof from[0]);
        benchmark::ClobberMemory();
    }
}

void Sizes(benchmark::internal::Benchmark* bench) {
    for (const auto& [w, h] : {std::pair{1024, 768}, {1920, 1080}, {3840, 2160}})
        for (int zoom : {1, 2}) bench->Args({w, h, zoom});
}

TIMED(DrawIndexedImage);
TIMED(Key)->Apply(Sizes);
TIMED(Drag)->Apply(Sizes);
TIMED(ComposeAndCompare)->Apply(Sizes);
TIMED(Copy32)->Apply(Sizes);

int StartEmpty() {
    QWidget window;
    window.resize(kW, kH);
    window.show();
    QApplication::processEvents();
    return 0;
}

int StartProgram() {
    CQuiltApp app;
    if (!app.InitInstance(ProgramPath(), "")) return 1;
    QApplication::processEvents();
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    if (mode == "--empty-start") {
        const QApplication qt(argc, argv);
        return StartEmpty();
    }
    QtPlatform qt(argc, argv);
    if (mode == "--start") return StartProgram();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
