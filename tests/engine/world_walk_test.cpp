// The world through its handles: a random walk of all operations beside a plain model.

#include "engine/copy_object.h"
#include "tests/support/test_world.h"

#include <list>
#include <map>

namespace {

struct Plain {
    std::int32_t id = 0;
    std::string name, script;
    std::array<std::int32_t, 9> is{};  ///< by Property
    std::int32_t realW = 0, realH = 0, hidden = 0;
    std::vector<Dtile> tiles, undo;
    Plain* parent = nullptr;
    std::list<Plain> children;

    bool IsBoard() const { return parent && !parent->parent; }
    bool Within(const Plain& top) const { return this == &top || (parent && parent->Within(top)); }
    // The world tile of the viewport's corner, along the axis of kPosX or kPosY.
    int Origin(std::size_t axis) const {
        const bool inside = parent && parent->parent;
        return is[axis] + (inside ? parent->Origin(axis) - parent->is[kViewX + axis] : 0);
    }
    void Resize(int w, int h) {
        const std::vector<Dtile> old = std::exchange(tiles, {});
        for (int y = 0; y < h; ++y)
            for (int x = 0; x < w; ++x)
                tiles.push_back(x < is[kWidth] && y < is[kHeight]
                                    ? old[std::size_t(y * is[kWidth] + x)]
                                    : Dtile{0, 255, 255, 0});
        is[kWidth] = std::max(w, 0);
        is[kHeight] = std::max(h, 0);
        is[kViewW] = std::min(is[kViewW], is[kWidth]);
        is[kViewH] = std::min(is[kViewH], is[kHeight]);
    }
    void Expand() {
        if (realW) return;
        realW = std::exchange(is[kViewW], is[kWidth]);
        realH = std::exchange(is[kViewH], is[kHeight]);
        is[kViewX] = is[kViewY] = 0;
    }
};

// A node with all below it, parents first.
std::vector<Plain*> Tree(Plain& top) {
    std::vector<Plain*> all{&top};
    for (Plain& child : top.children)
        for (Plain* each : Tree(child)) all.push_back(each);
    return all;
}

std::list<Plain> Taken(const Plain& node) {
    std::list<Plain> one, &all = node.parent->children;
    one.splice(one.end(), all, std::find_if(all.begin(), all.end(), [&](const Plain& each) {
                   return &each == &node;
               }));
    return one;
}

Plain& Put(Plain& parent, std::list<Plain> one, bool ascending) {
    Plain& node = one.front();
    const int way = ascending ? 1 : -1, z = node.is[kPosZ];
    node.parent = &parent;
    const auto behind = std::find_if(parent.children.begin(), parent.children.end(),
                                     [&](const Plain& e) { return way * e.is[kPosZ] > way * z; });
    parent.children.splice(behind, one);
    return node;
}

struct Walk : WorldTest {
    Walk() { root.name = "world_tree"; }

    Plain& Any(bool orRoot = false) {
        const std::vector<Plain*> all = Tree(root);
        return *all[std::size_t(Roll(!orRoot, int(all.size()) - 1))];
    }
    Plain& Make(Plain& parent, const std::string& name, int w, int h, int z, bool ascending) {
        Plain& node = Put(parent, std::list<Plain>(1), ascending);
        node.id = ++lastId;
        node.name = name;
        node.is[kPosZ] = z;
        node.Resize(w, h);
        node.is[kViewW] = node.is[kWidth];
        node.is[kViewH] = node.is[kHeight];
        node.tiles.assign(node.tiles.size(), {});
        return Put(parent, Taken(node), ascending);
    }
    // What a copy has for itself.
    void Renew(Plain& node) {
        node.id = ++lastId;
        node.undo.clear();
        node.realW = node.realH = node.hidden = 0;
        for (Plain& child : node.children) {
            child.parent = &node;
            Renew(child);
        }
        // Each gets its id in its turn, and then its place.
        node.children.sort([](auto& a, auto& b) { return a.is[kPosZ] > b.is[kPosZ]; });
    }
    // Count and id of a handle's holder: the lowest slot that is free or the node's own is taken.
    Handle Take(const Plain* node) {
        Handle h = 0;
        while (node && slots[h].first > 0 && slots[h].second != node->id) ++h;
        if (node) slots[h] = {slots[h].first + 1, node->id};
        return node ? h : kNoHandle;
    }
    Handle Open(const Plain& node) {
        const Handle h = world->GetHandleById(kRootHandle, node.id);
        EXPECT_EQ(h, Take(&node));
        return h;
    }
    void Close(Handle h) {
        world->ReleaseHandle(h);
        if (h > 0) --slots[h].first;
    }

