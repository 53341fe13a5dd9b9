// Worlds of all kinds for round trips, and two plain accounts of one: all that a file keeps of
// it, and its text by a writer that is as slow and simple as can be.
#pragma once

#include "engine/dinterface.h"

#include <random>
#include <string>

/// Boards with objects in them, in place of what there is: sizes down to nothing, any positions
/// and viewports, runs of cells and single ones, scripts with odd lines.
void PlantRandomWorld(Dinterface& world, std::mt19937& random);

/// Every node with every field that a file holds, one a line, children indented.
std::string Account(const Dobject& node);

/// The text entry of the world, with line feeds.
std::string PlainText(const Dobject& root);
