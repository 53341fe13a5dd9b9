// The compositor against a slow model that asks, pixel by pixel, what lies in front.

#include "engine/compositor.h"
#include "tests/support/test_world.h"

#include <climits>
#include <random>

namespace {

constexpr int kTargetW = 12;
constexpr int kTargetH = 9;
constexpr int kNothing = 77;  // what the target is cleared to

class Model {
public:
    explicit Model(const Dinterface& from) : world(from) {}

    // The rectangle of target cells through which the children of a node are visible, and the
    // target cell of its grid's cell (0, 0).
    struct Frame {
        int originX, originY;
        int limitW, limitH;
        int left, top, right, bottom;
    };

    int PixelOfTree(const Dobject::Children& nodes, const Frame& frame, int px, int py) const {
        for (const auto& node : nodes) {
            if (node->hidden) continue;
            const int pixel = PixelOfNode(*node, frame, px, py);
            if (pixel >= 0) return pixel;
        }
        return -1;
    }

    int PixelOfNode(const Dobject& node, const Frame& parent, int px, int py) const {
        // By the grid's size, not the viewport's.
        if (node.posx >= parent.limitW || node.posx + node.width <= 0) return -1;
        if (node.posy >= parent.limitH || node.posy + node.height <= 0) return -1;
        const int cx = px / 8;
        const int cy = py / 8;
        // The cell in the parent's grid and in the viewport.
        const int inParentX = cx - parent.originX;
        const int inParentY = cy - parent.originY;
        if (inParentX < 0 || inParentX >= parent.limitW) return -1;
        if (inParentY < 0 || inParentY >= parent.limitH) return -1;
        if (cx < parent.left || cx >= parent.right || cy < parent.top || cy >= parent.bottom)
            return -1;
        const int inViewX = inParentX - node.posx;
        const int inViewY = inParentY - node.posy;
        if (inViewX < 0 || inViewX >= node.vieww || inViewY < 0 || inViewY >= node.viewh) return -1;
        if (node.drawChildren) {
            const int left = parent.originX + node.posx;
            const int top = parent.originY + node.posy;
            const Frame inside{
                left - node.viewx,
                top - node.viewy,
                node.width,
                node.height,
                std::max({parent.left, left, parent.originX}),
                std::max({parent.top, top, parent.originY}),
                std::min({parent.right, left + node.vieww, parent.originX + parent.limitW}),
                std::min({parent.bottom, top + node.viewh, parent.originY + parent.limitH})};
            const int pixel = PixelOfTree(node.children, inside, px, py);
            if (pixel >= 0) return pixel;
        }
        return OwnPixel(node, inViewX + node.viewx, inViewY + node.viewy, px % 8, py % 8);
    }

    // Where a node's own cell (0, 0) is on its board, and the board without the root's pan.
    static std::pair<int, int> OriginOf(const Dobject& node) {
        std::pair<int, int> origin{node.posx, node.posy};
        for (const Dobject* in = node.parent; in && in->parent; in = in->parent) {
            origin.first += in->posx - in->viewx;
            origin.second += in->posy - in->viewy;
        }
        return origin;
    }

private:
    int OwnPixel(const Dobject& node, int gx, int gy, int x, int y) const {
        if (gx < 0 || gy < 0 || gx >= node.width || gy >= node.height) return -1;
        const Dtile& tile = node.tiles[static_cast<std::size_t>(gy * node.width + gx)];
        if (tile.fg == 0 && tile.bg == 0) return -1;
        const Dfont& tileFont = *const_cast<Dinterface&>(world).GetFont();
        const int glyph = tileFont.GetGlyphPixel(tile.chr, x, y);
        const bool sprite = tile.fg == 65534;
        const int pixel = sprite ? glyph : glyph ? tile.fg : tile.bg;
        const bool holes = tile.fg == 0 || tile.bg == 0 || (sprite && tile.bg == 2);
        return holes && pixel == 0 ? -1 : pixel;
    }

    const Dinterface& world;
};

class Compositor : public WorldTest {
protected:
    Compositor() : target(MakeBitmap(kTargetW * 8, kTargetH * 8)) {
        world->SetViewSize(kTargetW, kTargetH);
        // A few glyphs with many values, for sprites with and without holes.
        for (int i = 0; i < 64; ++i) {
            world->GetFont()->PutGlyphPixel(200, i % 8, i / 8, i % 3 ? i : 0);
            world->GetFont()->PutGlyphPixel(201, i % 8, i / 8, 100 + i);
        }
    }

    int Roll(int low, int high) { return std::uniform_int_distribution<int>(low, high)(random); }

    void FillRandomly(Dobject& node) {
        static constexpr int kGlyphs[] = {0, 1, 65, 176, 178, 219, 200, 201};
        static constexpr int kColors[] = {0, 0, 7, 15, 200};
        const bool sparse = Roll(0, 2) == 0;
        for (int y = 0; y < node.height; ++y) {
            for (int x = 0; x < node.width; ++x) {
                if (sparse && Roll(0, 2)) continue;
                if (Roll(0, 5) == 0)
                    node.PutTile(x, y, Roll(200, 201), -2, Roll(0, 2), 0);
                else
                    node.PutTile(x, y, kGlyphs[Roll(0, 7)], kColors[Roll(0, 4)],
                                 kColors[Roll(0, 4)], 0);
            }
        }
    }

