// The edit view: a random walk of all its events beside a plain model, its marks by picture, and
// what the model does not have: picking, zoom and view modes.

#include "editor/view/object_clip.h"
#include "editor/view/quilt_view.h"
#include "tests/editor/plain_view.h"
#include "tests/support/scripted_platform.h"
#include "tests/support/test_world.h"

#include <array>
#include <random>
#include <sstream>

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
    // The middle of a tile in window pixels, not farther than any mouse comes.
    Point At(Point tile) const {
        const double scale = 8.0 / static_cast<double>(view.Zoom());
        const auto pixel = [&](int at, int scroll) {
            return static_cast<int>(std::clamp((at + scroll + 0.5) * scale, -1e6, 1e6));
        };
        return {pixel(tile.x, view.Scroll().x), pixel(tile.y, view.Scroll().y)};
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
        const Point near{roll(plain.Node().width + 4) - 2, roll(plain.Node().height + 4) - 2};
        const Point at = At(to + near) + Point{roll(9) - 4, roll(9) - 4};
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
            ASSERT_EQ(window.description, own[plain.current]->name + ", " + plain.Describe());
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
        window.ExpectPicture(picture.get());
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
    Dobject& b = *a.Spawn(kCmdPickEnd - kCmdPickBase - 1, 0);
    b.Create("inner", 1, 1);
    script.ExpectMenu({"board", "A&&B", "inner", "-", "&Cancel"}, a.id + kCmdPickBase);
    window.Click(At({0, 0}));
    EXPECT_EQ(world->currentObject, a.id);
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
