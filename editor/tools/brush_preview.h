// The preview of the brush: an area covered with it.
#pragma once

#include "editor/tools/picture_control.h"

#include <string>

enum class PreviewRole {
    Settings = 0,    ///< in Brush Settings: also writes the brush's numbers
    Panel = 1,       ///< on the paint panel: a click opens Brush Settings
    FontEditor = 2,  ///< only shows
};

class BrushPreview final : public PictureControl {
public:
    void OnDraw(platform::Window& own) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;

    PreviewRole role = PreviewRole::Panel;
    /// In the role Settings, at each repaint: glyph, colours and attribute of the brush.
    std::function<void(const std::string&)> showNumbers;
    /// In the role Panel, after a click.
    std::function<void()> openSettings;
};

/// Covers a bitmap with the brush as the brush mode paints it: in Normal its glyph in its
/// colours, in Text the glyph as the sheet has it. Other modes leave the bitmap alone.
void DrawBrushSwatch(BITMAP* bitmap);

/// "chr fg bg attrib" of the brush.
std::string BrushNumbers();
