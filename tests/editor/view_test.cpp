// The edit view on the scripted backend: keys, typing, mouse, picking, marks and zoom.

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/quilt_view.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <gmock/gmock.h>

using namespace platform;
using testing::ElementsAre;

namespace {

struct CountingHost final : ViewHost {
    void RedrawTree() override { ++tree; }
    void RedrawPropViewer() override { ++viewer; }
    void RedrawBrushPreview() override { ++preview; }
    void ShowBrushMode() override { ++mode; }
    bool EditBrush() override {
        asked = vBrush;
        if (answer) vBrush = *answer;
        return answer.has_value();
    }
    bool RunAreaDialog(AreaDialog) override { return false; }
    void EditName() override {}
    void RedrawAll() override {}
    int tree = 0, viewer = 0, preview = 0, mode = 0;
    std::optional<Brush> asked;
    std::optional<Brush> answer;
};

class View : public WorldTest {
protected:
    View() : view(host), window(script, &view, {640, 480}) {
        ResetViewState();
        view.Attach(window);
        board = &AddNode(world->Root(), "board", 10, 8);
        world->currentBoard = world->currentObject = board->id;
    }

    void Keys(std::initializer_list<int> keys) {
        for (int code : keys) view.OnKeyDown(code);
    }
    void Walk(int columns, int rows = 0) {
        for (; columns > 0; --columns) view.OnKeyDown(kKeyRight);
        for (; columns < 0; ++columns) view.OnKeyDown(kKeyLeft);
        for (; rows > 0; --rows) view.OnKeyDown(kKeyDown);
        for (; rows < 0; ++rows) view.OnKeyDown(kKeyUp);
    }
    void Type(const std::string& text) {
        for (char c : text) view.OnChar(static_cast<unsigned char>(c));
    }
    // The glyph numbers of a row of the board; "." for an empty cell.
    std::string Row(int y, const Dobject& node) const {
        std::string row;
        for (int x = 0; x < node.width; ++x) {
            const Dtile& tile = node.tiles[static_cast<std::size_t>(y * node.width + x)];
            row += tile == Dtile{} ? "."
                   : tile.chr < 10 ? std::to_string(tile.chr)
                                   : std::string(1, static_cast<char>(tile.chr));
        }
        return row;
    }
    std::string Row(int y) const { return Row(y, *board); }
    int Chr(int x, int y) const { return board->GetTile(x, y)->chr; }
    // The middle of a tile in window pixels.
    Point At(int x, int y) const {
        const double scale = 8.0 / static_cast<double>(view.Zoom());
        return {static_cast<int>((x + view.Scroll().x + 0.5) * scale),
                static_cast<int>((y + view.Scroll().y + 0.5) * scale)};
    }
    int PixelAt(int x, int y) {
        window.Paint();
        return window.PixelAt(x, y);
    }

    ScriptedPlatform script;
    CountingHost host;
    CQuiltView view;
    ScriptedWindow window;
    Dobject* board;
};

}  // namespace

// --- painting ----------------------------------------------------------------------------------

TEST_F(View, NormalModeStampsOnSpaceAndWhileShiftIsHeld) {
    Walk(4);
    EXPECT_EQ(Row(0), "..........") << "walking paints nothing";
    Keys({kKeyShift, kKeyRight, kKeyRight, kKeyRight});
    EXPECT_EQ(Row(0), "....1111..");
    view.OnKeyUp(kKeyShift);
    Keys({kKeyRight, kKeyRight, kKeySpace});
    EXPECT_EQ(Row(0), "....1111.1");
    EXPECT_EQ(*board->GetTile(4, 0), (Dtile{1, 15, 1, 0}));
    window.Paint();
    EXPECT_EQ(window.description, "board, 9 x 0: glyph 1, colour 15 on 1, attribute 0");
    Keys({kKeyRight, kKeySpace, kKeyUp, kKeySpace});
    EXPECT_EQ(view.Cursor(), (Point{10, -1})) << "the cursor may leave the grid";
    window.Paint();
    EXPECT_EQ(window.description, "board, 10 x -1: outside the grid");
}

