// An 8-bit picture in the program's palette, and its form as a PNG file.
#pragma once

#include "library-src/palette_source.h"

struct Picture {
    Picture(int w, int h, uint8_t color);
    void Put(int x, int y, uint8_t color);
    void Fill(int x, int y, int w, int h, uint8_t color);

    int width;
    int height;
    std::vector<uint8_t> pixels;
};

std::string MakePng(const Picture& picture, const Palette& palette);
