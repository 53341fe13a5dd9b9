// The fade library: sets of glyphs that shade from one look to another, and patterns of shading
// to draw with them.
//
// Both are read from text files in the Library folder each time a dialog opens; docs/fades.md
// describes the files.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

/// The five glyphs of a set; the fades walk up and down through them.
inline constexpr int kFadePositions = 5;
using FadeTiles = std::array<std::int32_t, kFadePositions>;

/// A picture of shading: ten rows of ten positions in a set, 0 to 4.
inline constexpr int kBlendSide = 10;
using FadeCells = std::array<std::int32_t, kBlendSide * kBlendSide>;

struct FadeSet {
    std::string name;
    FadeTiles tiles{};
};

struct FadeBlend {
    std::string name;
    FadeCells cells{};
};

/// The records of "Library/FadeSets.txt" and "Library/FadeBlends.txt" in their order. A file
/// that cannot be opened is reported by Fatal with the dialog's name, and the list is empty.
/// Where a file stops making sense the reading ends, with a report that names file and line, and
/// the records before are kept; so they are, without one, when the file ends inside a record.
/// Cells outside 0 to 4 count as the nearest of them.
std::vector<FadeSet> LoadFadeSets(const char* dialog);
std::vector<FadeBlend> LoadFadeBlends(const char* dialog);