TEST_F(View, TabModeStampsEveryStep) {
    Keys({kKeyTab});
    EXPECT_EQ(vBrushMode, kBrushTab);
    EXPECT_EQ(host.mode, 1);
    EXPECT_EQ(Row(0), "1.........") << "entering stamps the tile under the cursor";
    Walk(2, 1);
    EXPECT_EQ(Row(0), "111.......");
    EXPECT_EQ(Row(1), "..1.......");
    vBrush.chr = 2;
    Keys({kKeySpace, kKeyTab});
    EXPECT_EQ(Row(1), "..1.......") << "leaving does not stamp, and Space does nothing";
    EXPECT_EQ(vBrushMode, kBrushNormal);
}

TEST_F(View, BlenderTakesOneStepAVisit) {
    vBrushMode = kBrushBlender;
    board->PutTile(0, 0, 65, 1, 1, 1);
    Keys({kKeySpace, kKeySpace});
    EXPECT_EQ(Chr(0, 0), 32);
    EXPECT_EQ(*board->GetTile(0, 0), (Dtile{32, 15, 1, 0}));
    for (int chr : {176, 177, 178, 219, 219}) {
        Keys({kKeyRight, kKeyLeft, kKeySpace, kKeySpace, kKeyShift});
        view.OnKeyUp(kKeyShift);
        EXPECT_EQ(Chr(0, 0), chr);
    }
    board->PutTile(1, 0, 32, 1, 1, 1);
    Keys({kKeyShift, kKeyRight});
    EXPECT_EQ(Chr(1, 0), 176) << "an arrow with the pen down steps the tile it reaches";
    Keys({kKeyTab});
    EXPECT_EQ(vBrushMode, kBrushBlenderTab);
    EXPECT_EQ(Chr(1, 0), 177) << "Tab steps too, and lifts the pen";
    Keys({kKeyLeft, kKeyRight, kKeySpace, kKeyTab, kKeyLeft});
    EXPECT_EQ(Chr(1, 0), 178);
    EXPECT_EQ(vBrushMode, kBrushBlender);
    EXPECT_EQ(Chr(0, 0), 219);
}

TEST_F(View, BrushKeysStayInTheirRanges) {
    const struct {
        int code;
        std::int32_t Brush::*field;
        int from, to;
    } cases[] = {{kKeyHome, &Brush::fg, 3, 2},        {kKeyHome, &Brush::fg, 0, 0},
                 {kKeyEnd, &Brush::fg, 254, 255},     {kKeyEnd, &Brush::fg, 255, 255},
                 {kKeyPageUp, &Brush::bg, 0, 0},      {kKeyPageDown, &Brush::bg, 255, 255},
                 {kKeyPageDown, &Brush::bg, 7, 8},    {kKeyInsert, &Brush::chr, 0, 0},
                 {kKeyDelete, &Brush::chr, 254, 255}, {kKeyDelete, &Brush::chr, 255, 255}};
    for (const auto& c : cases) {
        vBrush.*c.field = c.from;
        Keys({c.code});
        EXPECT_EQ(vBrush.*c.field, c.to) << c.code << " from " << c.from;
    }
    EXPECT_EQ(host.preview, 10);
    const Brush before = vBrush;
    vBrushMode = kBrushBlender;
    Keys({kKeyInsert, kKeyDelete});
    vBrushMode = kBrushText;
    Keys({kKeyHome, kKeyEnd, kKeyPageUp, kKeyPageDown, kKeyInsert, kKeyF1, kKeyTab, kKeySpace,
          kKeyLeft, kKeyEnter, kKeyShift});
    EXPECT_EQ(vBrush, before) << "none of these acts here";
    EXPECT_EQ(view.Cursor(), (Point{0, 0}));
    EXPECT_EQ(Row(0), "..........");
}

