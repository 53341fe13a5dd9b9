// The commands of the area tools: each is a selection and an action on what was selected.
#pragma once

#include "editor/view/view_host.h"
#include "platform/geometry.h"

/// Runs the command of that number on the current object, cursor and anchor in world tiles.
/// False for a number that is no area command.
bool RunAreaCommand(int command, platform::Point cursor, platform::Point anchor, ViewHost& host);
