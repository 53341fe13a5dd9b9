// What a person may expect of the edit view, in the plainest words: cursor, pen, margin, brush and
// tiles by every key and every move of the mouse.
#pragma once

#include "editor/commands.h"
#include "editor/view/brush.h"
#include "engine/dobject.h"
#include "platform/geometry.h"
#include "platform/keys.h"

#include <algorithm>
#include <array>
#include <map>
#include <optional>
#include <string>

using namespace platform;

inline Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
inline Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }

enum Tool { kNothing, kMovesView, kBox, kFollows, kPoints };

// `nodes` are the board and an object on it.
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
    Point View(int i) const { return {nodes[i].viewx, nodes[i].viewy}; }
    Point Origin(int i) const {
        const auto at = [](const Dobject& node) { return Point{node.posx, node.posy}; };
        return i ? at(nodes[0]) - View(0) + at(nodes[1]) : at(nodes[0]);
    }
    Point Local() const { return cursor - Origin(current) + View(current); }
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
    std::string Describe() {
        const Dtile* tile = Cell();
        const auto text = [](int number) { return std::to_string(number); };
        const std::string place = text(Local().x) + " x " + text(Local().y);
        if (!tile) return place + ": outside the grid";
        const Brush read = Read(*tile);
        return place + ": glyph " + text(read.chr) + ", colour " + text(read.fg) + " on " +
               text(read.bg) + ", attribute " + text(read.attrib);
    }
    void Move(int dx, int dy) {
        cursor = cursor + Point{dx, dy};
        if (paints && (pen || Tabs())) Paint();
    }
    void Step(int Brush::*field, int by, int last) {
        if (field == &Brush::fg && brush.fg == kSpriteMark) return;
        const int to = brush.*field + by;
        if (by < 0 ? to >= 0 : to <= last) brush.*field = to;
        ++told[2];
    }
    void ScrollGrid(int sign) {
        const auto moved = [sign](int at, int step, int size, int shown) {
            if (step == 0) return at;
            return sign < 0 ? std::max(at - step, 0)
                            : std::min(at + step, std::max(size - shown, 0));
        };
        Node().viewx = moved(Node().viewx, vStepX, Node().width, Node().vieww);
        Node().viewy = moved(Node().viewy, vStepY, Node().height, Node().viewh);
    }
    void Pick() {
        for (int i = 0; i < 2; ++i) {
            const Point at = cursor - Origin(i);
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
    void Place(Point tile) {
        if (tile != cursor) visited.reset();
        cursor = tile;
    }
    void MoveNode(Point tile) {
        tile = tile + (current ? View(0) - Origin(0) : painted);
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
            const Point at = to - cursor + Local();
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
        Place(TileAt(at));
        if (!paints) return Pick();
        tool = kFollows;
        margin = cursor.x;
    }
    void RightDown(bool ctrl, Point at) {
        if (!paints) MoveNode(TileAt(at));
        tool = ctrl ? kPoints : kBox;
        Place(TileAt(at));
        anchor = cursor;
    }
    void MouseMove(Point at) {
        if (tool == kMovesView)
            scroll = {static_cast<int>((at.x - anchor.x) * zoom / 8 + grab.x),
                      static_cast<int>((at.y - anchor.y) * zoom / 8 + grab.y)};
        else if (paints && (tool == kBox || tool == kPoints))
            anchor = TileAt(at);
        else if (tool == kFollows || (!paints && tool != kPoints)) {
            if (tool == kBox) MoveNode(TileAt(at));
            Place(TileAt(at));
        }
    }
};
