// Selections, primitives and the plain actions.

#include "editor/tools/fade_fills.h"
#include "editor/view/fills.h"
#include "editor/view/make_object.h"
#include "tests/editor/area_world.h"

#include <gmock/gmock.h>

using platform::Point;
using testing::ElementsAre;

// --- selections --------------------------------------------------------------------------------

TEST_F(AreaTest, ARectangleIsClampedCornerByCorner) {
    const struct {
        Point cursor, anchor;
        std::vector<int> box;
    } cases[] = {{{3, 2}, {3, 2}, {3, 2, 1, 1}},    {{5, 4}, {2, 1}, {2, 1, 4, 4}},
                 {{2, 4}, {5, 1}, {2, 1, 4, 4}},    {{-3, -2}, {1, 1}, {0, 0, 2, 2}},
                 {{-9, 1}, {-5, 3}, {0, 1, 1, 3}},  {{20, 30}, {25, 40}, {7, 5, 1, 1}},
                 {{-1, -1}, {99, 99}, {0, 0, 8, 6}}};
    for (const auto& c : cases) {
        SelectRect(handle, c.cursor, c.anchor);
        EXPECT_EQ(Box(), c.box);
        EXPECT_EQ(std::count(vMask.begin(), vMask.begin() + 48, kSelected), c.box[2] * c.box[3]);
    }
    board->posx = 2;
    board->viewx = 3;
    SelectRect(handle, {4, 1}, {4, 1});
    EXPECT_THAT(Box(), ElementsAre(5, 1, 1, 1)) << "the place in a scrolled grid";
}

TEST_F(AreaTest, FloodsAreThoseOfThePlainWalk) {
    std::mt19937 random(3);
    for (int run = 0; run < 40; ++run) {
        MakeBoard(1 + static_cast<int>(random() % 20), 1 + static_cast<int>(random() % 20));
        Scatter(random, 2);
        for (std::uint16_t Dtile::*field : {&Dtile::fg, &Dtile::bg, &Dtile::attrib})
            board->tiles[random() % board->tiles.size()].*field = 9;
        const Point seed{static_cast<int>(random()) % board->width,
                         static_cast<int>(random()) % board->height};
        const Dtile like = board->GetTile(seed.x, seed.y) ? At(seed.x, seed.y) : Dtile{};
        std::vector<std::int32_t> plain(board->tiles.size());
        std::vector<Point> list{seed};
        Point low = seed, high = seed;
        while (!list.empty()) {
            const Point at = list.back();
            list.pop_back();
            const Dtile* tile = board->GetTile(at.x, at.y);
            const auto i = static_cast<std::size_t>(at.y * board->width + at.x);
            if (!tile || *tile != like || plain[i]) continue;
            plain[i] = 1;
            low = {std::min(low.x, at.x), std::min(low.y, at.y)};
            high = {std::max(high.x, at.x), std::max(high.y, at.y)};
            for (Point step : {Point{1, 0}, {-1, 0}, {0, 1}, {0, -1}})
                list.push_back({at.x + step.x, at.y + step.y});
        }
        SelectFlood(handle, seed);
        ASSERT_TRUE(std::equal(plain.begin(), plain.end(), vMask.begin())) << run << "\n" << Mask();
        EXPECT_THAT(Box(), ElementsAre(low.x, low.y, high.x - low.x + 1, high.y - low.y + 1));
    }
}

TEST_F(AreaTest, SameAsTakesAllLikeTilesOfTheGrid) {
    Draw("01000001/00000000/11000000/00000000/00000000/00010000");
    At(7, 0).attrib = 1;
    EXPECT_EQ(SelectSameAs(handle, {1, 0}), (Point{1, 0}));
    EXPECT_EQ(Mask(), ".x....../......../xx....../......../......../...x....");
    EXPECT_THAT(Box(), ElementsAre(0, 0, 8, 6));
    SelectSameAs(handle, {-1, 0});
    EXPECT_EQ(Mask().find('x'), std::string::npos);
}

