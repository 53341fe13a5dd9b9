// What must hold of the world at every moment at which no handler runs.
#pragma once

#include <cstdint>
#include <string>

/// Selection, handles, lists and the make of the tree: what is wrong with them, or nothing.
std::string WorldFault();

/// The same of the surfaces, which must show the tiles. Draws every tile.
std::string SurfaceFault();

/// Whether the world has grown so large that a new one is to take its place.
bool IsTooLarge();

/// A number that is the same for two worlds that are the same in all that a file keeps and in
/// the selection.
std::uint64_t WorldDigest();
