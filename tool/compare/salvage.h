// What can be read of an archive that is cut off or damaged.
#pragma once

#include "engine/game_archive.h"

#include <string>
#include <string_view>
#include <vector>

struct Salvage {
    Game game;                         ///< its sheet is null when nothing of one was found
    bool object = false;               ///< an object file: one node below the root
    bool empty = false;                ///< there was nothing to read at all
    std::vector<std::string> missing;  ///< what was not to be had, each as a sentence's end
};
/// Entries are found by the directory and by the headers before them, where either is left, and
/// unpacked as far as that goes; every node is kept whose own text was all there, and one that its
/// grid's or its script's end is missing of as far as it goes.
void SalvageGame(std::string_view archive, Salvage& to);

/// An archive that must have a single object entry: the text of it as a world with one board.
/// False, with the reason, when it is none or not whole.
bool ReadObjectArchive(std::string_view archive, Game& game, std::string& why);
