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
        for (int lines = Roll(0, 5); lines > 0; --lines)
            script += std::string(kLines[Roll(0, 9)]) + "\n";
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
        node->Create(kNames[Roll(0, 6)], Roll(0, 8) ? Roll(1, 30) : 0,
                     Roll(0, 8) ? Roll(1, 20) : 0);
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

void WritePlain(const Dobject& node, std::ostream& out) {
    out << "~ob " << node.name << ' ' << node.posz << '\n';
    out << node.posx << ' ' << node.posy << ' ' << node.width << ' ' << node.height << '\n';
    out << node.viewx << ' ' << node.viewy << ' ' << node.vieww << ' ' << node.viewh << '\n';
    std::string line;
    for (std::size_t i = 0; i < node.tiles.size();) {
        const Dtile tile = node.tiles[i];
        int run = 0;
        for (; i < node.tiles.size() && node.tiles[i] == tile; ++i) ++run;
        if (run > 1 || tile.chr > 32767) line += std::to_string(-run) + " ";
        for (int field : {Signed(tile.chr), Signed(tile.fg), Signed(tile.bg), Signed(tile.attrib)})
            line += std::to_string(field) + " ";
    }
    if (!line.empty()) line.back() = '\n';
    out << line << "~pb\n" << node.script;
    if (!node.script.empty() && node.script.back() != '\n') out << '\n';
    out << "~pe\n";
    for (const auto& child : node.children) WritePlain(*child, out);
    out << "~oe\n";
}

std::string KeptName(std::string name) {
    if (name.empty()) return "_";
    std::replace_if(
        name.begin(), name.end(),
        [](char c) { return TextScanner::IsSpace(static_cast<unsigned char>(c)); }, '_');
    return name;
}

void AddAccounts(const Dobject& parent, Kept kept, std::size_t depth, std::ostream& out) {
    const bool inFile = kept == Kept::InFile;
    std::vector<const Dobject*> children;
    for (const auto& child : parent.children) children.push_back(child.get());
    if (inFile) {
        const int way = parent.name == kRootName ? 1 : -1;
        std::stable_sort(children.begin(), children.end(), [way](const auto* a, const auto* b) {
            return way * std::int64_t{a->posz} < way * std::int64_t{b->posz};
        });
    }
    for (const Dobject* node : children) {
        const bool collapses = inFile && node->evieww != 0;
        out << std::string(depth, ' ') << (inFile ? KeptName(node->name) : node->name);
        for (int n : {node->posz, node->posx, node->posy, node->width, node->height, node->viewx,
                      node->viewy, collapses ? node->evieww : node->vieww,
                      collapses ? node->eviewh : node->viewh, inFile ? 0 : node->evieww,
                      inFile ? 0 : node->eviewh})
            out << ' ' << n;
        for (const Dtile& tile : node->tiles) {
            char before = ' ';
            for (std::uint16_t field : {tile.chr, tile.fg, tile.bg, tile.attrib}) {
                out << before << (inFile && field == UINT16_MAX ? 0 : field);
                before = ',';
            }
        }
        const bool endsEmpty = inFile && node->script.ends_with('\n');
        out << " [" << node->script.substr(0, node->script.size() - endsEmpty) << "]\n";
        AddAccounts(*node, kept, depth + 1, out);
    }
}

}  // namespace

void PlantRandomWorld(Dinterface& world, std::mt19937& random) {
    Roller roller{random};
    world.Root().EraseAll();
    for (int boards = roller.Roll(1, 4); boards > 0; --boards) roller.Plant(world.Root(), true, 1);
}

std::string Account(const Dobject& node, Kept kept) {
    std::ostringstream out;
    AddAccounts(node, kept, 0, out);
    return out.str();
}

std::string Account(Dinterface& world, Kept kept) {
    std::string account = "video " + std::to_string(world.videoMode) + " windowed " +
                          std::to_string(world.windowed) + " sheet ";
    const BITMAP* sheet = world.GetFont()->Sheet();
    for (int y = 0; y < sheet->h; ++y)
        for (int x = 0; x < sheet->w; ++x) account += std::to_string(sheet->line[y][x]) + " ";
    return account + "\n" + Account(world.Root(), kept);
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

std::string PlainText(const Dobject& root) {
    std::ostringstream out;
    out << "~endvars\n~endimports\n";
    for (const auto& board : root.children) WritePlain(*board, out);
    return out.str();
}
