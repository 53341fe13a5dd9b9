// A PNG with a palette, written row by row.
#pragma once

#include "engine/allegro_api.h"

#include <bitset>
#include <cstdint>
#include <memory>
#include <string>

using ColorSet = std::bitset<256>;

class PngFile {
public:
    /// A picture of w by h pixels, each shown as a square of `scale`, with a palette of 256
    /// colours of Allegro's six bits. With the colours that it will have known to be at most 2, 4
    /// or 16, its pixels take 1, 2 or 4 bits and its palette is theirs, in rising order; else
    /// they take 8 bits, and the palette is whole. A width that is no multiple of 8 needs 8 bits.
    PngFile(int w, int h, int scale, const RGB* palette, const ColorSet& used = ColorSet().set());
    ~PngFile();
    PngFile(const PngFile&) = delete;
    PngFile& operator=(const PngFile&) = delete;

    /// The next row of w pixels. Nothing after a failure.
    void AddRow(const unsigned char* pixels);
    /// The whole file, after the last row; empty when there was no memory.
    std::string TakeBytes();

private:
    struct State;
    std::unique_ptr<State> state;
};
