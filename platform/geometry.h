// Points and sizes as they cross the border between the editor and a window system.
//
// All are window pixels unless a declaration says otherwise. A window pixel is the unit in
// which pictures are shown and mouse positions are told. On a screen with a scale factor a
// backend may show one window pixel as a square of device pixels; the editor never sees that.
#pragma once

namespace platform {

struct Point {
    int x = 0;
    int y = 0;
    friend bool operator==(const Point&, const Point&) = default;
    friend Point operator+(Point a, Point b) { return {a.x + b.x, a.y + b.y}; }
    friend Point operator-(Point a, Point b) { return {a.x - b.x, a.y - b.y}; }
};

struct Size {
    int w = 0;
    int h = 0;
    friend bool operator==(const Size&, const Size&) = default;
};

}  // namespace platform
