// The preview of a fade: a blend's ten by ten cells in a set's glyphs and the brush's colours.
#pragma once

#include "editor/tools/fade_library.h"
#include "editor/view/brush.h"
#include "engine/bitmap.h"
#include "platform/window.h"

class FadeViewer final : public platform::WindowEvents {
public:
    explicit FadeViewer(const Brush& with) : brush(with) {}

    void OnDraw(platform::Window& window) override;

    // What is shown; the owner repaints the control after a change.
    FadeTiles tiles{};
    FadeCells cells{};

private:
    const Brush& brush;
    Bitmap vBuffer;  ///< 80 by 80 pixels, null until the first repaint
};
