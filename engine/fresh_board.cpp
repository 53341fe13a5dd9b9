#include "engine/fresh_board.h"

const VideoMode& GetVideoMode(int mode) {
    static constexpr VideoMode kModes[kVideoModes] = {
        {40, 30, 320, 240, 240},
        {80, 60, 640, 480, 480},
        {100, 75, 800, 600, 592},
        {128, 96, 1024, 768, 768},
    };
    constexpr int kUsual = 1;
    return kModes[mode >= 0 && mode < kVideoModes ? mode : kUsual];
}

void MakeFreshBoard(Dobject& node, const std::string& name, const VideoMode& mode) {
    constexpr Dtile kRing{176, 16, 32, kAttribSolid};
    if (!node.Create(name, mode.width, mode.height)) return;
    Dtile* tile = node.tiles.data();
    for (int y = 0; y < node.height; ++y) {
        for (int x = 0; x < node.width; ++x) {
            const bool edge = x == 0 || y == 0 || x == node.width - 1 || y == node.height - 1;
            *tile++ = edge ? kRing : kBlankTile;
        }
    }
    node.RedrawTiles();
}
