#include "tests/robot/compare.h"

#include "engine/text_scanner.h"

#include <algorithm>

namespace {

KeptNode Copy(const Dobject& node) {
    KeptNode copy;
    // The root itself is in no file; it has the size of the view.
    if (node.parent)
        copy = {node.name,  node.script, node.posx,  node.posy,  node.posz,
                node.width, node.height, node.viewx, node.viewy, node.vieww,
                node.viewh, node.tiles,  {}};
    if (node.evieww != 0) {
        copy.vieww = node.evieww;
        copy.viewh = node.eviewh;
    }
    for (const auto& child : node.children) copy.children.push_back(Copy(*child));
    return copy;
}

void KeepName(std::string& name) {
    if (name.empty()) name = "_";
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return TextScanner::IsSpace(static_cast<unsigned char>(c)); }, '_');
}

void KeepTiles(std::vector<Dtile>& tiles) {
    for (Dtile& tile : tiles)
        for (std::uint16_t Dtile::*field : {&Dtile::chr, &Dtile::fg, &Dtile::bg, &Dtile::attrib})
            if (tile.*field == UINT16_MAX) tile.*field = 0;
}

void KeepNode(KeptNode& node, bool ascending) {
    KeepName(node.name);
    if (node.script.ends_with('\n')) node.script.pop_back();
    KeepTiles(node.tiles);
    for (KeptNode& child : node.children) KeepNode(child, child.name == kRootName);
    std::stable_sort(node.children.begin(), node.children.end(),
                     [ascending](const KeptNode& a, const KeptNode& b) {
                         return ascending ? a.posz < b.posz : a.posz > b.posz;
                     });
}

void CopySheet(KeptWorld& kept, const BITMAP* sheet) {
    if (!sheet) return;
    kept.sheetW = sheet->w;
    kept.sheetH = sheet->h;
    for (int y = 0; y < sheet->h; ++y)
        kept.sheet.insert(kept.sheet.end(), sheet->line[y], sheet->line[y] + sheet->w);
}

struct Field {
    const char* name;
    std::int32_t KeptNode::*value;
};
constexpr Field kFields[] = {
    {"x", &KeptNode::posx},
    {"y", &KeptNode::posy},
    {"z", &KeptNode::posz},
    {"width", &KeptNode::width},
    {"height", &KeptNode::height},
    {"view x", &KeptNode::viewx},
    {"view y", &KeptNode::viewy},
    {"view width", &KeptNode::vieww},
    {"view height", &KeptNode::viewh},
};

std::string Numbers(const char* what, std::int64_t wanted, std::int64_t found) {
    return std::string(what) + " is " + std::to_string(found) + ", not " + std::to_string(wanted);
}

std::string Fields(const Dtile& tile) {
    return "(" + std::to_string(tile.chr) + " " + std::to_string(tile.fg) + " " +
           std::to_string(tile.bg) + " " + std::to_string(tile.attrib) + ")";
}

std::string TileDifference(const KeptNode& wanted, const KeptNode& found) {
    if (wanted.tiles.size() != found.tiles.size())
        return Numbers("the number of cells", static_cast<std::int64_t>(wanted.tiles.size()),
                       static_cast<std::int64_t>(found.tiles.size()));
    const auto [a, b] =
        std::mismatch(wanted.tiles.begin(), wanted.tiles.end(), found.tiles.begin());
    if (a == wanted.tiles.end()) return {};
    const auto cell = a - wanted.tiles.begin();
    return "cell " + std::to_string(cell) + " is " + Fields(*b) + ", not " + Fields(*a);
}

std::string NodeDifference(const KeptNode& wanted, const KeptNode& found, const std::string& path) {
    const std::string here = path + "/" + wanted.name;
    if (wanted.name != found.name) return here + ": the name is " + found.name;
    if (wanted.script != found.script)
        return here + ": the script is [" + found.script + "], not [" + wanted.script + "]";
    for (const Field& field : kFields)
        if (wanted.*field.value != found.*field.value)
            return here + ": " + Numbers(field.name, wanted.*field.value, found.*field.value);
    const std::string tiles = TileDifference(wanted, found);
    if (!tiles.empty()) return here + ": " + tiles;
    if (wanted.children.size() != found.children.size())
        return here + ": " +
               Numbers("the number of children", static_cast<std::int64_t>(wanted.children.size()),
                       static_cast<std::int64_t>(found.children.size()));
    for (std::size_t i = 0; i < wanted.children.size(); ++i) {
        std::string below = NodeDifference(wanted.children[i], found.children[i], here);
        if (!below.empty()) return below;
    }
    return {};
}

}  // namespace

KeptWorld CopyWorld(Dinterface& world) {
    KeptWorld copy;
    copy.root = Copy(world.Root());
    CopySheet(copy, world.GetFont()->Sheet());
    copy.videoMode = world.videoMode;
    copy.windowed = world.windowed;
    return copy;
}

KeptWorld CopyWorld(const Game& game) {
    KeptWorld copy;
    copy.root = Copy(game.root);
    CopySheet(copy, game.sheet.get());
    copy.videoMode = game.videoMode.value_or(-1);
    copy.windowed = game.windowed.value_or(-1);
    return copy;
}

KeptWorld AsFileKeeps(KeptWorld world) {
    for (KeptNode& board : world.root.children) KeepNode(board, board.name == kRootName);
    std::stable_sort(world.root.children.begin(), world.root.children.end(),
                     [](const KeptNode& a, const KeptNode& b) { return a.posz < b.posz; });
    return world;
}

void ShowFirstBoard(KeptWorld& kept) {
    for (KeptNode& board : kept.root.children) {
        if (&board == &kept.root.children.front())
            board.posx = board.posy = 0;
        else
            board.posy = GetVideoMode(kept.videoMode).parkingRow;
    }
}

std::string Difference(const KeptWorld& wanted, const KeptWorld& found) {
    if (wanted.videoMode != found.videoMode)
        return Numbers("the video mode", wanted.videoMode, found.videoMode);
    if (wanted.windowed != found.windowed)
        return Numbers("the windowed flag", wanted.windowed, found.windowed);
    if (wanted.sheetW != found.sheetW)
        return Numbers("the sheet's width", wanted.sheetW, found.sheetW);
    if (wanted.sheetH != found.sheetH)
        return Numbers("the sheet's height", wanted.sheetH, found.sheetH);
    if (wanted.sheet != found.sheet) return "the pixels of the sheet differ";
    return NodeDifference(wanted.root, found.root, "");
}
