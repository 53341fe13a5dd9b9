// The pane at the left: the world as a painted list of boards and objects.
#pragma once

#include "engine/bitmap.h"
#include "platform/window.h"

#include <cstdint>
#include <functional>

class CSelectView final : public platform::WindowEvents {
public:
    /// `redraw` repaints the whole main window; `swap` posts a command to it.
    CSelectView(std::function<void()> redraw, std::function<void(int)> post)
        : redrawAll(std::move(redraw)), postCommand(std::move(post)) {}

    void Attach(platform::Window& own) { window = &own; }
    void Invalidate() { window->Invalidate(); }

    void OnDraw(platform::Window& own) override;
    void OnLButtonDown(bool ctrl, platform::Point at) override;
    void OnLButtonUp(bool ctrl, platform::Point at) override;
    void OnLButtonDblClk(bool ctrl, platform::Point at) override;
    void OnMouseMove(bool ctrl, platform::Point at) override;
    void OnMouseWheel(int delta) override;

private:
    enum ListMode : std::int32_t { kIdle = 0, kScrolling = 1, kPicking = 2 };

    void PickRow(int y);
    void SwapPanel();

    std::function<void()> redrawAll;
    std::function<void(int)> postCommand;
    platform::Window* window = nullptr;

    Bitmap vListBitmap;  ///< null until the first repaint
    std::int32_t vListW = 0, vListH = 0;
    std::int32_t vRowX = 0, vRowY = 0;  ///< scroll in rows of 10 pixels, never below 0
    std::int32_t vListMode = kIdle;
    std::int32_t vPressX = 0, vPressY = 0;        ///< pixels, at the start of a scroll drag
    std::int32_t vPressRowX = 0, vPressRowY = 0;  ///< scroll at the start of a scroll drag
};
