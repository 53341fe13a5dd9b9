#include "engine/bitmap.h"

#include <algorithm>
#include <climits>

Bitmap MakeBitmap(int w, int h) {
    w = std::max(w, 0);
    h = std::max(h, 0);
    if (h > 0 && w > INT_MAX / h) return nullptr;
    constexpr int kColorDepth = 8;
    return Bitmap(create_bitmap_ex(kColorDepth, w, h));
}