TEST_F(AreaTest, ShapesAreOutlinesCutAtTheBox) {
    using Select = void (*)(Handle, Point, Point);
    struct Case {
        Select select;
        Point cursor, anchor;
        const char* mask;
    };
    const Select line = SelectLine, outline = SelectRectOutline, ellipse = SelectEllipse;
    const Case cases[] = {
        {line, {2, 3}, {2, 3}, "......../......../......../..x...../......../........"},
        {line, {6, 1}, {9, 2}, "......../......xx/......../......../......../........"},
        {line, {-2, 0}, {5, 2}, "......../xxxx..../....xx../......../......../........"},
        {outline, {5, 1}, {1, 4}, "......../.xxxxx../.x...x../.x...x../.xxxxx../........"},
        {outline, {4, 3}, {4, 3}, "......../......../......../....x.../......../........"},
        {outline, {-3, -3}, {2, 2}, "..x...../..x...../xxx...../......../......../........"},
        {ellipse, {0, 0}, {3, 3}, "...x..../...x..../...x..../xxx...../......../........"},
        {ellipse, {5, 2}, {99, 99}, "......../......../.....x.x/.....x.x/.....x.x/......x."},
        {ellipse, {0, 0}, {6, 5}, ".x...x../x.....x./x.....x./x.....x./.x...x../..xxx..."},
    };
    for (const Case& c : cases) {
        c.select(handle, c.cursor, c.anchor);
        EXPECT_EQ(Mask(), c.mask) << c.cursor.x << "," << c.cursor.y;
    }
    MaskPlot(nullptr, -1, 0, 0);
    MaskPlot(nullptr, 4, 0, 0);
}

TEST_F(AreaTest, NodesWithoutCellsSelectNothing) {
    Dobject& empty = AddNode(*board, "empty", 0, 0);
    Dobject& narrow = AddNode(*board, "narrow", 0, 5);
    for (Handle h : {HandleOf(empty), HandleOf(narrow), kRootHandle, kNoHandle}) {
        SelectRect(h, {0, 0}, {3, 3});
        FillRegion(h);
        BlendRegion(h, {0, 0}, {3, 3});
        CopyRegion(h);
        PasteRegion(h);
        PasteSpriteRegion(h);
        DistanceFade(h, 10, 10, 3, {});
        NormalFade(h, {}, 3, {});
        SlimeFade(h, 3, {});
        SpeckleFill(h, 50);
        EXPECT_FALSE(MakeObject(h));
        for (auto select : {SelectLine, SelectRectOutline, SelectEllipse})
            select(h, {0, 0}, {3, 3});
        for (auto select : {SelectFlood, SelectSameAs}) {
            select(h, {0, 0});
            EXPECT_GE(std::min(vRegionW, vRegionH), 1);
            FillRegion(h);
        }
    }
    EXPECT_EQ(world->currentObject, board->id);
    // A mask of a grid that has shrunk since: what is gone is left out.
    SelectRect(handle, {0, 0}, {7, 5});
    board->Resize(3, 2);
    vBrush.chr = 5;
    FillRegion(handle);
    EXPECT_EQ(Glyphs(), "555/555");
}

// --- actions -----------------------------------------------------------------------------------

TEST_F(AreaTest, BlendRunsFromTheLowColourAtTheCursor) {
    vBrush = {1, 200, 100, 2};
    SelectRect(handle, {0, 0}, {7, 5});
    BlendRegion(handle, {1, 2}, {5, 2});
    EXPECT_EQ(At(0, 0), (Dtile{219, 100, 255, 2})) << "beyond the cursor";
    std::vector<int> colors;
    for (int x = 0; x < 8; ++x) colors.push_back(At(x, 2).fg);
    EXPECT_THAT(colors, ElementsAre(100, 100, 133, 166, 199, 199, 199, 199));
    std::swap(vBrush.fg, vBrush.bg);
    SelectRect(handle, {0, 0}, {7, 5});
    const auto before = board->tiles;
    BlendRegion(handle, {1, 2}, {5, 2});
    EXPECT_EQ(board->tiles, before) << "whichever colour is the foreground";

    SelectRect(handle, {0, 0}, {7, 5});
    vBrush = {1, 50, 60, 0};
    BlendRegion(handle, {3, 3}, {3, 3});
    EXPECT_EQ(board->tiles, before) << "no ramp between a point and itself";
    BlendRegion(handle, {3, 3}, {3, 2});
    EXPECT_EQ(At(0, 0).fg, 50);
    EXPECT_EQ(At(7, 5).fg, 50);
}

// --- copy and paste ----------------------------------------------------------------------------

TEST_F(AreaTest, PasteRepeatsTheClipboardFromTheBoxCorner) {
    Draw("12000000/34000000/56000000/00000000/00000000/00000000");
    SelectRect(handle, {0, 0}, {1, 2});
    CopyRegion(handle);
    SelectRect(handle, {3, 1}, {7, 5});
    PasteRegion(handle);
    EXPECT_EQ(Glyphs(), "12000000/34012121/56034343/00056565/00012121/00034343");
    SelectRect(handle, {0, 5}, {0, 5});
    PasteRegion(handle);
    EXPECT_EQ(At(0, 5).chr, 1) << "a small selection takes the top left";
    ClearTileClip();
    board->undoTiles.clear();
    PasteRegion(handle);
    EXPECT_TRUE(board->undoTiles.empty()) << "an empty clipboard does not even back up";
}

