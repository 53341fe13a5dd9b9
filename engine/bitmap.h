// 8-bit memory bitmaps that free themselves.
#pragma once

#include "engine/allegro_api.h"

#include <memory>

/// Makes Allegro ready for 8-bit memory bitmaps, with no display and no input. Once, before any
/// other use of it. False when it cannot start.
bool StartAllegro();

struct BitmapDeleter {
    void operator()(BITMAP* bitmap) const { destroy_bitmap(bitmap); }
};
using Bitmap = std::unique_ptr<BITMAP, BitmapDeleter>;

/// An 8-bit bitmap of w by h pixels, all 0. Negative sizes count as 0, and a bitmap
/// without pixels is made like any other. Null when it has more than INT_MAX pixels (Allegro
/// counts them in an int) or when there is no memory for it.
Bitmap MakeBitmap(int w, int h);