    void Step();
    void Query();
    void PaintList();
    void Compare();

    Plain root;
    std::map<Handle, std::pair<int, std::int32_t>> slots{{kRootHandle, {1, 0}}};
    std::vector<Handle> kept;
    std::vector<std::pair<int, std::vector<Handle>>> lists;
    std::int32_t lastId = 0, object = 0, board = 0;
};

void Walk::Step() {
    constexpr const char* kNames[] = {"a", "b", "two", "a", "b", "world_tree", ""};
    const std::string name = kNames[Roll(0, 6)];
    Plain &node = Any(), &other = Any(true);
    const Handle h = Open(node), under = Open(other);
    const int small = Roll(-2, 6), w = node.is[kWidth], height = node.is[kHeight];
    const bool room = Tree(root).size() < 14;
    constexpr int kModes[][3] = {{40, 30, 240}, {80, 60, 480}, {100, 75, 592}, {128, 96, 768}};
    world->videoMode = Roll(-1, 4);
    const int known = world->videoMode < 0 || world->videoMode > 3 ? 1 : world->videoMode;
    const auto& [modeW, modeH, parking] = kModes[known];
    switch (Roll(0, 18)) {
        case 0:
            if (room) {
                const int z = Roll(-2, 2);
                const Handle own = world->SpawnObject(under, name, small, 3, z);
                EXPECT_EQ(own, Take(&Make(other, name, small, 3, z, false)));
                Close(own);
            }
            break;
        case 1: {
            EXPECT_EQ(world->NewBoard(), lastId + 1);
            Plain& made = Make(root, "NewBoard", modeW, modeH, 0, true);
            for (int i = 0; i < modeW * modeH; ++i) {
                const int x = i % modeW, y = i / modeW;
                const bool edge = x == 0 || y == 0 || x == modeW - 1 || y == modeH - 1;
                made.tiles[std::size_t(i)] = edge ? Dtile{176, 16, 32, 1} : Dtile{0, 255, 255, 0};
            }
            object = board = made.id;
            const VideoMode& real = GetVideoMode(world->videoMode);
            EXPECT_EQ(std::pair(real.screenW, real.screenH), std::pair(modeW * 8, modeH * 8));
            const Handle fresh = Open(made);
            EXPECT_EQ(world->Node(fresh)->tiles, made.tiles);
            EXPECT_NE(Pixels(world->Node(fresh)->vSurf.get()).find('\x20'), std::string::npos);
            world->SetProperty(fresh, kWidth, 5);
            world->SetProperty(fresh, kHeight, 4);
            made.Resize(5, 4);
            Close(fresh);
            break;
        }
        case 2: {
            Close(under);
            int open = 0;
            for (const Plain* each : Tree(node))
                for (const auto& [slot, held] : slots)
                    if (held.second == each->id) open += held.first;
            // What is open must not go. A board alone stays, and so does everything with it.
            if (open > 1) return Close(h);
            world->EraseObject(h);
            if (root.children.size() < 2) return Close(h);
            slots[h].first = 0;
            Taken(node);
            return;
        }
        case 3:
            world->MoveObject(h, under);
            if (!other.Within(node)) Put(other, Taken(node), false);
            break;
        case 4:
        case 5:
        case 6: {
            const int index = Roll(-1, 9), value = index == kPosZ ? Roll(-2, 2) : Roll(-3, 9);
            world->SetProperty(h, index, value);
            if (index == kWidth || (index == kViewW && value > w)) node.Resize(value, height);
            if (index == kHeight || (index == kViewH && value > height)) node.Resize(w, value);
            if (index == kViewW || index == kViewH) node.realW = node.realH = 0;
            if (index >= 0 && index < 9 && index != kWidth && index != kHeight)
                node.is[std::size_t(index)] = value;
            if (index == kPosZ) Put(*node.parent, Taken(node), node.parent->name == root.name);
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
                constexpr int kInk[] = {0, 1, 15, 255, 256, 300, -1, -2};
                const int x = Roll(-1, 6), y = Roll(-1, 5);
                const int put[] = {Roll(-1, 300), kInk[Roll(0, 7)], kInk[Roll(0, 6)], Roll(-1, 3)};
                world->SetTile(h, x, y, put[0], put[1], put[2], put[3]);
                if (x < 0 || y < 0 || x >= w || y >= height) continue;
                Dtile& tile = node.tiles[std::size_t(y * w + x)];
                std::uint16_t* fields[] = {&tile.chr, &tile.fg, &tile.bg, &tile.attrib};
                for (int f = 0; f < 4; ++f)
                    if (put[f] != -1) *fields[f] = std::uint16_t(put[f]);
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
                node.Expand();
            } else if (node.realW) {
                node.is[kViewW] = std::exchange(node.realW, 0);
                node.is[kViewH] = std::exchange(node.realH, 0);
            }
            if (Roll(0, 3)) break;
            world->ExpandAll(h);
            for (Plain* each : Tree(node)) each->Expand();
            break;
        }
        case 13: {
            if (!room) break;
            object = world->NewObject(h, small, 7);
            Plain& made = Make(node, "NewObject" + std::to_string(object), 1, 1, 0, false);
            made.tiles[0] = {1, 15, 1, 1};
            made.is[kPosX] = small;
            made.is[kPosY] = 7;
            break;
        }
        case 14: {
            world->SetCurrentObject(h);
            object = node.id;
            const std::vector<Plain*> all = Tree(root);
            const int scroll = Roll(0, 3) * 10, y = Roll(0, 10 * int(all.size()) + 20);
            world->ClickTreeList(scroll, y);
            // Behind the title; of the ten pixels of a row seven hit.
            const auto at = std::size_t(std::max(y + scroll - 3, 0));
            if (at < 10 || at / 10 >= all.size() || at % 10 < 1 || at % 10 > 7) break;
            const Plain* shown = all[at / 10];
            object = shown->id;
            while (shown->parent->name != root.name) shown = shown->parent;
            board = shown->id;
            for (Plain& each : root.children) {
                if (each.id == board) each.is[kPosX] = 0;
                each.is[kPosY] = each.id == board ? 0 : parking;
            }
            break;
        }
        case 15: {
            const int y = Roll(-9, 9);
            world->MoveTo(h, small, y);
            node.is[kPosX] = small - node.parent->Origin(kPosX) + node.parent->is[kViewX];
            node.is[kPosY] = y - node.parent->Origin(kPosY) + node.parent->is[kViewY];
            break;
        }
        case 16: {
            if (!room) break;
            const Dobject& source = *world->Node(h);
            EXPECT_EQ(CopyObject(*source.parent, source)->id, lastId + 1);
            Renew(Put(*node.parent, {node}, node.parent == &root));
            break;
        }
        case 17:
            kept.push_back(Open(other));
            break;
        default:
            Query();
            PaintList();
            if (kept.empty()) break;
            Close(kept.back());
            kept.pop_back();
            break;
    }
    Close(under);
    Close(h);
}

