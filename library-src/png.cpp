#include "library-src/png.h"

#include "tool/png_file.h"

Picture::Picture(int w, int h, uint8_t color)
    : width(w), height(h), pixels(static_cast<size_t>(w) * static_cast<size_t>(h), color) {}

void Picture::Put(int x, int y, uint8_t color) {
    pixels[static_cast<size_t>(y * width + x)] = color;
}

void Picture::Fill(int x, int y, int w, int h, uint8_t color) {
    for (int row = y; row < y + h; ++row) {
        for (int column = x; column < x + w; ++column) Put(column, row, color);
    }
}

std::string MakePng(const Picture& picture, const Palette& palette) {
    std::array<RGB, kColorCount> colors{};
    for (size_t i = 0; i < colors.size(); ++i) {
        const Color& from = palette.colors[i];
        colors[i] = {from.red, from.green, from.blue, 0};
    }
    PngFile png(picture.width, picture.height, 1, colors.data());
    for (int y = 0; y < picture.height; ++y)
        png.AddRow(&picture.pixels[static_cast<size_t>(y) * static_cast<size_t>(picture.width)]);
    return png.TakeBytes();
}
