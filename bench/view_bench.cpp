// The edit view on the Qt backend, off screen: a whole repaint, and the start of the program.
//
// One mode a process, since a program starts once: no option runs the benchmarks of the
// repaint; --start starts, paints a first window and ends; --keys prints how long it takes from an
// event to the pixels that the window system has taken, in windows of three sizes.

#include "editor/shell/quilt_app.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"

#include <QKeyEvent>
#include <QPainter>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <string_view>
#include "bench/timed.h"

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

void Repaint(benchmark::State& state, QWidget& widget) {
    for (auto _ : state) widget.repaint();
}

void DrawIndexedImage(benchmark::State& state) {
    IndexedWidget widget;
    widget.show();
    QApplication::processEvents();
    Repaint(state, widget);
}

// The first board of the world, which must not be empty, with a tile in each of its cells.
Dobject& PaintBoard(int w, int h) {
    Dobject& board = *vWorld->Root().children.front();
    board.Resize(w, h);
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            board.PutTile(x, y, 33 + (x * 5 + y) % 90, 1 + x % 15, 16 + y % 200, 1);
    return board;
}

void RepaintView(benchmark::State& state) {
    CQuiltApp app;
    app.InitInstance(ProgramPath(), "");
    PaintBoard(kW / 8, kH / 8);
    auto& frame = static_cast<QtFrame&>(app.Frame().Window());
    auto* edit = frame.findChild<QWidget*>(QStringLiteral("edit"));
    frame.resize(frame.width() + kW - edit->width(), frame.height() + kH - edit->height());
    QApplication::processEvents();
    if (edit->size() != QSize(kW, kH)) state.SkipWithError("the view has another size");
    Repaint(state, *edit);
}

TIMED(DrawIndexedImage);
TIMED(RepaintView);

int StartProgram() {
    CQuiltApp app;
    if (!app.InitInstance(ProgramPath(), "")) return 1;
    QApplication::processEvents();
    return 0;
}

// Counts the repaints of a widget.
struct PaintCounter final : QObject {
    bool eventFilter(QObject*, QEvent* event) override {
        count += event->type() == QEvent::Paint;
        return false;
    }
    int count = 0;
};

template <typename Act>
double Milliseconds(Act act) {
    const auto start = std::chrono::steady_clock::now();
    act();
    return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
        .count();
}

// Milliseconds from events of that kind, made anew for each turn, to the server's word that it has
// the pixels: the median and the one that 19 of 20 are below.
template <typename Send>
void PrintTimes(const char* what, QWidget& edit, Send send) {
    constexpr int kEvents = 100;
    PaintCounter paints;
    edit.installEventFilter(&paints);
    std::vector<double> times;
    for (int i = 0; i < kEvents; ++i) {
        QApplication::processEvents();
        QGuiApplication::sync();
        const int before = paints.count;
        times.push_back(Milliseconds([&] {
            send(i);
            while (paints.count == before) QApplication::processEvents();
            QGuiApplication::sync();
        }));
    }
    std::sort(times.begin(), times.end());
    std::printf("  %s %.2f (%.2f)", what, times[kEvents / 2], times[kEvents * 19 / 20]);
}

// As if each event were one copy of the window's pixels.
void PrintCopy(QSize size) {
    constexpr int kCopies = 20;
    QImage from(size, QImage::Format_RGB32);
    QImage to(size, QImage::Format_RGB32);
    from.fill(1);
    to.fill(2);
    std::vector<double> times;
    for (int i = 0; i < kCopies; ++i) {
        times.push_back(Milliseconds([&] {
            std::memcpy(to.bits(), from.constBits(), static_cast<std::size_t>(to.sizeInBytes()));
            benchmark::ClobberMemory();
        }));
    }
    std::nth_element(times.begin(), times.begin() + kCopies / 2, times.end());
    std::printf("  one copy %.2f\n", times[kCopies / 2]);
}

int TimeKeys() {
    constexpr int kSide = 1000;
    CQuiltApp app;
    if (!app.InitInstance(ProgramPath(), "")) return 1;
    Dobject& board = PaintBoard(kSide, kSide);
    board.vieww = board.viewh = kSide;
    auto& frame = static_cast<QtFrame&>(app.Frame().Window());
    auto& edit = *frame.findChild<QWidget*>(QStringLiteral("edit"));
    const auto key = [&](Qt::Key code, Qt::KeyboardModifiers with) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, code, with);
            QCoreApplication::sendEvent(&edit, &event);
        }
    };
    std::puts("milliseconds, median (19 of 20)");
    for (const QSize size : {QSize(1024, 768), {1920, 1080}, {3840, 2160}}) {
        frame.resize(size);
        for (const bool out : {false, true}) {
            if (out) app.Frame().EditView().OnMouseWheel(-1);
            QApplication::processEvents();
            std::printf("%d by %d%s", frame.width(), frame.height(), out ? ", zoomed out" : "");
            PrintTimes("key", edit, [&](int) { key(Qt::Key_Right, {}); });
            PrintTimes("painting key", edit, [&](int i) {
                key(Qt::Key_Space, {});
                key(i % 2 ? Qt::Key_Left : Qt::Key_Right, {});
            });
            PrintTimes("scrolling key", edit, [&](int i) {
                key(i % 2 ? Qt::Key_Left : Qt::Key_Right, Qt::ControlModifier | Qt::ShiftModifier);
            });
            PrintCopy(edit.size());
        }
        app.Frame().EditView().OnMouseWheel(1);
        for (int i = 0; i < 100; ++i) key(Qt::Key_Left, {});
    }
    return 0;
}

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QtPlatform qt(argc, argv);
    if (mode == "--start") return StartProgram();
    if (mode == "--keys") return TimeKeys();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
