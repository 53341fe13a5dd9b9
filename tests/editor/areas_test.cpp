// Every entry of the two area menus beside a plain reading of its own path: what it selects and
// what it does with that.

#include "editor/tools/fade_fills.h"
#include "editor/view/area_commands.h"
#include "editor/view/brush.h"
#include "editor/view/quilt_view.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "editor/view/tool_menus.h"
#include "tests/support/test_world.h"

#include <cmath>
#include <cstdlib>
#include <list>
#include <map>
#include <random>

using platform::Menu;
using platform::MenuItem;
using platform::Point;

namespace {

// The first and the last are beyond a byte.
constexpr FadeTiles kSet{256, 1, 2, 3, 300};
constexpr Dtile kHole{65535, 65535, 65535, 65535};

struct Entry {
    std::string path;  // such as "Flood Fade Distance", without "&"
    int command;
};

void AddEntries(const Menu& menu, const std::string& above, std::vector<Entry>& entries) {
    for (const MenuItem& item : menu) {
        std::string text = item.text;
        std::erase(text, '&');
        if (item.kind == MenuItem::Kind::Entry) entries.push_back({above + text, item.command});
        AddEntries(item.items, above + text + " ", entries);
    }
}

class Areas : public WorldTest, public ViewHost {
protected:
    Areas() {
        ResetBrushes();
        ClearTileClip();
        AddEntries(MakeToolMenu(), "", entries);
        AddEntries(MakePrimMenu(), "Prim ", entries);
    }
    int Roll(int low, int high) {
        return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
    }
    void MakeBoard(int w, int h) {
        world->ReleaseHandle(handle);
        world->Root().EraseAll();
        board = &AddNode(world->Root(), "board", w, h);
        world->currentObject = board->id;
        handle = HandleOf(*board);
        board->posx = Roll(-2, 2);
        board->viewy = Roll(0, 2);
        for (Dtile& tile : board->tiles) {
            tile = {static_cast<std::uint16_t>(Roll(0, 1)), 1, 2, 3};
            std::uint16_t* fields[] = {&tile.fg, &tile.bg, &tile.attrib};
            if (Roll(0, 9) == 0) *fields[Roll(0, 2)] = static_cast<std::uint16_t>(Roll(-1, 1));
        }
        board->RedrawTiles();
    }
    Point Local(Point at) const { return {at.x - board->posx, at.y + board->viewy}; }
    bool Has(int x, int y) const {
        return x >= box[0] && y >= box[1] && x < box[0] + box[2] && y < box[1] + box[3] &&
               board->GetTile(x, y) && mask[Index(x, y)];
    }
    std::size_t Index(int x, int y) const { return static_cast<std::size_t>(y * board->width + x); }
    template <typename Use>
    void Each(Use use) {
        for (int y = box[1]; y < box[1] + box[3]; ++y)
            for (int x = box[0]; x < box[0] + box[2]; ++x)
                if (Has(x, y)) use(x, y);
    }
    void Write(int x, int y, int chr, int fg, int bg, int attrib) {
        Dtile& tile = tiles[Index(x, y)];
        done[Index(x, y)] = true;
        if (chr != -1) tile.chr = static_cast<std::uint16_t>(chr);
        if (fg != -1) tile.fg = static_cast<std::uint16_t>(fg);
        if (bg != -1) tile.bg = static_cast<std::uint16_t>(bg);
        if (attrib != -1) tile.attrib = static_cast<std::uint16_t>(attrib);
    }
    void Write(int x, int y, int chr) { Write(x, y, chr, brush.fg, brush.bg, brush.attrib); }

    // --- plain readings, drawing from the generator in the same order ---
    void Select(const std::string& path, Point cursor, Point anchor);
    void Act(const std::string& path, Point cursor, Point anchor);
    void Distance();
    void Normal();
    void Slime();
    void Speckle();
    void Blend(Point cursor, Point anchor);

