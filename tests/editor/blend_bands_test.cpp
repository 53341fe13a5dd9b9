// The bands of Blend Fade beside a reckoning in whole numbers.

#include "editor/view/brush.h"
#include "editor/view/fills.h"
#include "editor/view/selection.h"
#include "tests/support/test_world.h"

TEST_F(WorldTest, BandsRunStraightAcrossTheLine) {
    constexpr int kReach = 12;
    Dobject& board = AddNode(world->Root(), "board", 2 * kReach + 1, 2 * kReach + 1);
    const Handle handle = HandleOf(board);
    for (int dy = -kReach; dy <= kReach; ++dy) {
        for (int dx = -kReach; dx <= kReach; ++dx) {
            const int square = dx * dx + dy * dy;
            int length = 0;
            while ((length + 1) * (length + 1) <= square) ++length;
            if (length < 2) continue;
            // A colour for each step of the ramp.
            vBrush = {1, 0, length - 1, 0};
            SelectRect(handle, {0, 0}, {2 * kReach, 2 * kReach});
            BlendRegion(handle, {kReach, kReach}, {kReach + dx, kReach + dy});
            for (int y = 0; y <= 2 * kReach; ++y) {
                for (int x = 0; x <= 2 * kReach; ++x) {
                    const int along = dx * (x - kReach) + dy * (y - kReach);
                    int step = 0;
                    while (along > 0 && step + 1 < length &&
                           (step + 1) * (step + 1) * square <= along * along)
                        ++step;
                    ASSERT_EQ(board.GetTile(x, y)->fg, step)
                        << dx << "," << dy << " at " << x << "," << y;
                }
            }
        }
    }
}
