#include "editor/tools/fade_viewer.h"

#include "engine/dinterface.h"
#include "engine/report.h"

void FadeViewer::OnDraw(platform::Window& window) {
    constexpr int kSide = kBlendSide * kTileSize;
    if (!vBuffer) vBuffer = MakeBitmap(kSide, kSide);
    if (!vBuffer) {
        Fatal("Unable to create vBuffer for FadeViewer", "FadeViewer", __LINE__);
        return;
    }
    clear_bitmap(vBuffer.get());
    const Dfont& glyphs = *vWorld->GetFont();
    for (int row = 0; row < kBlendSide; ++row) {
        for (int column = 0; column < kBlendSide; ++column) {
            const auto cell = static_cast<std::size_t>(row * kBlendSide + column);
            const std::int32_t glyph = tiles[static_cast<std::size_t>(cells[cell])];
            glyphs.DrawGlyph(vBuffer.get(), glyph, brush.fg, brush.bg, column, row);
        }
    }
    window.ShowPicture({vBuffer->line, kSide, kSide}, window.ClientSize());
}
