// The fades, the speckle, and the library that they take their glyphs from.

#include "editor/tools/fade_fills.h"
#include "tests/editor/area_world.h"
#include "tests/support/temp_folder.h"

#include <gmock/gmock.h>

#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <list>
#include <map>

using platform::Point;
using testing::ElementsAre;

namespace {

// The first and the last are beyond a byte.
constexpr FadeTiles kSet{256, 1, 2, 3, 300};

// --- plain readings: no bitmaps, no tricks, and the generator drawn from in the same order ------

struct Plain {
    explicit Plain(const Dobject& node) : w(node.width), glyphs(node.tiles.size(), -1) {}
    bool Has(int x, int y) const {
        return x >= vRegionX && y >= vRegionY && x < vRegionX + vRegionW &&
               y < vRegionY + vRegionH && MaskAt(x, y) == kSelected;
    }
    int& At(int x, int y) { return glyphs[static_cast<std::size_t>(y * w + x)]; }
    template <typename Use>
    void Each(Use use) {
        for (int y = vRegionY; y < vRegionY + vRegionH; ++y)
            for (int x = vRegionX; x < vRegionX + vRegionW; ++x)
                if (Has(x, y)) use(x, y);
    }
    int w;
    std::vector<int> glyphs;  // -1 where nothing is written
};

void PlainDistance(Plain& to, int px, int py, int pr) {
    volatile float xm = static_cast<float>(px * 0.01), ym = static_cast<float>(py * 0.01);
    to.Each([&](int x, int y) {
        const double ax = std::floor(std::abs(vFadeCenterX - x) * static_cast<double>(xm));
        const double ay = std::floor(std::abs(vFadeCenterY - y) * static_cast<double>(ym));
        const int r = std::rand() % (pr + 1);
        const int i = (r + static_cast<int>(std::floor(std::hypot(ax, ay) + 1e-9))) % 8;
        to.At(x, y) = kSet[static_cast<std::size_t>(i <= 4 ? i : 8 - i)];
    });
}

void PlainNormal(Plain& to, const FadeCells& cells, int reach) {
    std::map<std::pair<int, int>, int> area;
    for (int v = 0; v < vRegionH; ++v)
        for (int u = 0; u < vRegionW; ++u)
            area[{v, u}] =
                kSet[static_cast<std::size_t>(
                    cells[static_cast<std::size_t>(v * 10 / vRegionH * 10 + u * 10 / vRegionW)])] &
                255;
    auto shaken = area;
    for (const auto& [place, glyph] : area) {
        if (reach == 0) continue;
        int by[2];
        for (int& axis : by) {
            const bool forward = std::rand() % 101 < 50;
            axis = std::rand() % reach * (forward ? 1 : -1);
        }
        auto target = shaken.find({place.first + by[1], place.second + by[0]});
        if (target != shaken.end()) target->second = glyph;
    }
    to.Each([&](int x, int y) { to.At(x, y) = shaken[{y - vRegionY, x - vRegionX}]; });
}

// The list as it is told: grown at its front while a sweep walks to its end.
void PlainSlime(Plain& to, int pr) {
    const int positions[] = {1, 3, 3, 4, 3, 2, 1, 0, 1, 2, 3, 4, 3, 2, 1};
    std::list<Point> list{{vFadeCenterX, vFadeCenterY}};
    int glyph = 0, phase = 3, count = 0, span = 3;
    while (!list.empty()) {
        for (auto node = list.begin(); node != list.end();) {
            const int r = std::rand() % (pr + 1);
            const double share = static_cast<double>(count) / (span + 1);
            const int k = static_cast<int>(r * share + phase);
            if (k <= 14) glyph = kSet[static_cast<std::size_t>(positions[k])];
            const auto [x, y] = *node;
            if (to.Has(x, y) && to.At(x, y) == -1) {
                to.At(x, y) = glyph;
                for (Point p : {Point{x, y - 1}, {x, y + 1}, {x - 1, y}, {x + 1, y}})
                    if (to.Has(p.x, p.y) && to.At(p.x, p.y) == -1) list.push_front(p);
            }
            node = list.erase(node);
            if (++count == span) {
                span = 3 * static_cast<int>(list.size());
                if (++phase == 8) phase = 0;
                count = 0;
            }
        }
    }
}

void PlainSpeckle(Plain& to, int percentage) {
    to.Each([&](int x, int y) {
        if (std::rand() % 101 <= percentage) to.At(x, y) = vBrush.chr;
    });
}

class Fades : public AreaTest {
protected:
    // Runs both with the same draws on the present selection, and compares every tile.
    template <typename Own, typename Told>
    void Compare(Own own, Told told) {
        const auto before = board->tiles;
        Plain plain(*board);
        std::srand(seed);
        told(plain);
        const int drawn = std::rand();
        std::srand(seed);
        own();
        EXPECT_EQ(std::rand(), drawn) << "as many draws";
        for (std::size_t i = 0; i < before.size(); ++i) {
            Dtile expected = before[i];
            if (plain.glyphs[i] != -1) {
                expected.chr = static_cast<std::uint16_t>(plain.glyphs[i]);
                // -1 leaves a field as it is.
                if (vBrush.fg != -1) expected.fg = static_cast<std::uint16_t>(vBrush.fg);
                if (vBrush.bg != -1) expected.bg = static_cast<std::uint16_t>(vBrush.bg);
                if (vBrush.attrib != -1) expected.attrib = 3;
            }
            ASSERT_EQ(board->tiles[i], expected) << "seed " << seed << ", cell " << i;
            ASSERT_EQ(vMask[i] == kDone, plain.glyphs[i] != -1) << "seed " << seed;
        }
        ++seed;
    }

