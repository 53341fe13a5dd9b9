#include "tool/diff_json.h"

#include "engine/dfont.h"

#include <nlohmann/json.hpp>

#include <iostream>

namespace {

using Json = nlohmann::ordered_json;

std::string Dumped(const Json& json) {
    return json.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Json Numbers(const std::vector<NumberChange>& changes) {
    Json json = Json::object();
    for (const NumberChange& change : changes) json[change.name] = {change.before, change.after};
    return json;
}

Json Described(const NodeChange& change) {
    Json json = {{"path", Title(change)},
                 {"change", !change.before  ? "added"
                            : !change.after ? "removed"
                                            : "changed"}};
    if (!change.before || !change.after) json["objects"] = change.objects;
    if (!change.from.empty()) json["from"] = change.from;
    if (change.renamed) json["renamed"] = true;
    if (change.moved) json["moved"] = true;
    if (change.reordered) json["reordered"] = true;
    if (!change.numbers.empty()) json["numbers"] = Numbers(change.numbers);
    if (change.tiles > 0) {
        json["tiles"] = change.tiles;
        for (const Box& box : change.boxes) json["boxes"].push_back({box.x, box.y, box.w, box.h});
    }
    if (!change.script.hunks.empty())
        json["script"] = {{"added", change.script.added},
                          {"removed", change.script.removed},
                          {"hunks", change.script.hunks}};
    return json;
}

Json Hex(const std::string& bytes) {
    constexpr const char* kDigits = "0123456789abcdef";
    std::string text;
    for (const char c : bytes) {
        text += kDigits[static_cast<unsigned char>(c) >> 4];
        text += kDigits[static_cast<unsigned char>(c) & 15];
    }
    return text;
}

// As it is when JSON can hold it.
Json Text(const std::string& bytes) {
    try {
        Json(bytes).dump();
        return bytes;
    } catch (const Json::type_error&) {
        return {{"hex", Hex(bytes)}};
    }
}

using Places = std::unordered_map<const Dobject*, int>;

void Number(const Dobject& node, Places& to) {
    const int place = static_cast<int>(to.size());
    to[&node] = place;
    for (const auto& child : node.children) Number(*child, to);
}

// Between the things of a list.
void Comma(bool& first) {
    if (!first) std::cout << ',';
    first = false;
}

std::ostream& operator<<(std::ostream& out, const Dtile& tile) {
    return out << '[' << tile.chr << ',' << tile.fg << ',' << tile.bg << ',' << tile.attrib << ']';
}

// Cells can be millions: they go out one by one, as do the nodes.
class ValuePrinter {
public:
    ValuePrinter(const Game& a, const Game& b, const GameDiff& from)
        : before(a), after(b), diff(from), paths(b.root) {
        Number(before.root, placesBefore);
        Number(after.root, placesAfter);
    }

    void Node(const NodeChange& change) {
        Json json = Described(change);
        json["node"] = PlaceOf(change.before, change.after);
        if (!change.after) {
            std::cout << Dumped(json);
            return;
        }
        const Dobject& now = *change.after;
        const Dobject* then = change.before;
        if (!then || change.renamed)
            json["name"] = {then ? Text(then->name) : Json(), Text(now.name)};
        for (const NodeNumber& number : kNodeNumbers)
            if (!then) json["numbers"][number.name] = {Json(), now.*number.field};
        if (!then || then->script != now.script) {
            json["script"]["before"] = then ? Text(then->script) : Json();
            json["script"]["after"] = Text(now.script);
        }
        std::string open = Dumped(json);
        open.pop_back();
        std::cout << open << R"(,"cells":[)";
        Cells(then, now);
        std::cout << "]}";
        if (!then) Added(now);
    }

    void Lists() {
        bool first = true;
        List(after.root, first);
    }

    void Pixels() {
        bool first = true;
        BITMAP* const now = after.sheet.get();
        const bool sameSize =
            before.sheet && now && before.sheet->w == now->w && before.sheet->h == now->h;
        constexpr std::size_t kWhole = kTileSize * kTileSize;
        for (int y = 0; now && y * kTileSize < now->h; ++y)
            for (int x = 0; x * kTileSize < now->w; ++x) {
                const std::string then =
                    before.sheet ? SheetBlock(before.sheet.get(), x, y) : std::string();
                const std::string pixels = SheetBlock(now, x, y);
                // Cut blocks of unlike shape can hold the same bytes.
                if (then == pixels && (sameSize || pixels.size() == kWhole)) continue;
                Comma(first);
                std::cout << Dumped({x * kTileSize, y * kTileSize, Hex(then), Hex(pixels)});
            }
    }

private:
    Json PlaceOf(const Dobject* then, const Dobject* now) const {
        Json pair = {nullptr, nullptr};
        if (then) pair[0] = placesBefore.at(then);
        if (now) pair[1] = placesAfter.at(now);
        return pair;
    }

    // What was added below an added node, each as a node of its own.
    void Added(const Dobject& parent) {
        for (const auto& child : parent.children) {
            if (diff.pairs.Before(*child)) continue;
            NodeChange added;
            added.after = child.get();
            added.path = paths.Of(*child);
            std::cout << ',';
            Node(added);
        }
    }

    static const Dtile* TileAt(const Dobject* node, int x, int y) {
        if (!node || x >= node->width || y >= node->height) return nullptr;
        return &node->tiles[static_cast<std::size_t>(y) * static_cast<std::size_t>(node->width) +
                            static_cast<std::size_t>(x)];
    }

    // Runs in a row that were alike and are alike.
    static void Cells(const Dobject* then, const Dobject& now) {
        bool first = true;
        for (int y = 0; y < now.height; ++y)
            for (int x = 0, end = 0; x < now.width; x = end) {
                const Dtile* old = TileAt(then, x, y);
                const Dtile& tile = *TileAt(&now, x, y);
                const auto same = [&](const Dtile* other) {
                    return old && other ? *old == *other : !old && !other;
                };
                for (end = x + 1; end < now.width && *TileAt(&now, end, y) == tile &&
                                  same(TileAt(then, end, y));)
                    ++end;
                if (tile == (old ? *old : kBlankTile)) continue;
                Comma(first);
                std::cout << '[' << x << ',' << y << ',' << end - x << ',';
                (old ? std::cout << *old : std::cout << "null") << ',' << tile << ']';
            }
    }

    void List(const Dobject& now, bool& first) {
        const Dobject* then = diff.pairs.Before(now);
        std::vector<const Dobject*> childrenThen;
        std::vector<const Dobject*> children;
        if (then)
            for (const auto& child : then->children)
                childrenThen.push_back(diff.pairs.After(*child));
        for (const auto& child : now.children) children.push_back(child.get());
        if (children != childrenThen) {
            Json json = {{"node", PlaceOf(then, &now)}, {"children", Json::array()}};
            for (const Dobject* child : children)
                json["children"].push_back(PlaceOf(diff.pairs.Before(*child), child));
            Comma(first);
            std::cout << Dumped(json);
        }
        for (const Dobject* child : children) List(*child, first);
    }

    const Game& before;
    const Game& after;
    const GameDiff& diff;
    Paths paths;
    Places placesBefore;
    Places placesAfter;
};

}  // namespace

void PrintJson(const Game& before, const Game& after, const GameDiff& diff, bool values) {
    Json sheet = Numbers(diff.sheet);
    if (values && !before.sheet != !after.sheet) {
        const auto side = [](const Bitmap& of, int BITMAP::*length) {
            return of ? (*of).*length : 0;
        };
        sheet["width"] = {side(before.sheet, &BITMAP::w), side(after.sheet, &BITMAP::w)};
        sheet["height"] = {side(before.sheet, &BITMAP::h), side(after.sheet, &BITMAP::h)};
    }
    std::cout << R"({"settings":)" << Dumped(Numbers(diff.settings)) << R"(,"sheet":)"
              << Dumped(sheet) << R"(,"glyphs":)" << Dumped(diff.glyphs) << R"(,"nodes":[)";
    bool first = true;
    if (!values) {
        for (const NodeChange& change : diff.nodes) {
            Comma(first);
            std::cout << Dumped(Described(change));
        }
        std::cout << "]}\n";
        return;
    }
    ValuePrinter printer(before, after, diff);
    for (const NodeChange& change : diff.nodes) {
        Comma(first);
        printer.Node(change);
    }
    std::cout << R"(],"lists":[)";
    printer.Lists();
    std::cout << R"(],"pixels":[)";
    printer.Pixels();
    std::cout << "]}\n";
}
