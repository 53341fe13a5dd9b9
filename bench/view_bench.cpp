// The edit view on the Qt backend, off screen: a whole repaint, and the start of the program.
//
// One mode a process, since a program starts once: no option runs the benchmarks of the
// repaint; --start starts, paints a first window and ends.

#include "editor/shell/quilt_app.h"
#include "platform/qt/qt_frame.h"
#include "platform/qt/qt_platform.h"

#include <QPainter>
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

void RepaintView(benchmark::State& state) {
    CQuiltApp app;
    app.InitInstance(ProgramPath(), "");
    Dobject& board = *vWorld->Root().children.front();
    board.Resize(kW / 8, kH / 8);
    for (int y = 0; y < board.height; ++y)
        for (int x = 0; x < board.width; ++x)
            board.PutTile(x, y, 33 + (x * 5 + y) % 90, 1 + x % 15, 16 + y % 200, 1);
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

}  // namespace

int main(int argc, char** argv) {
    const std::string_view mode = argc > 1 ? argv[1] : "";
    setenv("QT_QPA_PLATFORM", "offscreen", 0);
    QtPlatform qt(argc, argv);
    if (mode == "--start") return StartProgram();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
