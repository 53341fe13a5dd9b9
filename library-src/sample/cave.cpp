#include "library-src/sample/boards.h"

#include "library-src/sample/sprites.h"

namespace {

constexpr int kWide = 160;  // of the grid
constexpr int kShown = 80;  // of it, in the viewport
constexpr int kFirst = 40;  // column shown
constexpr int kWater = 47;

// Rock everywhere, then a hall that is cut into it, and light that thins out towards its ends.
void PaintRock(Painter& p) {
    p.Fill({0, 0, kWide - 1, 59}, Solid(1, 1));
    p.FloodSlime({80, 30}, {0, 106, 104, 1}, {.random = 6});
    const Box halls[] = {{-8, 16, 48, 70}, {24, 6, 106, 80}, {92, 12, 168, 76}};
    for (const Box& hall : halls)
        p.Ellipse({hall.left - 1, hall.top - 1, hall.right + 1, hall.bottom + 1},
                  {178, 109, 104, 1});
    for (const Box& hall : halls) p.Disc(hall, Solid(232));
    p.FloodRings({70, 34}, {0, 235, 232, 0}, {.random = 1, .px = 12, .py = 20});
}

// A triangle of lines that grows down from the ceiling or up from the floor.
void PaintSpike(Painter& p, platform::Point foot, int height, int half, int color) {
    const int step = height < 0 ? -1 : 1;
    for (int i = 0; i < std::abs(height); ++i) {
        const int reach = half - half * i / std::abs(height);
        const int y = foot.y + i * step;
        p.Line({foot.x - reach, y}, {foot.x + reach, y}, Solid(color, 1));
        p.Line({foot.x - reach, y}, {foot.x - reach / 2, y}, {177, color + 3, color, 1});
    }
}

void PaintSpikes(Painter& p) {
    struct Spike {
        int x, y, height, half, color;
    };
    const Spike spikes[] = {
        {20, 58, -24, 5, 233}, {58, 58, -22, 6, 233}, {96, 58, -26, 6, 233}, {128, 58, -20, 5, 233},
        {86, 58, -17, 4, 233}, {44, 58, -15, 4, 233}, {8, 14, 15, 3, 106},   {30, 10, 14, 3, 106},
        {47, 6, 20, 3, 106},   {57, 5, 12, 3, 107},   {83, 4, 18, 4, 106},   {92, 5, 11, 2, 107},
        {104, 8, 21, 4, 106},  {113, 10, 10, 2, 107}, {124, 10, 17, 3, 106}, {146, 12, 13, 3, 106},
    };
    for (const Spike& s : spikes) PaintSpike(p, {s.x, s.y}, s.height, s.half, s.color);
}

void PaintLake(Painter& p) {
    const Box lake{0, kWater, kWide - 1, 59};
    p.Rings(lake, {0, 143, 137, 1}, {.set = "Water", .random = 2, .px = 10, .py = 90});
    p.Replace({0, kWater + 3, kWide - 1, 59}, {0, 141, 136, 1}, {false, true, true, false});
    p.Replace({0, kWater + 8, kWide - 1, 59}, {0, 139, 105, 1}, {false, true, true, false});
    p.Line({0, kWater}, {kWide - 1, kWater}, {196, 146, 137, 1});
}

// Ground to stand on: a dome of rock with moss on its edge.
void PaintBank(Painter& p, Box dome) {
    const int middle = (dome.top + 59) / 2;
    p.Disc(dome, Solid(2, 1));
    p.Ellipse(dome, {178, 82, 76, 0});
    p.Fill({dome.left, middle + 1, dome.right, 59}, Solid(2, 1));
    p.FloodSlime({(dome.left + dome.right) / 2, 56}, {0, 108, 105, 1}, {.random = 4});
}

// Crystals are two lines that meet, one in the light and one in the shade.
void PaintCrystal(Painter& p, platform::Point foot, int tall, int ramp) {
    for (const auto& [dx, part] : {std::pair{-2, 2}, {0, 3}, {2, 2}, {3, 1}}) {
        const int height = tall * part / 3;
        const platform::Point tip{foot.x + dx * 2, foot.y - height};
        p.Line({foot.x + dx, foot.y}, tip, Solid(ramp + 9, 1));
        p.Line({foot.x + dx + 1, foot.y}, {tip.x + 1, tip.y + 1}, {178, ramp + 6, ramp + 3, 1});
        p.Fill({tip.x, tip.y, tip.x, tip.y}, Solid(ramp + 14, 1));
    }
}

void PaintBridge(Painter& p) {
    for (int x = 51; x <= 88; ++x) {
        const int sag = (x - 51) * (88 - x) / 90;
        p.Fill({x, 36 + sag, x, 36 + sag}, {240, 126, 120, 0});
        p.Fill({x, 33 + sag, x, 33 + sag}, {196, 128, 232, 0});
        if (x % 4 == 0) p.Line({x, 34 + sag}, {x, 35 + sag}, {179, 125, 232, 0});
    }
}

// The grid of the fall is taller than its viewport. It repeats every four rows, so that the
// script's four positions look like water that never ends.
void AddFall(Painter& p, std::int32_t board) {
    p.AddObject(board, "fall", {66, 4, 73, 4 + 43 + 3}, 3,
                "@fall\n"
                "#collide water\n"
                "#cycle 2\n"
                "#mod viewy 3\n"
                "/i\n"
                "#mod viewy 2\n"
                "/i\n"
                "#mod viewy 1\n"
                "/i\n"
                "#mod viewy 0\n"
                "/i\n"
                "#restart\n");
    const Box strip{0, 0, 7, 3};
    p.Shade(strip, {0, 151, 143, 1}, {.blend = "Bands down"});
    p.Fill({0, 0, 0, 3}, {177, 146, 0, 1});
    p.Fill({7, 0, 7, 3}, {177, 144, 0, 1});
    p.Speckle({1, 0, 6, 3}, {186, 15, 148, 1}, 25);
    p.Copy(strip);
    p.Paste({0, 0, 7, 46});
    p.SetViewport({0, 0, 7, 43});
    p.AddObject(board, "foam", {62, 46, 77, 49}, 4, "");
    p.Disc({0, 0, 15, 3}, {176, 15, 0, 0});
    p.Speckle({1, 0, 14, 3}, {249, 15, 0, 0}, 20);
    p.Speckle({3, 1, 12, 2}, {177, 15, 0, 0}, 60);
}

// A shaft of light from a hole in the roof; it falls on what the game is about.
void AddLight(Painter& p, std::int32_t board) {
    p.AddObject(board, "daylight", {92, 0, 112, 46}, 6, "");
    for (int y = 0; y < 44; ++y) {
        const int left = 5 - y / 10, right = 12 + y / 8;
        p.Line({left, y}, {right, y}, {176, y < 14 ? 118 : y < 30 ? 116 : 114, 0, 0});
    }
    p.AddSprite(board, "chest", {101, 41}, 8, kChest,
                "@chest\n"
                "#collide normal\n"
                "#end\n"
                ":touch\n"
                "#give oil 1\n"
                "#play \"t+c-e-g+c\"\n"
                "A can of lamp oil!\n"
                "#zap touch\n"
                "#end\n"
                ":touch\n"
                "It is empty now.\n"
                "#end\n");
}

void AddPlants(Painter& p, std::int32_t board) {
    int number = 1;
    for (const auto& [x, y] :
         {std::pair{45, 36}, {48, 36}, {95, 42}, {106, 42}, {111, 44}, {136, 40}, {20, 40}})
        p.AddSprite(board, "mushroom" + std::to_string(number++), {x, y}, 7, kMushroom,
                    "#cycle 15\n"
                    "#light 3 32 0 255\n"
                    "/i\n"
                    "#light 2 32 0 255\n"
                    "/i\n"
                    "#restart\n");
}

}  // namespace

