// The compositor against a slow model that asks, pixel by pixel, what lies in front.

#include "engine/compositor.h"
#include "tests/support/test_world.h"

namespace {

constexpr int kTargetW = 20;
constexpr int kTargetH = 9;
constexpr int kNothing = 77;  // what the target is cleared to

// What of the target's cells can be seen along one axis: where the grid's cell 0 lies, how many
// cells of the grid there are, and the part that those around leave free.
struct Span {
    std::int64_t origin, limit, low, high;

    bool Meets(std::int64_t at, std::int64_t size) const { return at < limit && at + size > 0; }
    bool Shows(std::int64_t cell) const {
        return cell >= std::max(low, origin) && cell < std::min(high, origin + limit);
    }
    Span Inside(std::int64_t at, std::int64_t size, std::int64_t view, std::int64_t seen) const {
        const std::int64_t corner = origin + at;
        return {corner - view, size, std::max({low, corner, origin}),
                std::min({high, corner + seen, origin + limit})};
    }
};

int OwnPixel(const Dobject& node, std::int64_t gx, std::int64_t gy, int x, int y) {
    if (gx < 0 || gy < 0 || gx >= node.width || gy >= node.height) return -1;
    const Dtile& tile = node.tiles[static_cast<std::size_t>(gy * node.width + gx)];
    if (tile.fg == 0 && tile.bg == 0) return -1;
    const int glyph = vWorld->GetFont()->GetGlyphPixel(tile.chr, x, y);
    const bool sprite = tile.fg == 65534;
    const int pixel = sprite ? glyph : glyph ? tile.fg : tile.bg;
    const bool holes = tile.fg == 0 || tile.bg == 0 || (sprite && tile.bg == 2);
    return holes && pixel == 0 ? -1 : pixel;
}

int PixelOfTree(const Dobject& parent, Span across, Span down, int px, int py);

// The node's pixel or that of something in it at (px, py) of the target, below 0 for none.
int PixelOfNode(const Dobject& node, Span across, Span down, int px, int py) {
    // By the grid's size, not the viewport's.
    if (!across.Meets(node.posx, node.width) || !down.Meets(node.posy, node.height)) return -1;
    if (!across.Shows(px / 8) || !down.Shows(py / 8)) return -1;
    const std::int64_t x = px / 8 - across.origin - node.posx;
    const std::int64_t y = py / 8 - down.origin - node.posy;
    if (x < 0 || x >= node.vieww || y < 0 || y >= node.viewh) return -1;
    const int pixel =
        node.drawChildren
            ? PixelOfTree(node, across.Inside(node.posx, node.width, node.viewx, node.vieww),
                          down.Inside(node.posy, node.height, node.viewy, node.viewh), px, py)
            : -1;
    return pixel >= 0 ? pixel : OwnPixel(node, x + node.viewx, y + node.viewy, px % 8, py % 8);
}

int PixelOfTree(const Dobject& parent, Span across, Span down, int px, int py) {
    int pixel = -1;
    for (const auto& node : parent.children)
        if (pixel < 0 && !node->hidden) pixel = PixelOfNode(*node, across, down, px, py);
    return pixel;
}

struct Compositor : WorldTest {
    Compositor() {
        world->SetViewSize(kTargetW, kTargetH);
        // Glyphs with many values, for sprites with and without holes.
        for (int i = 0; i < 64; ++i) {
            world->GetFont()->PutGlyphPixel(200, i % 8, i / 8, i % 3 ? i : 0);
            world->GetFont()->PutGlyphPixel(201, i % 8, i / 8, 100 + i);
        }
    }

