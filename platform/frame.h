// The main window: caption, menu bar with keys and prompts, status bar and three panes in two
// splitters. The left pane runs over the full height; right of it the upper pane stands over
// the lower one. The user can drag the bars between them.
#pragma once

#include "platform/form.h"
#include "platform/menu.h"
#include "platform/window.h"

#include <string>

namespace platform {

enum class Pane { Left, Upper, Lower };

class FrameEvents {
public:
    virtual ~FrameEvents() = default;

    /// A menu entry, its key or a posted command.
    virtual void OnCommand(int /*command*/) {}
    /// The user wants to close the window, by whatever road. True closes it.
    virtual bool OnClose() { return true; }
    /// A file was dropped on the window; empty when it was not one file of this machine.
    virtual void OnDrop(const std::string& /*path*/) {}
    /// The inside (without menu and status bar) has another size. Not sent while minimised.
    virtual void OnSize(Size /*client*/) {}
    /// The frame repaints: the place to put menu ticks in step with the world.
    virtual void OnFramePaint() {}
};

class Frame {
public:
    virtual ~Frame() = default;

    virtual void SetCaption(const std::string& caption) = 0;
    /// Replaces the whole menu bar; accelerators are active whichever pane has the focus.
    virtual void SetMenuBar(const Menu& menu) = 0;
    virtual void CheckMenuItem(int command, bool checked) = 0;
    /// The message pane's text while no menu entry is highlighted.
    virtual void SetIdleMessage(const std::string& text) = 0;
    /// Stands in its place until the next key or menu.
    virtual void ShowNotice(const std::string& text) = 0;
    virtual void ShowStatusBar(bool shown) = 0;
    virtual bool IsStatusBarShown() const = 0;

    /// The inside without menu bar and status bar, in window pixels.
    virtual Size ClientSize() const = 0;

    /// Makes the window of a pane. `events` outlives the frame's run. Null on failure.
    virtual Window* CreatePane(Pane pane, WindowEvents& events) = 0;
    /// Makes a form the pane's content in the place and size of what stood there before, which
    /// is destroyed. `form`'s table and `events` live until the next call or the frame's end.
    virtual FormWindow* CreateFormPane(Pane pane, const Form& form, FormEvents& events) = 0;
    virtual void SetLeftWidth(int w) = 0;
    virtual void SetLowerHeight(int h) = 0;
    virtual Size PaneSize(Pane pane) const = 0;

    /// Invalidates the frame with everything in it: OnFramePaint, OnDraw and OnFormPaint follow.
    virtual void InvalidateAll() = 0;

    /// After a click on anything in the frame that takes no text this window gets the keyboard.
    virtual void SetHomeFocus(Window* window) = 0;

    virtual void Show() = 0;
    /// Asks OnClose, as the close box does.
    virtual void Close() = 0;
};

}  // namespace platform
