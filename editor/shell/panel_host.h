// What the tool panels ask of the main window.
#pragma once

class PanelHost {
public:
    virtual ~PanelHost() = default;
    virtual void RedrawAll() = 0;
    virtual void RedrawEditView() = 0;
    /// Posts the command that swaps the panel: carrying it out destroys the panel that asks.
    virtual void PostCommand(int command) = 0;
};
