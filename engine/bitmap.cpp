#include "engine/bitmap.h"

#include <algorithm>
#include <cerrno>
#include <climits>

namespace {

constexpr int kColorDepth = 8;

}  // namespace

bool StartAllegro() {
    if (install_allegro(SYSTEM_NONE, &errno, nullptr) != 0) return false;
    set_color_depth(kColorDepth);
    return true;
}

Bitmap MakeBitmap(int w, int h) {
    w = std::max(w, 0);
    h = std::max(h, 0);
    if (h > 0 && w > INT_MAX / h) return nullptr;
    Bitmap bitmap(create_bitmap_ex(kColorDepth, w, h));
    if (bitmap) clear_bitmap(bitmap.get());
    return bitmap;
}
