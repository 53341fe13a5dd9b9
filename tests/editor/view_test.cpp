// The edit view: a random walk of all its events beside a plain model, and its marks by picture.

#include "editor/commands.h"
#include "editor/view/quilt_view.h"
#include "tests/editor/plain_brush.h"
#include "tests/support/scripted_platform.h"

using namespace platform;
using Events = WindowEvents;

namespace {

enum Tool { kNothing, kMovesView, kBox, kFollows, kPoints, kKeyBox };

constexpr Point kSteps[] = {{-1, 0}, {0, -1}, {1, 0}, {0, 1}};

// What a person may expect of the view, in the plainest words: cursor, pen, margin, brush and
// tiles by every key and every move of the mouse. `nodes` are the board and an object on it.
struct Plain final : Events {
    Dobject nodes[2];
    int current = 0;
    Point cursor, anchor, press, scroll, grab;
    Point painted;  ///< the scroll at the last repaint, which boards are moved by as well
    double zoom = 1;
    Tool tool = kNothing;
    int margin = 0, mode = kBrushNormal;
    Point middle;  ///< of the window, from its corner
    bool pen = false, captured = false, ruler = false, paints = true;
    std::optional<Point> visited;
    Brush brush;
    std::string told;
    // What a person answers, and what the last event opened or placed.
    std::optional<Brush> answer;
    int choice = 0;
    std::optional<Point> menuAt, placed;
    std::string menu;

    Dobject& Node() { return nodes[current]; }
    Point View(int i) const { return {nodes[i].viewx, nodes[i].viewy}; }
    Point Origin(int i) const {
        const Point at{nodes[i].posx, nodes[i].posy};
        return i ? Origin(0) - View(0) + at : at;
    }
    Point Local() const { return cursor - Origin(current) + View(current); }
    Dtile* Cell() { return Node().GetTile(Local().x, Local().y); }
    void Put(Dtile* tile, int chr) const {
        if (tile) ::Paint(*tile, {chr, brush.fg, brush.bg, brush.attrib});
    }
    Point TileAt(Point pixel) const {
        return {int(pixel.x * zoom / 8 - scroll.x), int(pixel.y * zoom / 8 - scroll.y)};
    }
    void Paint() {
        Dtile* tile = Cell();
        if (mode == kBrushNormal || mode == kBrushTab) return Put(tile, brush.chr);
        const int shades[] = {32, 176, 177, 178, 219, 219};
        const int* shade = tile ? std::find(shades, shades + 5, tile->chr) : shades;
        Put(tile, shade == shades + 5 ? 32 : shade[1]);
    }
    void Move(int dx, int dy) {
        if (tool == kKeyBox) tool = kNothing;
        cursor = cursor + Point{dx, dy};
        if (paints && (pen || mode == kBrushTab || mode == kBrushBlenderTab)) Paint();
    }
    void Pick() {
        for (int i = 0; i < 2; ++i) {
            const Point at = cursor - Origin(i);
            if (at.x >= 0 && at.y >= 0 && at.x < nodes[i].vieww && at.y < nodes[i].viewh)
                current = i;
        }
        told += "tv";
    }
    void Recolor() {
        for (const Dtile& tile : Node().tiles)
            if (tile != Node().tiles[0]) return;
        told += "e" + std::to_string(Signed(Node().tiles[0].chr));
        if (!answer) return;
        const Brush own = std::exchange(brush, *answer);
        for (Dtile& tile : Node().tiles) Put(&tile, brush.chr);
        brush = own;
    }
    void Place(Point tile) {
        if (tile != cursor) visited.reset();
        cursor = tile;
    }
    void MoveNode(Point tile) {
        tile = tile + (current ? View(0) - Origin(0) : painted);
        Node().posx = tile.x;
        Node().posy = tile.y;
        told += 'v';
    }
    void Drop() {
        tool = kNothing;
        captured = false;
    }
    void Open(Point at) {
        menuAt = at;
        menu = tool == kPoints ? "&Rect(" : ruler ? " +R&uler" : " R&uler";
        Drop();
        if (choice == kCmdZoomIn || choice == kCmdZoomOut)
            OnMouseWheel(choice == kCmdZoomIn ? 1 : -1);
        if (choice == kCmdRuler) ruler = !ruler;
    }

