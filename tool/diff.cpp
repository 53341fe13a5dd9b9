#include "tool/compare/diff.h"

#include "tool/commands.h"
#include "tool/diff_json.h"
#include "tool/diff_picture.h"

#include <unistd.h>

#include <filesystem>
#include <iostream>

namespace {

// --- text --------------------------------------------------------------------------------------

std::string NumberText(const NumberChange& change) {
    return std::string(change.name) + " " + std::to_string(change.before) + " -> " +
           std::to_string(change.after);
}

std::string Joined(const std::vector<NumberChange>& changes) {
    std::string text;
    for (const NumberChange& change : changes)
        text += (text.empty() ? "" : ", ") + NumberText(change);
    return text;
}

// "65-70, 80"
std::string Ranges(const std::vector<int>& numbers) {
    std::string text;
    for (std::size_t i = 0; i < numbers.size(); ++i) {
        const std::size_t first = i;
        while (i + 1 < numbers.size() && numbers[i + 1] == numbers[i] + 1) ++i;
        text += (text.empty() ? "" : ", ") + std::to_string(numbers[first]);
        if (i > first) text += "-" + std::to_string(numbers[i]);
    }
    return text;
}

std::string SizeText(const Dobject& node, int objects) {
    return std::to_string(node.width) + " by " + std::to_string(node.height) +
           (objects == 0   ? ""
            : objects == 1 ? ", with 1 object"
                           : ", with " + std::to_string(objects) + " objects");
}

// What is said of the whole game, line by line.
std::vector<std::string> GameLines(const GameDiff& diff) {
    std::vector<std::string> lines;
    for (const NumberChange& setting : diff.settings) lines.push_back(NumberText(setting));
    if (!diff.sheet.empty()) lines.push_back("sheet: " + Joined(diff.sheet));
    if (!diff.glyphs.empty())
        lines.push_back("glyphs: " + std::to_string(diff.glyphs.size()) +
                        " changed: " + Ranges(diff.glyphs));
    if (diff.edge) lines.push_back("sheet: pixels beyond its glyphs");
    return lines;
}

// What is said of a node, but for its script.
std::vector<std::string> NodeFacts(const NodeChange& change) {
    if (!change.before) return {"added, " + SizeText(*change.after, change.objects)};
    if (!change.after) return {"removed, " + SizeText(*change.before, change.objects)};
    std::vector<std::string> facts;
    if (change.moved)
        facts.push_back("moved from " + change.from);
    else if (change.renamed)
        facts.push_back("renamed from " + change.from);
    if (!change.numbers.empty()) facts.push_back(Joined(change.numbers));
    if (change.reordered) facts.emplace_back("its children in another order");
    return facts;
}

std::string ScriptCounts(const LineDiff& script) {
    return "script +" + std::to_string(script.added) + " -" + std::to_string(script.removed);
}

void PrintStat(const GameDiff& diff) {
    for (const std::string& line : GameLines(diff)) std::cout << line << '\n';
    for (const NodeChange& change : diff.nodes) {
        std::string facts;
        for (const std::string& fact : NodeFacts(change))
            facts += (facts.empty() ? "" : ", ") + fact;
        if (change.tiles > 0)
            facts += (facts.empty() ? "" : ", ") + std::to_string(change.tiles) +
                     (change.tiles == 1 ? " tile" : " tiles");
        if (!change.script.hunks.empty())
            facts += (facts.empty() ? "" : ", ") + ScriptCounts(change.script);
        std::cout << Printable(Title(change)) << " | " << Printable(facts) << '\n';
    }
}

void PrintText(const GameDiff& diff) {
    const bool terminal = isatty(STDOUT_FILENO);
    for (const std::string& line : GameLines(diff)) std::cout << line << '\n';
    for (const NodeChange& change : diff.nodes) {
        const std::string path = Printable(Title(change));
        for (const std::string& fact : NodeFacts(change))
            std::cout << path << ": " << Printable(fact) << '\n';
        if (change.tiles > 0)
            std::cout << path << ": " << BoxText(change.tiles, change.boxes) << '\n';
        if (change.script.hunks.empty()) continue;
        const std::string from = change.from.empty() ? path : Printable(change.from);
        std::cout << "--- " << from << " (script)\n+++ " << path << " (script)\n"
                  << (terminal ? Printable(change.script.hunks, true) : change.script.hunks);
    }
}

// --- the call ----------------------------------------------------------------------------------

bool IsOfBoard(const NodeChange& change, const std::string& board) {
    const Dobject* node = change.after ? change.after : change.before;
    while (node->parent && node->parent->parent) node = node->parent;
    const std::string& earlier = change.before ? change.before->name : node->name;
    return node->parent && (node->name == board || (!node->parent->parent && earlier == board));
}

// git gives path, earlier file, its hash and mode, later file, its hash and mode; behind them, of a
// renamed file, its new path and a text.
bool TakeGitFiles(const std::vector<std::string>& from, std::string& name,
                  std::string (&files)[2]) {
    constexpr std::size_t kUsual = 7;
    if (from.size() < kUsual) return false;
    name = from[0];
    files[0] = from[1];
    files[1] = from[4];
    return true;
}

}  // namespace

const std::string& Title(const NodeChange& change) {
    static const std::string top = "boards";
    return change.path.empty() || (change.after && !change.after->parent) ? top : change.path;
}

int Diff(const DiffOptions& options) {
    std::string files[2];
    std::string name;
    if (options.git ? !TakeGitFiles(options.files, name, files) : options.files.size() != 2) {
        Complain("diff",
                 options.git ? "git gives seven arguments or nine" : "two files are needed");
        return kTrouble;
    }
    if (!options.git) std::copy_n(options.files.begin(), 2, files);
    Game games[2];
    bool object = false;
    for (int i = 0; i < 2; ++i)
        if (!ReadEither(files[i], options.git ? name : files[i], false, games[i], object))
            return kTrouble;
    GameDiff diff = DiffGames(games[0], games[1]);
    if (!options.board.empty()) {
        std::erase_if(diff.nodes,
                      [&](const auto& node) { return !IsOfBoard(node, options.board); });
        diff.settings.clear();
    }
    std::ios::sync_with_stdio(false);
    if (options.git)
        std::cout << "quilt-tool diff " << Printable(name)
                  << (files[0] == "/dev/null"   ? ", a new file"
                      : files[1] == "/dev/null" ? ", deleted"
                                                : "")
                  << '\n';
    if (options.json)
        PrintJson(games[0], games[1], diff, options.values);
    else if (options.stat)
        PrintStat(diff);
    else if (!options.quiet)
        PrintText(diff);
    if (!std::cout.flush()) {
        Complain("standard output", "it cannot be written");
        return kTrouble;
    }
    const bool alike = diff.Alike();
    if (!options.picture.empty() && !alike &&
        !DrawDiff(games[0], games[1], diff, options.picture, options.board))
        return kTrouble;
    return alike || options.git ? kAlike : kDifferent;
}
