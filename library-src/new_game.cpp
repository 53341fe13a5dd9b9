#include "library-src/new_game.h"

#include "engine/dinterface.h"
#include "engine/game_archive.h"

#include <algorithm>

// No Dinterface: it would ask for the font that is being made here.
std::string NewGame(const Sheet& sheet) {
    constexpr int kVideoMode640 = 1;
    constexpr int kWindowed = 1;
    const Bitmap bitmap = MakeBitmap(kSheetSize, kSheetSize);
    for (int y = 0; bitmap && y < kSheetSize; ++y)
        std::copy_n(&sheet[static_cast<size_t>(y * kSheetSize)], kSheetSize, bitmap->line[y]);
    Dobject root;
    root.name = kRootName;
    MakeFreshBoard(*root.Spawn_Back(1, 0), "Board1", GetVideoMode(kVideoMode640));
    std::string why;
    return ComposeGame(bitmap.get(), root, kVideoMode640, kWindowed, why);
}
