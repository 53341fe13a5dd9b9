// Pictures made of labelled pieces of a board.
#pragma once

#include "library-src/sample/painter.h"

#include <string>

/// A board that becomes a picture: pieces of one size, each under its label, row by row. All
/// sizes are tiles.
class Sheet {
public:
    Sheet(Painter& hand, int count, int columns, int w, int h);

    /// Writes the label of the next piece and gives the piece's place.
    Box Next(const std::string& label);

private:
    Painter& painter;
    int columns, w, h;
    int used = 0;
};

/// Writes what a view of that many tiles shows of the world, as an 8-bit PNG.
bool WriteView(const std::string& path, int w, int h, int scale);

/// The fade sets, each straight and round, and the blends.
bool DrawSets(Painter& painter, const std::string& path);
bool DrawBlends(Painter& painter, const std::string& path);
/// What the two menus of the edit view do.
bool DrawAreas(Painter& painter, const std::string& path);
bool DrawShapes(Painter& painter, const std::string& path);
/// Of the sample game: the objects around a window one by one, and a grid with its viewport.
bool DrawLayers(const std::string& path);
bool DrawGrid(const std::string& path);
