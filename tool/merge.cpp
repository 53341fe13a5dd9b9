#include "tool/compare/merge.h"

#include "tool/commands.h"

#include <iostream>

int Merge(const MergeOptions& options) {
    const std::string paths[] = {options.base, options.ours, options.theirs};
    Game games[3];
    bool objects[3] = {};
    for (int i = 0; i < 3; ++i) {
        const std::string name = options.name.empty() ? paths[i] : options.name;
        if (!ReadEither(paths[i], name, i == 0, games[i], objects[i])) return kTrouble;
    }
    if (objects[1] != objects[2]) {
        Complain(options.theirs, "one is a game and the other an object");
        return kTrouble;
    }
    const Favor favor = options.favorTheirs ? Favor::kTheirs
                        : options.marks     ? Favor::kMarks
                                            : Favor::kOurs;
    const std::vector<Conflict> conflicts = MergeGames(games[0], games[1], games[2], favor);
    if (!WriteEither(options.out, games[1], objects[1])) return kTrouble;
    for (const Conflict& conflict : conflicts)
        std::cout << "conflict: " << Printable(conflict.path) << ": " << Printable(conflict.what)
                  << '\n';
    if (!std::cout.flush()) {
        Complain("standard output", "it cannot be written");
        return kTrouble;
    }
    return conflicts.empty() ? kAlike : kDifferent;
}
