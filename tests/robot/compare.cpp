#include "tests/robot/compare.h"

#include "engine/text_scanner.h"

#include <algorithm>

namespace {

std::string KeptName(std::string name) {
    if (name.empty()) return "_";
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return TextScanner::IsSpace(static_cast<unsigned char>(c)); }, '_');
    return name;
}

std::string KeptScript(std::string script) {
    if (script.ends_with('\n')) script.pop_back();
    return script;
}

std::vector<Dtile> KeptTiles(std::vector<Dtile> tiles) {
    for (Dtile& tile : tiles)
        for (std::uint16_t Dtile::*field : {&Dtile::chr, &Dtile::fg, &Dtile::bg, &Dtile::attrib})
            if (tile.*field == UINT16_MAX) tile.*field = 0;
    return tiles;
}

KeptNode KeepFields(const Dobject& node) {
    // The root itself is in no file; it has the size of the view.
    if (!node.parent) return {};
    const bool expanded = node.evieww != 0;
    return {KeptName(node.name),
            KeptScript(node.script),
            node.posx,
            node.posy,
            node.posz,
            node.width,
            node.height,
            node.viewx,
            node.viewy,
            expanded ? node.evieww : node.vieww,
            expanded ? node.eviewh : node.viewh,
            KeptTiles(node.tiles),
            {}};
}

KeptNode KeepNode(const Dobject& node) {
    KeptNode kept = KeepFields(node);
    for (const auto& child : node.children) kept.children.push_back(KeepNode(*child));
    const bool ascending = node.name == kRootName;
    std::stable_sort(kept.children.begin(), kept.children.end(),
                     [ascending](const KeptNode& a, const KeptNode& b) {
                         return ascending ? a.posz < b.posz : a.posz > b.posz;
                     });
    return kept;
}

void KeepSheet(KeptWorld& kept, const BITMAP* sheet) {
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

std::string TileDifference(const KeptNode& wanted, const KeptNode& found) {
    if (wanted.tiles.size() != found.tiles.size())
        return Numbers("the number of cells", static_cast<std::int64_t>(wanted.tiles.size()),
                       static_cast<std::int64_t>(found.tiles.size()));
    const auto [a, b] =
        std::mismatch(wanted.tiles.begin(), wanted.tiles.end(), found.tiles.begin());
    if (a == wanted.tiles.end()) return {};
    const std::string cell = "cell " + std::to_string(a - wanted.tiles.begin()) + "'s ";
    return Numbers((cell + "chr").c_str(), a->chr, b->chr) + ", " + Numbers("fg", a->fg, b->fg) +
           ", " + Numbers("bg", a->bg, b->bg) + ", " + Numbers("attrib", a->attrib, b->attrib);
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

KeptWorld Keep(Dinterface& world) {
    KeptWorld kept;
    kept.root = KeepNode(world.Root());
    KeepSheet(kept, world.GetFont()->Sheet());
    kept.videoMode = world.videoMode;
    kept.windowed = world.windowed;
    return kept;
}

KeptWorld Keep(const Game& game) {
    KeptWorld kept;
    kept.root = KeepNode(game.root);
    KeepSheet(kept, game.sheet.get());
    kept.videoMode = game.videoMode.value_or(-1);
    kept.windowed = game.windowed.value_or(-1);
    return kept;
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
