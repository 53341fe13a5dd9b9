// What the list and the tool panels ask of the main window.
#pragma once

class PanelHost {
public:
    virtual ~PanelHost() = default;
    virtual void RedrawAll() = 0;
    virtual void RedrawTree() = 0;
    virtual void RedrawEditView() = 0;
    /// A box that keys stretched in the edit view is no longer meant.
    virtual void EndBox() = 0;
    /// Gives the edit view the keyboard.
    virtual void FocusEditView() = 0;
    /// Posts the command that swaps the panel: carrying it out destroys the panel that asks.
    virtual void PostCommand(int command) = 0;

    // These run a dialog modally and redraw nothing.
    /// On vBrush; true when it closed with OK.
    virtual bool EditBrush() = 0;
    /// The current object's name.
    virtual void EditName() = 0;
    /// The current object's script.
    virtual void EditScript() = 0;
};
