// The palette, read from its table in text.
#pragma once

#include "library-src/source_text.h"

#include <array>
#include <cstdint>

inline constexpr int kColorCount = 256;

// A colour in the 64 steps that Allegro's palette has.
struct Color {
    uint8_t red = 0;
    uint8_t green = 0;
    uint8_t blue = 0;
};

// A step as the 0 to 255 that a window shows.
inline int Shown(uint8_t step) { return step << 2 | step >> 4; }

// A run of numbers that blends from dark to light.
struct Ramp {
    int first = 0;
    int count = 0;
    std::string name;
};

struct Palette {
    std::array<Color, kColorCount> colors{};
    std::vector<Ramp> ramps;
};

// Each of the 256 numbers must be given exactly once; the head of the file describes the format.
Palette ReadPalette(const std::filesystem::path& file, Problems& problems);