    void OnDraw(Window&) override { painted = scroll; }
    void OnKeyDown(int full) override {
        const int code = PlainKey(full), with = full - code;
        const bool arrow = code >= kKeyLeft && code <= kKeyDown, box = tool == kKeyBox;
        const Point step = arrow ? kSteps[code - kKeyLeft] : Point{};
        if (code == kKeyShift && (with == kWithCtrl || (box && !with))) return;
        if (arrow && with == (kWithCtrl | kWithShift)) return void(scroll = scroll - step);
        if (full == kKeyF4) return void(scroll = middle - cursor);
        if (paints && mode == kBrushText) return;
        const bool blends = mode == kBrushBlender, steps = mode == kBrushNormal || blends;
        if (paints && arrow && with == kWithCtrl) {
            anchor = (box ? anchor : cursor) + step;
            tool = kKeyBox;
            if (blends) visited.reset();
            return;
        }
        if (code == kKeyLeft || code == kKeyRight) Move(code - kKeyUp, 0);
        if (code == kKeyUp || code == kKeyDown) Move(0, code == kKeyUp ? -1 : 1);
        if (!paints) {
            if (code == kKeyEnter) Pick();
            if (code == kKeyTab) Recolor();
            if (code != kKeySpace) return;
            placed = Local();
            told += 't';
            return;
        }
        const int downs[] = {kKeyInsert, kKeyHome, kKeyPageUp};
        const int ups[] = {kKeyDelete, kKeyEnd, kKeyPageDown};
        for (std::size_t i = mode > kBrushText; i < 3; ++i) {
            if ((code != downs[i] && code != ups[i]) || (i == 1 && brush.fg == -2)) continue;
            std::int32_t& field = *Fields(brush)[i];
            field += code == ups[i] ? field < 255 : -(field > 0);
            told += 'p';
        }
        for (const auto& [at, by, whole, shown] :
             {std::tuple(&Node().viewx, vStepX, Node().width, Node().vieww),
              {&Node().viewy, vStepY, Node().height, Node().viewh}}) {
            if (by && code == kKeyF1) *at = std::max(*at - by, 0);
            if (by && code == kKeyF2) *at = std::min(*at + by, std::max(whole - shown, 0));
        }
        if (code == kKeyEscape && box) tool = kNothing;
        const bool presses = steps && (code == kKeySpace || code == kKeyShift);
        if (presses) {
            if (!blends || visited != cursor) Paint();
            pen |= code == kKeyShift;
        } else if (code == kKeyTab) {
            if (steps) Paint();
            pen &= !steps;
            mode += steps ? 1 : -1;
            told += 'm';
        } else if ((steps || box) && code == kKeyApps) {
            if (!box) anchor = cursor;
            tool = box && with == kWithCtrl ? kPoints : kNothing;
            Open({int((anchor.x + scroll.x + 1) * 8 / zoom),
                  int((anchor.y + scroll.y + 1) * 8 / zoom)});
        } else if (steps && code == kKeyEnter && Cell()) {
            const Dtile& t = *Cell();
            brush = {Signed(t.chr), Signed(t.fg), Signed(t.bg), Signed(t.attrib)};
            told += 'p';
        }
        if (blends) visited = presses ? std::optional(cursor) : std::nullopt;
    }
    void OnKeyUp(int code) override { pen &= !paints || code != kKeyShift; }
    void OnChar(int ch) override {
        if (!paints || mode != kBrushText || ch == kKeyEscape) return;
        const auto wrap = [this](int column) {
            cursor = {column, cursor.y + 1};
            if (Local().y >= Node().height) cursor.y -= Local().y;
        };
        if (ch == kKeyBackspace) cursor.x -= cursor.x > margin;
        if (ch == kKeyEnter) wrap(margin);
        const bool types = ch != kKeyBackspace && ch != kKeyEnter;
        for (int i = 0; i < (ch == kKeyTab ? 3 : types); ++i) {
            Put(Cell(), ch == kKeyTab ? ' ' : ch);
            ++cursor.x;
            if (Local().x >= Node().width) wrap(cursor.x - Local().x);
        }
    }
    void OnLButtonDown(bool ctrl, Point at) override {
        if (ctrl) {
            tool = kMovesView;
            press = at;
            grab = scroll;
            captured = true;
            return;
        }
        Place(TileAt(at));
        if (!paints) return Pick();
        tool = kFollows;
        margin = cursor.x;
    }
    void OnRButtonDown(bool ctrl, Point at) override {
        if (!paints) MoveNode(TileAt(at));
        tool = ctrl ? kPoints : kBox;
        Place(TileAt(at));
        anchor = cursor;
    }
    void OnMouseMove(bool, Point at) override {
        if (tool == kMovesView)
            scroll = {int((at.x - press.x) * zoom / 8 + grab.x),
                      int((at.y - press.y) * zoom / 8 + grab.y)};
        else if (paints && (tool == kBox || tool == kPoints))
            anchor = TileAt(at);
        else if (tool == kFollows || (!paints && tool < kPoints)) {
            if (tool == kBox) MoveNode(TileAt(at));
            Place(TileAt(at));
        }
    }
    void OnLButtonUp(bool, Point) override { Drop(); }
    void OnRButtonUp(bool, Point at) override { paints ? Open(at) : Drop(); }
    void OnMouseWheel(int delta) override {
        if (delta) zoom = std::clamp(delta > 0 ? zoom / 2 : zoom * 2, 0.25, 2.0);
    }
};

struct View : WorldTest, HostLog {
    View() {
        ResetViewState();
        view.Attach(window);
        board = &AddNode(world->Root(), "board", 10, 8);
        world->currentBoard = world->currentObject = board->id;
    }
    bool EditBrush() override {
        told += "e" + std::to_string(vBrush.chr);
        if (answer) vBrush = *answer;
        return answer.has_value();
    }
    // The middle of a tile in window pixels, not farther than any mouse comes.
    Point At(Point tile) const {
        const auto pixel = [&](int at) {
            return int(std::clamp((at + 0.5) * 8 / double{view.Zoom()}, -1e6, 1e6));
        };
        return {pixel(tile.x + view.Scroll().x), pixel(tile.y + view.Scroll().y)};
    }

