// The program's own pictures at the scale factors of screens: tiles keep whole device pixels.

#include "tests/support/temp_folder.h"
#include "tests/support/test_world.h"

#include <QImage>
#include <QProcess>
#include <filesystem>
#include <map>

namespace {

constexpr int kStripeA = 47;
constexpr int kStripeB = 63;

class Scale : public WorldTest {
protected:
    // A board of upright stripes, a tile wide each.
    std::string MakeStripes() {
        Dobject& board = AddNode(world->Root(), "stripes", 128, 96);
        for (int y = 0; y < board.height; ++y)
            for (int x = 0; x < board.width; ++x) {
                const int color = x % 2 ? kStripeA : kStripeB;
                board.PutTile(x, y, 219, color, color, 0);
            }
        std::string path = temp / "stripes.zqlt";
        EXPECT_TRUE(world->Save(path));
        return path;
    }

    QRgb Shown(int color) const {
        const RGB& part = world->GetFont()->GetPalette()[color];
        const auto wide = [](int six) { return (six << 2) | (six >> 4); };
        return qRgb(wide(part.r), wide(part.g), wide(part.b));
    }

    TempFolder temp;
};

}  // namespace

TEST_F(Scale, TilesKeepWholeDevicePixels) {
    const std::string game = MakeStripes();
    const struct {
        const char* factor;
        int tile;  // device pixels
    } cases[] = {{"1", 8}, {"1.25", 8}, {"1.5", 8}, {"2", 16}, {"2.75", 16}, {"3", 24}};
    for (const auto& c : cases) {
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(QStringLiteral("QT_SCALE_FACTOR"), QString::fromLatin1(c.factor));
        program.setProcessEnvironment(environment);
        const QString file = QString::fromStdString(temp / "shown.png");
        program.start(QStringLiteral("./quilt-edit"),
                      {QStringLiteral("--picture"), file, QString::fromStdString(game)});
        ASSERT_TRUE(program.waitForFinished());
        ASSERT_EQ(program.exitCode(), 0);
        const QImage picture(file);
        std::map<int, int> runs;  // length -> how often, along the middle row
        const int y = picture.height() / 2;
        for (int x = 0, start = 0; x + 1 < picture.width(); ++x) {
            const QRgb here = picture.pixel(x, y);
            if (picture.pixel(x + 1, y) == here) continue;
            if (here == Shown(kStripeA) || here == Shown(kStripeB)) ++runs[x + 1 - start];
            start = x + 1;
        }
        // The first tile has the frames over it, the last is cut by the window's edge.
        EXPECT_GT(runs[c.tile], 20) << "factor " << c.factor;
        for (const auto& [length, count] : runs)
            EXPECT_TRUE(length == c.tile || count <= 2) << length << " at factor " << c.factor;
    }
}
