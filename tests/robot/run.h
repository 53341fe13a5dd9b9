// What both parts of the robot share: its chance, its folder and its log.
#pragma once

#include "tests/support/random_world.h"
#include "tests/support/temp_folder.h"

#include <QDebug>
#include <QWidget>
#include <cstdio>
#include <random>

struct Run {
    TempFolder folder{};
    std::FILE* log = nullptr;  ///< open for writing
    std::mt19937_64 random{};
    long step = 0;
    unsigned long digest = 0;  ///< of all that was said
    long excusedUntil = 0;     ///< the step up to which a bad file may be reported

    void Excuse() { excusedUntil = step + 15; }
    /// 0 to n - 1, by remainder: a seed gives the same run with every standard library.
    int Below(int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); }
    bool OneIn(int n) { return Below(n) == 0; }
    /// An element of an array or list that is not empty.
    template <typename List>
    auto Pick(const List& list) {
        return *(std::begin(list) + Below(static_cast<int>(std::size(list))));
    }
    /// A line of the log; to be called before the step acts. The folder's name, which differs
    /// from run to run, is left out.
    template <typename... Parts>
    void Say(const Parts&... parts) {
        QString line;
        (QDebug(&line) << ... << parts);
        line.replace(QString::fromStdString(folder.Path()), QStringLiteral("~"));
        const std::string text = line.toStdString();
        digest = SumOf(text, digest);
        std::fprintf(log, "%ld %s\n", step, text.c_str());
        std::fflush(log);
    }
};

/// A random step on what has the keyboard and the mouse: a menu, a dialog or a window.
void RandomStep(Run& run, QWidget& top);
