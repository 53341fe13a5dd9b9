#include "editor/tools/glyph_pixels.h"

#include "engine/dinterface.h"

namespace {

// The pixels with each taken from where `source` says: (column, row) to an index.
template <typename Source>
GlyphPixels Moved(const GlyphPixels& pixels, Source source) {
    GlyphPixels moved{};
    for (int i = 0; i < static_cast<int>(moved.size()); ++i)
        moved[static_cast<std::size_t>(i)] =
            pixels[static_cast<std::size_t>(source(i % kTileSize, i / kTileSize))];
    return moved;
}

constexpr int kLast = kTileSize - 1;

}  // namespace

GlyphPixels ReadGlyph(int chr) {
    GlyphPixels pixels{};
    for (int i = 0; i < static_cast<int>(pixels.size()); ++i)
        pixels[static_cast<std::size_t>(i)] =
            vWorld->GetFont()->GetGlyphPixel(chr, i % kTileSize, i / kTileSize);
    return pixels;
}

void WriteGlyph(int chr, const GlyphPixels& pixels) {
    for (int i = 0; i < static_cast<int>(pixels.size()); ++i)
        vWorld->GetFont()->PutGlyphPixel(chr, i % kTileSize, i / kTileSize,
                                         pixels[static_cast<std::size_t>(i)]);
}

GlyphPixels FlippedVertically(const GlyphPixels& pixels) {
    return Moved(pixels, [](int c, int r) { return (kLast - r) * kTileSize + c; });
}

GlyphPixels FlippedHorizontally(const GlyphPixels& pixels) {
    return Moved(pixels, [](int c, int r) { return r * kTileSize + kLast - c; });
}

GlyphPixels Inverted(const GlyphPixels& pixels) {
    GlyphPixels inverted{};
    for (std::size_t i = 0; i < pixels.size(); ++i) inverted[i] = pixels[i] ? 0 : kPlainPixel;
    return inverted;
}
