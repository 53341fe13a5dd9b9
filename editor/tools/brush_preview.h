// The preview of the brush: an area covered with it.
#pragma once

#include "editor/tools/picture_control.h"

enum class PreviewRole {
    Settings = 0,    ///< in Brush Settings
    Panel = 1,       ///< on the paint panel: a click, Enter or Space opens Brush Settings
    FontEditor = 2,  ///< only shows
};

class BrushPreview final : public PictureControl {
public:
    explicit BrushPreview(PreviewRole use) : role(use) {}

    void OnDraw(platform::Window& own) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    bool TakesKeys() const override { return role == PreviewRole::Panel; }
    bool OnPress() override;

    const PreviewRole role;
    /// In the role Panel, after a click, Enter or Space.
    std::function<void()> openSettings;
};

/// Covers a bitmap with the brush as the brush mode paints it: in Normal its glyph in its
/// colours, in Text the glyph as the sheet has it. Other modes leave the bitmap alone.
void DrawBrushSwatch(BITMAP* bitmap);
