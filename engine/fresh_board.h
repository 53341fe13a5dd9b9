// The board that an author begins with, and the video modes that its size comes from.
#pragma once

#include "engine/dobject.h"

#include <string>

/// What a game shows at a video mode, 0 to 3.
struct VideoMode {
    int width;       ///< of a board in tiles
    int height;      ///< of a board in tiles
    int screenW;     ///< pixels
    int screenH;     ///< pixels
    int parkingRow;  ///< `posy` of the boards that are not on view
};
inline constexpr int kVideoModes = 4;
/// The mode's sizes; those of mode 1 for a number that is no mode.
const VideoMode& GetVideoMode(int mode);

/// Makes a node such a board: blank tiles with a ring around them. `node` has no grid yet.
void MakeFreshBoard(Dobject& node, const std::string& name, const VideoMode& mode);
