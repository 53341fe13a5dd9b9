// What the edit view and its area tools ask of the window around them.
#pragma once

/// What a command changed. It says no more: which panes show that, the main window knows
/// (main_frame.cpp).
enum class Change {
    Nothing,
    View,       ///< what the edit view shows of the world
    Place,      ///< where the current object is
    Selection,  ///< which object is the current one
    List,       ///< names or nodes that only the list is to show
    Brush,
    BrushMode,
    BrushDialog,  ///< all that the paint panel shows
    World,
};

/// The dialogs of the area tools. The first four paint the selection of the current object on
/// OK; Filter narrows the brush.
enum class AreaDialog { Fade, Distance, Slime, Speckle, Filter };

struct Brush;
struct TileArea;

class ViewHost {
public:
    virtual ~ViewHost() = default;
    /// Redraws the panes that show what has changed.
    virtual void Changed(Change what) = 0;

    // These run a dialog modally and redraw nothing.
    /// Brush Settings, on vBrush; true when it closed with OK.
    virtual bool EditBrush() = 0;
    /// A dialog of the area tools; true when it closed with OK.
    virtual bool RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) = 0;
    /// The current object's name.
    virtual void EditName() = 0;
};
