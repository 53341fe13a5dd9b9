// Pictures of what differs between two games.
#pragma once

#include "tool/compare/diff.h"

#include <string>

/// Each board that differs: before, after, and after with a frame around what changed, side by
/// side. In one PNG file, one board below the other, or in a folder, each in a file of its name.
/// `board` names the only one to draw; empty for all. The games are used up. False, with a
/// complaint, when that failed.
bool DrawDiff(Game& before, Game& after, const GameDiff& diff, const std::string& to,
              const std::string& board);
