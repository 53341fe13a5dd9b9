// Every entry of the two area menus beside a plain reading of its own path: what it selects and
// what it does with that.

#include "editor/tools/fade_fills.h"
#include "editor/tools/fade_library.h"
#include "editor/view/selection.h"
#include "editor/view/tile_clip.h"
#include "editor/view/tool_menus.h"
#include "engine/random.h"
#include "tests/editor/plain_brush.h"
#include "tests/support/test_world.h"

#include <cmath>
#include <list>

using namespace platform;

namespace {

constexpr Dtile kHole{65535, 65535, 65535, 65535};

struct Areas : WorldTest, HostLog {
    Areas() {
        ResetBrushes();
        ClearTileClip();
        AddEntries(MakeToolMenu(), "");
        AddEntries(MakePrimMenu(), "Prim ");
    }
    void AddEntries(const Menu& menu, const std::string& above) {
        for (const MenuItem& item : menu) {
            std::string text = above + item.text;
            std::erase(text, '&');
            if (item.kind == MenuItem::Kind::Entry) entries.emplace_back(text, item.command);
            AddEntries(item.items, text + " ");
        }
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
            // A wide board has long runs, which are looked at by eights.
            const bool odd = (&tile - board->tiles.data()) / w % 2;
            tile = {std::uint16_t(w > 16 ? odd ^ (Roll(0, 19) == 0) : Roll(0, 1)), 1, 2, 3};
            if (Roll(0, w > 16 ? 29 : 9) == 0)
                *Fields(tile)[std::size_t(Roll(1, 3))] = std::uint16_t(Roll(-1, 1));
        }
        board->RedrawTiles();
    }
    std::size_t Index(int x, int y) const { return std::size_t(y * board->width + x); }
    template <typename Use>
    void Each(Use use) {
        for (int y = box[1]; y < box[1] + box[3]; ++y)
            for (int x = box[0]; x < box[0] + box[2]; ++x)
                if (board->GetTile(x, y) && mask[Index(x, y)]) use(x, y);
    }
    void Write(int x, int y, const Brush& brush) { Paint(tiles[Index(x, y)], brush); }
    void Write(int x, int y, int chr) { Write(x, y, {chr, vBrush.fg, vBrush.bg, vBrush.attrib}); }
    void FilterBrush() {
        for (std::size_t i = 0; i < 4; ++i)
            if (filter >> i & 1) *Fields(vBrush)[i] = -1;
    }
    void Tell(const std::string& fade, Point at) {
        told = fade + std::to_string(at.x) + "," + std::to_string(at.y);
    }
    // What the fades paint is held by the sample's sums: here they paint all that is selected.
    bool RunAreaDialog(AreaDialog dialog, TileArea& area, Brush& brush) override {
        if (dialog == AreaDialog::Filter) FilterBrush();
        if (dialog == AreaDialog::Filter) return accepts;
        SpeckleFill(handle, area, brush, dialog == AreaDialog::Speckle ? part : 100);
        if (dialog == AreaDialog::Fade) told = "Normal";
        if (dialog == AreaDialog::Distance) Tell("Distance", {area.centerX, area.centerY});
        if (dialog == AreaDialog::Slime) Tell("Slime", {area.centerX, area.centerY});
        return true;
    }

    void Box(Point c, Point a) {
        for (Point* p : {&c, &a})
            *p = {std::clamp(p->x, 0, board->width - 1), std::clamp(p->y, 0, board->height - 1)};
        box = {std::min(c.x, a.x), std::min(c.y, a.y), std::abs(a.x - c.x) + 1,
               std::abs(a.y - c.y) + 1};
    }