TEST_F(View, EyedropperReadsTheTileUnderTheCursor) {
    board->PutTile(2, 0, 70, -2, 1, 3);
    Walk(2);
    Keys({kKeyEnter});
    EXPECT_EQ(vBrush, (Brush{70, -2, 1, 3}));
    Walk(0, -1);
    Keys({kKeyEnter});
    EXPECT_EQ(vBrush, (Brush{70, -2, 1, 3})) << "outside the grid nothing is read";
    EXPECT_EQ(host.preview, 1);
}

TEST_F(View, PaintingGoesThroughTheScrollOfTheObject) {
    Dobject& object = AddNode(*board, "object", 6, 1);
    object.posx = 3;
    object.viewx = 2;
    object.vieww = 2;
    world->currentObject = object.id;
    Walk(3);
    Keys({kKeySpace});
    EXPECT_EQ(Row(0, object), "..1...");
    vStepX = 5;
    Keys({kKeyF1});
    EXPECT_EQ(object.viewx, 0);
    Keys({kKeyF2});
    EXPECT_EQ(object.viewx, 4) << "not past the grid's end";
    vStepY = 3;
    Keys({kKeyF2});
    EXPECT_EQ(object.viewy, 0);
}

// --- typing ------------------------------------------------------------------------------------

TEST_F(View, TypingWrapsAtTheGridAndReturnsToTheMargin) {
    vBrushMode = kBrushText;
    view.OnLButtonDown(false, At(2, 6));
    view.OnLButtonUp(false, At(2, 6));
    Type("HELLO WORLD");
    EXPECT_EQ(Row(6), "..HELLO WO");
    EXPECT_EQ(Row(7), "RLD.......");
    Type("\r");
    EXPECT_EQ(view.Cursor(), (Point{2, 0})) << "below the last row comes the first";
    Type("A\bB\b\b\bC\x1b");
    EXPECT_EQ(Row(0), "..C.......") << "Backspace stays at the margin and erases nothing";
    Type("\t");
    EXPECT_EQ(Row(0), "..C   ....");
    Walk(3);
    view.OnLButtonDown(false, At(9, 7));
    Type("XY");
    EXPECT_EQ(Row(7), "RLD......X");
    EXPECT_EQ(Row(0), "Y.C   ....") << "the bottom right is followed by the top left";
    view.OnChar(130);
    EXPECT_EQ(Chr(1, 0), 130);
    vBrushMode = kBrushNormal;
    Type("Z");
    EXPECT_EQ(Chr(2, 0), 'C');
}

// --- mouse -------------------------------------------------------------------------------------

TEST_F(View, ZoomHasFourStepsForTheWheelAndTheMenu) {
    std::vector<float> zooms;
    for (int delta : {120, 1, 30000, -120, 0}) {
        view.OnMouseWheel(delta);
        zooms.push_back(view.Zoom());
    }
    EXPECT_THAT(zooms, ElementsAre(0.5f, 0.25f, 0.25f, 0.5f, 0.5f));
    for (int i = 0; i < 4; ++i) view.OnCommand(kCmdZoomOut);
    EXPECT_EQ(view.Zoom(), 2.0f);
    view.OnLButtonDown(false, {4 * 3 + 1, 4 * 2 + 3});
    EXPECT_EQ(view.Cursor(), (Point{3, 2})) << "four window pixels a tile";
    // Whatever the zoom, each pixel of the bitmap takes as much of the window as any other.
    for (int side : {640, 643, 647, 1001}) {
        window.size = {side, side};
        for (int command : {kCmdZoomIn, kCmdZoomIn, kCmdZoomIn, kCmdZoomIn, kCmdZoomOut,
                            kCmdZoomOut, kCmdZoomOut}) {
            window.Paint();
            EXPECT_EQ(window.shown.w * view.Zoom(), window.w);
            EXPECT_EQ(window.w % 8, 0);
            EXPECT_GT(window.shown.w, side) << "the whole window is covered";
            view.OnCommand(command);
        }
    }
}

