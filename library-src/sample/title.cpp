#include "library-src/sample/boards.h"

#include <map>

namespace {

constexpr int kHorizon = 45;
constexpr int kMoon = 14;  // its middle

// The strokes of the letters, in cells of a grid of 6 by 9.
using Strokes = std::vector<Box>;
const std::map<char, Strokes> kLetters{
    {'L', {{0, 0, 1, 8}, {0, 7, 5, 8}}},
    {'A', {{0, 2, 1, 8}, {4, 2, 5, 8}, {1, 0, 4, 1}, {0, 1, 5, 2}, {0, 5, 5, 5}}},
    {'M', {{0, 0, 1, 8}, {6, 0, 7, 8}, {2, 1, 2, 3}, {5, 1, 5, 3}, {3, 2, 4, 5}}},
    {'P', {{0, 0, 1, 8}, {0, 0, 4, 1}, {4, 1, 5, 4}, {0, 4, 4, 5}}},
    {'I', {{0, 0, 3, 0}, {1, 0, 2, 8}, {0, 8, 3, 8}}},
    {'G', {{0, 1, 1, 7}, {1, 0, 5, 1}, {1, 7, 5, 8}, {4, 5, 5, 8}, {3, 4, 5, 5}}},
    {'H', {{0, 0, 1, 8}, {4, 0, 5, 8}, {0, 4, 5, 4}}},
    {'T', {{0, 0, 5, 1}, {2, 0, 3, 8}}},
};
constexpr int kGap = 2;

int LetterWidth(char letter) {
    int width = 0;
    for (const Box& stroke : kLetters.at(letter)) width = std::max(width, stroke.right + 1);
    return width;
}

// The title is an object of its own in front of the beam: between the letters its cells are
// empty. A ramp over all cells that look like the first colours the letters.
void PaintLetters(Painter& p, std::int32_t board) {
    const std::string word = "LAMPLIGHT";
    int width = -kGap;
    for (const char letter : word) width += LetterWidth(letter) + kGap;
    const int left = (80 - width) / 2;
    p.AddObject(board, "letters", {left, 13, left + width, 13 + 9}, 9, "");
    // First their shadow, one cell to the right and below.
    for (const bool shadow : {true, false}) {
        int x = shadow ? 1 : 0;
        for (const char letter : word) {
            for (const Box& s : kLetters.at(letter))
                p.Fill({x + s.left, s.top + shadow, x + s.right, s.bottom + shadow},
                       shadow ? Solid(232) : Solid(15));
            x += LetterWidth(letter) + kGap;
        }
    }
    p.SameAsRamp({0, 0}, {0, 9}, 64, 71);
}

constexpr int kTop = 104, kBottom = 110;  // the sky's colours

int SkyColor(int y) { return kTop + y * (kBottom - kTop) / (kHorizon - 2); }

void PaintSky(Painter& p) {
    p.Fill({0, 0, 79, kHorizon - 1}, Solid(1));
    p.FloodRamp({79, 0}, {79, kHorizon - 1}, kTop, kBottom);
    for (int y = 0; y < 38; ++y)
        p.Speckle({0, y, 79, y}, {y % 3 ? 250 : 249, y % 2 ? 119 : 15, SkyColor(y), 0}, 2);
    p.Disc({kMoon - 6, 2, kMoon + 6, 14}, Solid(252));
    p.FloodShade({kMoon, 8}, {0, 252, 254, 0}, {.blend = "Diagonal down"});
}

// Rings of light round the moon, dots on colour 0 through which the sky is seen.
void PaintHalo(Painter& p, std::int32_t board) {
    p.AddObject(board, "halo", {kMoon - 10, -2, kMoon + 10, 18}, 2, "");
    p.Ellipse({2, 2, 18, 18}, {249, 251, 0, 0});
    p.Ellipse({0, 0, 20, 20}, {250, 250, 0, 0});
}

void PaintSea(Painter& p) {
    p.Rings({0, kHorizon, 79, 59}, {0, 112, 106, 1},
            {.set = "Water", .random = 2, .px = 12, .py = 80});
    p.Replace({0, kHorizon, 79, kHorizon}, {196, 119, 109, 1}, {});
    for (int y = kHorizon + 1; y < 60; ++y) {
        const int reach = 2 + (y - kHorizon) / 2;
        p.ReplaceSpeckle({kMoon - reach, y, kMoon + reach, y}, {247, 254, 106, 1},
                         {true, true, false, false}, 60);
    }
}

// The rock and the lighthouse on it are drawn with lines that lie side by side.
void PaintLighthouse(Painter& p) {
    for (int i = 0; i < 16; ++i) p.Line({68 - i, 44 + i}, {73 + i, 44 + i}, {178, 25, 104, 1});
    p.FloodSlime({70, 50}, {0, 29, 25, 1}, {.set = "Shades", .random = 3});
    for (int y = 32; y < 45; ++y) {
        const int half = 2 + (y - 32) / 6;
        p.Line({70 - half, y}, {71 + half, y}, Solid((y - 32) / 4 % 2 ? 36 : 58, 1));
    }
    for (int y = 32; y < 45; ++y)
        p.Line({72, y}, {73, y}, {177, 255, (y - 32) / 4 % 2 ? 36 : 58, 1});
    p.Line({67, 31}, {74, 31}, {220, 26, 109, 1});
    p.Fill({69, 27, 72, 30}, {197, 26, 71, 1});
    p.Line({68, 26}, {73, 26}, Solid(26, 1));
    p.Line({69, 25}, {72, 25}, Solid(27, 1));
    p.Line({70, 24}, {71, 24}, Solid(27, 1));
    p.Fill({70, 43, 71, 44}, Solid(120, 1));
}

// The beam is light and nothing else: glyphs on colour 0, through which the night is seen.
void PaintBeam(Painter& p, std::int32_t board) {
    p.AddObject(board, "beam", {0, 4, 68, 34}, 4,
                "@beam\n"
                "' The beam goes out and comes back by its viewport.\n"
                "#cycle 8\n"
                "#mod vieww 1\n"
                "/i/i/i/i\n"
                "#mod vieww 69\n"
                "/i/i\n"
                "#restart\n");
    for (int x = 0; x <= 68; ++x) {
        const int rise = (68 - x) / 4;
        const int glyph = x > 48 ? 178 : x > 24 ? 177 : 176;
        p.Line({x, 24 - rise}, {x, 25 - rise / 3}, {glyph, 70, 0, 0});
    }
}

}  // namespace

void PaintTitle(Painter& p) {
    const std::int32_t board = p.AddBoard("Title",
                                          "@Title\n"
                                          "#fadein\n"
                                          "#play \"q-c-e-g+h-c\"\n"
                                          "/i/i/i/i/i/i\n"
                                          "#fadeout\n"
                                          "#board Harbour\n");
    PaintSky(p);
    PaintSea(p);
    PaintLighthouse(p);
    p.Fill({19, 51, 53, 57}, {0, 105, 105, 0});
    p.Frame({19, 51, 53, 57}, {249, 109, 105, 0});
    p.Type({21, 53}, "The lamp is dark. Find its oil.", {0, 119, 105, 1});
    p.Type({27, 55}, "A sample for QUILT!", {0, 115, 105, 1});
    PaintHalo(p, board);
    PaintBeam(p, board);
    PaintLetters(p, board);
}
