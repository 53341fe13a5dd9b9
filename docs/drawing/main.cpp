// quilt-pictures: draws the pictures of the manual that show tiles alone, with the editor's own
// tools. To be started in the program's folder, where Library/ stands.

#include "docs/drawing/sheet.h"

#include "engine/report.h"

#include <cstdio>

int main(int argc, char** argv) {
    if (argc != 2) {
        std::fputs("usage: quilt-pictures FOLDER\n", stderr);
        return 2;
    }
    StartAllegro();
    StartTrace(nullptr);
    Dinterface world;
    Painter painter;
    const std::string folder = std::string(argv[1]) + "/";
    const bool good = DrawSets(painter, folder + "fade-sets.png") &&
                      DrawBlends(painter, folder + "fade-blends.png") &&
                      DrawAreas(painter, folder + "tools-areas.png") &&
                      DrawShapes(painter, folder + "tools-shapes.png") &&
                      DrawLayers(folder + "sample-layers.png") &&
                      DrawGrid(folder + "sample-grid.png");
    return good && painter.Good() ? 0 : 1;
}
