// The boxes that hold some cells of a grid: one for each group of cells that touch, also by a
// corner.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

struct Box {
    int x;
    int y;
    int w;
    int h;

    friend bool operator==(const Box&, const Box&) = default;
};

class Boxes {
public:
    /// A cell; row by row from the top, from left to right.
    void Add(int x, int y);
    std::int64_t Count() const { return count; }
    /// In the order of their corners, row by row.
    std::vector<Box> Take();

private:
    struct Run {
        int x;
        int end;
        std::size_t group;
    };
    struct Area {
        int x, y, right, bottom;
    };

    std::size_t Leader(std::size_t group);
    void Join(std::size_t one, std::size_t other);

    std::vector<Run> above;
    std::vector<Run> row;
    std::size_t next = 0;  ///< the first run above that can still touch
    int rowY = -2;
    std::vector<Area> areas;
    std::vector<std::size_t> leaders;
    std::int64_t count = 0;
};

/// "12 tiles in 3, 4, 5 by 2; 9, 1, 1 by 1", with no more boxes than can be read.
std::string BoxText(std::int64_t tiles, const std::vector<Box>& boxes);
