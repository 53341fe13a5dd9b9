// What all parts of the robot share: its chance, its folder and its log.
#pragma once

#include "tests/support/temp_folder.h"

#include <QDebug>
#include <QPointer>
#include <QWidget>
#include <cstdio>
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

struct Run {
    std::uint64_t seed;
    std::FILE* log = nullptr;  ///< open for writing
    Chance chance{seed};
    TempFolder folder{};
    long step = 0;
    long excusedUntil = -1;    ///< the step up to which a bad file may be reported
    QPointer<QWidget> held{};  ///< a mouse button is held on it from one step to the next
    Qt::MouseButton heldButton = Qt::NoButton;

    void Excuse() { excusedUntil = step + 15; }
    /// A line of the log; to be called before the step acts. The folder's name, which differs
    /// from run to run, is left out.
    template <typename... Parts>
    void Say(const Parts&... parts) {
        QString line;
        (QDebug(&line) << ... << parts);
        line.replace(QString::fromStdString(folder.Path()), QStringLiteral("~"));
        std::fprintf(log, "%ld %s\n", step, line.toUtf8().constData());
        std::fflush(log);
    }
};

/// Fills the folder with good and bad files of every kind, and a program folder: a copy of the
/// data files, and a player that does nothing. Needs Allegro. `programFolder` holds Library.
void MakeFiles(Run& run, const std::string& programFolder);

/// A random step on what has the keyboard and the mouse: a menu, a dialog or a window.
void RandomStep(Run& run, QWidget& top);

/// What is wrong with selection, handles, lists and the make of the tree, or nothing; to be asked
/// when no handler runs. With `surfaces` also with these: draws every tile.
std::string WorldFault(bool surfaces);

/// Whether the world has grown so large that a new one is to take its place.
bool IsTooLarge();