TEST_F(AreaTest, HolesAndFilteredFieldsLeaveTheTargetAsItIs) {
    Draw("11000000/10000000/00000000/00000000/00000000/00000000");
    At(0, 0).fg = At(1, 0).fg = At(0, 1).fg = 9;
    SelectFlood(handle, {0, 0});
    CopyRegion(handle);
    EXPECT_EQ(vTileClip[3], (Dtile{65535, 65535, 65535, 65535}));
    for (Dtile& tile : board->tiles) tile = {5, 6, 7, 8};
    SelectRect(handle, {3, 3}, {4, 4});
    PasteRegion(handle);
    EXPECT_EQ(At(3, 3), (Dtile{1, 9, 0, 0}));
    EXPECT_EQ(At(4, 4), (Dtile{5, 6, 7, 8}));
    vBrush = {-1, 15, -1, -1};
    SelectRect(handle, {3, 3}, {3, 3});
    CopyRegion(handle);
    SelectRect(handle, {6, 0}, {6, 0});
    PasteRegion(handle);
    EXPECT_EQ(At(6, 0), (Dtile{5, 9, 7, 8})) << "only the foreground was copied";

    vTileClip = {Dtile{}, {65535, 65535, 65535, 65535}};
    vTileClipW = 2;
    vTileClipH = 1;
    for (const Dtile& expected : {Dtile{5, 6, 7, 8}, Dtile{}}) {
        vTileClipSkip = expected != Dtile{};
        SelectRect(handle, {0, 0}, {1, 0});
        PasteRegion(handle);
        EXPECT_EQ(At(0, 0), expected);
        EXPECT_EQ(At(1, 0), (Dtile{5, 6, 7, 8}));
        EXPECT_EQ(Mask().substr(0, 3), "oo.");
    }
}

TEST_F(AreaTest, SpritesLieAsOnTheSheet) {
    vBrush = {0, 3, 3, 2};
    world->GetFont()->PutGlyphPixel(18, 0, 0, 0);
    SelectRect(handle, {0, 0}, {2, 1});
    PasteSpriteRegion(handle);
    for (int y = 0; y < 2; ++y)
        for (int x = 0; x < 3; ++x) EXPECT_EQ(At(x, y).chr, y * 16 + x);
    EXPECT_EQ(At(2, 1), (Dtile{18, kSpriteColor, 0, 2}));
    EXPECT_EQ(vBrush, (Brush{0, -2, 0, 2}));

    const int last = world->GetFont()->GlyphCount() - 1;
    for (int y = 0; y < 8; ++y)
        for (int x = 0; x < 8; ++x) world->GetFont()->PutGlyphPixel(last, x, y, 7);
    vBrush.chr = last;
    SelectRect(handle, {4, 4}, {5, 5});
    PasteSpriteRegion(handle);
    EXPECT_EQ(At(4, 4), (Dtile{static_cast<std::uint16_t>(last), kSpriteColor, 1, 2}));
    EXPECT_EQ(At(5, 4), Dtile{}) << "past the last glyph the tile stays";
    EXPECT_EQ(Mask().substr(4 * 9), "....oo../....oo..");
}

TEST_F(AreaTest, MakeObjectTakesACopyOfTheBox) {
    Draw("00000000/01234000/05678000/00000000/00000000/00000000");
    At(1, 1) = {65535, 1, 2, 3};
    const auto before = board->tiles;
    board->posx = 3;
    SelectRect(handle, {4, 1}, {7, 2});
    ASSERT_TRUE(MakeObject(handle));
    const Dobject& made = *board->children.front();
    EXPECT_EQ(world->currentObject, made.id);
    EXPECT_EQ(std::pair(made.width, made.height), std::pair(4, 2));
    EXPECT_EQ(made.tiles.front(), (Dtile{65535, 1, 2, 3}));
    EXPECT_EQ(made.tiles.back(), Dtile({8, 0, 0, 0}));
    EXPECT_EQ(made.vSurf->line[0][0], made.vSurf->line[7][7]);
    EXPECT_EQ(board->tiles, before);
    EXPECT_TRUE(board->undoTiles.empty());
    SelectRect(handle, {-40, -40}, {-30, -30});
    EXPECT_TRUE(MakeObject(handle)) << "from the clamped box";
    EXPECT_EQ(board->children.size(), 2u);
}
