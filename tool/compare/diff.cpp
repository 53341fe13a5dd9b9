#include "tool/compare/diff.h"

#include "engine/dfont.h"

#include <algorithm>

namespace {

int BlocksIn(int pixels) { return (pixels + kTileSize - 1) / kTileSize; }

void AddNumber(std::vector<NumberChange>& to, const char* name, std::int32_t before,
               std::int32_t after) {
    if (before != after) to.push_back({name, before, after});
}

void DiffSheets(BITMAP* before, BITMAP* after, GameDiff& diff) {
    if (!before || !after) return;
    AddNumber(diff.sheet, "width", before->w, after->w);
    AddNumber(diff.sheet, "height", before->h, after->h);
    // A glyph is cut from the sheet when it is at least two pixels wide and high.
    const int columns = CountGlyphs(after->w, kTileSize);
    const int glyphs = CountGlyphs(after->w, after->h);
    const int columnsBefore = std::max(1, CountGlyphs(before->w, kTileSize));
    const int glyphsBefore = CountGlyphs(before->w, before->h);
    for (int y = 0; y < BlocksIn(after->h); ++y)
        for (int x = 0; x < BlocksIn(after->w); ++x) {
            const int number = x < columns ? y * columns + x : glyphs;
            const std::string now = SheetBlock(after, x, y);
            const std::string then =
                number >= glyphs ? SheetBlock(before, x, y)
                : number < glyphsBefore
                    ? SheetBlock(before, number % columnsBefore, number / columnsBefore)
                    : std::string(now.size(), '\0');
            if (now == then) continue;
            if (number < glyphs)
                diff.glyphs.push_back(number);
            else if (diff.sheet.empty())
                diff.edge = true;
        }
}

void DiffTiles(const Dobject& before, const Dobject& after, NodeChange& change) {
    const bool sameSize = before.width == after.width && before.height == after.height;
    if (sameSize && before.tiles == after.tiles) return;
    Boxes boxes;
    auto now = after.tiles.begin();
    for (int y = 0; y < after.height; ++y)
        for (int x = 0; x < after.width; ++x, ++now) {
            const bool both = x < before.width && y < before.height;
            const Dtile& then = both ? before.tiles[static_cast<std::size_t>(y) *
                                                        static_cast<std::size_t>(before.width) +
                                                    static_cast<std::size_t>(x)]
                                     : kBlankTile;
            if (*now != then) boxes.Add(x, y);
        }
    change.tiles = boxes.Count();
    change.boxes = boxes.Take();
}

class Differ {
public:
    Differ(const Dobject& before, const Dobject& after, GameDiff& to)
        : pathsBefore(before), pathsAfter(after), diff(to) {
        Compare(before, after);
    }

private:
    void Tell(const NodeChange& change) {
        if (change.Changed()) diff.nodes.push_back(change);
    }

    void Compare(const Dobject& before, const Dobject& after) {
        NodeChange change;
        change.before = &before;
        change.after = &after;
        change.path = pathsAfter.Of(after);
        if (after.parent) {
            change.renamed = before.name != after.name;
            change.moved = diff.pairs.After(*before.parent) != after.parent;
            if (change.renamed || change.moved) change.from = pathsBefore.Of(before);
            for (const NodeNumber& number : kNodeNumbers)
                AddNumber(change.numbers, number.name, before.*number.field, after.*number.field);
            DiffTiles(before, after, change);
            if (before.script != after.script)
                change.script = DiffLines(before.script, after.script);
        }
        change.reordered = Reordered(before, after);
        Tell(change);
        Removed(before);
        Children(after);
    }

    void Children(const Dobject& after) {
        for (const auto& child : after.children) {
            const Dobject* then = diff.pairs.Before(*child);
            if (then) {
                Compare(*then, *child);
                continue;
            }
            NodeChange added;
            added.after = child.get();
            added.path = pathsAfter.Of(*child);
            added.objects = CountLone(*child, &Pairing::Before);
            const bool top = diff.pairs.Before(after) != nullptr;
            if (top) Tell(added);
            Children(*child);
        }
    }

    void Removed(const Dobject& before) {
        for (const auto& child : before.children) {
            if (diff.pairs.After(*child)) continue;
            NodeChange removed;
            removed.before = child.get();
            removed.path = pathsBefore.Of(*child);
            removed.objects = CountLone(*child, &Pairing::After);
            Tell(removed);
        }
    }

    int CountLone(const Dobject& node, const Dobject* (Pairing::*partner)(const Dobject&) const) {
        int count = 0;
        for (const auto& child : node.children)
            count += !(diff.pairs.*partner)(*child) + CountLone(*child, partner);
        return count;
    }

    bool Reordered(const Dobject& before, const Dobject& after) {
        std::vector<const Dobject*> then;
        std::vector<const Dobject*> now;
        for (const auto& child : before.children) {
            const Dobject* partner = diff.pairs.After(*child);
            if (partner && partner->parent == &after && partner->posz == child->posz)
                then.push_back(partner);
        }
        for (const auto& child : after.children) {
            const Dobject* partner = diff.pairs.Before(*child);
            if (partner && partner->parent == &before && partner->posz == child->posz)
                now.push_back(child.get());
        }
        return then != now;
    }

    Paths pathsBefore;
    Paths pathsAfter;
    GameDiff& diff;
};

}  // namespace

bool NodeChange::Changed() const {
    return !before || !after || renamed || moved || reordered || !numbers.empty() || tiles > 0 ||
           !script.hunks.empty();
}

std::string SheetBlock(BITMAP* sheet, int x, int y) {
    std::string pixels;
    const int left = x * kTileSize;
    const int width = std::min(kTileSize, sheet->w - left);
    for (int row = y * kTileSize; width > 0 && row < std::min((y + 1) * kTileSize, sheet->h); ++row)
        pixels.append(reinterpret_cast<const char*>(sheet->line[row]) + left,
                      static_cast<std::size_t>(width));
    return pixels;
}

GameDiff DiffGames(const Game& before, const Game& after) {
    GameDiff diff;
    diff.pairs = MatchNodes(before.root, after.root);
    AddNumber(diff.settings, "video mode", before.videoMode.value_or(kUsualSetting),
              after.videoMode.value_or(kUsualSetting));
    AddNumber(diff.settings, "windowed", before.windowed.value_or(kUsualSetting),
              after.windowed.value_or(kUsualSetting));
    DiffSheets(before.sheet.get(), after.sheet.get(), diff);
    Differ(before.root, after.root, diff);
    return diff;
}
