// The files of a run, and the names that the robot gives to file dialogs.
#pragma once

#include "tests/support/temp_folder.h"

#include <QFileDialog>
#include <random>
#include <string>

// Numbers are drawn by remainder, so that a seed gives the same run with every standard library.
class Chance {
public:
    explicit Chance(std::uint64_t seed) : engine(seed) {}

    /// 0 to n - 1; n is at least 1.
    int Below(int n) { return static_cast<int>(engine() % static_cast<std::uint64_t>(n)); }
    /// low to high, both included.
    int Roll(int low, int high) { return low + Below(high - low + 1); }
    bool OneIn(int n) { return Below(n) == 0; }
    /// An element of an array or vector that is not empty.
    template <typename List>
    auto Pick(const List& list) {
        return list[static_cast<std::size_t>(Below(static_cast<int>(std::size(list))))];
    }

private:
    std::mt19937_64 engine;
};

/// Fills the folder with good and bad files of every kind, and a program folder: a copy of the
/// data files, and a player that does nothing. Needs Allegro. `programFolder` holds Library.
void MakeFiles(const TempFolder& folder, const std::string& programFolder, Chance& chance);

struct FileName {
    std::string name;      ///< in the folder
    bool mayFail = false;  ///< the program may report what is wrong with it
};
/// Something to type into a file dialog.
FileName NameFor(const QFileDialog& dialog, Chance& chance);
