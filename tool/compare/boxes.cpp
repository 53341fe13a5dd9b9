#include "tool/compare/boxes.h"

#include <algorithm>

std::size_t Boxes::Leader(std::size_t group) {
    while (leaders[group] != group) group = leaders[group] = leaders[leaders[group]];
    return group;
}

void Boxes::Join(std::size_t one, std::size_t other) {
    other = Leader(other);
    leaders[other] = one;
    Area& area = areas[one];
    const Area& more = areas[other];
    area = {std::min(area.x, more.x), std::min(area.y, more.y), std::max(area.right, more.right),
            std::max(area.bottom, more.bottom)};
}

void Boxes::Add(int x, int y) {
    ++count;
    if (y != rowY) {
        above.swap(row);
        if (y != rowY + 1) above.clear();
        row.clear();
        rowY = y;
        next = 0;
    }
    if (row.empty() || row.back().end != x) {
        leaders.push_back(areas.size());
        areas.push_back({x, y, x, y});
        row.push_back({x, x, areas.size() - 1});
    }
    Run& run = row.back();
    run.end = x + 1;
    Area& area = areas[run.group];  // it leads its group until the next run
    area = {std::min(area.x, x), area.y, std::max(area.right, x), std::max(area.bottom, y)};
    while (next < above.size() && above[next].end < x) ++next;
    for (std::size_t i = next; i < above.size() && above[i].x <= x + 1; ++i)
        Join(run.group, above[i].group);
}

std::vector<Box> Boxes::Take() {
    std::vector<Box> boxes;
    for (std::size_t i = 0; i < areas.size(); ++i)
        if (leaders[i] == i)
            boxes.push_back({areas[i].x, areas[i].y, areas[i].right - areas[i].x + 1,
                             areas[i].bottom - areas[i].y + 1});
    std::sort(boxes.begin(), boxes.end(),
              [](const Box& a, const Box& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; });
    return boxes;
}

std::string BoxText(std::int64_t tiles, const std::vector<Box>& boxes) {
    constexpr std::size_t kShown = 6;
    std::string text = std::to_string(tiles) + (tiles == 1 ? " tile in " : " tiles in ");
    for (std::size_t i = 0; i < std::min(boxes.size(), kShown); ++i)
        text += (i > 0 ? "; " : "") + std::to_string(boxes[i].x) + ", " +
                std::to_string(boxes[i].y) + ", " + std::to_string(boxes[i].w) + " by " +
                std::to_string(boxes[i].h);
    if (boxes.size() > kShown)
        text += " and " + std::to_string(boxes.size() - kShown) + " boxes more";
    return text;
}