TEST_F(View, ARightDragOpensTheToolMenuWithItsBoxInPlace) {
    view.OnRButtonDown(false, At(1, 1));
    view.OnMouseMove(false, At(4, 3));
    EXPECT_EQ(view.Cursor(), (Point{1, 1}));
    EXPECT_EQ(view.Anchor(), (Point{4, 3}));
    const int outside = PixelAt(5 * 8 + 4, 2 * 8 + 4);
    EXPECT_EQ(PixelAt(4 * 8 + 3, 2 * 8 + 4), outside ^ 15);
    EXPECT_EQ(PixelAt(1 * 8, 1 * 8), outside ^ 32);
    script.ExpectMenu(
        {"&Fill", "Fa&de", "&Speckle", "-", "F&lood", "Same&As", "&Replace", "-", "&Copy", "&Paste",
         "-", "Zoom &In", "Zoom &Out", "-", "R&uler", "&Make Object", "-", "Cancel"},
        kCmdRuler);
    view.OnRButtonUp(false, At(4, 3));
    EXPECT_EQ(vRuler, 1);
    EXPECT_EQ(script.lastMenuAt, window.ClientToScreen(At(4, 3)));
    script.ExpectMenu({}, kCmdToolCancel);
    view.OnRButtonUp(false, At(4, 3));
    EXPECT_TRUE(FindEntry(script.lastMenu, kCmdRuler)->checked);

    view.OnRButtonDown(true, At(2, 2));
    view.OnMouseMove(true, At(6, 5));
    EXPECT_EQ(PixelAt(4 * 8 + 3, 3 * 8 + 3), outside) << "two marks, no box";
    script.ExpectMenu({"&Line", "&Rect", "&Circle", "-", "&Blend Fade", "Cancel"}, 0);
    view.OnRButtonUp(true, At(6, 5));
    EXPECT_EQ(view.Anchor(), (Point{6, 5})) << "the points stay after a cancel";

    script.ExpectMenu({}, 0);
    Keys({kKeyApps});
    EXPECT_EQ(view.Anchor(), view.Cursor());
    EXPECT_EQ(script.lastMenuAt, window.ClientToScreen({24, 24}));
}

// --- the properties panel ----------------------------------------------------------------------

TEST_F(View, PickingTakesTheNodeOrAsks) {
    vPanelMode = kPanelProperties;
    Dobject& a = AddNode(*board, "A&B", 3, 3);
    Dobject& b = AddNode(a, "inner", 1, 1);
    a.posx = a.posy = 2;
    view.OnLButtonDown(false, At(4, 4));
    EXPECT_EQ(world->currentObject, a.id) << "of two the object";
    view.OnLButtonDown(false, At(0, 0));
    EXPECT_EQ(world->currentObject, board->id);
    view.OnLButtonDown(false, At(20, 20));
    EXPECT_EQ(world->currentObject, board->id) << "nothing there";
    EXPECT_EQ(view.Cursor(), (Point{20, 20}));
    script.ExpectMenu({"board", "A&&B", "inner", "-", "&Cancel"}, b.id + kCmdPickBase);
    view.OnLButtonDown(false, At(2, 2));
    EXPECT_EQ(world->currentObject, b.id);
    script.ExpectMenu({}, 0);
    Keys({kKeyEnter});
    EXPECT_EQ(world->currentObject, b.id);
    EXPECT_EQ(script.lastMenuAt, window.ClientToScreen({24, 24}));
    EXPECT_EQ(host.tree, 5);
}