    std::optional<Brush> answer;
    ScriptedPlatform script;
    CQuiltView view{*this};
    ScriptedWindow window{script, &view, {640, 480}};
    Dobject* board;
};

}  // namespace

TEST_F(View, DoesWhatAPlainModelDoes) {
    Dobject& object = AddNode(*board, "object", 6, 3);
    const std::uint16_t values[] = {0, 1, 32, 176, 177, 178, 219, 255, 65534, 65535};
    Plain plain;
    Dobject* own[] = {board, &object};
    const auto renew = [&] {
        vStepX = Roll(0, 3);
        vStepY = Roll(0, 3);
        for (int i = 0; i < 2; ++i) {
            Dobject& node = *own[i];
            node.posx = Roll(0, 4) - 1;
            node.posy = Roll(0, 4) - 1;
            // Now and then a viewport stands past the grid, as a file may have put it.
            node.viewx = Roll(0, 5) ? 0 : 50;
            node.viewy = 0;
            node.vieww = node.width - Roll(0, 2);
            node.viewh = node.height - Roll(0, 2);
            const bool even = Roll(0, 2) == 0;
            for (Dtile& t : node.tiles) {
                for (std::uint16_t* field : {&t.chr, &t.fg, &t.bg, &t.attrib})
                    *field = values[Roll(0, 9)];
                if (even) t = node.tiles[0];
            }
            plain.nodes[i].tiles = node.tiles;
            for (auto field : {&Dobject::width, &Dobject::height, &Dobject::posx, &Dobject::posy,
                               &Dobject::vieww, &Dobject::viewh, &Dobject::viewx, &Dobject::viewy})
                plain.nodes[i].*field = node.*field;
        }
    };
    const auto of = [&](const Dobject& node) {
        return std::tuple(node.posx, node.posy, node.viewx, node.viewy, node.tiles);
    };
    const auto shown = [&] {
        return std::tuple(view.Cursor(), view.Anchor(), view.Scroll(), double{view.Zoom()}, vBrush,
                          vRuler == 1, vBrushMode, own[world->currentObject == object.id],
                          of(*board), of(object));
    };
    const auto both = [&](auto event, auto... given) {
        (plain.*event)(given...);
        if (plain.menuAt) script.ExpectMenu(plain.choice);
        window.Send(event, given...);
    };
    const int keys[] = {kKeySpace,  kKeyShift,    kKeyEnter,  kKeyTab,    kKeyHome, kKeyEnd,
                        kKeyPageUp, kKeyPageDown, kKeyInsert, kKeyDelete, kKeyApps, kKeyF1,
                        kKeyF2,     kKeyEscape,   kKeyF4,     'A'};
    const int chars[] = {'A', 130, ' ', kKeyEnter, kKeyTab, kKeyBackspace, kKeyEscape, 'z'};
    const int menus[] = {0, kCmdToolCancel, kCmdZoomIn, kCmdZoomOut, kCmdRuler};
    void (Events::*const mouse[])(bool, Point) = {&Events::OnLButtonDown, &Events::OnLButtonUp,
                                                  &Events::OnRButtonDown, &Events::OnRButtonUp,
                                                  &Events::OnMouseMove,   &Events::OnMouseMove};
    for (int step = 0; step < 40'000; ++step) {
        if (step % 500 == 0) renew();
        if (step % 100 == 0) {
            vPanelMode = Roll(0, 3) ? kPanelPaint : kPanelProperties;
            plain.paints = vPanelMode == kPanelPaint;
            vBrushMode = static_cast<BrushMode>(plain.mode = Roll(0, kBrushModes - 1));
            vBrush =
                plain.brush = {values[Roll(0, 7)], Roll(0, 1) * 255, Roll(0, 2) * 127, Roll(-1, 1)};
        }
        answer.reset();
        if (Roll(0, 1)) answer = Brush{Roll(0, 8), -2, -1, Roll(0, 3)};
        plain.answer = answer;
        plain.menuAt = plain.placed = std::nullopt;
        told = plain.told = "";
        const Point near{Roll(0, plain.Node().width + 3) - 2, Roll(0, plain.Node().height + 3) - 2};
        const Point at = At(plain.Origin(plain.current) + near) + Point{Roll(-4, 4), Roll(-4, 4)};
        const auto before = shown();
        window.invalidated = 0;
        const int kind = Roll(0, 23), held = Roll(0, 3) ? 0 : kWithCtrl | Roll(0, 1) * kWithShift,
                  code = held | (Roll(0, 2) ? keys[Roll(0, 15)] : kKeyLeft + Roll(0, 3)),
                  ch = chars[Roll(0, 7)];
        const bool shapes = plain.tool == (kind < 8 ? kKeyBox : kPoints) && held != code;
        plain.choice = shapes ? 0 : menus[Roll(0, 4)];
        plain.middle = {int(window.size.w * plain.zoom / 16), int(window.size.h * plain.zoom / 16)};
        SCOPED_TRACE(testing::Message() << "step " << step << ", " << kind << ", " << code);
        if (kind < 8) both(&Events::OnKeyDown, code);
        if (kind == 8 || kind == 9) both(&Events::OnKeyUp, kind == 8 ? code : int{kKeyShift});
        if (kind >= 10 && kind < 13) both(&Events::OnChar, ch);
        if (kind >= 13 && kind < 23) both(mouse[Roll(0, 5)], Roll(0, 3) == 0, at);
        if (kind == 23) both(&Events::OnMouseWheel, Roll(0, 2) - 1);
        const auto copies = std::erase_if(own[plain.current]->children, [&](const auto& child) {
            return child->name == "Dummy" && Point{child->posx, child->posy} == plain.placed;
        });
        ASSERT_EQ(copies > 0, plain.placed.has_value());
        ASSERT_EQ(shown(), std::tuple(plain.cursor, plain.anchor, plain.scroll, plain.zoom,
                                      plain.brush, plain.ruler, plain.mode, own[plain.current],
                                      of(plain.nodes[0]), of(plain.nodes[1])));
        ASSERT_EQ(told, plain.told);
        ASSERT_EQ(window.captured, plain.captured);
        ASSERT_TRUE(window.invalidated || shown() == before) << "asks for no repaint";
        if (plain.menuAt) {
            ASSERT_EQ(script.lastMenuAt, window.ClientToScreen(*plain.menuAt));
            ASSERT_NE(Outline(script.lastMenu).find(plain.menu), std::string::npos);
        }
        if (step % 50) continue;
        window.size = {600 + Roll(0, 9), 600 + Roll(0, 9)};
        window.Paint();
        plain.OnDraw(window);
        const Point cell = plain.Local();
        ASSERT_NE(window.description.find(std::to_string(cell.x) + " x " + std::to_string(cell.y)),
                  std::string::npos);
        // Each pixel of the bitmap takes as much of the window as any other, and none is left.
        ASSERT_EQ(window.shown.w * plain.zoom, window.w);
        ASSERT_EQ(window.w, world->Root().width * 8);
        ASSERT_GT(window.shown.w, window.size.w);
        ASSERT_GT(window.shown.h, window.size.h);
    }
}

