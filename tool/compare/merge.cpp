#include "tool/compare/merge.h"

#include "engine/dfont.h"
#include "engine/dinterface.h"
#include "tool/compare/diff.h"
#include "tool/compare/merge_tree.h"

#include <algorithm>
#include <optional>

namespace {

// The value that three-way joining gives; false when both sides changed it unlike, with ours or
// theirs as favored.
template <typename T>
bool Join(const T& base, const T& ours, const T& theirs, bool favorTheirs, T& joined) {
    const bool clash = ours != base && theirs != base && ours != theirs;
    joined = (clash && favorTheirs) || ours == base ? theirs : ours;
    return !clash;
}

template <typename T>
std::string Values(const std::string& name, T base, T ours, T theirs) {
    return name + ": base " + std::to_string(base) + ", ours " + std::to_string(ours) +
           ", theirs " + std::to_string(theirs);
}

constexpr std::uint16_t Dtile::*kFields[] = {&Dtile::chr, &Dtile::fg, &Dtile::bg, &Dtile::attrib};

// `ours` may be where the result goes.
bool JoinTile(const Dtile& base, const Dtile ours, const Dtile& theirs, bool favorTheirs,
              Dtile& joined) {
    if (Join(base, ours, theirs, favorTheirs, joined)) return true;
    bool good = true;
    for (const auto field : kFields)
        good &= Join(base.*field, ours.*field, theirs.*field, favorTheirs, joined.*field);
    return good;
}

using MaybeTile = std::optional<Dtile>;

MaybeTile TileAt(const Dobject& node, int x, int y) {
    if (x >= node.width || y >= node.height) return {};
    return node.tiles[static_cast<std::size_t>(y) * static_cast<std::size_t>(node.width) +
                      static_cast<std::size_t>(x)];
}

class Joiner {
public:
    Joiner(Favor favored, std::vector<Conflict>& to)
        : favor(favored), theirs(favored == Favor::kTheirs), conflicts(to) {}

    // All of a node but what is below it, into ours.
    void Node(const Dobject& b, Dobject& o, Dobject& t, const std::string& path) {
        std::string name;
        if (!Join(b.name, o.name, t.name, theirs, name))
            Tell(path, "name: base " + b.name + ", ours " + o.name + ", theirs " + t.name);
        o.name = name;
        Script(b, o, t, path);
        Dobject size;
        for (const NodeNumber& number : kNodeNumbers)
            if (!Join(b.*number.field, o.*number.field, t.*number.field, theirs,
                      size.*number.field))
                Tell(path, Values(number.name, b.*number.field, o.*number.field, t.*number.field));
        if (!IsGridSize(size.width, size.height)) {
            Tell(path, "the sizes of both sides together are no grid's");
            size.width = (theirs ? t : o).width;
            size.height = (theirs ? t : o).height;
        }
        Tiles(b, o, t, size.width, size.height, path);
        for (const NodeNumber& number : kNodeNumbers) o.*number.field = size.*number.field;
    }

    void Sheet(BITMAP* b, Bitmap& o, Bitmap& t) {
        if (!o) o = std::move(t);
        if (!b || !o || !t) return;
        const bool oneWidth = b->w == o->w && o->w == t->w;
        if (!oneWidth) return WholeSheet(b, o, t);
        int height = 0;
        if (!Join(b->h, o->h, t->h, theirs, height))
            Tell("sheet", Values("height", b->h, o->h, t->h));
        Bitmap joined = MakeBitmap(o->w, height);
        if (!joined) return Tell("sheet", "there is not enough memory to join it");
        const int rows = (std::max({o->h, t->h, height}) + kTileSize - 1) / kTileSize;
        const int columns = CountGlyphs(o->w, kTileSize);
        for (int y = 0; y < rows; ++y)
            for (int x = 0; x * kTileSize < o->w; ++x) {
                const std::string then = SheetBlock(b, x, y);
                const std::string ourBlock = SheetBlock(o.get(), x, y);
                const std::string theirBlock = SheetBlock(t.get(), x, y);
                std::string block;
                bool good = Join(then, ourBlock, theirBlock, theirs, block);
                // What one side painted in a row that the other took away.
                if (y * kTileSize >= height) good = Lost(then, ourBlock) && Lost(then, theirBlock);
                if (!good) Tell("sheet", "glyph " + std::to_string(y * columns + x));
                Paste(*joined, x, y, block);
            }
        o = std::move(joined);
    }

    void Settings(const Game& b, Game& o, const Game& t) {
        const auto join = [&](const char* name, std::optional<std::int32_t> Game::*setting) {
            std::optional<std::int32_t> joined;
            if (!Join(b.*setting, o.*setting, t.*setting, theirs, joined))
                Tell("settings", Values(name, (b.*setting).value_or(kUsualSetting),
                                        (o.*setting).value_or(kUsualSetting),
                                        (t.*setting).value_or(kUsualSetting)));
            o.*setting = joined;
        };
        join("video mode", &Game::videoMode);
        join("windowed", &Game::windowed);
    }

private:
    void Tell(const std::string& path, const std::string& what) {
        conflicts.push_back({path, what});
    }