    // Plain readings, which draw from the generator in the same order.
    void Select(const std::string& path, Point c, Point a) {
        const auto has = [&](const char* word) { return path.find(word) != path.npos; };
        const bool flood = has("Flood"), same = has("SameAs");
        const Dtile* like = board->GetTile(c.x, c.y);
        mask.assign(board->tiles.size(), !flood && !same);
        if (path.starts_with("Prim") && !has("Blend")) {
            // The shapes have a table of their own.
            const Point back{board->posx, -board->viewy};
            auto use = has("Line") ? SelectLine : has("Rect") ? SelectRectOutline : SelectEllipse;
            use(vArea, handle, c + back, a + back);
            std::copy_n(vMask.begin(), mask.size(), mask.begin());
            box = {vArea.x, vArea.y, vArea.w, vArea.h};
        } else if (flood) {
            Point low = c, high = c;
            for (std::list<Point> list{c}; !list.empty(); list.pop_front()) {
                const auto [x, y] = list.front();
                const Dtile* tile = board->GetTile(x, y);
                if (!tile || *tile != *like || mask[Index(x, y)]) continue;
                mask[Index(x, y)] = 1;
                low = {std::min(low.x, x), std::min(low.y, y)};
                high = {std::max(high.x, x), std::max(high.y, y)};
                list.insert(list.end(), {{x + 1, y}, {x - 1, y}, {x, y + 1}, {x, y - 1}});
            }
            Box(low, high);
        } else {
            same ? Box({}, {board->width, board->height}) : Box(c, a);
            for (std::size_t i = 0; same && i < mask.size(); ++i)
                mask[i] = like && board->tiles[i] == *like;
        }
        centre = flood || same ? c : Point{box[0] + box[2] / 2, box[1] + box[3] / 2};
    }

    // From the low color at the cursor to the high one at the anchor, in whole tiles of the way.
    void Blend(Point c, Point a) {
        const int dx = a.x - c.x, dy = a.y - c.y;
        const double way = std::sqrt(dx * dx + dy * dy);
        const int last = int(way) - 1;
        const auto [low, high] = std::minmax(vBrush.fg, vBrush.bg);
        const float first = float(low);
        const float step = float(high - low) / float(last);
        Each([&](int x, int y) {
            const double along = (dx * (x - c.x) + dy * (y - c.y)) / way;
            float color = first;
            for (int i = 1; i <= last && i <= along; ++i) color += step;
            if (last >= 0) Write(x, y, {219, int(color) & 255, 255, vBrush.attrib});
        });
    }

    void Act(const std::string& path, Point c, Point a) {
        const auto has = [&](const char* word) { return path.find(word) != path.npos; };
        if (has("Zoom") || has("Ruler") || has("Cancel")) return;
        Select(path, c, a);
        const Brush before = vBrush;
        const auto& b = box;
        if (has("Replace") || has("Copy")) {
            if (!accepts) return;
            FilterBrush();
        }
        if (has("Make Object")) {
            told = "rn";
        } else if (has("Copy")) {
            clipW = b[2], clipH = b[3];
            clip.assign(std::size_t(b[2] * b[3]), kHole);
            Each([&](int x, int y) {
                Dtile& to = clip[std::size_t((y - b[1]) * clipW + x - b[0])];
                to = tiles[Index(x, y)];
                for (std::size_t i = 0; i < 4; ++i)
                    if (*Fields(vBrush)[i] == -1) *Fields(to)[i] = 65535;
            });
        } else if (has("Sprite")) {
            undo = tiles;
            Each([&](int x, int y) {
                const int glyph = before.chr + (y - b[1]) * 16 + x - b[0];
                if (glyph >= 256) return;
                int holes = 0;
                for (int i = 0; i < 64; ++i)
                    holes += world->GetFont()->GetGlyphPixel(glyph, i % 8, i / 8) == 0;
                vBrush = {before.chr, -2, holes == 0, before.attrib};
                Write(x, y, glyph);
            });
            return;
        } else if (has("Paste")) {
            if (clip.empty()) return;
            undo = tiles;
            Each([&](int x, int y) {
                const int i = (y - b[1]) % clipH * clipW + (x - b[0]) % clipW;
                const Dtile& t = clip[std::size_t(i)];
                if (vTileClipSkip && t == Dtile{}) return;
                Write(x, y, {Signed(t.chr), Signed(t.fg), Signed(t.bg), Signed(t.attrib)});
            });
        } else if (has("Blend")) {
            undo = tiles;
            Blend(c, a);
        } else {
            const bool fades = has("Fade"), asks = fades || has("Speckle");
            if (has("Normal")) told = "Normal";
            for (const char* fade : {"Distance", "Slime"})
                if (has(fade)) Tell(fade, centre);
            if (!asks) undo = tiles;
            Each([&](int x, int y) {
                if (!asks || vRandom.Next() % 101 <= (fades ? 100 : part)) Write(x, y, vBrush.chr);
            });
        }
        vBrush = before;
    }