// Every mark of the view, by the pixels of a window that is scrolled by two tiles: Frames, Areas
// and Lines with their corners and ink, and a Text with its corner.
TEST_F(View, MarksStandWhereTheyShould) {
    Dobject& object = AddNode(*board, "object", 4, 2);
    object.posx = 4;
    object.posy = object.viewx = 1;
    object.vieww = 3;
    world->currentObject = object.id;
    for (int i = 0; i < 4; ++i) object.PutTile(i, 0, 1, 15, 1, i);
    window.Drag({0, 0}, {16, 16}, true);
    const auto drag = [this](bool ctrl, Point from, Point to) {
        window.Send(&Events::OnRButtonDown, ctrl, At(from));
        window.Send(&Events::OnMouseMove, ctrl, At(to));
    };
    const std::string cursor = "F 16 16 23 23 32 A 17 17 22 22 15 ";
    const std::string ends = "F 24 24 31 31 32 A 25 25 30 30 15 F 48 40 55 47 32 A 49 41 54 46 15 ";
    const std::string lines =
        "L 0 24 647 24 15 L 24 0 24 487 15 L 0 48 647 48 15 L 56 0 56 487 15 "
        "L 0 25 647 25 32 L 25 0 25 487 32 L 0 47 647 47 32 L 55 0 55 487 32 T 72 48 4,3 ";
    world->videoMode = 3;
    std::string frames =
        "F 12 12 99 83 15 F 11 11 100 84 15 F 46 22 73 41 15 F 45 21 74 42 15 F 15 15 1040 784 15 ";
    const auto shows = [&](const std::string& drawn) {
        SCOPED_TRACE(drawn);
        window.Paint();
        const Bitmap picture = MakeBitmap(648, 488);
        const HandleGuard h(world->GetCurrentObject());
        if (vViewMode)
            world->DrawObjectMode(picture.get(), 2, 2, h, vViewMode);
        else
            world->DrawWorld(picture.get(), 2, 2);
        xor_mode(TRUE);
        std::istringstream marks(frames + drawn);
        int x0 = 0, y0 = 0, x1 = 0, y1 = 0, ink = 15;
        std::string text;
        for (char kind = 0; marks >> kind >> x0 >> y0;) {
            if (kind == 'T') {
                marks >> text;
                textout_ex(picture.get(), font, text.c_str(), x0, y0, 15, -1);
                continue;
            }
            marks >> x1 >> y1 >> ink;
            const auto draw = kind == 'F' ? rect : kind == 'A' ? rectfill : line;
            draw(picture.get(), x0, y0, x1, y1, ink);
        }
        xor_mode(FALSE);
        window.ExpectPicture([&](int x, int y) { return getpixel(picture.get(), x, y); });
    };
    vPanelMode = kPanelProperties, vShowAttrib = true, vViewMode = kViewFocus;
    shows(cursor);
    vPanelMode = kPanelPaint, vViewMode = kViewHideObjs;
    // The first column is scrolled away: solid, breakable, water.
    shows(cursor +
          "F 50 26 53 29 15 F 51 27 52 28 32 L 60 25 60 31 15 L 57 28 63 28 32 "
          "L 65 25 71 31 15 L 65 26 71 32 32 ");
    vShowAttrib = !(vRuler = 1);
    shows(cursor +
          "L 0 16 647 16 15 L 16 0 16 487 15 L 0 17 647 17 32 L 17 0 17 487 32 T 40 24 -3,-1 ");
    drag(false, {4, 3}, {1, 1});
    shows("F 24 24 55 47 32 A 25 25 54 46 15 " + lines);
    drag(true, {1, 1}, {4, 3});
    vRuler = 0, vViewMode = kViewFocus | kViewHideObjs;
    shows(ends);
    world->Root().EraseAll();
    vViewMode = kViewFocus;
    frames =
        "F 12 12 19 19 15 F 11 11 20 20 15 F 14 14 17 17 15 F 13 13 18 18 15 F 15 15 1040 784 15 ";
    shows(ends);
}

TEST_F(View, PickingAmongThreeAsks) {
    Dobject& object = AddNode(AddNode(*board, "object", 3, 3), "inner", 1, 1);
    vPanelMode = kPanelProperties;
    for (const int id : {world->currentObject, object.id}) {
        script.ExpectMenu(id == object.id ? id + kCmdPickBase : 0);
        window.Click(At({0, 0}));
        EXPECT_EQ(Outline(script.lastMenu), "board object inner | &Cancel");
        EXPECT_EQ(world->currentObject, id);
    }
}
