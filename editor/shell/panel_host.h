// What the list and the tool panels ask of the main window, beside what the edit view asks.
#pragma once

#include "editor/view/view_host.h"

class PanelHost : public ViewHost {
public:
    /// Runs a command of the list's menus on the current node.
    virtual void RunNodeCommand(int command) = 0;
    /// A box that keys stretched in the edit view is no longer meant.
    virtual void EndBox() = 0;
    /// Gives the edit view the keyboard.
    virtual void FocusEditView() = 0;
    /// Posts the command that swaps the panel: carrying it out destroys the panel that asks.
    virtual void PostCommand(int command) = 0;
};
