// A picture of which only what changed is shown, against each pixel worked out.

#include "platform/qt/picture_widget.h"

#include <gtest/gtest.h>
#include <QApplication>
#include <QBackingStore>
#include <random>

namespace {

struct Canvas final : platform::WindowEvents {
    void OnDraw(platform::Window& window) override {
        std::vector<const unsigned char*> rows;
        for (int y = 0; y < h; ++y) rows.push_back(&At(0, y));
        window.ShowPicture({rows.data(), w, h}, {w * up / down, h * up / down});
    }
    unsigned char& At(int x, int y) { return pixels[static_cast<std::size_t>(y * w + x)]; }

    int w = 0, h = 0, up = 1, down = 1;
    std::vector<unsigned char> pixels;
};

TEST(PartialRedraw, IsAFullOne) {
    std::mt19937 random(testing::UnitTest::GetInstance()->random_seed() + 1u);
    const auto roll = [&](int end) { return static_cast<int>(random() % unsigned(end)); };
    const auto colors = vScreenColors;
    for (std::uint32_t& color : vScreenColors) color = 0xff000000u | random();
    Canvas canvas;
    PictureWidget widget(nullptr, &canvas);
    widget.resize(97, 61);
    widget.show();
    for (int step = 0; step < 400; ++step) {
        const int what = step == 0 ? 0 : roll(12);
        if (what == 0) {
            canvas.up = 1 << roll(3);
            canvas.down = 1 + roll(3);
            canvas.w = (70 + roll(60)) / canvas.up * canvas.down + canvas.down;
            canvas.h = (44 + roll(50)) / canvas.up * canvas.down + canvas.down;
            canvas.pixels.assign(static_cast<std::size_t>(canvas.w * canvas.h), 7);
        }
        if (what == 1) vScreenColors[static_cast<std::size_t>(roll(256))] ^= 0xff;
        if (what == 2) widget.resize(60 + roll(40), 40 + roll(24));
        const int left = roll(canvas.w), top = roll(canvas.h);
        for (int y = top; what > 2 && y < std::min(top + roll(20), canvas.h); ++y)
            for (int x = left; x < std::min(left + 9, canvas.w); ++x)
                canvas.At(x, y) = static_cast<unsigned char>(roll(256));
        if (what == 3) widget.grab();
        if (what == 4) widget.update(0, 0, 9, 9);
        widget.Invalidate();
        for (int turn = 0; turn < 4; ++turn) QApplication::processEvents();
        const auto& screen = static_cast<const QImage&>(*widget.backingStore()->paintDevice());
        const QImage own = screen.copy(widget.rect());
        QImage other(own.size(), QImage::Format_ARGB32);
        if (what == 5) widget.render(&other);
        ASSERT_TRUE(what != 5 || other.convertToFormat(own.format()) == own);
        for (int i = 0; i < widget.width() * widget.height(); ++i) {
            const int x = i % widget.width(), y = i / widget.width();
            const int u = x * canvas.down / canvas.up, v = y * canvas.down / canvas.up;
            const bool black = u >= canvas.w || v >= canvas.h;
            ASSERT_EQ(screen.pixel(x, y), black ? 0xff000000 : vScreenColors[canvas.At(u, v)])
                << step << ": " << what << " at " << x << ", " << y;
        }
    }
    vScreenColors = colors;
}

}  // namespace
