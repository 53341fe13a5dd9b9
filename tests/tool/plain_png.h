// A reader of palette PNG files on zlib alone, to judge what libpng wrote.
#pragma once

#include <string>

struct PlainPng {
    int w = 0;
    int h = 0;
    std::string pixels;   ///< colour numbers, row by row
    std::string palette;  ///< three bytes a colour
};

/// Only the kind that the tool writes: 8 bits by palette, not interlaced. Empty, with a test
/// failure, for anything else.
PlainPng ReadPng(const std::string& bytes);