    unsigned seed = 1;
};

}  // namespace

TEST_F(Fades, AreThoseOfThePlainReadings) {
    std::mt19937 random(7);
    FadeCells cells;
    for (int run = 0; run < 60; ++run) {
        MakeBoard(2 + static_cast<int>(random() % 40), 5 + static_cast<int>(random() % 30));
        for (auto& cell : cells) cell = static_cast<int>(random() % 5);
        const auto roll = [&](int low, int high) {
            return low + static_cast<int>(random() % static_cast<unsigned>(high - low + 1));
        };
        const int r = roll(0, 15), px = roll(10, 400), py = roll(10, 400), part = roll(0, 99);
        const auto scatter = [&] {
            Scatter(random, 9);
            vFadeCenterX = vRegionX + roll(-1, vRegionW);
            vFadeCenterY = vRegionY + roll(-1, vRegionH);
            vBrush = {1, roll(-2, 15), roll(-1, 15), roll(0, 3) ? 3 : -1};
        };
        scatter();
        Compare([&] { DistanceFade(handle, px, py, r, kSet); },
                [&](Plain& to) { PlainDistance(to, px, py, r); });
        scatter();
        Compare([&] { NormalFade(handle, cells, r, kSet); },
                [&](Plain& to) { PlainNormal(to, cells, r); });
        scatter();
        Compare([&] { SlimeFade(handle, r, kSet); }, [&](Plain& to) { PlainSlime(to, r); });
        scatter();
        Compare([&] { SpeckleFill(handle, part); }, [&](Plain& to) { PlainSpeckle(to, part); });
    }
}

// --- the library -------------------------------------------------------------------------------

namespace {

class FadeLibrary : public WorldTest {
protected:
    FadeLibrary() {
        std::filesystem::current_path(temp.Path());
        std::filesystem::create_directory("Library");
    }
    ~FadeLibrary() override { std::filesystem::current_path(home); }
    static std::vector<std::string> Sets(const std::string& text) {
        PutFile("Library/FadeSets.txt", text);
        return Names(LoadFadeSets("DoFade"));
    }
    static std::vector<std::string> Blends(const std::string& text) {
        PutFile("Library/FadeBlends.txt", text);
        return Names(LoadFadeBlends("DoFade"));
    }
    template <typename Record>
    static std::vector<std::string> Names(const std::vector<Record>& records) {
        std::vector<std::string> names;
        for (const Record& record : records) names.push_back(record.name);
        return names;
    }
    static std::string Numbers(int count, const std::string& number = "1") {
        std::string text;
        for (int i = 0; i < count; ++i) text += number + (i % 10 == 9 ? "\n" : " ");
        return text;
    }

    const std::filesystem::path home = std::filesystem::current_path();
    TempFolder temp;
};

}  // namespace

TEST_F(FadeLibrary, SetsAreWordsAndFiveNumbers) {
    EXPECT_THAT(Sets("A 1 2 3 4 5\nB\n-1 +2 3\n4 5 C 1 2 3 4 5"), ElementsAre("A", "B", "C"));
    EXPECT_EQ(LoadFadeSets("DoFade")[1].tiles, (FadeTiles{-1, 2, 3, 4, 5}));
    EXPECT_THAT(Sets("A 1 2 3 4 5\r\n \n\n"), ElementsAre("A")) << "no set without a name";
    EXPECT_THAT(Sets("A 1 2 3 4 5\nB 1 2 3 4"), ElementsAre("A"));
    EXPECT_THAT(Sets("A 1 2 3 4 5\nB 1 x 3 4 5\nC 1 2 3 4 5"), ElementsAre("A"));
    EXPECT_THAT(Sets("A 1 2 3 4 99999999999 B 1 2 3 4 5"), ElementsAre());
    EXPECT_THAT(Sets(""), ElementsAre());
    reports.Clear();
}

TEST_F(FadeLibrary, BlendsAreANameLineAndAHundredNumbers) {
    const std::string one = "left to right\n" + Numbers(100);
    EXPECT_THAT(Blends(one + "\n"), ElementsAre("left to right"));
    EXPECT_THAT(Blends(one + "b\r\n" + Numbers(99) + "7 dropped\nc\n" + Numbers(100, "-3")),
                ElementsAre("left to right", "b", "c"));
    const auto blends = LoadFadeBlends("DoFade");
    EXPECT_EQ(blends[1].cells[99], 4) << "beyond the set counts as its end";
    EXPECT_EQ(blends[2].cells[0], 0);
    EXPECT_THAT(Blends(one + std::string(98, 'n') + "\n" + Numbers(100)),
                ElementsAre("left to right", std::string(98, 'n')));
    for (const std::string& rest :
         {std::string(99, 'n') + "\n" + Numbers(100), "b\n" + Numbers(99),
          "b\n" + Numbers(50) + "? " + Numbers(50), std::string("b"), std::string("\n\n")})
        EXPECT_THAT(Blends(one + rest), ElementsAre("left to right")) << rest;
    reports.Clear();
}
