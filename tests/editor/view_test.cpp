// The edit view: a random walk of all its events beside a plain model, its marks by picture, and
// what the model does not have: picking, zoom and view modes.

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "editor/view/object_clip.h"
#include "editor/view/quilt_view.h"
#include "platform/keys.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <array>
#include <map>
#include <random>
#include <sstream>

using namespace platform;
using Events = WindowEvents;

namespace {

struct CountingHost final : ViewHost {
    void RedrawTree() override { ++told[0]; }
    void RedrawPropViewer() override { ++told[1]; }
    void RedrawBrushPreview() override { ++told[2]; }
    void ShowBrushMode() override { ++told[3]; }
    bool EditBrush() override {
        ++told[4];
        if (answer) vBrush = *answer;
        return answer.has_value();
    }
    bool RunAreaDialog(AreaDialog) override { return false; }
    void EditName() override {}
    void RedrawAll() override {}
    std::array<int, 5> told{};
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
    // The middle of a tile in window pixels.
    Point At(Point tile) const {
        const double scale = 8.0 / static_cast<double>(view.Zoom());
        return {static_cast<int>((tile.x + view.Scroll().x + 0.5) * scale),
                static_cast<int>((tile.y + view.Scroll().y + 0.5) * scale)};
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

// --- the model ---------------------------------------------------------------------------------

enum Tool { kNothing, kMovesView, kBox, kFollows, kPoints };

// What a person may expect of the view. `nodes` are the board and an object on it.
struct Plain {
    Dobject nodes[2];
    int current = 0;
    Point cursor, anchor, scroll, grab;
    Point painted;  ///< the scroll at the last repaint, which boards are moved by as well
    double zoom = 1;
    Tool tool = kNothing;
    int margin = 0;
    bool pen = false, captured = false, ruler = false, paints = true;
    std::optional<Point> visited;
    Brush brush{1, 15, 1, 0};
    int mode = kBrushNormal;
    std::array<int, 5> told{};
    std::optional<Brush> answer;

    Dobject& Node() { return nodes[current]; }
    Point Origin(int i) const {
        const Dobject &board = nodes[0], &object = nodes[1];
        if (i == 0) return {board.posx, board.posy};
        return {board.posx - board.viewx + object.posx, board.posy - board.viewy + object.posy};
    }
    Point Local() {
        const Point origin = Origin(current);
        return {cursor.x - origin.x + Node().viewx, cursor.y - origin.y + Node().viewy};
    }
    Dtile* Cell() { return Node().GetTile(Local().x, Local().y); }
    void Put(Dtile* tile, int chr) const {
        const auto put = [](std::uint16_t& field, int value) {
            if (value != -1) field = static_cast<std::uint16_t>(value);
        };
        if (!tile) return;
        put(tile->chr, chr);
        put(tile->fg, brush.fg);
        put(tile->bg, brush.bg);
        put(tile->attrib, brush.attrib);
    }
    static Brush Read(const Dtile& tile) {
        return {Signed(tile.chr), Signed(tile.fg), Signed(tile.bg), Signed(tile.attrib)};
    }
    Point TileAt(Point pixel) const {
        const double scale = 8 / zoom;
        return {static_cast<int>(pixel.x / scale - scroll.x),
                static_cast<int>(pixel.y / scale - scroll.y)};
    }
    bool Tabs() const { return mode == kBrushTab || mode == kBrushBlenderTab; }
    void Paint() {
        Dtile* tile = Cell();
        if (mode == kBrushNormal || mode == kBrushTab) return Put(tile, brush.chr);
        const std::map<int, int> shades{{32, 176}, {176, 177}, {177, 178}, {178, 219}, {219, 219}};
        const auto shade = tile ? shades.find(tile->chr) : shades.end();
        Put(tile, shade == shades.end() ? 32 : shade->second);
    }
    void Move(int dx, int dy) {
        cursor = {cursor.x + dx, cursor.y + dy};
        if (paints && (pen || Tabs())) Paint();
    }
    void Step(int Brush::*field, int by, int last) {
        const int to = brush.*field + by;
        if (by < 0 ? to >= 0 : to <= last) brush.*field = to;
        ++told[2];
    }
    void ScrollGrid(int sign) {
        const auto moved = [sign](int at, int step, int size, int shown) {
            return sign < 0 ? std::max(at - step, 0)
                            : std::min(at + step, std::max(size - shown, 0));
        };
        Node().viewx = moved(Node().viewx, vStepX, Node().width, Node().vieww);
        Node().viewy = moved(Node().viewy, vStepY, Node().height, Node().viewh);
    }
    void Pick() {
        for (int i = 0; i < 2; ++i) {
            const Point at{cursor.x - Origin(i).x, cursor.y - Origin(i).y};
            if (at.x >= 0 && at.y >= 0 && at.x < nodes[i].vieww && at.y < nodes[i].viewh)
                current = i;
        }
        ++told[0];
        ++told[1];
    }
    void Recolor() {
        for (const Dtile& tile : Node().tiles)
            if (tile != Node().tiles[0]) return;
        ++told[4];
        const Brush own = brush;
        if (answer) brush = *answer;
        for (Dtile& tile : Node().tiles)
            if (answer) Put(&tile, brush.chr);
        brush = own;
    }
    void MoveNode(Point tile) {
        const Dobject& board = nodes[0];
        const Point by =
            current == 0 ? painted : Point{board.viewx - board.posx, board.viewy - board.posy};
        tile = {tile.x + by.x, tile.y + by.y};
        Node().posx = tile.x;
        Node().posy = tile.y;
        ++told[1];
    }
    void Command(int command) {
        if (command == kCmdZoomIn) zoom = std::max(zoom / 2, 0.25);
        if (command == kCmdZoomOut) zoom = std::min(zoom * 2, 2.0);
        if (command == kCmdRuler) ruler = !ruler;
        if (command != kCmdFill) return;
        Node().undoTiles = Node().tiles;
        const auto clamped = [this](Point to) {
            const Point at{to.x - cursor.x + Local().x, to.y - cursor.y + Local().y};
            return Point{std::clamp(at.x, 0, Node().width - 1),
                         std::clamp(at.y, 0, Node().height - 1)};
        };
        const Point a = clamped(cursor), b = clamped(anchor);
        for (int y = std::min(a.y, b.y); y <= std::max(a.y, b.y); ++y)
            for (int x = std::min(a.x, b.x); x <= std::max(a.x, b.x); ++x)
                Put(Node().GetTile(x, y), brush.chr);
    }
    void Menu(int command) {
        tool = kNothing;
        captured = false;
        Command(command);
    }
    void Key(int code, int menu) {
        const bool steps = mode == kBrushNormal || mode == kBrushBlender;
        const bool blends = paints && mode == kBrushBlender;
        if (!paints || mode != kBrushText) {
            if (code == kKeyLeft || code == kKeyRight) Move(code - kKeyUp, 0);
            if (code == kKeyUp || code == kKeyDown) Move(0, code == kKeyUp ? -1 : 1);
        }
        if (!paints) {
            if (code == kKeyEnter) Pick();
            if (code == kKeyTab) Recolor();
            return;
        }
        if (mode != kBrushText) {
            if (code == kKeyHome) Step(&Brush::fg, -1, 0);
            if (code == kKeyEnd) Step(&Brush::fg, 1, 255);
            if (code == kKeyPageUp) Step(&Brush::bg, -1, 0);
            if (code == kKeyPageDown) Step(&Brush::bg, 1, 255);
            if (code == kKeyF1 || code == kKeyF2) ScrollGrid(code == kKeyF1 ? -1 : 1);
        }
        if (mode == kBrushNormal || mode == kBrushTab) {
            if (code == kKeyInsert) Step(&Brush::chr, -1, 0);
            if (code == kKeyDelete) Step(&Brush::chr, 1, 255);
        }
        if (code == kKeyTab && mode != kBrushText) {
            if (steps) Paint();
            if (steps) pen = false;
            mode = steps ? mode + 1 : mode - 1;
            ++told[3];
        } else if (steps && code == kKeyApps) {
            anchor = cursor;
            Menu(menu);
        } else if (steps && code == kKeyEnter && Cell()) {
            brush = Read(*Cell());
            ++told[2];
        } else if (steps && (code == kKeySpace || code == kKeyShift)) {
            if (mode == kBrushNormal || visited != cursor) Paint();
            pen |= code == kKeyShift;
        }
        if (blends) visited.reset();
        if (blends && (code == kKeySpace || code == kKeyShift)) visited = cursor;
    }
    void Char(int ch) {
        if (!paints || mode != kBrushText || ch == kKeyEscape) return;
        if (ch == kKeyBackspace) {
            cursor.x -= cursor.x > margin;
        } else if (ch == kKeyEnter) {
            cursor = {margin, cursor.y + 1};
            if (Local().y >= Node().height) cursor.y -= Local().y;
        } else {
            for (int i = 0; i < (ch == kKeyTab ? 3 : 1); ++i) {
                Put(Cell(), ch == kKeyTab ? ' ' : ch);
                ++cursor.x;
                if (Local().x < Node().width) continue;
                cursor = {cursor.x - Local().x, cursor.y + 1};
                if (Local().y >= Node().height) cursor.y -= Local().y;
            }
        }
    }
    void LeftDown(bool ctrl, Point at) {
        if (ctrl) {
            tool = kMovesView;
            anchor = at;
            grab = scroll;
            captured = true;
            return;
        }
        cursor = TileAt(at);
        if (!paints) return Pick();
        tool = kFollows;
        margin = cursor.x;
    }
    void RightDown(bool ctrl, Point at) {
        if (!paints) MoveNode(TileAt(at));
        tool = ctrl ? kPoints : kBox;
        cursor = anchor = TileAt(at);
    }
    void MouseMove(Point at) {
        if (tool == kMovesView)
            scroll = {static_cast<int>((at.x - anchor.x) * zoom / 8 + grab.x),
                      static_cast<int>((at.y - anchor.y) * zoom / 8 + grab.y)};
        else if (paints && (tool == kBox || tool == kPoints))
            anchor = TileAt(at);
        else if (tool == kFollows || (!paints && tool != kPoints)) {
            if (tool == kBox) MoveNode(TileAt(at));
            cursor = TileAt(at);
        }
    }
};

std::string Text(std::initializer_list<int> numbers) {
    std::string text;
    for (int number : numbers) text += std::to_string(number) + " ";
    return text;
}

std::string State(Point cursor, Point anchor, Point scroll, double zoom, const Brush& brush) {
    return Text({cursor.x, cursor.y, anchor.x, anchor.y, scroll.x, scroll.y,
                 static_cast<int>(zoom * 4), brush.chr, brush.fg, brush.bg, brush.attrib});
}

std::string Nodes(const Dobject& board, const Dobject& object) {
    std::string text;
    for (const Dobject* node : {&board, &object}) {
        text += "\n" + Text({node->posx, node->posy, node->viewx, node->viewy}) + "|";
        for (const auto* tiles : {&node->tiles, &node->undoTiles})
            for (const Dtile& t : *tiles) text += Text({t.chr, t.fg, t.bg, t.attrib});
    }
    return text;
}

}  // namespace

TEST_F(View, DoesWhatAPlainModelDoes) {
    std::mt19937 random(12);
    const auto roll = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    Dobject& object = AddNode(*board, "object", 6, 3);
    const std::uint16_t values[] = {0, 1, 32, 176, 177, 178, 219, 255, 65534, 65535};
    Plain plain;
    Dobject* own[] = {board, &object};
    const auto renew = [&] {
        vStepX = roll(4);
        vStepY = roll(4);
        for (int i = 0; i < 2; ++i) {
            Dobject& node = *own[i];
            node.posx = roll(5) - 1;
            node.posy = roll(5) - 1;
            node.viewx = node.viewy = 0;
            node.vieww = node.width - roll(3);
            node.viewh = node.height - roll(3);
            const bool even = roll(3) == 0;
            for (Dtile& t : node.tiles) {
                for (std::uint16_t* field : {&t.chr, &t.fg, &t.bg, &t.attrib})
                    *field = values[roll(10)];
                if (even) t = node.tiles[0];
            }
            Dobject& copy = plain.nodes[i];
            copy.tiles = node.tiles;
            for (auto field : {&Dobject::width, &Dobject::height, &Dobject::posx, &Dobject::posy,
                               &Dobject::vieww, &Dobject::viewh, &Dobject::viewx, &Dobject::viewy})
                copy.*field = node.*field;
        }
    };
    const auto shown = [&] {
        return State(view.Cursor(), view.Anchor(), view.Scroll(), static_cast<double>(view.Zoom()),
                     vBrush) +
               Text({vRuler, vBrushMode, window.captured, world->currentObject == object.id}) +
               Nodes(*board, object);
    };
    const auto expected = [&] {
        return State(plain.cursor, plain.anchor, plain.scroll, plain.zoom, plain.brush) +
               Text({plain.ruler, plain.mode, plain.captured, plain.current}) +
               Nodes(plain.nodes[0], plain.nodes[1]);
    };
    const auto describe = [&] {
        const Point at = plain.Local();
        const Dtile* tile = plain.Cell();
        const Brush read = tile ? Plain::Read(*tile) : Brush{};
        const auto text = [](int number) { return std::to_string(number); };
        return own[plain.current]->name + ", " + text(at.x) + " x " + text(at.y) +
               (tile ? ": glyph " + text(read.chr) + ", colour " + text(read.fg) + " on " +
                           text(read.bg) + ", attribute " + text(read.attrib)
                     : ": outside the grid");
    };
    const int keys[] = {kKeyUp,   kKeyDown,  kKeyLeft,     kKeyRight,  kKeyUp,     kKeyDown,
                        kKeyLeft, kKeyRight, kKeySpace,    kKeyShift,  kKeyEnter,  kKeyTab,
                        kKeyHome, kKeyEnd,   kKeyPageUp,   kKeyInsert, kKeyDelete, kKeyApps,
                        kKeyF1,   kKeyF2,    kKeyPageDown, kKeyEscape, 'A',        kKeySpace};
    const int menus[] = {0, kCmdToolCancel, kCmdZoomIn, kCmdZoomOut, kCmdRuler, kCmdFill, kCmdFill};
    renew();
    plain.captured = window.captured;
    for (int step = 0; step < 40'000; ++step) {
        const std::string before = shown();
        window.invalidated = 0;
        if (step % 500 == 0) renew();
        if (step % 100 == 0) {
            vPanelMode = roll(4) ? kPanelPaint : kPanelProperties;
            plain.paints = vPanelMode == kPanelPaint;
            vBrushMode = plain.mode = roll(kBrushModes);
            vBrush = plain.brush = {values[roll(8)], roll(2) * 255, roll(3) * 127, roll(3) - 1};
        }
        host.answer.reset();
        if (roll(2)) host.answer = Brush{roll(9), -2, -1, roll(4)};
        plain.answer = host.answer;
        const Point to = plain.Origin(plain.current);
        Point at =
            At({to.x - 2 + roll(plain.Node().width + 4), to.y - 2 + roll(plain.Node().height + 4)});
        at = {at.x + roll(9) - 4, at.y + roll(9) - 4};
        const bool ctrl = roll(4) == 0;
        const int kind = roll(24);
        std::string event = "event " + std::to_string(kind);
        std::optional<Point> menuAt;
        if (kind < 8) {
            const int code = keys[roll(24)], menu = menus[roll(7)];
            event += " key " + std::to_string(code);
            const bool opens = code == kKeyApps && plain.paints &&
                               (plain.mode == kBrushNormal || plain.mode == kBrushBlender);
            const double scale = 8 / plain.zoom;
            if (opens)
                menuAt = Point{static_cast<int>((plain.cursor.x + plain.scroll.x + 1) * scale),
                               static_cast<int>((plain.cursor.y + plain.scroll.y + 1) * scale)};
            if (opens) script.ExpectMenu({}, menu);
            window.Send(&Events::OnKeyDown, code);
            if (code == kKeySpace && !plain.paints) {
                auto& children = own[plain.current]->children;
                const auto placed =
                    std::find_if(children.begin(), children.end(),
                                 [&](auto& child) { return child.get() != &object; });
                ASSERT_NE(placed, children.end());
                ASSERT_EQ((Point{(*placed)->posx, (*placed)->posy}), plain.Local());
                ASSERT_EQ((*placed)->name, "Dummy");
                children.erase(placed);
                ++plain.told[0];
            }
            plain.Key(code, menu);
        } else if (kind < 10) {
            window.Send(&Events::OnKeyUp, ctrl ? kKeyTab : kKeyShift);
            if (plain.paints && !ctrl) plain.pen = false;
        } else if (kind < 13) {
            const int chars[] = {'A', 130, ' ', kKeyEnter, kKeyTab, kKeyBackspace, kKeyEscape, 'z'};
            const int ch = chars[roll(8)];
            window.Send(&Events::OnChar, ch);
            plain.Char(ch);
        } else if (kind < 15) {
            window.Send(&Events::OnLButtonDown, ctrl, at);
            plain.LeftDown(ctrl, at);
        } else if (kind < 17) {
            window.Send(&Events::OnRButtonDown, ctrl, at);
            plain.RightDown(ctrl, at);
        } else if (kind < 20) {
            window.Send(&Events::OnMouseMove, ctrl, at);
            plain.MouseMove(at);
        } else if (kind < 22) {
            window.Send(&Events::OnLButtonUp, ctrl, at);
            plain.Menu(0);
        } else if (kind < 23) {
            const bool points = plain.tool == kPoints;
            const int menu = points ? roll(2) * kCmdPrimCancel : menus[roll(7)];
            if (plain.paints) {
                script.ExpectMenu({}, menu);
                menuAt = at;
            }
            const bool ruler = plain.ruler;
            window.Send(&Events::OnRButtonUp, ctrl, at);
            if (menuAt) {
                const MenuItem* entry = FindEntry(script.lastMenu, kCmdRuler);
                ASSERT_EQ(entry == nullptr, points);
                ASSERT_TRUE(points || entry->checked == ruler);
            }
            plain.Menu(plain.paints ? menu : 0);
        } else {
            const int delta = roll(3) - 1;
            window.Send(&Events::OnMouseWheel, delta);
            plain.Command(delta > 0 ? kCmdZoomIn : delta < 0 ? kCmdZoomOut : 0);
        }
        ASSERT_EQ(shown(), expected()) << "step " << step << ", " << event << ", before:\n"
                                       << before;
        ASSERT_EQ(host.told, plain.told) << "step " << step << ", " << event;
        if (menuAt) {
            ASSERT_EQ(script.lastMenuAt, window.ClientToScreen(*menuAt)) << event;
        }
        ASSERT_TRUE(window.invalidated || kind == 20 || kind == 21 || kind == 22 ||
                    shown() == before || step % 100 == 0)
            << "step " << step << ", " << event << " asks for no repaint";
        if (step % 50 == 0) {
            window.Paint();
            plain.painted = plain.scroll;
            ASSERT_EQ(window.description, describe());
        }
    }
}

// --- marks -------------------------------------------------------------------------------------

// Every mark of the view, by the pixels of a window that is scrolled by two tiles: Frames, Areas
// and Lines with their corners and ink, and a Text with its corner.
TEST_F(View, MarksStandWhereTheyShould) {
    struct Case {
        std::function<void()> person;
        std::string marks;
    };
    Dobject& object = AddNode(*board, "object", 4, 2);
    object.posx = 4;
    object.posy = object.viewx = 1;
    object.vieww = 3;
    world->currentObject = object.id;
    for (int i = 0; i < 4; ++i) object.PutTile(i, 0, 0, 0, 0, i);
    window.Drag({0, 0}, {16, 16}, true);
    const auto drag = [this](bool ctrl, Point from, Point to) {
        window.Send(&Events::OnRButtonDown, ctrl, At(from));
        window.Send(&Events::OnMouseMove, ctrl, At(to));
    };
    const std::string cursor = "F 16 16 23 23 32 A 17 17 22 22 15 ";
    const std::string box = "F 24 24 55 47 32 A 25 25 54 46 15 ";
    const std::string points =
        "F 24 24 31 31 32 A 25 25 30 30 15 F 48 40 55 47 32 A 49 41 54 46 15 ";
    const std::string lines =
        "L 0 24 647 24 15 L 24 0 24 487 15 L 0 48 647 48 15 L 56 0 56 487 15 "
        "L 0 25 647 25 32 L 25 0 25 487 32 L 0 47 647 47 32 L 55 0 55 487 32 "
        "T 72 48 4,3 ";
    const std::string cross =
        "L 0 16 647 16 15 L 16 0 16 487 15 L 0 17 647 17 32 L 17 0 17 487 32 "
        "T 40 24 -3,-1 ";
    // The first column is scrolled away: solid, breakable, water.
    const std::string attribs =
        "F 50 26 53 29 15 F 51 27 52 28 32 L 60 25 60 31 15 "
        "L 57 28 63 28 32 L 65 25 71 31 15 L 65 26 71 32 32 ";
    const std::string frames =
        "F 12 12 99 83 15 F 11 11 100 84 15 F 46 22 73 41 15 F 45 21 74 42 15 ";
    const std::string screens[] = {"F 15 15 336 256 15", "F 15 15 656 496 15", "F 15 15 816 616 15",
                                   "F 15 15 1040 784 15"};
    const Case cases[] = {
        {[] {}, cursor},
        {[] { vShowAttrib = true; }, cursor + attribs},
        {[] { vPanelMode = kPanelProperties; }, cursor},
        {[] { vShowAttrib = !(vRuler = 1); }, cursor + cross},
        {[&] {
             vPanelMode = kPanelPaint, drag(false, {4, 3}, {1, 1});
         },
         box + lines},
        {[&] {
             drag(true, {1, 1}, {4, 3});
         },
         points + lines},
        {[] { vRuler = 0; }, points},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(&c - cases);
        world->videoMode = static_cast<int>(&c - cases) % kVideoModes;
        c.person();
        window.Paint();
        const Bitmap picture = MakeBitmap(648, 488);
        clear_bitmap(picture.get());
        world->DrawWorld(picture.get(), 2, 2);
        xor_mode(TRUE);
        std::istringstream marks(frames + screens[world->videoMode] + " " + c.marks);
        int x0 = 0, y0 = 0, x1 = 0, y1 = 0, ink = 0;
        std::string text;
        for (char kind = 0; marks >> kind >> x0 >> y0;) {
            if (kind == 'T')
                marks >> text, textout_ex(picture.get(), font, text.c_str(), x0, y0, 15, -1);
            else
                marks >> x1 >> y1 >> ink,
                    (kind == 'F'   ? rect
                     : kind == 'A' ? rectfill
                                   : line)(picture.get(), x0, y0, x1, y1, ink);
        }
        xor_mode(FALSE);
        ASSERT_EQ(window.pixels.size(), 648u * 488u);
        for (int p = 0; p < 648 * 488; ++p)
            ASSERT_EQ(window.PixelAt(p % 648, p / 648), getpixel(picture.get(), p % 648, p / 648))
                << p % 648 << ", " << p / 648;
    }
}

// Whatever the zoom, each pixel of the bitmap takes as much of the window as any other.
TEST_F(View, ZoomedPicturesCoverTheWindow) {
    for (int side : {640, 643, 647, 1001}) {
        window.size = {side, side};
        for (int command : {kCmdZoomOut, kCmdZoomIn, kCmdZoomIn, kCmdZoomIn, kCmdZoomOut}) {
            view.OnCommand(command);
            window.Paint();
            EXPECT_EQ(window.shown.w * view.Zoom(), window.w);
            EXPECT_EQ(window.w % 8, 0);
            EXPECT_GT(window.shown.w, side);
            EXPECT_EQ(world->Root().width, window.w / 8);
            EXPECT_EQ(window.h, window.w);
        }
    }
}

TEST_F(View, PickingAmongThreeAsks) {
    vPanelMode = kPanelProperties;
    Dobject& a = AddNode(*board, "A&B", 3, 3);
    Dobject& b = AddNode(a, "inner", 1, 1);
    script.ExpectMenu({"board", "A&&B", "inner", "-", "&Cancel"}, a.id + kCmdPickBase);
    window.Click(At({0, 0}));
    EXPECT_EQ(world->currentObject, a.id);
    b.id = kCmdPickEnd - kCmdPickBase - 1;
    script.ExpectMenu({}, b.id + kCmdPickBase);
    window.Keys({kKeyEnter});
    EXPECT_EQ(world->currentObject, b.id);
    EXPECT_EQ(script.lastMenuAt, window.ClientToScreen({8, 8}));
    script.ExpectMenu({}, 0);
    window.Keys({kKeyEnter});
    EXPECT_EQ(world->currentObject, b.id);
}

TEST_F(View, ViewModesComposeWhatTheyName) {
    Dobject& a = AddNode(*board, "a", 1, 1);
    a.posx = a.posy = 5;
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
    world->currentObject = 12345;
    EXPECT_EQ(shown(), std::pair(0, 0)) << "no node, nothing composed, frames at the corner";
}
