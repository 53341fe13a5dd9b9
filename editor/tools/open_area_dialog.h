// The dialogs of the area tools, by their names in the edit view.
#pragma once

#include "editor/view/area_commands.h"

/// Runs one modally; true when it closed with OK.
bool OpenAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush);
