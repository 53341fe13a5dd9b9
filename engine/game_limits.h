// What a file can hold so that it can be read again.
#pragma once

#include "engine/dobject.h"

#include <cstddef>
#include <string>

/// The first line of a script that a file cannot hold: where it lies in the text, and its number.
struct BadLine {
    std::string why;  ///< what is wrong, "begins with ...", and what to do; empty for no such line
    int number = 0;   ///< from 1
    std::size_t start = 0;
    std::size_t end = 0;  ///< before its line feed
};
BadLine FindBadLine(const std::string& script);

/// Why a node with all below it could be written but not read again, as a sentence for the
/// user; empty when it could. `depth` is its own nesting: 0 for the root, 1 for a board or a
/// node in a file of its own.
std::string WhyUnreadable(const Dobject& node, int depth);