    void Script(const Dobject& b, Dobject& o, const Dobject& t, const std::string& path) {
        if (o.script == t.script || t.script == b.script) return;
        if (o.script == b.script) {
            o.script = t.script;
            return;
        }
        LineMerge merged = MergeLines(b.script, o.script, t.script, favor);
        for (const int line : merged.conflicts) Tell(path, "script, line " + std::to_string(line));
        o.script = std::move(merged.text);
    }

    void Tiles(const Dobject& b, Dobject& o, Dobject& t, int w, int h, const std::string& path) {
        const auto sized = [w, h](const Dobject& node) {
            return node.width == w && node.height == h;
        };
        Boxes clash;
        if (sized(b) && sized(o) && sized(t)) {
            if (o.tiles == b.tiles) {
                o.tiles.swap(t.tiles);
                return;
            }
            std::size_t at = 0;
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x, ++at)
                    if (t.tiles[at] != b.tiles[at] &&
                        !JoinTile(b.tiles[at], o.tiles[at], t.tiles[at], theirs, o.tiles[at]))
                        clash.Add(x, y);
        } else {
            std::vector<Dtile> joined;
            joined.reserve(static_cast<std::size_t>(w) * static_cast<std::size_t>(h));
            for (int y = 0; y < h; ++y)
                for (int x = 0; x < w; ++x) {
                    const MaybeTile then = TileAt(b, x, y);
                    const MaybeTile our = TileAt(o, x, y);
                    const MaybeTile their = TileAt(t, x, y);
                    MaybeTile tile;
                    bool good = Join(then, our, their, theirs, tile);
                    if (then && our && their) good = JoinTile(*then, *our, *their, theirs, *tile);
                    if (!good) clash.Add(x, y);
                    if (!tile) tile = our ? our : their;
                    joined.push_back(tile.value_or(kBlankTile));
                }
            Cut(b, o, w, h, path, "ours painted where theirs cut the grid: ");
            Cut(b, t, w, h, path, "theirs painted where ours cut the grid: ");
            o.tiles = std::move(joined);
        }
        if (clash.Count() > 0) Tell(path, BoxText(clash.Count(), clash.Take()));
    }

    // What a side changed outside the joined grid is lost.
    void Cut(const Dobject& b, const Dobject& side, int w, int h, const std::string& path,
             const char* what) {
        Boxes lost;
        for (int y = 0; y < side.height; ++y)
            for (int x = y < h ? w : 0; x < side.width; ++x) {
                const MaybeTile then = TileAt(b, x, y);
                if (TileAt(side, x, y) != (then ? then : MaybeTile(kBlankTile))) lost.Add(x, y);
            }
        if (lost.Count() > 0) Tell(path, what + BoxText(lost.Count(), lost.Take()));
    }

    static bool Lost(const std::string& then, const std::string& block) {
        return block == then || block.find_first_not_of('\0') == block.npos;
    }

    static void Paste(BITMAP& sheet, int x, int y, const std::string& block) {
        const int width = std::min(kTileSize, sheet.w - x * kTileSize);
        const int rows = static_cast<int>(block.size()) / width;
        for (int row = 0; row < rows && y * kTileSize + row < sheet.h; ++row)
            std::copy_n(block.begin() + row * width, width,
                        sheet.line[y * kTileSize + row] + x * kTileSize);
    }

    static std::string Pixels(BITMAP* sheet) {
        std::string pixels = std::to_string(sheet->w) + " ";
        for (int y = 0; y < sheet->h; ++y)
            pixels.append(reinterpret_cast<const char*>(sheet->line[y]),
                          static_cast<std::size_t>(sheet->w));
        return pixels;
    }

    // Of sheets of unlike widths no glyph is where it was.
    void WholeSheet(BITMAP* b, Bitmap& o, Bitmap& t) {
        const std::string then = Pixels(b);
        const std::string our = Pixels(o.get());
        const std::string their = Pixels(t.get());
        std::string joined;
        if (!Join(then, our, their, theirs, joined))
            Tell("sheet", Values("width", b->w, o->w, t->w) + "; both sides changed it");
        if (joined != our) o.swap(t);
    }

    Favor favor;
    bool theirs;
    std::vector<Conflict>& conflicts;
};

}  // namespace

std::vector<Conflict> MergeGames(const Game& base, Game& ours, Game& theirs, Favor favor) {
    std::vector<Conflict> conflicts;
    Joiner joiner(favor, conflicts);
    joiner.Settings(base, ours, theirs);
    joiner.Sheet(base.sheet.get(), ours.sheet, theirs.sheet);
    MergeTrees(base.root, ours.root, theirs.root, favor == Favor::kTheirs, conflicts,
               [&](const Dobject& b, Dobject& o, Dobject& t, const std::string& path) {
                   joiner.Node(b, o, t, path);
               });
    return conflicts;
}
