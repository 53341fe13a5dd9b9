// Worlds of all kinds for round trips, and a plain account of one, by which worlds are compared.
#pragma once

#include "engine/dinterface.h"

#include <zlib.h>
#include <random>
#include <string>

/// Boards with objects in them, in place of what there is: sizes down to nothing, any positions
/// and viewports, runs of cells and single ones, scripts with odd lines.
void PlantRandomWorld(Dinterface& world, std::mt19937& random);

/// What of a world an account tells: all, or what a file gives back of it. A file does not keep
/// everything: expanded nodes come back collapsed, siblings in the order of their z, names without
/// blanks, a field of 65535 as 0, a script without its last line feed.
enum class Kept { All, InFile };

/// The pixels, row by row; empty for null.
std::string Pixels(const BITMAP* bitmap);
/// Every node with every field that a file holds, one a line, children indented.
std::string Account(const Dobject& node, Kept kept = Kept::All);
/// The same of the whole world, with its font's sheet and the video settings.
std::string Account(Dinterface& world, Kept kept = Kept::All);

/// Where the second account first differs from the first; empty when nowhere.
std::string Difference(const std::string& wanted, const std::string& found);

/// A checksum, for what is too long to be written into a test: of these bytes behind those that
/// gave the sum `before`.
inline unsigned long SumOf(std::string_view bytes, unsigned long before = 0) {
    return crc32_z(before, reinterpret_cast<const Bytef*>(bytes.data()), bytes.size());
}