    void Grow(Dobject& parent, int depth) {
        const int count = Roll(1, depth == 0 ? 3 : 4);
        for (int i = 0; i < count; ++i) {
            Dobject& node = AddNode(parent, "n", Roll(0, 9), Roll(0, 7), Roll(-2, 2));
            FillRandomly(node);
            node.posx = Roll(-6, 10);
            node.posy = Roll(-6, 8);
            if (Roll(0, 1)) {
                node.vieww = Roll(0, 10);
                node.viewh = Roll(0, 8);
                node.viewx = Roll(-3, 5);
                node.viewy = Roll(-3, 5);
            }
            node.hidden = Roll(0, 7) == 0;
            node.drawChildren = Roll(0, 9) != 0;
            if (depth < 3 && Roll(0, 1)) Grow(node, depth + 1);
        }
    }

    Dobject* AnyNode() {
        Dobject* node = &world->Root();
        do {
            auto child = node->children.begin();
            std::advance(child, Roll(0, static_cast<int>(node->children.size()) - 1));
            node = child->get();
        } while (!node->children.empty() && Roll(0, 1));
        return node;
    }

    // `model` gives the pixel of the slow picture at (x, y), below 0 for none.
    template <typename PixelAt>
    void Expect(const char* what, PixelAt model) {
        for (int y = 0; y < kTargetH * 8; ++y) {
            for (int x = 0; x < kTargetW * 8; ++x) {
                const int pixel = model(x, y);
                ASSERT_EQ(getpixel(target.get(), x, y), pixel < 0 ? kNothing : pixel)
                    << what << " at pixel " << x << ", " << y << ", seed " << seed;
            }
        }
    }

    Model::Frame RootFrame() const {
        const Dobject& root = const_cast<Dinterface&>(*world).Root();
        return {root.viewx, root.viewy, root.width - root.viewx, root.height - root.viewy, 0, 0,
                kTargetW,   kTargetH};
    }

    unsigned seed = 0;
    std::mt19937 random;
    Bitmap target;
};

}  // namespace

TEST_F(Compositor, MatchesThePixelModelOnRandomWorlds) {
    const unsigned first = std::random_device{}();
    for (unsigned round = 0; round < 600 && !HasFatalFailure(); ++round) {
        seed = first + round;
        random.seed(seed);
        world->Root().EraseAll();
        Grow(world->Root(), 0);
        const int panX = Roll(-4, 4);
        const int panY = Roll(-4, 4);
        Dobject* chosen = AnyNode();
        const int before = chosen->drawChildren;
        const HandleGuard h(HandleOf(*chosen));

        const Model model(*world);

        clear_to_color(target.get(), kNothing);
        world->DrawWorld(target.get(), panX, panY);
        const auto treePixel = [&](int x, int y) {
            return model.PixelOfTree(world->Root().children, RootFrame(), x, y);
        };
        Expect("world", treePixel);

        clear_to_color(target.get(), kNothing);
        world->DrawObjectMode(target.get(), panX, panY, h, 1);
        EXPECT_EQ(chosen->drawChildren, 1);
        chosen->drawChildren = 0;
        Expect("mode 1", treePixel);
        chosen->drawChildren = before;

        clear_to_color(target.get(), kNothing);
        world->DrawObjectMode(target.get(), panX, panY, h, 2);
        Model::Frame frame = RootFrame();
        const auto [left, top] = Model::OriginOf(*chosen);
        frame.originX += left - chosen->posx;
        frame.originY += top - chosen->posy;
        Expect("mode 2", [&](int x, int y) { return model.PixelOfNode(*chosen, frame, x, y); });

        clear_to_color(target.get(), kNothing);
        world->DrawObjectMode(target.get(), panX, panY, h, 3);
        Expect("mode 3", [&, x0 = (left + panX) * 8, y0 = (top + panY) * 8](int x, int y) {
            return getpixel(chosen->vSurf.get(), x - x0, y - y0);
        });
    }
}

TEST_F(Compositor, FarPositionsAndViewportsAreHarmless) {
    Dobject& board = AddNode(world->Root(), "board", 3, 3);
    Dobject& object = AddNode(board, "object", 3, 3);
    for (int value : {INT_MIN, INT_MIN + 1, -1, 0, 1, INT_MAX - 1, INT_MAX}) {
        for (auto field : {&Dobject::posx, &Dobject::posy, &Dobject::viewx, &Dobject::viewy,
                           &Dobject::vieww, &Dobject::viewh}) {
            for (Dobject* node : {&board, &object}) {
                const auto kept = node->*field;
                node->*field = value;
                const HandleGuard h(HandleOf(object));
                world->DrawWorld(target.get(), 1, 1);
                for (int mode : {1, 2, 3}) world->DrawObjectMode(target.get(), 1, 1, h, mode);
                node->*field = kept;
            }
        }
    }
}
