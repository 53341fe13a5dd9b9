// What a file can hold so that it can be read again.
#pragma once

#include "engine/dobject.h"

#include <string>

/// Why a node with all below it could be written but not read again, as a sentence for the
/// user; empty when it could. `depth` is its own nesting: 0 for the root, 1 for a board or a
/// node in a file of its own.
std::string WhyUnreadable(const Dobject& node, int depth);
