// Joining what two sides made of one game.
#pragma once

#include "engine/game_archive.h"
#include "tool/compare/lines.h"

#include <string>
#include <vector>

struct Conflict {
    std::string path;  ///< of the node, or "sheet" or "settings"
    std::string what;  ///< with the box, the line or the values
};

/// Joins the changes from `base` to `ours` and from `base` to `theirs`: cell by cell and field by
/// field, number by number, script lines, glyphs, nodes. The result is in `ours`; `theirs` is used
/// up. What both changed unlike is told, and is in the result as `favor` says; marks are for
/// scripts, and all else stays ours.
std::vector<Conflict> MergeGames(const Game& base, Game& ours, Game& theirs, Favor favor);