TEST_F(View, PropertiesKeysPlaceTheClipboardAndRecolour) {
    vPanelMode = kPanelProperties;
    Walk(2, 3);
    Keys({kKeySpace});
    ASSERT_EQ(board->children.size(), 1u);
    const Dobject& placed = *board->children.front();
    EXPECT_EQ(placed.name, "Dummy");
    EXPECT_EQ(std::pair(placed.posx, placed.posy), std::pair(2, 3));
    EXPECT_EQ(Row(0, *board), "..........");

    const Brush before = vBrush;
    host.answer = Brush{7, -2, 1, 2};
    Keys({kKeyTab});
    EXPECT_EQ(host.asked, (Brush{0, 0, 0, 0}));
    EXPECT_EQ(std::count(board->tiles.begin(), board->tiles.end(), Dtile{7, 65534, 1, 2}), 80);
    EXPECT_EQ(vBrush, before);
    board->PutTile(9, 7, 8, -1, -1, -1);
    host.asked.reset();
    Keys({kKeyTab});
    EXPECT_FALSE(host.asked) << "two different tiles open no dialog";
    view.OnKeyUp(kKeyShift);
}

// --- marks -------------------------------------------------------------------------------------

TEST_F(View, MarksStandWhereTheyShould) {
    world->videoMode = 0;
    view.OnLButtonDown(true, {0, 0});
    view.OnMouseMove(true, {16, 16});
    view.OnLButtonUp(true, {16, 16});
    // The board is at (0, 0) in a view scrolled by two tiles: frames outside of its 80 by 64.
    const auto isMarked = [&](int x, int y) { return PixelAt(x, y) == 15; };
    EXPECT_TRUE(isMarked(16 - 5, 40) && isMarked(16 - 4, 40));
    EXPECT_TRUE(isMarked(16 - 3, 40) && isMarked(16 - 2, 40));
    EXPECT_FALSE(isMarked(16 - 6, 40));
    EXPECT_TRUE(isMarked(16 + 80 + 4, 40) && isMarked(16 + 80 + 3, 40));
    EXPECT_TRUE(isMarked(16 + 80 + 2, 40) && isMarked(16 + 80 + 1, 40));
    EXPECT_TRUE(isMarked(16 - 1, 200) && isMarked(16 + 320, 200)) << "the game's screen";
    EXPECT_TRUE(isMarked(200, 16 + 240));
    EXPECT_EQ(PixelAt(16, 16), 32) << "the cursor's rim";
    EXPECT_EQ(PixelAt(17, 17), 15) << "and its inside";

    vRuler = 1;
    EXPECT_TRUE(isMarked(400, 16));
    EXPECT_EQ(PixelAt(400, 17), 32);
    vShowAttrib = true;
    board->PutTile(3, 3, -1, -1, -1, kAttribSolid);
    EXPECT_EQ(PixelAt(16 + 24 + 2, 16 + 24 + 2), 15);
    EXPECT_EQ(PixelAt(16 + 24 + 3, 16 + 24 + 3), 32);
    board->PutTile(3, 3, -1, -1, -1, 9);
    EXPECT_EQ(PixelAt(16 + 24 + 2, 16 + 24 + 2), 0);
}

TEST_F(View, ViewModesComposeWhatTheyName) {
    Dobject& a = AddNode(*board, "a", 1, 1);
    a.posx = 5;
    a.posy = 5;
    a.PutTile(0, 0, 0, 100, 100, 0);
    board->PutTile(5, 5, 0, 101, 101, 0);
    board->PutTile(6, 5, 0, 102, 102, 0);
    const auto shown = [&] { return std::pair(PixelAt(44, 44), PixelAt(52, 44)); };
    EXPECT_EQ(shown(), std::pair(100, 102));
    vViewMode = kViewHideObjs;
    EXPECT_EQ(shown(), std::pair(101, 102));
    world->currentObject = a.id;
    vViewMode = kViewFocus;
    EXPECT_EQ(shown(), std::pair(100, 0));
    vViewMode = kViewFocus | kViewHideObjs;
    EXPECT_EQ(shown(), std::pair(100, 0));
    world->currentObject = 12345;
    EXPECT_EQ(shown(), std::pair(0, 0)) << "no node, nothing composed, frames at the corner";
}
