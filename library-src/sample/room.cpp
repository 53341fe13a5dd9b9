#include "library-src/sample/boards.h"

#include "library-src/sample/sprites.h"

namespace {

constexpr int kFloor = 42;

// A square of paper is painted once; the clipboard covers the wall with it.
void PaintWalls(Painter& p) {
    const Box square{0, 0, 9, 9};
    p.Shade(square, {0, 234, 233, 1}, {.blend = "Quilt"});
    p.Copy(square);
    p.Paste({0, 0, 79, 33});
    p.Fill({0, 0, 79, 1}, Solid(120, 1));
    p.Fill({0, 34, 79, kFloor - 1}, {219, 121, 121, 1});
    p.Line({0, 34}, {79, 34}, {223, 126, 121, 1});
    for (int x = 0; x < 80; x += 8) p.Frame({x, 36, x + 6, 40}, {178, 122, 120, 1});
    p.Line({0, 41}, {79, 41}, {220, 119 + 1, 123, 1});
}

void PaintFloor(Painter& p) {
    for (int row = 0; row < 6; ++row) {
        const int y = kFloor + row * 3;
        p.Shade({0, y, 79, y + 2}, {0, 123 + row % 2, 122, 0},
                {.set = "Shades", .blend = "Bands down", .random = 9});
        p.Line({0, y}, {79, y}, {223, 120, 122, 0});
        for (int x = row % 2 * 7 + 3; x < 80; x += 14)
            p.Line({x, y}, {x, y + 2}, {221, 120, 123, 0});
    }
    p.Disc({18, 45, 56, 57}, Solid(154));
    p.FloodShade({37, 51}, {0, 161, 154, 0}, {.set = "Hearts", .blend = "Ring"});
    p.Ellipse({18, 45, 56, 57}, {4, 252, 153, 0});
}

void PaintFireplace(Painter& p) {
    p.Shade({58, 0, 74, 12}, {0, 24, 29, 1},
            {.set = "Bricks", .blend = "Diagonal down", .random = 4});
    p.Shade({56, 15, 76, 41}, {0, 24, 30, 1},
            {.set = "Bricks", .blend = "Diagonal up", .random = 4});
    p.Fill({54, 13, 78, 14}, {223, 127, 122, 1});
    p.Disc({59, 22, 73, 34}, Solid(255, 1));
    p.Fill({59, 28, 73, 41}, Solid(255, 1));
    // Two fires, one in the other, of flames that the shaking of the fade sets free.
    p.Disc({60, 29, 72, 51}, Solid(1, 1));
    p.FloodShade({66, 35}, {0, 62, 255, 1},
                 {.set = "Mountains", .blend = "Top to bottom", .random = 4});
    p.Disc({63, 34, 69, 50}, Solid(1, 1));
    p.FloodShade({66, 38}, {0, 70, 59, 1},
                 {.set = "Mountains", .blend = "Top to bottom", .random = 3});
    p.Fill({60, 40, 72, 40}, {240, 122, 58, 1});
    p.Fill({60, 41, 72, 41}, {240, 120, 62, 1});
    // A picture over the mantel.
    p.Fill({61, 3, 71, 10}, Solid(15));
    p.FloodRamp({71, 3}, {71, 10}, 152, 161);
    p.Fill({62, 8, 70, 9}, {247, 55, 42, 1});
    p.Frame({61, 3, 71, 10}, {254, 252, 250, 1});
    p.Speckle({64, 5, 68, 6}, {94, 15, 157, 1}, 20);
}

void PaintClock(Painter& p) {
    p.Shade({47, 12, 52, 41}, {0, 122, 125, 1}, {.blend = "Left to right"});
    p.Line({48, 11}, {51, 11}, {220, 125, 234, 1});
    p.Fill({48, 13, 51, 18}, Solid(15, 1));
    p.Fill({47, 14, 52, 17}, Solid(15, 1));
    p.Fill({49, 15, 49, 16}, {179, 255, 15, 1});
    p.Fill({50, 16, 50, 16}, {196, 255, 15, 1});
    p.Fill({48, 21, 51, 33}, Solid(255, 1));
    p.Frame({48, 36, 51, 40}, {178, 123, 120, 1});
}

// What is seen through the window: a night at sea, wider than the window.
void AddView(Painter& p, std::int32_t board) {
    const std::int32_t view =
        p.AddObject(board, "view", {10, 8, 10 + 59, 8 + 21}, 1,
                    "@view\n"
                    "' The clouds and the ship drift: the window shows another\n"
                    "' part of the grid.\n"
                    "#cycle 30\n"
                    "#mod viewx 0\n"
                    "/i\n"
                    "#mod viewx 8\n"
                    "/i\n"
                    "#mod viewx 16\n"
                    "/i\n"
                    "#mod viewx 8\n"
                    "/i\n"
                    "#restart\n");
    p.Fill({0, 0, 59, 13}, Solid(1));
    p.FloodRamp({59, 0}, {59, 13}, 184, 190);
    for (int y = 0; y < 10; ++y) p.Speckle({0, y, 59, y}, {249, 15, 184 + y * 6 / 12, 0}, 2);
    p.Disc({20, 2, 26, 8}, Solid(254));
    p.FloodShade({23, 5}, {0, 252, 254, 0}, {.blend = "Diagonal down"});
    p.Rings({0, 14, 59, 21}, {0, 192, 185, 1}, {.set = "Water", .random = 2, .px = 10, .py = 90});
    p.ReplaceSpeckle({21, 14, 25, 21}, {247, 254, 0, 1}, {true, true, false, false}, 55);
    p.SetViewport({4, 0, 35, 21});

    p.AddObject(view, "ship", {8, 7, 19, 16}, 1,
                "#collide water\n#cycle 10\n/e\n/i\n/w\n/i\n#restart\n");
    p.Line({5, 0}, {5, 6}, {179, 127, 0, 0});
    for (int i = 0; i < 6; ++i) p.Line({6, 1 + i}, {6 + i * 4 / 5, 1 + i}, Solid(38 - i / 3));
    for (int i = 0; i < 5; ++i) p.Line({4 - i / 2, 2 + i}, {4, 2 + i}, Solid(35));
    p.Line({0, 7}, {11, 7}, {220, 123, 0, 0});
    p.Fill({1, 8, 10, 8}, {249, 254, 121, 0});
    p.Line({2, 9}, {9, 9}, {223, 121, 0, 0});
    p.Select(view);
}

// The wall's part with the window stands before the view. Its panes are cells of two zeros; the
// bars between them are lines on colour 0.
void AddWindow(Painter& p, std::int32_t board) {
    p.AddObject(board, "window", {8, 6, 43, 31}, 5,
                "@window\n#end\n:touch\nThe glass is cold.\n#end\n");
    p.Frame({0, 0, 35, 25}, Solid(122, 1));
    p.Frame({1, 1, 34, 24}, {178, 126, 123, 1});
    for (const int x : {12, 23}) p.Line({x, 2}, {x, 23}, {186, 126, 0, 1});
    for (const int y : {9, 16}) p.Line({2, y}, {33, y}, {205, 126, 0, 1});
    for (const int x : {12, 23})
        for (const int y : {9, 16}) p.Fill({x, y, x, y}, {206, 126, 0, 1});
    p.Line({4, 7}, {9, 2}, {176, 15, 0, 1});
    p.Line({26, 22}, {31, 17}, {176, 15, 0, 1});
    p.Fill({0, 24, 35, 25}, {223, 127, 122, 1});
}

// Before the window: heavy cloth on both sides, and lace between that lets the night through.
void AddCurtains(Painter& p, std::int32_t board) {
    p.AddObject(board, "curtains", {5, 3, 46, 35}, 7, "");
    p.Fill({0, 0, 41, 0}, {205, 252, 250, 1});
    p.Shade({8, 1, 33, 5}, {0, 167, 0, 0}, {.blend = "Bottom to top", .random = 2});
    p.Shade({0, 1, 7, 32}, {0, 157, 153, 1}, {.blend = "Bands down"});
    p.Shade({34, 1, 41, 32}, {0, 157, 153, 1}, {.blend = "Bands down"});
    p.Line({0, 20}, {7, 20}, {240, 254, 251, 1});
    p.Line({34, 20}, {41, 20}, {240, 254, 251, 1});
    p.Line({0, 32}, {7, 32}, {178, 254, 153, 1});
    p.Line({34, 32}, {41, 32}, {178, 254, 153, 1});
}

void AddTable(Painter& p, std::int32_t board) {
    const std::int32_t table =
        p.AddObject(board, "table", {4, 39, 19, 50}, 8, "#collide normal\n#end\n");
    p.Fill({0, 3, 15, 4}, {223, 128, 124, 1});
    p.Fill({1, 5, 14, 5}, {223, 121, 0, 1});
    for (const int x : {2, 12}) p.Fill({x, 5, x + 1, 11}, {222, 122, 120, 1});
    p.Fill({10, 2, 13, 2}, {205, 57, 164, 1});
    p.AddSprite(table, "lantern", {6, 1}, 1, kLantern, "#light 8 64 0 255\n#end\n");
    p.Select(board);
}

}  // namespace

