// What differs between two games.
#pragma once

#include "engine/game_archive.h"
#include "tool/compare/boxes.h"
#include "tool/compare/lines.h"
#include "tool/compare/match.h"

#include <array>

/// The numbers of a node that a file holds, in the order of telling.
struct NodeNumber {
    const char* name;
    std::int32_t Dobject::*field;
};
inline constexpr std::array<NodeNumber, 9> kNodeNumbers{{{"x", &Dobject::posx},
                                                         {"y", &Dobject::posy},
                                                         {"z", &Dobject::posz},
                                                         {"width", &Dobject::width},
                                                         {"height", &Dobject::height},
                                                         {"view x", &Dobject::viewx},
                                                         {"view y", &Dobject::viewy},
                                                         {"view width", &Dobject::vieww},
                                                         {"view height", &Dobject::viewh}}};

struct NumberChange {
    const char* name;
    std::int32_t before;
    std::int32_t after;
};

struct NodeChange {
    const Dobject* before = nullptr;  ///< null: the node was added
    const Dobject* after = nullptr;   ///< null: it was removed
    std::string path;                 ///< in the later world, of a removed one in the earlier
    std::string from;                 ///< its earlier path, when it was renamed or moved
    bool renamed = false;
    bool moved = false;      ///< to another parent
    int objects = 0;         ///< below an added or removed one, themselves added or removed
    bool reordered = false;  ///< children of equal z
    std::vector<NumberChange> numbers;
    std::int64_t tiles = 0;  ///< cells that differ; beyond the earlier grid those not blank
    std::vector<Box> boxes;  ///< that hold them
    LineDiff script;

    /// Whether anything is to be told of it.
    bool Changed() const;
};

struct GameDiff {
    std::vector<NumberChange> settings;
    std::vector<NumberChange> sheet;  ///< its sides in pixels
    std::vector<int> glyphs;          ///< numbers of those that differ
    bool edge = false;                ///< sheet pixels that belong to no glyph
    std::vector<NodeChange> nodes;    ///< as the later tree lists them, removed ones first
    Pairing pairs;

    bool Alike() const {
        return settings.empty() && sheet.empty() && glyphs.empty() && !edge && nodes.empty();
    }
};
/// A game without a sheet, as an object file makes one, has any.
GameDiff DiffGames(const Game& before, const Game& after);

inline constexpr std::int32_t kUsualSetting = 1;  ///< of a game that does not say

/// The pixels of block (x, y) of a sheet, 8 by 8 but at the right and bottom edge; none outside.
std::string SheetBlock(BITMAP* sheet, int x, int y);
