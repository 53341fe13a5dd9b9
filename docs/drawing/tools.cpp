#include "docs/drawing/sheet.h"

#include "editor/commands.h"

namespace {

constexpr int kColumns = 4;
constexpr int kWide = 17, kTall = 9;

struct Tool {
    const char* label;
    int command;
    Brush brush;
    Shading shading{};
    int percent = 50;
};

// A pond in a meadow with flowers, for the tools to work on.
void PaintGround(Painter& painter, Box box) {
    painter.Fill(box, {44, 84, 75, 0});
    painter.Disc({box.left + 5, box.top + 2, box.left + 13, box.top + 6}, {247, 53, 43, 3});
    for (const auto& [x, y] : {std::pair{2, 1}, {3, 6}, {15, 2}, {14, 7}, {1, 4}})
        painter.Fill({box.left + x, box.top + y, box.left + x, box.top + y}, {15, 161, 75, 0});
}

bool WriteTools(const std::string& path) {
    const Dobject& board = *vWorld->Root().children.front();
    return WriteView(path, board.width, board.height, 1);
}

}  // namespace

bool DrawAreas(Painter& painter, const std::string& path) {
    const Brush stone{8, 36, 28, 1};
    const Tool tools[] = {
        {"Before", 0, {}},
        {"Fill", kCmdFill, stone},
        {"Speckle", kCmdSpeckle, stone},
        {"Fade, Normal", kCmdFadeNormal, stone, {.blend = "Diagonal down", .random = 2}},
        {"Fade, Distance", kCmdFadeDistance, stone, {.px = 60, .py = 90}},
        {"Fade, Slime", kCmdFadeSlime, stone, {.random = 6}},
        {"Flood", kCmdFloodFadeDistance, {0, 55, 43, 3}, {.set = "Waves", .px = 80, .py = 120}},
        {"SameAs", kCmdSameAsFill, {3, 60, 75, 0}},
        {"Replace, Fg alone", kCmdReplaceFill, {0, 71, 0, 0}},
        {"Replace, Speckle", kCmdReplaceSpeckle, {0, 71, 0, 0}, {}, 40},
        {"Copy", kCmdCopyFill, {}},
        {"Paste, Fill", kCmdPasteFill, {}},
    };
    Sheet sheet(painter, static_cast<int>(std::size(tools)), kColumns, kWide, kTall);
    for (const Tool& tool : tools) {
        const Box box = sheet.Next(tool.label);
        PaintGround(painter, box);
        // A box inside the piece; the pond for a flood, a flower for its like.
        Box area{box.left + 3, box.top + 2, box.right - 3, box.bottom - 2};
        if (tool.command == kCmdFloodFadeDistance) area = {box.left + 9, box.top + 4, 0, 0};
        if (tool.command == kCmdSameAsFill) area = {box.left + 2, box.top + 1, 0, 0};
        if (tool.command == kCmdCopyFill)
            area = {box.left + 1, box.top + 1, box.left + 4, box.top + 4};
        const bool replaces = tool.command == kCmdReplaceFill || tool.command == kCmdReplaceSpeckle;
        const Filter filter = replaces ? Filter{false, true, false, false} : Filter{};
        if (tool.command)
            painter.Run(tool.command, area, tool.brush, tool.shading, tool.percent, filter);
        if (tool.command == kCmdCopyFill) painter.Frame(area, {0, 255, 15, 0});
    }
    return WriteTools(path);
}

bool DrawShapes(Painter& painter, const std::string& path) {
    const Brush gold{219, 252, 248, 1};
    const Tool tools[] = {
        {"Line, Fill", kCmdLineFill, gold},
        {"Rect, Fill", kCmdRectFill, gold},
        {"Circle, Fill", kCmdCircleFill, gold},
        {"Circle, Speckle", kCmdCircleSpeckle, gold},
        {"Line, Fade", kCmdLineFadeNormal, {0, 254, 57, 1}},
        {"Rect, Fade", kCmdRectFadeNormal, {0, 254, 57, 1}, {.blend = "Diagonal up"}},
        {"Circle, Distance", kCmdCircleFadeDistance, {0, 254, 57, 1}, {.px = 90, .py = 90}},
        {"Blend Fade", kCmdBlendFadeFill, {0, 232, 247, 1}},
    };
    Sheet sheet(painter, static_cast<int>(std::size(tools)), kColumns, kWide, kTall);
    for (const Tool& tool : tools) {
        const Box box = sheet.Next(tool.label);
        painter.Fill(box, {250, 106, 105, 0});
        painter.Run(tool.command, {box.left + 1, box.top + 1, box.right - 1, box.bottom - 1},
                    tool.brush, tool.shading, tool.percent);
    }
    return WriteTools(path);
}
