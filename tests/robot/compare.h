// What a saved game must hold, compared with what has been read from it.
//
// A file does not keep everything: expanded nodes come back collapsed, siblings in the order of
// their z, names without blanks, a field of 65535 as 0, a script without its last line feed;
// flags and undo snapshots not at all. Once the copy of the world has been changed accordingly,
// every difference counts.
#pragma once

#include "engine/dinterface.h"
#include "engine/game_archive.h"

#include <string>
#include <vector>

struct KeptNode {
    std::string name;
    std::string script;
    std::int32_t posx = 0, posy = 0, posz = 0;
    std::int32_t width = 0, height = 0;
    std::int32_t viewx = 0, viewy = 0, vieww = 0, viewh = 0;
    std::vector<Dtile> tiles;
    std::vector<KeptNode> children;
};

struct KeptWorld {
    KeptNode root;
    int sheetW = 0, sheetH = 0;
    std::vector<unsigned char> sheet;
    std::int32_t videoMode = 0, windowed = 0;
};

/// The world as it stands, and what has been read from a file.
KeptWorld CopyWorld(Dinterface& world);
KeptWorld CopyWorld(const Game& game);

/// A copy of the world as a file would give it back.
KeptWorld AsFileKeeps(KeptWorld world);

/// Opening a game shows its first board and parks the others.
void ShowFirstBoard(KeptWorld& kept);

/// The first difference in words, empty when there is none.
std::string Difference(const KeptWorld& wanted, const KeptWorld& found);
