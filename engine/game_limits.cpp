#include "engine/game_limits.h"

#include "engine/game_text.h"

#include <algorithm>
#include <string_view>

namespace {

// What is wrong with a line, or nothing.
std::string Fault(std::string_view line) {
    // Marks that begin and end a script in the text of a game.
    for (const char* mark : {"~pb", "~pe"})
        if (line.starts_with(mark))
            return std::string("begins with ") + mark +
                   ", which a file takes for a mark of its own";
    if (line.size() > kMaxScriptLine)
        return "has more than " + std::to_string(kMaxScriptLine) + " characters";
    return {};
}

// What a reader sets limits to.
struct Extent {
    int depth = 0;
    std::int64_t cells = 0;
    std::int64_t text = 0;
    const Dobject* longName = nullptr;
    const Dobject* scripted = nullptr;
    BadLine line;

    void Add(const Dobject& node, int at) {
        depth = std::max(depth, at);
        cells += static_cast<std::int64_t>(node.tiles.size());
        // One more for the line end that the file adds.
        text += static_cast<std::int64_t>(node.name.size() + node.script.size() + 1) + kNodeBytes;
        if (node.name.size() > kMaxName) longName = &node;
        if (!scripted) {
            line = FindBadLine(node.script);
            if (!line.why.empty()) scripted = &node;
        }
        for (const auto& child : node.children) Add(*child, at + 1);
    }
};

}  // namespace

BadLine FindBadLine(const std::string& script) {
    BadLine bad;
    while (bad.start < script.size()) {
        ++bad.number;
        bad.end = std::min(script.find('\n', bad.start), script.size());
        bad.why = Fault(std::string_view(script).substr(bad.start, bad.end - bad.start));
        if (!bad.why.empty()) return bad;
        bad.start = bad.end + 1;
    }
    return {};
}

std::string WhyUnreadable(const Dobject& node, int depth) {
    Extent world;
    world.Add(node, depth);
    if (world.scripted)
        return "In the script of " + Quoted(world.scripted->name) + ", line " +
               std::to_string(world.line.number) + " " + world.line.why +
               ". Change the line and save again.";
    if (world.longName)
        return "The name " + Quoted(world.longName->name) + " has more than " +
               std::to_string(kMaxName) + " characters. Shorten it and save again.";
    if (world.depth > kMaxNesting)
        return "Objects are nested more than " + std::to_string(kMaxNesting) +
               " deep. Move some of them further up and save again.";
    if (world.cells > kMaxWorldCells)
        return "The world has more than " + std::to_string(kMaxWorldCells) +
               " cells. Make some of its boards smaller and save again.";
    if (world.text > kMaxWorldText)
        return "The world has too many objects or scripts. Delete some of them and save again.";
    return {};
}
