// An 8-bit palette PNG, written row by row.
#pragma once

#include "engine/allegro_api.h"

#include <cstdint>
#include <memory>
#include <string>

class PngFile {
public:
    /// A picture of w by h pixels, each shown as a square of `scale`, with a palette of 256
    /// colours of Allegro's six bits.
    PngFile(int w, int h, int scale, const RGB* palette);
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
