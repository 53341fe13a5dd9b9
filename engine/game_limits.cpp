#include "engine/game_limits.h"

#include "engine/game_text.h"

#include <algorithm>

namespace {

bool HasLongLine(const std::string& script) {
    for (std::size_t start = 0; start < script.size();) {
        const std::size_t end = std::min(script.find('\n', start), script.size());
        if (end - start > kMaxScriptLine) return true;
        start = end + 1;
    }
    return false;
}

// What a reader sets limits to.
struct Extent {
    int depth = 0;
    std::int64_t cells = 0;
    std::int64_t text = 0;
    const Dobject* longName = nullptr;
    const Dobject* longLine = nullptr;

    void Add(const Dobject& node, int at) {
        depth = std::max(depth, at);
        cells += static_cast<std::int64_t>(node.tiles.size());
        // One more for the line end that the file adds.
        text += static_cast<std::int64_t>(node.name.size() + node.script.size() + 1) + kNodeBytes;
        if (node.name.size() > kMaxName) longName = &node;
        if (HasLongLine(node.script)) longLine = &node;
        for (const auto& child : node.children) Add(*child, at + 1);
    }
};

}  // namespace

std::string WhyUnreadable(const Dobject& node, int depth) {
    Extent world;
    world.Add(node, depth);
    if (world.longLine)
        return "The script of " + Quoted(world.longLine->name) + " has a line of more than " +
               std::to_string(kMaxScriptLine) + " characters. Break the line and save again.";
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
