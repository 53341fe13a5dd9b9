// A picture of which only what changed is shown, against each pixel worked out.

#include "platform/qt/picture_widget.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QBackingStore>
#include <QPaintEvent>
#include <random>

namespace {

class Canvas final : public QObject, public platform::WindowEvents {
public:
    void OnDraw(platform::Window& window) override {
        std::vector<const unsigned char*> rows;
        for (int y = 0; y < h; ++y) rows.push_back(&At(0, y));
        window.ShowPicture({rows.data(), w, h}, shown);
    }
    unsigned char& At(int x, int y) { return pixels[static_cast<std::size_t>(y * w + x)]; }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint)
            painted |= static_cast<QPaintEvent*>(event)->region().boundingRect();
        return false;
    }

    int w = 0, h = 0;
    platform::Size shown;
    std::vector<unsigned char> pixels;
    QRect painted;
};

TEST(PartialRedraw, IsAFullOne) {
    std::mt19937 random(testing::UnitTest::GetInstance()->random_seed() + 1u);
    const auto roll = [&](int end) { return static_cast<int>(random() % unsigned(end)); };
    const auto colors = vScreenColors;
    for (std::size_t i = 0; i < 256; ++i) vScreenColors[i] = 0xff000000u | random();
    Canvas canvas;
    PictureWidget widget(nullptr, &canvas);
    widget.installEventFilter(&canvas);
    widget.resize(97, 61);
    widget.show();
    for (int step = 0; step < 400; ++step) {
        const int what = step == 0 ? 0 : roll(12);
        QRect changed;
        if (what == 0) {
            constexpr int kTwice[][2] = {{1, 1}, {1, 2}, {1, 4}, {2, 1}, {3, 2}};
            const auto& [from, to] = kTwice[roll(5)];
            canvas.w = (100 + roll(30)) * from / to / from * from + from;
            canvas.h = (64 + roll(30)) * from / to / from * from + from;
            canvas.shown = {canvas.w * to / from, canvas.h * to / from};
            canvas.pixels.assign(static_cast<std::size_t>(canvas.w * canvas.h), 7);
        } else if (what == 1) {
            vScreenColors[static_cast<std::size_t>(roll(256))] ^= 0xff;
        } else if (what == 2) {
            widget.resize(60 + roll(40), 40 + roll(24));
        } else {
            changed = {roll(canvas.w), roll(canvas.h), 1 + roll(20), 1 + roll(20)};
            changed &= QRect(0, 0, canvas.w, canvas.h);
            for (int y = changed.top(); y <= changed.bottom(); ++y)
                for (int x = changed.left(); x <= changed.right(); ++x)
                    canvas.At(x, y) = static_cast<unsigned char>(roll(256));
        }
        canvas.painted = {};
        if (what == 3) widget.grab();
        if (what == 4) widget.update(0, 0, 9, 9);
        widget.Invalidate();
        for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
        if (what > 4 && canvas.w == canvas.shown.w) {
            EXPECT_TRUE(changed.contains(canvas.painted) || canvas.painted.isEmpty()) << step;
        }
        const auto& screen = static_cast<const QImage&>(*widget.backingStore()->paintDevice());
        for (int y = 0; y < widget.height(); ++y)
            for (int x = 0; x < widget.width(); ++x)
                ASSERT_EQ(screen.pixel(x, y),
                          vScreenColors[canvas.At(x * canvas.w / canvas.shown.w,
                                                  y * canvas.h / canvas.shown.h)])
                    << "step " << step << ", " << what << " at " << x << ", " << y;
    }
    vScreenColors = colors;
}

}  // namespace
