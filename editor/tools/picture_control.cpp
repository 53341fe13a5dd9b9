#include "editor/tools/picture_control.h"

#include "engine/report.h"
#include "platform/keys.h"

#include <algorithm>

bool PictureControl::Holds(platform::Point at) const {
    const platform::Size size = window ? window->ClientSize() : platform::Size{};
    return at.x >= 0 && at.y >= 0 && at.x < size.w && at.y < size.h;
}

BITMAP* PictureControl::Buffer(platform::Size size, const char* owner) {
    if (!vBitmap) vBitmap = MakeBitmap(std::max(size.w, 1), std::max(size.h, 1));
    if (!vBitmap) Fatal("Unable to create the bitmap of a picture control", owner, __LINE__);
    return vBitmap.get();
}

void PictureControl::Show(platform::Window& own) const {
    own.ShowPicture({vBitmap->line, vBitmap->w, vBitmap->h}, {vBitmap->w, vBitmap->h});
}

void PictureControl::ShowDoubled(platform::Window& own) const {
    own.ShowPicture({vBitmap->line, vBitmap->w, vBitmap->h}, {vBitmap->w * 2, vBitmap->h * 2});
}

platform::Point ArrowStep(int code) {
    switch (code) {
        case platform::kKeyLeft:
            return {-1, 0};
        case platform::kKeyRight:
            return {1, 0};
        case platform::kKeyUp:
            return {0, -1};
        case platform::kKeyDown:
            return {0, 1};
        default:
            return {};
    }
}
