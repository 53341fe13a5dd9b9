#include "docs/drawing/sheet.h"

#include "engine/replace_file.h"
#include "tool/png_file.h"

#include <cstdio>

namespace {

constexpr int kGap = 2;  // tiles between two pieces
constexpr Brush kPaper{0, 255, 255, 0};
constexpr Brush kInk{0, 15, 255, 0};

}  // namespace

Sheet::Sheet(Painter& hand, int count, int across, int pieceW, int pieceH)
    : painter(hand), columns(across), w(pieceW), h(pieceH) {
    vWorld->Root().EraseAll();
    painter.AddBoard("sheet", "");
    const int rows = (count + columns - 1) / columns;
    painter.SetSize(columns * (w + kGap) + kGap, rows * (h + kGap + 1) + 1);
    const Dobject& board = *vWorld->Root().children.front();
    painter.Fill({0, 0, board.width - 1, board.height - 1}, kPaper);
}

Box Sheet::Next(const std::string& label) {
    const int x = kGap + used % columns * (w + kGap);
    const int y = 1 + used / columns * (h + kGap + 1);
    ++used;
    painter.Type({x, y}, label, kInk);
    return {x, y + 1, x + w - 1, y + h};
}

bool WriteView(const std::string& path, int w, int h, int scale) {
    vWorld->SetViewSize(w, h);
    const Bitmap drawn = MakeBitmap(w * kTileSize, h * kTileSize);
    clear_bitmap(drawn.get());
    vWorld->DrawWorld(drawn.get(), 0, 0);
    PngFile png(drawn->w, drawn->h, scale, vWorld->GetFont()->GetPalette());
    for (int y = 0; y < drawn->h; ++y) png.AddRow(drawn->line[y]);
    std::string why;
    const bool good = ReplaceFile(path, png.TakeBytes(), why);
    if (!good) std::fprintf(stderr, "%s: %s\n", path.c_str(), why.c_str());
    return good;
}
