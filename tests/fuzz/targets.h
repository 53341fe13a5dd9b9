// What the fuzzers run and the replay test repeats: each takes any bytes and ends the program
// by abort() when something that must always hold does not.
#pragma once

#include <string_view>
#include <vector>

/// Starts Allegro and makes a world, once; to be called in the folder that holds Library/.
void StartTargets();

/// A sum of all that the targets have read, drawn and said so far, in any order.
inline unsigned long vTold = 0;

struct Target {
    const char* name;  ///< also that of its folder in corpus/, where it has a seed at least
    void (*run)(std::string_view bytes);
};
extern const std::vector<Target> kTargets;