    void Grow(Dobject& parent, int depth) {
        static constexpr std::uint16_t kGlyphs[] = {0, 1, 65, 176, 178, 219, 200, 201};
        static constexpr std::uint16_t kColors[] = {0, 0, 7, 15, 200};
        static constexpr int kFar[] = {INT_MIN, INT_MIN + 1, INT_MAX - 1, INT_MAX};
        for (int count = Roll(1, depth == 0 ? 3 : 4); count > 0; --count) {
            Dobject& node = AddNode(parent, "n", Roll(0, depth ? 9 : 24), Roll(0, 7), Roll(-2, 2));
            all.push_back(&node);
            const bool sparse = Roll(0, 2) == 0;
            const int like = Roll(0, 1) * 12;  // so many cells to one are as the first
            Dtile base;
            for (int i = 0; i < node.width * node.height; ++i) {
                if (sparse && Roll(0, 2)) continue;
                const auto hint = static_cast<std::uint16_t>(Roll(0, 2));
                Dtile tile{kGlyphs[Roll(0, 7)], kColors[Roll(0, 4)], kColors[Roll(0, 4)], 0};
                if (Roll(0, 5) == 0) tile = {kGlyphs[Roll(6, 7)], 65534, hint, 0};
                if (i == 0) base = tile;
                if (Roll(0, like)) tile = base;
                node.PutTile(i % node.width, i / node.width, tile.chr, Signed(tile.fg), tile.bg, 0);
            }
            std::int32_t* fields[] = {&node.posx,  &node.posy,  &node.viewx,
                                      &node.viewy, &node.vieww, &node.viewh};
            const bool whole = Roll(0, 1);
            for (int i = 0; i < (whole ? 2 : 6); ++i) *fields[i] = Roll(i < 4 ? -6 : 0, 9);
            if (Roll(0, 30) == 0) *fields[Roll(0, 5)] = kFar[Roll(0, 3)];
            node.hidden = Roll(0, 7) == 0;
            node.drawChildren = Roll(0, 9) != 0;
            if (depth < 3 && Roll(0, 1)) Grow(node, depth + 1);
        }
    }

    // What the mode draws, 0 for the world, is pixel by pixel what the model says; what it leaves
    // is left, or cleared.
    template <typename PixelAt>
    void Expect(int mode, Dobject& node, int panX, int panY, PixelAt model) {
        clear_to_color(target.get(), kNothing);
        if (mode == 0)
            world->DrawWorld(target.get(), panX, panY);
        else
            world->DrawObjectMode(target.get(), panX, panY, HandleGuard(HandleOf(node)), mode);
        int uncovered = kNothing;
        if (Roll(0, 1)) ClearUncovered(target.get()), uncovered = 0;
        for (int i = 0; i < target->w * target->h; ++i) {
            const int x = i % target->w, y = i / target->w, pixel = model(x, y);
            ASSERT_EQ(getpixel(target.get(), x, y), pixel < 0 ? uncovered : pixel)
                << "mode " << mode << " at pixel " << x << ", " << y;
        }
    }

    std::vector<Dobject*> all;
    const Bitmap target = MakeBitmap(kTargetW * 8, kTargetH * 8);
};

}  // namespace

TEST_F(Compositor, MatchesThePixelModelOnRandomWorlds) {
    Dobject& root = world->Root();
    for (int round = 0; round < 1000 / PART_OF_WALK && !HasFailure(); ++round) {
        root.EraseAll();
        all.clear();
        Grow(root, 0);
        Dobject& node = *all[static_cast<std::size_t>(Roll(0, static_cast<int>(all.size()) - 1))];
        const int panX = Roll(-4, 4), panY = Roll(-4, 4);
        const Span across{panX, kTargetW - panX, 0, kTargetW};
        const Span down{panY, kTargetH - panY, 0, kTargetH};
        const auto tree = [&](int x, int y) { return PixelOfTree(root, across, down, x, y); };
        Expect(0, node, panX, panY, tree);
        const int before = std::exchange(node.drawChildren, 0);
        Expect(1, node, panX, panY, [&](int x, int y) {
            const int kept = std::exchange(node.drawChildren, 0), pixel = tree(x, y);
            node.drawChildren = kept;
            return pixel;
        });
        EXPECT_EQ(std::exchange(node.drawChildren, before), 1);
        // Where the cell (0, 0) of the node's parent is on its board.
        std::int64_t left = 0, top = 0;
        for (const Dobject* in = node.parent; in != &root; in = in->parent) {
            left += std::int64_t{in->posx} - in->viewx;
            top += std::int64_t{in->posy} - in->viewy;
        }
        // Far places are no places, but harmless.
        const auto far = [](std::int64_t at) { return std::abs(at) > 1000; };
        if (far(left) || far(top) || far(node.posx) || far(node.posy)) {
            const HandleGuard h(HandleOf(node));
            for (int mode : {2, 3}) world->DrawObjectMode(target.get(), panX, panY, h, mode);
            continue;
        }
        Expect(2, node, panX, panY, [&](int x, int y) {
            return PixelOfNode(node, {panX + left, kTargetW - panX, 0, kTargetW},
                               {panY + top, kTargetH - panY, 0, kTargetH}, x, y);
        });
        const auto x0 = static_cast<int>(left + node.posx + panX) * 8;
        const auto y0 = static_cast<int>(top + node.posy + panY) * 8;
        Expect(3, node, panX, panY,
               [&](int x, int y) { return getpixel(node.vSurf.get(), x - x0, y - y0); });
    }
}
