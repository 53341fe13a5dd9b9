// What differs between two games as one JSON object on standard output.
#pragma once

#include "tool/compare/diff.h"

/// The name of a node in messages: its path, or that of the whole list.
const std::string& Title(const NodeChange& change);

/// With `values` also all that is needed to make the later game of the earlier one.
void PrintJson(const Game& before, const Game& after, const GameDiff& diff, bool values);
