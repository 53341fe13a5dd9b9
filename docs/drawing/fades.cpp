#include "docs/drawing/sheet.h"

#include "editor/tools/fade_library.h"

namespace {

struct Look {
    const char* set;
    int fg, bg;
};
// Colours in which a set looks like what it is called.
constexpr Look kLooks[] = {
    {"Shades", 15, 1},      {"Dots", 53, 41},       {"Grass", 84, 75},     {"Stone", 36, 28},
    {"Water", 52, 43},      {"Stars", 14, 184},     {"Bricks", 16, 62},    {"Waves", 54, 45},
    {"Leaves", 84, 216},    {"Hatching", 132, 121}, {"Text-art", 10, 255}, {"Blocks", 98, 105},
    {"Mountains", 228, 74}, {"Hearts", 164, 153},
};

Brush BrushFor(const std::string& set) {
    for (const Look& look : kLooks)
        if (set == look.set) return {1, look.fg, look.bg, 0};
    return {1, 15, 1, 0};
}

bool WriteBoard(const std::string& path, int scale) {
    const Dobject& board = *vWorld->Root().children.front();
    return WriteView(path, board.width, board.height, scale);
}

}  // namespace

bool DrawSets(Painter& painter, const std::string& path) {
    constexpr int kSide = 15, kTall = 10;
    const std::vector<FadeSet> sets = LoadFadeSets("quilt-pictures");
    Sheet sheet(painter, static_cast<int>(sets.size()), 2, 2 * kSide + 1, kTall);
    for (const FadeSet& set : sets) {
        const Box box = sheet.Next(set.name);
        const Brush brush = BrushFor(set.name);
        painter.Shade({box.left, box.top, box.left + kSide - 1, box.bottom}, brush,
                      {.set = set.name.c_str()});
        painter.Shade({box.left + kSide + 1, box.top, box.right, box.bottom}, brush,
                      {.set = set.name.c_str(), .blend = "From the middle"});
    }
    return WriteBoard(path, 1);
}

bool DrawBlends(Painter& painter, const std::string& path) {
    constexpr int kLabelled = 16;
    const std::vector<FadeBlend> blends = LoadFadeBlends("quilt-pictures");
    Sheet sheet(painter, static_cast<int>(blends.size()), 6, kLabelled, kBlendSide);
    for (const FadeBlend& blend : blends) {
        const Box box = sheet.Next(blend.name);
        painter.Shade({box.left, box.top, box.left + kBlendSide - 1, box.bottom},
                      BrushFor("Shades"), {.blend = blend.name.c_str()});
    }
    return WriteBoard(path, 1);
}