void PaintRoom(Painter& p) {
    const std::int32_t board = p.AddBoard("Lamp_room",
                                          "@Lamp_room\n"
                                          "#fadein\n"
                                          "#end\n");
    PaintWalls(p);
    PaintFireplace(p);
    PaintFloor(p);
    PaintClock(p);
    AddView(p, board);
    AddWindow(p, board);
    AddCurtains(p, board);
    p.AddSprite(board, "cat", {25, 28}, 9, kCat,
                "@cat\n"
                "#end\n"
                ":touch\n"
                "#play \"s+c-g\"\n"
                "Purrr.\n"
                "#zap touch\n"
                "#end\n"
                ":touch\n"
                "#restore touch\n"
                "The cat looks at the ship and not at you.\n"
                "#end\n");
    p.AddObject(board, "pendulum", {49, 22, 50, 31}, 3,
                "#cycle 9\n#mod posx 48\n/i\n#mod posx 50\n/i\n#restart\n");
    p.Line({0, 0}, {0, 8}, {222, 252, 0, 1});
    p.Line({1, 0}, {1, 8}, {221, 252, 0, 1});
    p.Fill({0, 8, 1, 9}, Solid(253, 1));
    AddTable(p, board);
    for (const auto& [name, x] : {std::pair{"lamp_left", 56}, {"lamp_right", 75}})
        p.AddSprite(board, name, {x, 11}, 3, kLantern, "#light 4 32 0 255\n#end\n");
    p.AddSprite(board, "keeper", {49, 48}, 9, kKeeper,
                "@keeper\n#end\n:touch\nFrom here I see every ship. Tonight none sees me.\n#end\n");
    p.AddObject(board, "door", {38, 58, 41, 59}, 2,
                "#enterable yes\n#end\n:touch\n#board Harbour\n");
}