// A list by a selector or by a place, against the plain reading of the same.
void Walk::Query() {
    Plain& from = Any(true);
    const Handle h = Open(from);
    std::vector<Plain*> found;
    int list;
    if (Roll(0, 2) == 0) {
        const int x = Roll(-4, 9), y = Roll(-4, 9);
        for (Plain* node : Tree(from)) {
            const int left = x - node->Origin(kPosX), top = y - node->Origin(kPosY);
            if (left >= 0 && left < node->is[kViewW] && top >= 0 && top < node->is[kViewH])
                found.push_back(node);
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
        const bool here = !words.empty() && (self || words[0] == "parent" || words[0] == "inside");
        found = {here ? &from : from.parent};
        for (std::size_t i = self; i < words.size(); ++i) {
            const std::vector<Plain*> last = std::exchange(found, {});
            for (Plain* node : last) {
                if (words[i] == "top") found.push_back(&root);
                if (!node) continue;
                if (words[i] == "parent" && node != &root) found.push_back(node->parent);
                for (Plain& child : node->children)
                    if (words[i] == "all" || child.name == words[i] ||
                        (words[i] == "t wo" && child.name == "two"))
                        found.push_back(&child);
            }
        }
        std::erase(found, nullptr);
        list = world->StartHandleList(h, selector.c_str());
    }
    std::vector<Handle> handles;
    for (const Plain* node : found) handles.push_back(Take(node));
    EXPECT_EQ(world->CountHandles(list), int(handles.size()));
    for (int round = 0; round < 2; ++round) {
        for (Handle expected : handles) ASSERT_EQ(world->NextHandle(list), expected);
        EXPECT_EQ(world->NextHandle(list), -1) << "after which it starts anew";
    }
    lists.emplace_back(list, handles);
    while (!lists.empty() && Roll(0, 3)) {
        world->ReleaseHandleList(lists.back().first);
        for (Handle each : lists.back().second) slots[each].first -= each > 0;
        lists.pop_back();
    }
    Close(h);
}

void Walk::PaintList() {
    const Bitmap list = MakeBitmap(150, 80), expected = MakeBitmap(150, 80);
    const int x = Roll(0, 3), y = Roll(0, 4), left = 3 - 10 * x;
    int top = 3 - 10 * y;
    clear_to_color(expected.get(), 15);
    std::int32_t seen = -1;
    for (const Plain* node : Tree(root)) {
        int depth = node == &root ? 0 : -1;
        for (const Plain* up = node->parent; up; up = up->parent) ++depth;
        const bool selected = node != &root && node->id == object;
        std::string text = node->hidden ? "[" + node->name + "]" : node->name;
        if (node == &root) text = "Board / Object List";
        if (node->id == board && node->IsBoard()) text += " *";
        if (selected)
            text += (node->IsBoard() ? " z = " : " : z = ") + std::to_string(node->is[kPosZ]);
        if (node->IsBoard()) text = "-- " + text + " " + std::string(60, '-');
        const int band = selected ? 0 : node->IsBoard() ? 1 : -1, ink = band < 0 ? 255 : 15;
        textout_ex(expected.get(), font, text.c_str(), left + 10 * depth, top, ink, band);
        if (selected && top > -10 && top < 80) seen = node->id;
        top += 10;
    }
    const Dobject* shown = world->DrawTreeList(x, y, list.get());
    EXPECT_EQ(shown ? shown->id : -1, seen);
    EXPECT_TRUE(Pixels(list.get()) == Pixels(expected.get()));
}

// Every node by its handle.
void Walk::Compare() {
    const Plain& other = Any();
    const std::vector<Plain*> all = Tree(root);
    EXPECT_EQ(world->currentObject, object);
    EXPECT_EQ(world->currentBoard, board);
    for (const Plain* node : all) {
        const Handle h = Open(*node);
        SCOPED_TRACE("node " + std::to_string(node->id) + " " + node->name);
        ASSERT_EQ(world->GetName(h), node->name);
        ASSERT_EQ(world->GetScript(h), node->script);
        for (int i = -1; i < 10; ++i)
            ASSERT_EQ(world->GetProperty(h, i), i < 0 || i > 8 ? 0 : node->is[unsigned(i)]) << i;
        ASSERT_EQ(world->IsExpanded(h), node->realW != 0);
        ASSERT_EQ(world->IsHidden(h), node->hidden);
        Dobject& real = *world->Node(h);
        ASSERT_EQ(real.tiles, node->tiles);
        ASSERT_TRUE(
            std::ranges::equal(real.children, node->children,
                               [](const auto& a, const Plain& b) { return a->id == b.id; }));
        const Handle up = world->GetParent(h), inside = world->GetHandleById(h, other.id);
        ASSERT_EQ(up, Take(node->parent));
        ASSERT_EQ(inside, Take(other.Within(*node) ? &other : nullptr));
        Close(up);
        Close(inside);
        int x = 3, y = -2;
        world->LocalToWorld(h, x, y);
        ASSERT_EQ(std::pair(x, y), std::pair(3 + node->Origin(kPosX), node->Origin(kPosY) - 2));
        world->WorldToLocal(h, x, y);
        ASSERT_EQ(std::pair(x, y), std::pair(3 + node->is[kViewX], node->is[kViewY] - 2));
        const std::string shown = Pixels(real.Surface());
        real.vSurf.reset();
        ASSERT_TRUE(shown == Pixels(real.Surface())) << "the surface shows the tiles";
        Close(h);
    }
    for (std::int32_t id = 0; id <= lastId + 1; ++id)
        ASSERT_EQ(!FindNode(id), std::none_of(all.begin() + 1, all.end(),
                                              [&](const Plain* node) { return node->id == id; }));
    for (Handle h = 0; h < 40; ++h)
        ASSERT_EQ(world->GetId(h), slots[h].first ? slots[h].second : -1) << "handle " << h;
}

}  // namespace

TEST_F(Walk, GoesAsItsModelDoes) {
    object = board = world->NewBoard();
    const HandleGuard first(world->GetCurrentBoard());
    kept.push_back(world->AddHandle(world->Node(first)));
    Plain& node = Make(root, "NewBoard", 80, 60, 0, true);
    slots[first] = {2, node.id};
    for (int size : {0, 5}) {
        world->SetProperty(first, kWidth, size);
        world->SetProperty(first, kHeight, size);
        node.Resize(size, size);
    }
    for (int step = 0; step < 4000 / PART_OF_WALK && !HasFailure(); ++step) {
        SCOPED_TRACE("step " + std::to_string(step));
        ASSERT_NO_FATAL_FAILURE(Step());
        ASSERT_NO_FATAL_FAILURE(Compare());
    }
}