    // --- ViewHost ---
    void RedrawTree() override {}
    void RedrawPropViewer() override {}
    void RedrawBrushPreview() override { told += "p"; }
    void ShowBrushMode() override {}
    bool EditBrush() override { return false; }
    void EditName() override { told += "n"; }
    void RedrawAll() override { told += "r"; }
    bool RunAreaDialog(AreaDialog dialog) override {
        if (dialog == AreaDialog::Filter) vBrush = Filtered(vBrush);
        if (dialog == AreaDialog::Fade) NormalFade(handle, cells, reach, kSet);
        if (dialog == AreaDialog::Distance) DistanceFade(handle, px, py, reach, kSet);
        if (dialog == AreaDialog::Slime) SlimeFade(handle, reach, kSet);
        if (dialog == AreaDialog::Speckle) SpeckleFill(handle, part);
        return dialog != AreaDialog::Filter || accepts;
    }
    Brush Filtered(Brush from) const {
        std::int32_t* fields[] = {&from.chr, &from.fg, &from.bg, &from.attrib};
        for (int i = 0; i < 4; ++i)
            if (filter >> i & 1) *fields[i] = -1;
        return from;
    }

    std::mt19937 random{3};
    std::vector<Entry> entries;
    Dobject* board = nullptr;
    Handle handle = kNoHandle;
    // What the dialogs choose.
    FadeCells cells{};
    int reach = 0, px = 0, py = 0, part = 0, filter = 0;
    bool accepts = true;
    std::string told;
    // What the plain readings select and make.
    std::vector<int> mask;
    int box[4] = {};
    Point centre;
    Brush brush;
    std::vector<Dtile> tiles, undo, clip;
    int clipW = 0, clipH = 0;
    std::vector<bool> done;
    std::string tells;
};

void Areas::Select(const std::string& path, Point cursor, Point anchor) {
    const Point c = Local(cursor), a = Local(anchor);
    mask.assign(board->tiles.size(), 0);
    const auto has = [&](const char* word) { return path.find(word) != path.npos; };
    centre = c;
    if (path.starts_with("Prim") && !has("Blend")) {
        // The shapes have a table of their own.
        (has("Line")   ? SelectLine
         : has("Rect") ? SelectRectOutline
                       : SelectEllipse)(handle, cursor, anchor);
        std::copy_n(vMask.begin(), mask.size(), mask.begin());
        std::copy_n(std::array{vRegionX, vRegionY, vRegionW, vRegionH}.begin(), 4, box);
        centre = {box[0] + box[2] / 2, box[1] + box[3] / 2};
    } else if (has("Flood") || has("SameAs")) {
        const Dtile* like = board->GetTile(c.x, c.y);
        const auto alike = [&](int x, int y) {
            const Dtile* tile = board->GetTile(x, y);
            return tile && like && *tile == *like;
        };
        int low[2] = {c.x, c.y}, high[2] = {c.x, c.y};
        std::vector<Point> list{c};
        for (; has("Flood") && !list.empty();) {
            const Point at = list.back();
            list.pop_back();
            if (!alike(at.x, at.y) || mask[Index(at.x, at.y)]) continue;
            mask[Index(at.x, at.y)] = 1;
            low[0] = std::min(low[0], at.x), low[1] = std::min(low[1], at.y);
            high[0] = std::max(high[0], at.x), high[1] = std::max(high[1], at.y);
            for (Point to : {Point{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
                list.push_back({at.x + to.x, at.y + to.y});
        }
        for (int i = 0; i < 4; ++i) box[i] = i < 2 ? low[i] : high[i - 2] - low[i - 2] + 1;
        if (has("Flood")) return;
        box[0] = box[1] = 0, box[2] = board->width, box[3] = board->height;
        for (int y = 0; y < board->height; ++y)
            for (int x = 0; x < board->width; ++x) mask[Index(x, y)] = alike(x, y);
    } else {
        const auto cut = [](int at, int size) { return std::clamp(at, 0, size - 1); };
        const int x[] = {cut(c.x, board->width), cut(a.x, board->width)};
        const int y[] = {cut(c.y, board->height), cut(a.y, board->height)};
        box[0] = std::min(x[0], x[1]), box[1] = std::min(y[0], y[1]);
        box[2] = std::abs(x[0] - x[1]) + 1, box[3] = std::abs(y[0] - y[1]) + 1;
        std::fill(mask.begin(), mask.end(), 1);
        centre = {box[0] + box[2] / 2, box[1] + box[3] / 2};
    }
}

void Areas::Distance() {
    const volatile float xm = static_cast<float>(px * 0.01), ym = static_cast<float>(py * 0.01);
    Each([&](int x, int y) {
        const double ax = std::floor(std::abs(centre.x - x) * static_cast<double>(xm));
        const double ay = std::floor(std::abs(centre.y - y) * static_cast<double>(ym));
        const int r = std::rand() % (reach + 1);
        const int i = (r + static_cast<int>(std::floor(std::hypot(ax, ay) + 1e-9))) % 8;
        Write(x, y, kSet[static_cast<std::size_t>(i <= 4 ? i : 8 - i)]);
    });
}

void Areas::Normal() {
    std::map<std::pair<int, int>, int> area;
    for (int v = 0; v < box[3]; ++v)
        for (int u = 0; u < box[2]; ++u) {
            const int cell =
                cells[static_cast<std::size_t>(v * 10 / box[3] * 10 + u * 10 / box[2])];
            area[{v, u}] = kSet[static_cast<std::size_t>(cell)] & 255;
        }
    auto shaken = area;
    for (const auto& [place, glyph] : area) {
        if (reach == 0) continue;
        int by[2];
        for (int& axis : by) {
            const bool forward = std::rand() % 101 < 50;
            axis = std::rand() % reach * (forward ? 1 : -1);
        }
        const auto target = shaken.find({place.first + by[1], place.second + by[0]});
        if (target != shaken.end()) target->second = glyph;
    }
    Each([&](int x, int y) { Write(x, y, shaken[{y - box[1], x - box[0]}]); });
}

// The list as it is told: grown at its front while a sweep walks to its end.
void Areas::Slime() {
    const int positions[] = {1, 3, 3, 4, 3, 2, 1, 0, 1, 2, 3, 4, 3, 2, 1};
    std::list<Point> list{centre};
    int glyph = 0, phase = 3, count = 0, span = 3;
    const auto open = [&](int x, int y) { return Has(x, y) && !done[Index(x, y)]; };
    while (!list.empty()) {
        for (auto node = list.begin(); node != list.end();) {
            const int r = std::rand() % (reach + 1);
            const int k = static_cast<int>(r * (static_cast<double>(count) / (span + 1)) + phase);
            if (k <= 14) glyph = kSet[static_cast<std::size_t>(positions[k])];
            const auto [x, y] = *node;
            if (open(x, y)) {
                Write(x, y, glyph);
                for (Point p : {Point{x, y - 1}, {x, y + 1}, {x - 1, y}, {x + 1, y}})
                    if (open(p.x, p.y)) list.push_front(p);
            }
            node = list.erase(node);
            if (++count != span) continue;
            span = 3 * static_cast<int>(list.size());
            phase = (phase + 1) % 8;
            count = 0;
        }
    }
}

void Areas::Speckle() {
    Each([&](int x, int y) {
        if (std::rand() % 101 <= part) Write(x, y, brush.chr);
    });
}

// From the low colour at the cursor to the high one at the anchor, in whole tiles of the way.
void Areas::Blend(Point cursor, Point anchor) {
    const double dx = cursor.x - anchor.x, dy = cursor.y - anchor.y;
    const int length = static_cast<int>(std::hypot(dx, dy) + 1e-9);
    const auto [low, high] = std::minmax(brush.fg, brush.bg);
    std::vector<float> ramp{static_cast<float>(low)};
    for (int i = 1; i < length; ++i)
        ramp.push_back(ramp.back() +
                       static_cast<float>(high - low) / static_cast<float>(length - 1));
    Each([&](int x, int y) {
        if (length == 0) return;
        const double way =
            (dx * (Local(cursor).x - x) + dy * (Local(cursor).y - y)) / std::hypot(dx, dy);
        const int i = std::clamp(static_cast<int>(way), 0, length - 1);
        Write(x, y, 219, static_cast<int>(ramp[static_cast<std::size_t>(i)]) & 255, 255,
              brush.attrib);
    });
}

void Areas::Act(const std::string& path, Point cursor, Point anchor) {
    const auto has = [&](const char* word) { return path.find(word) != path.npos; };
    tiles = board->tiles;
    done.assign(tiles.size(), false);
    if (has("Zoom") || has("Ruler") || has("Cancel")) return;
    Select(path, cursor, anchor);
    const Brush before = brush;
    const bool filters = has("Replace") || has("Copy");
    if (filters) brush = Filtered(brush);
    const int* b = box;
    if (has("Make Object")) {
        tells = "rnr";
    } else if (filters && !accepts) {
    } else if (has("Copy")) {
        clipW = b[2], clipH = b[3];
        clip.assign(static_cast<std::size_t>(b[2] * b[3]), kHole);
        Each([&](int x, int y) {
            Dtile& to = clip[static_cast<std::size_t>((y - b[1]) * clipW + x - b[0])];
            const Dtile& from = tiles[Index(x, y)];
            to = {brush.chr == -1 ? to.chr : from.chr, brush.fg == -1 ? to.fg : from.fg,
                  brush.bg == -1 ? to.bg : from.bg, brush.attrib == -1 ? to.attrib : from.attrib};
            done[Index(x, y)] = true;
        });
    } else if (has("Sprite")) {
        undo = tiles;
        tells = "p";
        Each([&](int x, int y) {
            const int glyph = before.chr + (y - b[1]) * 16 + x - b[0];
            done[Index(x, y)] = true;
            if (glyph >= 256) return;
            int holes = 0;
            for (int i = 0; i < 64; ++i)
                holes += world->GetFont()->GetGlyphPixel(glyph, i % 8, i / 8) == 0;
            brush = {before.chr, -2, holes == 0, before.attrib};
            Write(x, y, glyph);
        });
        return;
    } else if (has("Paste")) {
        if (clip.empty()) return;
        undo = tiles;
        Each([&](int x, int y) {
            const int i = (y - b[1]) % clipH * clipW + (x - b[0]) % clipW;
            const Dtile& cell = clip[static_cast<std::size_t>(i)];
            done[Index(x, y)] = true;
            if (vTileClipSkip && cell == Dtile{}) return;
            Write(x, y, Signed(cell.chr), Signed(cell.fg), Signed(cell.bg), Signed(cell.attrib));
        });
    } else if (has("Blend")) {
        undo = tiles;
        Blend(cursor, anchor);
    } else if (has("Distance")) {
        Distance();
    } else if (has("Normal")) {
        Normal();
    } else if (has("Slime")) {
        Slime();
    } else if (has("Speckle")) {
        Speckle();
    } else {
        undo = tiles;
        Each([&](int x, int y) { Write(x, y, brush.chr); });
    }
    brush = before;
}

}  // namespace

TEST_F(Areas, EntriesDoWhatTheirPathsSay) {
    for (int i = 0; i < 64; ++i) world->GetFont()->PutGlyphPixel(255, i % 8, i / 8, 7);
    for (int run = 0; run < 1500; ++run) {
        const Entry& entry = entries[static_cast<std::size_t>(run) % entries.size()];
        SCOPED_TRACE(std::to_string(run) + ": " + entry.path);
        MakeBoard(Roll(1, 30), Roll(1, 30));
        const auto place = [&] {
            return Point{Roll(-1, board->width) + board->posx,
                         Roll(-1, board->height) - board->viewy};
        };
        Point cursor = place();
        const Point anchor = Roll(0, 9) ? place() : cursor;
        for (auto& cell : cells) cell = Roll(0, 4);
        reach = Roll(0, 15), px = Roll(10, 400), py = Roll(10, 400), part = Roll(0, 99);
        filter = Roll(0, 15), accepts = Roll(0, 4) > 0;
        vTileClipSkip = Roll(0, 1);
        brush =
            vBrush = {Roll(0, 1) ? Roll(0, 255) : 250, Roll(-2, 255), Roll(-1, 255), Roll(-1, 3)};
        undo.clear();
        told = tells = "";
        // Paste finds what the last Copy left, or a clipboard with empty tiles, or none.
        if (Roll(0, 3) == 0) {
            clip = vTileClip = {Dtile{}, kHole, {5, 6, 7, 8}};
            clipW = vTileClipW = 3, clipH = vTileClipH = 1;
        } else if (Roll(0, 9) == 0) {
            clip.clear(), clipW = clipH = 0;
            ClearTileClip();
        }
        std::srand(static_cast<unsigned>(run));
        Act(entry.path, cursor, anchor);
        const int drawn = std::rand();
        std::srand(static_cast<unsigned>(run));
        const bool known = RunAreaCommand(entry.command, cursor, anchor, *this);
        ASSERT_EQ(std::rand(), drawn) << "as many draws";
        const auto has = [&](const char* word) { return entry.path.find(word) != entry.path.npos; };
        ASSERT_EQ(known, !has("Zoom") && !has("Ruler") && !has("Cancel"));
        ASSERT_EQ(board->tiles, tiles);
        ASSERT_EQ(board->undoTiles, undo);
        ASSERT_EQ(vBrush, brush);
        ASSERT_EQ(vTileClip, clip);
        ASSERT_EQ((Point{vTileClipW, vTileClipH}), (Point{clipW, clipH}));
        ASSERT_EQ(told, tells);
        const bool makes = entry.path == "Make Object";
        for (std::size_t i = 0; i < done.size() && known && !makes; ++i)
            ASSERT_EQ(vMask[i] == kDone, done[i]) << i;
        ASSERT_EQ(board->children.size(), makes);
        if (!makes) continue;
        const Dobject& made = *board->children.front();
        ASSERT_EQ(world->currentObject, made.id);
        ASSERT_EQ((Point{made.width, made.height}), (Point{box[2], box[3]}));
        for (int y = 0; y < box[3]; ++y)
            for (int x = 0; x < box[2]; ++x)
                ASSERT_EQ(made.tiles[static_cast<std::size_t>(y * box[2] + x)],
                          tiles[Index(x + box[0], y + box[1])]);
        ASSERT_EQ(getpixel(made.vSurf.get(), 0, 0),
                  getpixel(board->vSurf.get(), 8 * box[0], 8 * box[1]));
    }
}

TEST_F(Areas, ShapesAreOutlinesCutAtTheBox) {
    using Shape = void (*)(Handle, Point, Point);
    const Shape line = SelectLine, outline = SelectRectOutline, ellipse = SelectEllipse;
    const struct {
        Shape select;
        Point cursor, anchor;
        const char* mask;
    } cases[] = {
        {line, {2, 3}, {2, 3}, "......../......../......../..x...../......../......../"},
        {line, {6, 1}, {9, 2}, "......../......xx/......../......../......../......../"},
        {line, {-2, 0}, {5, 2}, "......../xxxx..../....xx../......../......../......../"},
        {outline, {5, 1}, {1, 4}, "......../.xxxxx../.x...x../.x...x../.xxxxx../......../"},
        {outline, {-3, -3}, {2, 2}, "..x...../..x...../xxx...../......../......../......../"},
        {ellipse, {0, 0}, {3, 3}, "...x..../...x..../...x..../xxx...../......../......../"},
        {ellipse, {5, 2}, {99, 99}, "......../......../.....x.x/.....x.x/.....x.x/......x./"},
        {ellipse, {0, 0}, {6, 5}, ".x...x../x.....x./x.....x./x.....x./.x...x../..xxx.../"},
    };
    MakeBoard(8, 6);
    board->posx = board->viewy = 0;
    for (const auto& c : cases) {
        c.select(handle, c.cursor, c.anchor);
        std::string shown;
        for (int i = 0; i < 48; ++i) {
            shown += ".x"[vMask[static_cast<std::size_t>(i)]];
            if (i % 8 == 7) shown += '/';
        }
        EXPECT_EQ(shown, c.mask) << c.cursor.x << "," << c.cursor.y;
    }
    // A mask of a grid that has shrunk since: what is gone is left out.
    SelectRect(handle, {0, 0}, {7, 5});
    board->Resize(3, 2);
    RunAreaDialog(AreaDialog::Speckle);
    EXPECT_EQ(board->tiles.size(), 6u);
}

TEST_F(Areas, NodesWithoutCellsStayAsTheyAre) {
    MakeBoard(3, 3);
    const Dobject& empty = AddNode(*board, "empty", 0, 0);
    const Dobject& narrow = AddNode(*board, "narrow", 0, 5);
    for (const int id : {empty.id, narrow.id, 0, 99999}) {
        world->currentObject = id;
        const HandleGuard own(world->GetCurrentObject());
        handle = own;
        for (const Entry& entry : entries) {
            RunAreaCommand(entry.command, {0, 0}, {3, 3}, *this);
            ASSERT_EQ(world->currentObject, id) << entry.path;
            ASSERT_GE(std::min(vRegionW, vRegionH), 1) << entry.path;
        }
    }
    EXPECT_EQ(board->children.size(), 2u);
    EXPECT_TRUE(empty.tiles.empty() && narrow.children.empty());
}
