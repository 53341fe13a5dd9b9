// The world through its handles: a random walk of all operations beside a plain model.

#include "engine/copy_object.h"
#include "tests/support/test_world.h"

#include <map>
#include <random>

namespace {

using Ids = std::vector<std::int32_t>;

struct Plain {
    std::int32_t parent = -1;
    std::string name, script;
    std::array<std::int32_t, 9> is{};  ///< by Property
    std::int32_t realW = 0, realH = 0, hidden = 0;
    std::vector<Dtile> tiles, undo;
    Ids children;
};

class Walk : public WorldTest {
protected:
    Walk() {
        model[0].name = "world_tree";
        slots[0] = {1, 0};
    }

    int Roll(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }
    Plain& At(std::int32_t id) { return model.at(id); }
    std::int32_t AnyId(bool root = false) {
        return std::next(model.begin(), Roll(root ? 0 : 1, static_cast<int>(model.size()) - 1))
            ->first;
    }

    // --- handles: pairs of count and id; the lowest slot that is free or the node's own ---------
    int Take(std::int32_t id) {
        int h = 0;
        while (slots[h].first > 0 && slots[h].second != id) ++h;
        slots[h] = {slots[h].first + 1, id};
        return h;
    }
    void Forget(int h) {
        if (h > 0) --slots[h].first;
    }
    Handle Open(std::int32_t id) {
        const Handle h = world->GetHandleById(kRootHandle, id);
        EXPECT_EQ(h, Take(id));
        return h;
    }
    void Close(Handle h) {
        world->ReleaseHandle(h);
        Forget(h);
    }

    // --- the tree ------------------------------------------------------------------------------
    void Rows(std::int32_t id, Ids& rows) {
        for (std::int32_t child : At(id).children) {
            rows.push_back(child);
            Rows(child, rows);
        }
    }
    Ids Tree(std::int32_t id) {
        Ids all{id};
        Rows(id, all);
        return all;
    }
    bool Within(std::int32_t id, std::int32_t top) {
        const Ids all = Tree(top);
        return std::count(all.begin(), all.end(), id) > 0;
    }
    void Insert(std::int32_t id, std::int32_t parent, bool ascending) {
        Ids& all = At(parent).children;
        const int z = At(id).is[kPosZ];
        auto at = all.begin();
        while (at != all.end() && (ascending ? At(*at).is[kPosZ] <= z : At(*at).is[kPosZ] >= z))
            ++at;
        all.insert(at, id);
        At(id).parent = parent;
    }
    void Remove(std::int32_t id) { std::erase(At(At(id).parent).children, id); }
    void Add(std::int32_t id, std::int32_t parent, const std::string& name, int w, int h, int z,
             bool ascending) {
        Plain& node = model[id];
        node.name = name;
        node.is = {0, 0, z, std::max(w, 0), std::max(h, 0), 0, 0, std::max(w, 0), std::max(h, 0)};
        node.tiles.resize(static_cast<std::size_t>(node.is[kWidth] * node.is[kHeight]));
        Insert(id, parent, ascending);
    }
    void Copy(std::int32_t id, std::int32_t parent, bool ascending) {
        const Plain from = At(id);
        const std::int32_t made = ++lastId;
        Plain& node = model[made] = from;
        node.children.clear();
        node.undo.clear();
        node.realW = node.realH = node.hidden = 0;
        Insert(made, parent, ascending);
        for (std::int32_t child : from.children) Copy(child, made, false);
    }
    void Resize(Plain& node, int w, int h) {
        w = std::max(w, 0);
        h = std::max(h, 0);
        std::vector<Dtile> tiles;
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                tiles.push_back(x < node.is[kWidth] && y < node.is[kHeight]
                                    ? node.tiles[static_cast<std::size_t>(y * node.is[kWidth] + x)]
                                    : Dtile{0, 255, 255, 0});
        node.tiles = tiles;
        node.is[kWidth] = w;
        node.is[kHeight] = h;
        node.is[kViewW] = std::min(node.is[kViewW], w);
        node.is[kViewH] = std::min(node.is[kViewH], h);
    }
    static void Expand(Plain& node) {
        if (node.realW) return;
        node.realW = std::exchange(node.is[kViewW], node.is[kWidth]);
        node.realH = std::exchange(node.is[kViewH], node.is[kHeight]);
        node.is[kViewX] = node.is[kViewY] = 0;
    }
    // The world tile of the viewport's corner, along the axis of kPosX or kPosY.
    int Origin(std::int32_t id, int axis) {
        const std::int32_t parent = At(id).parent;
        if (parent <= 0) return At(id).is[axis];
        return At(id).is[axis] + Origin(parent, axis) - At(parent).is[kViewX + axis];
    }
    std::int32_t BoardOf(std::int32_t id) {
        while (At(At(id).parent).name != "world_tree") id = At(id).parent;
        return id;
    }
    void Show(std::int32_t board) {
        constexpr int kRows[] = {240, 480, 592, 768};
        for (std::int32_t id : At(0).children) {
            if (id == board) At(id).is[kPosX] = 0;
            At(id).is[kPosY] = id == board ? 0
                               : world->videoMode < 0 || world->videoMode > 3
                                   ? 480
                                   : kRows[world->videoMode];
        }
    }

