// The commands of the area tools: each is a selection and an action on what was selected.
#pragma once

#include "editor/view/view_host.h"
#include "platform/geometry.h"

#include <cstdint>
#include <span>

enum class Selection { Rect, Flood, SameAs, Line, RectOutline, Ellipse };

/// Where the fade centre goes: nowhere, to the middle of the box, to the cursor's tile.
enum class FadeCenter { None, Box, Seed };

enum class AreaAction {
    Fill,
    Blend,
    Paste,
    PasteSprite,
    NewObject,
    Fade,
    Distance,
    Slime,
    Speckle,
    // These ask by the Filter dialog which fields of the tiles are meant, and do nothing when
    // it is cancelled.
    ReplaceFill,
    ReplaceSpeckle,
    Copy,
};

struct AreaCommand {
    int command;
    Selection selection;
    FadeCenter center;
    AreaAction action;
};

/// Every command of the area tools, each once.
std::span<const AreaCommand> AreaCommands();

/// Runs the command of that number on the current object, cursor and anchor in world tiles.
/// False for a number that is no area command.
bool RunAreaCommand(int command, platform::Point cursor, platform::Point anchor, ViewHost& host);