void PaintCave(Painter& p) {
    const std::int32_t board =
        p.AddBoard("Cave",
                   "@Cave\n"
                   "' Twice as wide as the screen: the view follows whoever\n"
                   "' has the focus.\n"
                   "#fadein\n"
                   "#focus keeper\n"
                   "#end\n");
    p.SetSize(kWide, 60);
    PaintRock(p);
    PaintSpikes(p);
    PaintLake(p);
    PaintBridge(p);
    PaintBank(p, {30, 37, 58, 75});
    PaintBank(p, {84, 43, 122, 71});
    PaintBank(p, {124, 42, 154, 72});
    PaintBank(p, {4, 42, 28, 72});
    PaintCrystal(p, {53, 45}, 9, 88);
    PaintCrystal(p, {116, 49}, 10, 136);
    PaintCrystal(p, {90, 48}, 6, 232);
    AddFall(p, board);
    AddLight(p, board);
    AddPlants(p, board);
    p.AddSprite(board, "keeper", {41, 35}, 9, kKeeper,
                "@keeper\n"
                "#end\n"
                ":touch\n"
                "Listen. Behind the water something drips that is no water.\n"
                "#end\n");
    p.AddObject(board, "way_out", {0, 40, 1, 43}, 1,
                "#enterable yes\n#end\n:touch\n#board Harbour\n");
    p.Select(board);
    p.SetViewport({kFirst, 0, kFirst + kShown - 1, 59});
}
