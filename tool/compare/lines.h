// Texts line by line: what two of them share, and what two authors made of one.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

using Lines = std::vector<std::string_view>;

/// The lines between the line feeds; none of an empty text.
Lines LinesOf(std::string_view text);

/// `count` lines that are the same from line `a` of one text and line `b` of the other on, from 0.
struct CommonRun {
    std::size_t a;
    std::size_t b;
    std::size_t count;
};
/// In ascending order, some of them empty; texts that differ in thousands of lines share
/// only what they begin and end with.
std::vector<CommonRun> CommonRuns(const Lines& a, const Lines& b);

struct LineDiff {
    std::string hunks;  ///< of a unified diff with three lines around, each line with its feed
    int added = 0;
    int removed = 0;
};
LineDiff DiffLines(std::string_view before, std::string_view after);

/// What stands where two sides changed the same thing unlike; marks are for lines alone.
enum class Favor { kOurs, kTheirs, kMarks };

struct LineMerge {
    std::string text;
    std::vector<int> conflicts;  ///< the line of each in `text`, from 1
};
LineMerge MergeLines(std::string_view base, std::string_view ours, std::string_view theirs,
                     Favor favor);