    std::vector<std::pair<std::string, int>> entries;  // "Flood Fade Distance", its command
    Dobject* board = nullptr;
    Handle handle = kNoHandle;
    // What the dialogs choose.
    int part = 0, filter = 0;
    bool accepts = true;
    // What the plain readings select and make.
    std::vector<int> mask;
    std::array<int, 4> box{};
    Point centre;
    std::vector<Dtile> tiles, undo, clip;
    int clipW = 0, clipH = 0;
};

}  // namespace

TEST_F(Areas, EntriesDoWhatTheirPathsSay) {
    for (int i = 0; i < 64; ++i) world->GetFont()->PutGlyphPixel(255, i % 8, i / 8, 7);
    for (unsigned run = 0; run < 1500; ++run) {
        const auto& [path, command] = entries[run % entries.size()];
        SCOPED_TRACE(std::to_string(run) + ": " + path);
        MakeBoard(Roll(1, 30), Roll(1, 30));
        const auto place = [&] { return Point{Roll(-1, board->width), Roll(-1, board->height)}; };
        const Point back{board->posx, -board->viewy};
        const Point cursor = place(), anchor = Roll(0, 9) ? place() : cursor;
        part = Roll(0, 99);
        filter = Roll(0, 15), accepts = Roll(0, 4) > 0;
        vTileClipSkip = Roll(0, 1);
        // Paste finds what the last Copy left, or a clipboard with empty tiles, or none.
        if (Roll(0, 3) == 0) {
            clip = vTileClip = {Dtile{}, kHole, {5, 6, 7, 8}};
            clipW = vTileClipW = 3, clipH = vTileClipH = 1;
        } else if (Roll(0, 9) == 0) {
            clip.clear(), clipW = clipH = 0;
            ClearTileClip();
        }
        const Brush old{Roll(0, 1) ? Roll(0, 255) : 250, Roll(-2, 255), Roll(-1, 255), Roll(-1, 3)};
        vBrush = old;
        tiles = board->tiles;
        undo.clear();
        told = "";
        vRandom.Seed(run * 9999999);
        std::srand(run * 9999999);
        for (int i = 0; i < 50; ++i) ASSERT_EQ(vRandom.Next(), std::rand());
        vRandom.Seed(run);
        Act(path, cursor, anchor);
        const int drawn = vRandom.Next();
        const Brush left = std::exchange(vBrush, old);
        const std::string wanted = std::exchange(told, "");
        vRandom.Seed(run);
        const bool known = RunAreaCommand(command, cursor + back, anchor + back, *this);
        ASSERT_EQ(vRandom.Next(), drawn) << "as many draws";
        ASSERT_EQ(known, path.find("Zoom") && path != "Ruler" && path.find("Cancel") == path.npos);
        ASSERT_EQ(board->tiles, tiles);
        const std::string shown = Pixels(board->Surface());
        board->RedrawTiles();
        ASSERT_TRUE(shown == Pixels(board->Surface())) << "the surface shows the tiles";
        ASSERT_EQ(board->undoTiles, undo);
        ASSERT_EQ(vBrush, left);
        ASSERT_EQ(vTileClip, clip);
        ASSERT_EQ((Point{vTileClipW, vTileClipH}), (Point{clipW, clipH}));
        ASSERT_EQ(told, wanted);
        ASSERT_EQ(board->children.size(), path == "Make Object");
        if (board->children.empty()) continue;
        Dobject& made = *board->children.front();
        ASSERT_TRUE(world->currentObject == made.id && made.posz == 0);
        ASSERT_EQ((Point{made.width, made.height}), (Point{box[2], box[3]}));
        Each([&](int x, int y) {
            ASSERT_EQ(*made.GetTile(x - box[0], y - box[1]), tiles[Index(x, y)]);
        });
    }
}