    // --- one step of the walk ------------------------------------------------------------------
    void Step();
    void Query();
    void PaintList();
    void Compare();

    std::mt19937 random;
    std::map<std::int32_t, Plain> model;
    std::map<int, std::pair<int, std::int32_t>> slots;
    std::vector<Handle> kept;
    std::vector<std::pair<int, std::vector<int>>> lists;
    std::int32_t lastId = 0;
};

void Walk::Step() {
    constexpr const char* kNames[] = {"a", "b", "two", "world_tree", ""};
    const std::string name = kNames[Roll(0, 9) ? Roll(0, 2) : Roll(3, 4)];
    const std::int32_t id = AnyId();
    const Handle h = Open(id);
    Plain& node = At(id);
    const int small = Roll(-2, 6);
    const int w = node.is[kWidth];
    switch (Roll(0, 18)) {
        case 0:
            if (model.size() < 14) {
                const Handle under = Open(AnyId(true));
                const int z = Roll(-2, 2);
                const Handle own = world->SpawnObject(under, name, small, 3, z);
                Add(++lastId, slots[under].second, name, small, 3, z, false);
                EXPECT_EQ(own, Take(lastId));
                Close(own);
                Close(under);
            }
            break;
        case 1: {
            world->videoMode = Roll(-1, 4);
            const std::int32_t board = world->NewBoard();
            EXPECT_EQ(board, ++lastId);
            EXPECT_EQ(world->currentBoard, board);
            EXPECT_EQ(world->currentObject, board);
            const Handle fresh = Open(board);
            constexpr std::pair<int, int> kSizes[] = {{40, 30}, {80, 60}, {100, 75}, {128, 96}};
            const bool known = world->videoMode >= 0 && world->videoMode < 4;
            const auto [bw, bh] = kSizes[known ? world->videoMode : 1];
            Add(board, 0, "NewBoard", bw, bh, 0, true);
            for (int i = 0; i < bw * bh; ++i) {
                const int x = i % bw, y = i / bw;
                const bool edge = x == 0 || y == 0 || x == bw - 1 || y == bh - 1;
                At(board).tiles[static_cast<std::size_t>(i)] =
                    edge ? Dtile{176, 16, 32, 1} : Dtile{0, 255, 255, 0};
            }
            EXPECT_EQ(world->Node(fresh)->tiles, At(board).tiles);
            world->SetProperty(fresh, kWidth, 5);
            world->SetProperty(fresh, kHeight, 4);
            Resize(At(board), 5, 4);
            Close(fresh);
            break;
        }
        case 2: {
            const Ids gone = Tree(id);
            int open = 0;
            for (const auto& [slot, held] : slots)
                if (std::count(gone.begin(), gone.end(), held.second)) open += held.first;
            // What is open must not go. A board alone stays, and so does everything with it.
            if (open > 1) break;
            world->EraseObject(h);
            if (At(0).children.size() < 2) break;
            slots[h].first = 0;
            Remove(id);
            for (std::int32_t each : gone) model.erase(each);
            return;
        }
        case 3: {
            const Handle under = Open(AnyId(true));
            world->MoveObject(h, under);
            if (const std::int32_t to = slots[under].second; !Within(to, id)) {
                Remove(id);
                Insert(id, to, false);
            }
            Close(under);
            break;
        }
        case 4:
        case 5:
        case 6: {
            const int index = Roll(-1, 9);
            const int value = index == kPosZ ? Roll(-2, 2) : Roll(-3, 9);
            world->SetProperty(h, index, value);
            if (index == kPosZ) {
                node.is[kPosZ] = value;
                Remove(id);
                Insert(id, node.parent, At(node.parent).name == "world_tree");
            } else if (index == kWidth || (index == kViewW && value > w)) {
                Resize(node, value, node.is[kHeight]);
            } else if (index == kHeight || (index == kViewH && value > node.is[kHeight])) {
                Resize(node, w, value);
            }
            if (index >= 0 && index < 9 && index != kWidth && index != kHeight)
                node.is[static_cast<std::size_t>(index)] = value;
            if (index == kViewW || index == kViewH) node.realW = node.realH = 0;
            break;
        }
        case 7:
            world->SetName(h, node.name = name);
            world->SetScript(h, node.script = name + "\n#end");
            world->SetHidden(h, node.hidden = Roll(0, 2));
            break;
        case 8:
        case 9:
            for (int i = 0; i < 8; ++i) {
                constexpr int kColors[] = {0, 1, 15, 255, 256, 300, -1, -2};
                const int x = Roll(-1, 6), y = Roll(-1, 5);
                const int put[] = {Roll(-1, 300), kColors[Roll(0, 7)], kColors[Roll(0, 6)],
                                   Roll(-1, 3)};
                world->SetTile(h, x, y, put[0], put[1], put[2], put[3]);
                if (x < 0 || y < 0 || x >= w || y >= node.is[kHeight]) continue;
                Dtile& tile = node.tiles[static_cast<std::size_t>(y * w + x)];
                std::uint16_t* fields[] = {&tile.chr, &tile.fg, &tile.bg, &tile.attrib};
                for (int f = 0; f < 4; ++f)
                    if (put[f] != -1) *fields[f] = static_cast<std::uint16_t>(put[f]);
            }
            break;
        case 10:
            world->BackupTiles(h);
            node.undo = node.tiles;
            break;
        case 11:
            world->RestoreTiles(h);
            node.undo.resize(node.tiles.size());
            node.tiles = node.undo;
            break;
        case 12: {
            const int on = Roll(0, 2);
            world->SetExpanded(h, on);
            if (on == 1) {
                Expand(node);
            } else if (node.realW) {
                node.is[kViewW] = std::exchange(node.realW, 0);
                node.is[kViewH] = std::exchange(node.realH, 0);
            }
            if (Roll(0, 3)) break;
            world->ExpandAll(h);
            for (std::int32_t each : Tree(id)) Expand(At(each));
            break;
        }
        case 13: {
            if (model.size() >= 14) break;
            const std::int32_t made = world->NewObject(h, small, 7);
            EXPECT_EQ(made, ++lastId);
            EXPECT_EQ(world->currentObject, made);
            Add(made, id, "NewObject" + std::to_string(made), 1, 1, 0, false);
            At(made).tiles[0] = {1, 15, 1, 1};
            At(made).is[kPosX] = small;
            At(made).is[kPosY] = 7;
            break;
        }
        case 14: {
            world->videoMode = Roll(-1, 4);
            Ids rows;
            Rows(0, rows);
            const int scroll = Roll(0, 3) * 10;
            const int y = Roll(0, 10 * static_cast<int>(rows.size()) + 20);
            const std::int32_t before = world->currentBoard;
            world->ClickTreeList(scroll, y);
            // Of the ten pixels of a row seven hit.
            const int at = y + scroll - 13;
            if (at > 0 && at < 10 * static_cast<int>(rows.size()) && at % 10 >= 1 && at % 10 <= 7) {
                const std::int32_t hit = rows[static_cast<std::size_t>(at / 10)];
                EXPECT_EQ(world->currentObject, hit);
                EXPECT_EQ(world->currentBoard, BoardOf(hit));
                Show(BoardOf(hit));
            } else {
                EXPECT_EQ(world->currentBoard, before);
            }
            world->SetCurrentObject(h);
            EXPECT_EQ(world->currentObject, id);
            break;
        }
        case 15: {
            const int y = Roll(-9, 9);
            world->MoveTo(h, small, y);
            const Plain& parent = At(node.parent);
            for (int axis : {0, 1}) {
                const int over = node.parent ? Origin(node.parent, axis) : 0;
                node.is[static_cast<std::size_t>(axis)] =
                    (axis ? y : small) - over + parent.is[static_cast<std::size_t>(kViewX + axis)];
            }
            break;
        }
        case 16: {
            if (model.size() + Tree(id).size() > 20) break;
            // Placed after those of the same z on a board's level, before them elsewhere.
            const bool board = node.parent == 0;
            Dobject& parent = board ? world->Root() : *world->Node(h)->parent;
            EXPECT_EQ(CopyObject(parent, *world->Node(h))->id, lastId + 1);
            Copy(id, node.parent, At(node.parent).name == "world_tree");
            break;
        }
        case 17:
            kept.push_back(Open(AnyId(true)));
            break;
        default:
            Query();
            if (Roll(0, 1)) PaintList();
            if (kept.empty()) break;
            Close(kept.back());
            kept.pop_back();
            break;
    }
    Close(h);
}

// A list by a selector or by a place, against the plain reading of the same.
void Walk::Query() {
    const std::int32_t from = AnyId(true);
    const Handle h = Open(from);
    std::vector<std::int32_t> found;
    int list;
    if (Roll(0, 2) == 0) {
        const int x = Roll(-4, 9), y = Roll(-4, 9);
        for (std::int32_t id : Tree(from)) {
            const auto& is = At(id).is;
            const int left = x - Origin(id, 0), top = y - Origin(id, 1);
            if (left >= 0 && left < is[kViewW] && top >= 0 && top < is[kViewH]) found.push_back(id);
        }
        list = world->StartHandleListAt(h, x, y);
    } else {
        constexpr const char* kWords[] = {"all",  "all", "parent", "a",
                                          "t wo", "top", "inside", "b"};
        std::vector<std::string> words;
        for (int n = Roll(0, 4); n > 0; --n) words.push_back(kWords[Roll(0, 7)]);
        std::string selector = ".";
        const bool self = Roll(0, 1);
        if (self) words.insert(words.begin(), "self");
        for (const std::string& word : words) selector += word + ".";
        if (Roll(0, 1) && selector.size() > 1) selector.pop_back();
        const bool atNode =
            !words.empty() && (self || words[0] == "parent" || words[0] == "inside");
        found = {atNode ? from : At(from).parent};
        for (std::size_t i = self; i < words.size(); ++i) {
            Ids next;
            for (std::int32_t id : found) {
                if (words[i] == "top") next.push_back(0);
                if (id < 0) continue;
                if (words[i] == "parent" && id > 0) next.push_back(At(id).parent);
                for (std::int32_t child : At(id).children)
                    if (words[i] == "all" || At(child).name == words[i] ||
                        (words[i] == "t wo" && At(child).name == "two"))
                        next.push_back(child);
            }
            found = next;
        }
        std::erase(found, -1);
        SCOPED_TRACE(selector);
        list = world->StartHandleList(h, selector.c_str());
    }
    std::vector<int> handles;
    for (std::int32_t id : found) handles.push_back(Take(id));
    ASSERT_EQ(list, static_cast<int>(lists.size()));
    EXPECT_EQ(world->CountHandles(list), static_cast<int>(handles.size()));
    for (int round = 0; round < 2; ++round) {
        for (int expected : handles) ASSERT_EQ(world->NextHandle(list), expected);
        EXPECT_EQ(world->NextHandle(list), -1) << "after which it starts anew";
    }
    lists.emplace_back(list, handles);
    while (!lists.empty() && Roll(0, 3)) {
        world->ReleaseHandleList(lists.back().first);
        for (int each : lists.back().second) Forget(each);
        lists.pop_back();
    }
    Close(h);
}

void Walk::PaintList() {
    const Bitmap list = MakeBitmap(150, 80), expected = MakeBitmap(150, 80);
    const int x = Roll(0, 3), y = Roll(0, 4);
    clear_to_color(expected.get(), 15);
    const int left = 3 - 10 * x;
    int top = 3 - 10 * y;
    textout_ex(expected.get(), font, "Board / Object List", left, top, 255, -1);
    Ids rows;
    Rows(0, rows);
    std::int32_t seen = -1;
    for (std::int32_t id : rows) {
        const Plain& node = At(id);
        int depth = 0;
        for (std::int32_t up = node.parent; up > 0; up = At(up).parent) ++depth;
        const bool selected = id == world->currentObject, board = node.parent == 0;
        std::string text = node.hidden ? "[" + node.name + "]" : node.name;
        if (id == world->currentBoard && board) text += " *";
        if (selected)
            text += std::string(board ? "" : " :") + " z = " + std::to_string(node.is[kPosZ]);
        if (board) text = "-- " + text + " " + std::string(60, '-');
        top += 10;
        textout_ex(expected.get(), font, text.c_str(), left + 10 * depth, top,
                   selected || board ? 15 : 255,
                   selected ? 0
                   : board  ? 1
                            : -1);
        if (selected && top > -10 && top < 80) seen = id;
    }
    const Dobject* shown = world->DrawTreeList(x, y, list.get());
    EXPECT_EQ(shown ? shown->id : -1, seen);
    for (int i = 0; i < 150 * 80; ++i)
        ASSERT_EQ(getpixel(list.get(), i % 150, i / 150),
                  getpixel(expected.get(), i % 150, i / 150))
            << i % 150 << ", " << i / 150;
}

// Every node by its handle; one of them by its pixels, too.
void Walk::Compare() {
    const std::int32_t drawn = AnyId();
    for (const auto& [id, node] : model) {
        const Handle h = Open(id);
        SCOPED_TRACE("node " + std::to_string(id) + " " + node.name);
        ASSERT_EQ(world->GetId(h), id);
        ASSERT_EQ(world->GetName(h), node.name);
        ASSERT_EQ(world->GetScript(h), node.script);
        for (int i = -1; i < 10; ++i)
            ASSERT_EQ(world->GetProperty(h, i),
                      i < 0 || i > 8 ? 0 : node.is[static_cast<std::size_t>(i)])
                << "property " << i;
        ASSERT_EQ(world->IsExpanded(h), node.realW != 0);
        ASSERT_EQ(world->IsHidden(h), node.hidden);
        Dobject& real = *world->Node(h);
        ASSERT_EQ(real.tiles, node.tiles);
        Ids children;
        for (const auto& child : real.children) children.push_back(child->id);
        ASSERT_EQ(children, node.children);
        const Handle up = world->GetParent(h);
        ASSERT_EQ(up, id ? Take(node.parent) : -1);
        Close(up);
        int x = 3, y = -2;
        world->LocalToWorld(h, x, y);
        ASSERT_EQ(std::pair(x, y), std::pair(3 + Origin(id, 0), Origin(id, 1) - 2));
        world->WorldToLocal(h, x, y);
        ASSERT_EQ(std::pair(x, y), std::pair(3 + node.is[kViewX], node.is[kViewY] - 2));
        const Handle inside = world->GetHandleById(h, drawn);
        ASSERT_EQ(inside, Within(drawn, id) ? Take(drawn) : -1);
        Close(inside);
        for (int i = 0; id == drawn && i < static_cast<int>(node.tiles.size()) * 64; ++i) {
            const int px = i % (8 * node.is[kWidth]), py = i / (8 * node.is[kWidth]);
            int chr, fg, bg, attrib;
            ASSERT_EQ(world->GetTile(h, px / 8, py / 8, chr, fg, bg, attrib), 1);
            const int glyph = world->GetFont()->GetGlyphPixel(chr, px % 8, py % 8);
            ASSERT_EQ(getpixel(real.Surface(), px, py), fg == -2 ? glyph : (glyph ? fg : bg) & 255)
                << px << ", " << py;
        }
        Close(h);
    }
    for (std::int32_t id = 1; id <= lastId + 1; ++id)
        ASSERT_TRUE(model.count(id) || world->GetHandleById(kRootHandle, id) == kNoHandle) << id;
    for (Handle h = 1; h < 40; ++h)
        ASSERT_EQ(world->GetId(h), slots[h].first ? slots[h].second : -1) << "handle " << h;
}

}  // namespace

TEST_F(Walk, GoesAsItsModelDoes) {
    const unsigned seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    random.seed(seed);
    Add(world->NewBoard(), 0, "NewBoard", 80, 60, 0, true);
    lastId = 1;
    const HandleGuard board(world->GetCurrentBoard());
    world->SetProperty(board, kWidth, 0);
    world->SetProperty(board, kWidth, 6);
    world->SetProperty(board, kHeight, 5);
    Resize(At(1), 0, 5);
    Resize(At(1), 6, 5);
    kept.push_back(board);
    slots[board] = {1, 1};
    for (int step = 0; step < 4000 && !HasFailure(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        ASSERT_NO_FATAL_FAILURE(Step());
        ASSERT_NO_FATAL_FAILURE(Compare());
    }
}
