#include "tests/support/random_world.h"

#include "engine/text_scanner.h"

#include <algorithm>
#include <sstream>

namespace {

struct Roller {
    std::mt19937& random;

    int Roll(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    int Anything() {
        constexpr int kOdd[] = {0, -1, 1, 480, -480, INT32_MAX, INT32_MIN, 32767};
        return Roll(0, 4) ? Roll(-50, 50) : kOdd[Roll(0, 7)];
    }

    // 65535 is what no file can hold.
    Dtile Tile() {
        static constexpr int kOdd[] = {0, 255, 256, 32767, 32768, 40000, 65533, 65534};
        const auto field = [this](int high) {
            return static_cast<std::uint16_t>(Roll(0, 9) ? Roll(0, high) : kOdd[Roll(0, 7)]);
        };
        return {field(3), field(2), field(2), field(1)};
    }

    std::string Script() {
        constexpr const char* kLines[] = {
            "#bind a", "",       "  two  blanks ",    "~",           "~p", "\t",
            "\r",      "a\rb\r", "~ob not a block 1", "\xff\x01\x80"};
        std::string script;
        for (int n = Roll(0, 5); n > 0; --n) script += std::string(kLines[Roll(0, 9)]) + "\n";
        // The last line feed of a script is not kept.
        while (script.ends_with('\n')) script.pop_back();
        return script;
    }

    void Fill(Dobject& node) {
        for (std::size_t i = 0; i < node.tiles.size();) {
            const Dtile tile = Tile();
            for (int run = Roll(0, 2) ? 1 : Roll(1, 90); run > 0 && i < node.tiles.size(); --run)
                node.tiles[i++] = tile;
        }
        node.RedrawTiles();
    }

    void Plant(Dobject& parent, bool board, int depth) {
        const int z = Roll(-3, 3);
        Dobject* node =
            board ? parent.Spawn_Back(vWorld->TakeId(), z) : parent.Spawn(vWorld->TakeId(), z);
        constexpr const char* kNames[] = {"door", "~oe",      "~ob",       "12",
                                          "-7",   "\xe4\x01", "world_tree"};
        // One after the other: the arguments of a call are rolled in any order.
        const int name = Roll(0, 6), w = Roll(0, 8) ? Roll(1, 30) : 0;
        node->Create(kNames[name], w, Roll(0, 8) ? Roll(1, 20) : 0);
        for (std::int32_t* field : {&node->posx, &node->posy, &node->viewx, &node->viewy})
            *field = Anything();
        if (Roll(0, 1)) node->vieww = Anything();
        if (Roll(0, 1)) node->viewh = Anything();
        node->script = Script();
        Fill(*node);
        for (int children = depth < 4 ? Roll(0, 3) : 0; children > 0; --children)
            Plant(*node, node->name == kRootName, depth + 1);
    }
};

std::string KeptName(std::string name) {
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return TextScanner::IsSpace(static_cast<unsigned char>(c)); }, '_');
    return name.empty() ? "_" : name;
}

void Write(const Dobject& parent, bool all, std::ostream& out) {
    std::vector<const Dobject*> children;
    for (const auto& child : parent.children) children.push_back(child.get());
    const std::int64_t way = parent.name == kRootName ? 1 : -1;
    if (!all)
        std::stable_sort(children.begin(), children.end(),
                         [way](auto* a, auto* b) { return way * a->posz < way * b->posz; });
    for (const Dobject* node : children) {
        const bool expanded = !all && node->evieww != 0;
        out << "~ob " << (all ? node->name : KeptName(node->name)) << ' ' << node->posz << '\n';
        out << node->posx << ' ' << node->posy << ' ' << node->width << ' ' << node->height << '\n';
        out << node->viewx << ' ' << node->viewy << ' ' << (expanded ? node->evieww : node->vieww)
            << ' ' << (expanded ? node->eviewh : node->viewh) << '\n';
        if (all && node->evieww) out << node->evieww << ' ' << node->eviewh << '\n';
        for (const Dtile& tile : node->tiles) {
            for (const std::uint16_t field : {tile.chr, tile.fg, tile.bg, tile.attrib})
                out << (all || field != 65535 ? Signed(field) : 0) << ' ';
            out << '\n';
        }
        std::string script = node->script;
        if (!all && script.ends_with('\n')) script.pop_back();
        out << "~pb\n" << script << "\n~pe\n";
        Write(*node, all, out);
        out << "~oe\n";
    }
}

}  // namespace

void PlantRandomWorld(Dinterface& world, std::mt19937& random) {
    Roller roller{random};
    world.Root().EraseAll();
    for (int boards = roller.Roll(1, 4); boards > 0; --boards) roller.Plant(world.Root(), true, 1);
}

std::string Pixels(const BITMAP* bitmap) {
    std::string pixels;
    for (int y = 0; bitmap && y < bitmap->h; ++y)
        pixels.append(reinterpret_cast<const char*>(bitmap->line[y]), std::size_t(bitmap->w));
    return pixels;
}

std::string Account(const Dobject& node, Kept kept) {
    std::ostringstream out;
    Write(node, kept == Kept::All, out);
    return out.str();
}

std::string Account(Dinterface& world, Kept kept) {
    const BITMAP* sheet = world.GetFont()->Sheet();
    return "video " + std::to_string(world.videoMode) + " windowed " +
           std::to_string(world.windowed) + " sheet " + std::to_string(sheet->w) + " " +
           Pixels(sheet) + "\n" + Account(world.Root(), kept);
}

std::string Difference(const std::string& wanted, const std::string& found) {
    if (wanted == found) return {};
    const auto [a, b] = std::mismatch(wanted.begin(), wanted.end(), found.begin(), found.end());
    const auto at = static_cast<std::size_t>(a - wanted.begin());
    constexpr std::size_t kAround = 60;
    const std::size_t from = at - std::min(at, kAround);
    return "wanted ..." + wanted.substr(from, 2 * kAround) + "... but found ..." +
           found.substr(from, 2 * kAround) + "...";
}