TEST_F(Areas, ShapesAreOutlinesCutAtTheBox) {
    const auto line = SelectLine, rect = SelectRectOutline, ellipse = SelectEllipse;
    const struct {
        void (*select)(TileArea&, Handle, Point, Point);
        Point cursor, anchor;
        const char* mask;
    } cases[] = {
        {line, {6, 1}, {9, 2}, "......../......xx/......../......../......../......../"},
        {line, {-2, 0}, {5, 2}, "......../xxxx..../....xx../......../......../......../"},
        {rect, {5, 1}, {1, 4}, "......../.xxxxx../.x...x../.x...x../.xxxxx../......../"},
        {ellipse, {0, 0}, {3, 3}, "...x..../...x..../...x..../xxx...../......../......../"},
        {ellipse, {5, 2}, {99, 99}, "......../......../.....x.x/.....x.x/.....x.x/......x./"},
        {ellipse, {0, 0}, {6, 5}, ".x...x../x.....x./x.....x./x.....x./.x...x../..xxx.../"},
    };
    MakeBoard(8, 6);
    board->posx = board->viewy = 0;
    for (const auto& c : cases) {
        c.select(vArea, handle, c.cursor, c.anchor);
        std::string shown;
        for (int i = 0; i < 48; ++i)
            shown += (vArea.At(i % 8, i / 8) ? "x" : ".") + std::string(i % 8 == 7, '/');
        EXPECT_EQ(shown, c.mask) << c.cursor.x << "," << c.cursor.y;
    }
}

// A line of the author's files that cannot be read is named, and what stands in front of it is
// used.
TEST_F(Areas, FadeFilesAreReadAsFarAsTheyGo) {
    const TempFolder temp;
    const std::string home = std::filesystem::current_path(), ten = "1 2 3 4 5 0 9 -1 2 3 ";
    std::string cells;
    for (int i = 0; i < 10; ++i) cells += ten;
    std::filesystem::create_directory(temp / "Library");
    std::filesystem::current_path(temp.Path());
    const std::tuple<std::string, std::size_t, std::string> rows[] = {
        {"", 0, "Unable to load Library/FadeBlends.txt"},  // there is none
        {"a b\r\n" + cells + "x\n" + std::string(98, 'n') + "\n" + cells, 2, ""},
        {"a\n" + cells + "\n \n\nb\n" + cells, 1, "line 3: this line is blank"},
        {"a\n" + cells + "\nb\n1 2 x", 1, "line 4: a number belongs here"},
        {std::string(99, 'n') + "\n" + cells, 0, "line 1: a name is too long"},
        {"a\n" + cells + "\nb\n1 99999999999", 1, "line 4: a number is too large"},
        {"a\n" + cells + "\nb\n1 2", 1, ""},
    };
    for (const auto& [text, count, fault] : rows) {
        if (!text.empty()) PutFile("Library/FadeBlends.txt", text);
        const auto blends = LoadFadeBlends("Fade");
        ASSERT_EQ(blends.size(), count) << fault;
        EXPECT_NE(reports.Texts().find(fault), std::string::npos) << reports.Texts();
        EXPECT_EQ(reports.messages.empty(), fault.empty());
        reports.Clear();
        EXPECT_EQ(count ? blends[0].cells[6] - blends[0].cells[7] : 4, kFadePositions - 1);
    }
    std::filesystem::current_path(home);
}
