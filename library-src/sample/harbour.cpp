#include "library-src/sample/boards.h"

#include "library-src/sample/sprites.h"

#include <array>
#include <cmath>

namespace {

constexpr int kHorizon = 30;
constexpr int kQuayLeft = 36;
constexpr int kQuayTop = 42;

// Every band shades by dots from one colour into the next, from the night above to the sun.
void PaintSky(Painter& p) {
    constexpr std::array kColors{184, 88, 89, 235, 237, 156, 158, 62, 65, 67};
    constexpr std::array kTall{4, 4, 4, 4, 3, 3, 3, 3, 2};
    int y = 0;
    for (std::size_t i = 0; i < kTall.size(); ++i) {
        p.Shade({0, y, 79, y + kTall[i] - 1}, {0, kColors[i + 1], kColors[i], 0},
                {.blend = "Top to bottom"});
        y += kTall[i];
    }
    // Stars keep the colours of the sky that they stand in.
    p.ReplaceSpeckle({0, 0, 79, 9}, {250, 15, 0, 0}, {true, true, false, false}, 1);
}

void PaintSun(Painter& p) {
    constexpr int kRadius = 6, kMiddle = 24;
    for (int dy = 0; dy <= kRadius; ++dy) {
        const int half = static_cast<int>(std::lround(std::sqrt(40.0 - dy * dy)));
        p.Line({kMiddle - half, kHorizon - 1 - dy}, {kMiddle + half, kHorizon - 1 - dy},
               Solid(dy < 2   ? 69
                     : dy < 4 ? 70
                              : 71));
    }
}

// The waves are one Distance fade; a Replace of the colours alone makes them darker in front.
void PaintSea(Painter& p) {
    p.Rings({0, kHorizon, 79, 59}, {0, 15, 1, 1},
            {.set = "Water", .random = 3, .px = 10, .py = 90});
    struct Water {
        int top, fg, bg;
    };
    for (const auto& [top, fg, bg] :
         {Water{30, 68, 62}, Water{31, 66, 158}, Water{33, 64, 155}, Water{36, 239, 236},
          Water{40, 238, 234}, Water{45, 94, 89}, Water{51, 92, 185}, Water{56, 91, 184}})
        p.Replace({0, top, 79, 59}, {0, fg, bg, 1}, {false, true, true, false});
    for (int y = kHorizon; y < 60; ++y) {
        const int reach = 6 - (y - kHorizon) / 7;
        p.ReplaceSpeckle({24 - reach, y, 24 + reach, y},
                         {y % 2 ? 247 : 240, 70 - (y - 30) / 8, 0, 1}, {true, true, false, false},
                         70 - (y - kHorizon));
    }
}

void PaintHills(Painter& p) {
    struct Hill {
        int top, height, color;
    };
    for (const auto& [x, height, color] : {Hill{62, 13, 234}, Hill{46, 9, 233}, Hill{76, 8, 233}}) {
        for (int i = 0; i < height; ++i)
            p.Line({x - i * 2, kHorizon - height + i}, {x + i * 2, kHorizon - height + i},
                   Solid(color, 1));
        p.Line({x, kHorizon - height}, {x - height * 2 + 2, kHorizon - 1}, {177, 236, color, 1});
    }
}

// The lighthouse on its rock, dark against the sky, lit from the right by the sun.
void PaintLighthouse(Painter& p) {
    for (int i = 0; i < 11; ++i) p.Line({0, 27 + i}, {7 + i - i / 4, 27 + i}, Solid(104, 1));
    p.FloodSlime({2, 33}, {0, 107, 104, 1}, {.set = "Shades", .random = 3});
    for (int y = 9; y < 28; ++y) {
        const int half = 1 + (y - 9) / 8;
        const int band = (y - 9) / 4 % 2 ? 35 : 57;
        p.Line({4 - half, y}, {5 + half, y}, Solid(band, 1));
        p.Line({4 - half, y}, {4, y}, {177, band == 57 ? 56 : 30, band, 1});
    }
    p.Line({1, 8}, {8, 8}, {220, 26, 235, 1});
    p.Fill({3, 5, 6, 7}, {197, 26, 70, 1});
    p.Line({2, 4}, {7, 4}, Solid(26, 1));
    p.Line({3, 3}, {6, 3}, Solid(25, 1));
    p.Fill({4, 1, 5, 2}, {186, 25, 88, 1});
    p.Fill({4, 26, 5, 27}, Solid(120, 1));
}

// One window is drawn, copied, and pasted wherever else a lamp burns.
void PaintWindows(Painter& p, const std::vector<platform::Point>& places) {
    const platform::Point first = places.front();
    const Box lit{first.x, first.y, first.x + 2, first.y + 2};
    p.Frame(lit, Solid(120, 1));
    p.Fill(lit, {206, 122, 70, 1});
    p.Fill({lit.left, lit.bottom, lit.right, lit.bottom}, {223, 70, 18, 1});
    p.Copy(lit);
    for (const auto& [x, y] : places) p.Paste({x, y, x + 2, y + 2});
}

struct House {
    Box front;
    int wall;  ///< the colour on the sunny side; four numbers lower it is in the shade
    int roof;
    int rise;  ///< rows of the roof
};

void PaintHouse(Painter& p, const House& house) {
    const auto& [front, wall, roof, rise] = house;
    p.Shade(front, {0, wall - 4, wall, 1}, {.blend = "Left to right", .random = 2});
    p.Line({front.left, front.top}, {front.left, front.bottom}, {221, wall + 3, wall, 1});
    for (int i = 0; i < rise; ++i)
        p.Line({front.left - 1 + i, front.top - 1 - i}, {front.right + 1 - i, front.top - 1 - i},
               {240, roof - 2, roof, 1});
    p.Line({front.left - 1, front.top - 1}, {front.left - 2 + rise, front.top - rise},
           {177, roof + 3, roof, 1});
}

void PaintDoor(Painter& p, int x) {
    p.Fill({x, kQuayTop - 4, x + 2, kQuayTop - 1}, {186, 120, 123, 0});
    p.Frame({x, kQuayTop - 4, x + 2, kQuayTop - 1}, {219, 120, 120, 1});
    p.Fill({x + 1, kQuayTop - 3, x + 1, kQuayTop - 1}, {186, 121, 124, 0});
}

void PaintTown(Painter& p) {
    const House houses[] = {
        {{70, 24, 79, 41}, 206, 59, 4},
        {{54, 20, 69, 41}, 112, 26, 6},
        {{39, 27, 53, 41}, 132, 58, 5},
    };
    for (const House& house : houses) PaintHouse(p, house);
    p.Fill({63, 12, 65, 16}, {216, 24, 57, 1});
    p.Line({63, 11}, {65, 11}, {220, 30, 237, 1});
    PaintWindows(p,
                 {{42, 30}, {48, 30}, {57, 23}, {64, 23}, {57, 29}, {64, 29}, {73, 28}, {48, 36}});
    for (const int x : {42, 60, 74}) PaintDoor(p, x);
    p.Fill({56, 36, 66, 36}, {223, 60, 255, 1});
    p.Replace({56, 36, 66, 36}, {223, 58, 15, 1}, {false, true, false, false});
    p.Type({57, 35}, "NET  &  SAIL", {0, 254, 108, 1});
}

// The quay: its paving, its edge, and the wall below, with a pier of planks.
void PaintQuay(Painter& p) {
    p.Shade({kQuayLeft, kQuayTop, 79, 50}, {0, 109, 106, 0},
            {.set = "Stone", .blend = "Top to bottom", .random = 4});
    p.Line({kQuayLeft, 51}, {79, 51}, {223, 112, 25, 1});
    p.Shade({kQuayLeft, 52, 79, 59}, {0, 24, 105, 1},
            {.set = "Bricks", .blend = "Top to bottom", .random = 3});
    p.Line({kQuayLeft, kQuayTop}, {kQuayLeft, 59}, {221, 111, 105, 1});
    p.Fill({20, 46, kQuayLeft, 47}, {240, 120, 124, 0});
    p.Line({20, 48}, {kQuayLeft - 1, 48}, {223, 121, 89, 1});
    for (int x = 21; x < kQuayLeft; x += 5) p.Line({x, 48}, {x, 52}, {221, 121, 89, 1});
}

// A lamp post, with light round it that lets all else through.
void AddLamp(Painter& p, std::int32_t board, const char* name, int x) {
    const std::int32_t lamp = p.AddObject(board, name, {x, 36, x + 8, 45}, 6,
                                          "#cycle 4\n"
                                          "#light 6 32 0 255\n"
                                          "#charex 4 3 15 254 0 1\n"
                                          "/i/i\n"
                                          "#charex 4 3 15 253 0 1\n"
                                          "/i\n"
                                          "#restart\n");
    p.Disc({1, 0, 7, 6}, {176, 252, 0, 0});
    p.Disc({3, 2, 5, 4}, {177, 254, 0, 0});
    p.Line({4, 4}, {4, 8}, {186, 24, 0, 1});
    p.Fill({4, 9, 4, 9}, {220, 24, 0, 1});
    p.Fill({4, 3, 4, 3}, {15, 254, 0, 1});
    p.Fill({4, 2, 4, 2}, {30, 24, 0, 1});
    p.Select(lamp);
}

// The boat is painted on the board and made an object by "Make Object" before the sea is.
void AddBoat(Painter& p) {
    p.Fill({4, 40, 17, 56}, kEmpty);
    for (int i = 0; i < 9; ++i) {
        p.Line({11, 41 + i}, {11 + i * 2 / 3, 41 + i}, {219, 39 - i / 4, 255, 1});
        if (i > 1) p.Line({9 - i / 2, 41 + i}, {9, 41 + i}, {219, 161, 255, 1});
    }
    p.Line({10, 40}, {10, 50}, {179, 126, 0, 1});
    p.Line({4, 51}, {17, 51}, {223, 126, 121, 1});
    p.Line({5, 52}, {16, 52}, Solid(121, 1));
    p.Line({6, 53}, {15, 53}, {223, 120, 0, 1});
    const std::int32_t boat = p.MakeObject("boat", {4, 40, 17, 53}, 5,
                                           "@boat\n"
                                           "#collide water\n"
                                           "#cycle 12\n"
                                           ":sail\n"
                                           "?e?e?e\n"
                                           "/i/i/i/i\n"
                                           "?w?w?w\n"
                                           "/i/i/i/i\n"
                                           "#restart\n");
    p.AddSprite(boat, "gull_on_the_boat", {3, 9}, 1, kGull,
                "#end\n:touch\n#play \"t++c-c\"\n#end\n");
}

void AddPeople(Painter& p, std::int32_t board) {
    p.AddSprite(board, "keeper", {49, 44}, 9, kKeeper,
                "@keeper\n"
                "#collide normal\n"
                "#end\n"
                ":touch\n"
                "Good evening. The lamp is dark without its oil.\n"
                "#ifex oil < 1 #end\n"
                "What is that? You found the can, behind the fall!\n"
                "#take oil 1\n"
                "#give thanks 1\n"
                "#play \"q.c-e-g+hc\"\n"
                "Now the ships will find the harbour.\n"
                "#endgame\n");
    p.AddSprite(board, "fisher", {21, 44}, 8, kFisher,
                "@fisher\n"
                "#rand bite 10\n"
                "#ifex bite >= 8 #play \"t-g-c\"\n"
                "#cycle 20\n"
                "/i\n"
                "#restart\n"
                ":touch\n"
                "Shh. You are standing on my luck.\n"
                "#end\n");
    p.AddSprite(board, "cat", {66, 48}, 9, kCat,
                "@cat\n"
                "#cycle 6\n"
                "#walk rndns\n"
                "/i/i/i\n"
                "#walk i\n"
                "#restart\n"
                ":touch\n"
                "Mrrp.\n"
                "#restart\n");
    for (const auto& [name, x, y] :
         {std::tuple{"barrel1", 76, 44}, {"barrel2", 78, 44}, {"barrel3", 77, 42}})
        p.AddSprite(board, name, {x, y}, 46 - y + 2, kBarrel, "#collide normal\n#end\n");
    for (const auto& [name, x, y] :
         {std::tuple{"gull1", 31, 13}, {"gull2", 37, 9}, {"gull3", 27, 8}})
        p.AddSprite(board, name, {x, y}, 7, kGull,
                    "#collide fly\n#cycle 5\n#walk rnd\n/i/i\n#restart\n");
}

void AddBeam(Painter& p, std::int32_t board) {
    p.AddObject(board, "beam", {7, 0, 34, 12}, 7,
                "@beam\n"
                "' The light turns: it is shown, and cut off by its viewport.\n"
                "#cycle 8\n"
                "#mod vieww 28\n"
                "/i/i\n"
                "#mod vieww 1\n"
                "/i/i/i/i\n"
                "#restart\n");
    for (int x = 0; x < 28; ++x)
        p.Line({x, 6 - x / 6}, {x, 6 + x / 8}, {x < 9 ? 178 : x < 18 ? 177 : 176, 69, 0, 0});
}

}  // namespace

void PaintHarbour(Painter& p) {
    const std::int32_t board = p.AddBoard("Harbour",
                                          "@Harbour\n"
                                          "#fadein\n"
                                          "#focus keeper\n"
                                          "#end\n");
    AddBoat(p);
    p.Select(board);
    PaintSky(p);
    PaintSun(p);
    PaintHills(p);
    PaintSea(p);
    PaintLighthouse(p);
    PaintTown(p);
    PaintQuay(p);
    AddBeam(p, board);
    AddLamp(p, board, "lamp1", 34);
    AddLamp(p, board, "lamp2", 52);
    AddLamp(p, board, "lamp3", 66);
    AddPeople(p, board);
    // Where a step leads to another board, an object without a look of its own waits.
    p.AddObject(board, "door", {43, 41, 43, 41}, 1,
                "#enterable yes\n#end\n:touch\n#board Lamp_room\n");
    p.AddObject(board, "path", {0, 36, 1, 37}, 1, "#enterable yes\n#end\n:touch\n#board Cave\n");
}
