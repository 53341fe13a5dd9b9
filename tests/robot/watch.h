// What must hold of the world at every moment at which no handler runs.
#pragma once

#include <cstdint>
#include <string>

/// Selection, handles and the make of the tree: what is wrong with them, or nothing.
std::string WorldFault();

/// The first node whose surface does not show its tiles, or nothing. Draws every tile.
std::string SurfaceFault();

/// Nodes and cells of the world and of the object clipboard.
struct WorldSize {
    std::int64_t nodes = 0;
    std::int64_t cells = 0;
};
WorldSize MeasureWorld();

/// A number that is the same for two worlds that are the same in all that a file keeps and in
/// the selection.
std::uint64_t WorldDigest();
