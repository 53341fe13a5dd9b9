// A plain reader of scripts: what a script says that no player could follow.
#pragma once

#include <set>
#include <string>
#include <vector>

/// The names that the game's scripts may speak of.
struct GameNames {
    std::set<std::string> boards;
    std::set<std::string> objects;
};

/// One "line N: what" for each line with an unknown command, or with arguments that are not what
/// the command's tip asks for.
std::vector<std::string> ScriptFaults(const std::string& script, const GameNames& names);
