#include "engine/dfont.h"
#include "tool/commands.h"
#include "tool/script_findings.h"

#include <algorithm>
#include <iostream>
#include <map>

namespace {

struct Finding {
    int line;
    std::string text;
};

class Inspector {
public:
    Inspector(const Game& of, const TextRemarks& remarks)
        : lines(remarks.lines), glyphs(CountGlyphs(of.sheet->w, of.sheet->h)) {
        for (const auto& remark : remarks.remarks) findings.push_back({remark.line, remark.text});
        LookAtSiblings(of.root);
        std::stable_sort(findings.begin(), findings.end(),
                         [](const auto& a, const auto& b) { return a.line < b.line; });
    }
    const std::vector<Finding>& Findings() const { return findings; }

private:
    void Note(const Dobject& node, const std::string& text) {
        const auto found = lines.find(&node);
        findings.push_back({found == lines.end() ? 0 : found->second, text});
    }

    void LookAtSiblings(const Dobject& parent) {
        std::map<std::string, int> times;
        for (const auto& child : parent.children) {
            if (++times[child->name] == 2)
                Note(*child, "the name " + Quoted(child->name) + " occurs more than once in " +
                                 Quoted(parent.name));
            LookAtGlyphs(*child);
            LookAtViewport(*child);
            for (const std::string& finding : LookAtScript(child->script))
                Note(*child, "script of " + Quoted(child->name) + ", " + finding);
            LookAtSiblings(*child);
        }
    }

    void LookAtGlyphs(const Dobject& node) {
        const auto beyond = [this](const Dtile& tile) { return tile.chr >= glyphs; };
        const auto first = std::find_if(node.tiles.begin(), node.tiles.end(), beyond);
        if (first == node.tiles.end()) return;
        const auto at = first - node.tiles.begin();
        Note(node, std::to_string(std::count_if(first, node.tiles.end(), beyond)) + " cells of " +
                       Quoted(node.name) + " have glyphs beyond the sheet's " +
                       std::to_string(glyphs) + ", the first " + std::to_string(first->chr) +
                       " at " + std::to_string(at % node.width) + ", " +
                       std::to_string(at / node.width));
    }

    void LookAtViewport(const Dobject& node) {
        const bool inside = node.viewx >= 0 && node.viewy >= 0 && node.vieww >= 0 &&
                            node.viewh >= 0 &&
                            std::int64_t{node.viewx} + node.vieww <= node.width &&
                            std::int64_t{node.viewy} + node.viewh <= node.height;
        if (!inside) Note(node, "the viewport of " + Quoted(node.name) + " reaches past its grid");
    }

    const std::unordered_map<const Dobject*, int>& lines;
    int glyphs;
    std::vector<Finding> findings;
};

// False when the game is bad.
bool CheckOne(const std::string& path, bool strict) {
    Game game;
    TextRemarks remarks;
    if (!ReadWhole(path, game, &remarks)) return false;
    const Inspector inspector(game, remarks);
    for (const Finding& finding : inspector.Findings()) {
        const std::string what =
            game.textEntry + ", line " + std::to_string(finding.line) + ": " + finding.text;
        if (strict)
            Complain(path, what);
        else
            std::cout << Printable(path) << ": " << Printable(what) << '\n';
    }
    return !strict || inspector.Findings().empty();
}

}  // namespace

int Check(const std::vector<std::string>& games, bool strict) {
    bool good = true;
    for (const std::string& game : games) good &= CheckOne(game, strict);
    if (!std::cout.flush()) return Complain("standard output", "it cannot be written");
    return good ? kGood : kBadFile;
}
