// One cell of a grid, and what its colours mean.
#pragma once

#include <cstdint>

/// One cell. The fields are unsigned but read as signed when drawn: `fg` 65534 is -2.
struct Dtile {
    std::uint16_t chr = 0;     ///< glyph number in the tile font
    std::uint16_t fg = 0;      ///< palette index of the glyph's set pixels, or kSpriteColor
    std::uint16_t bg = 0;      ///< palette index of the clear pixels; of a sprite tile a hint
    std::uint16_t attrib = 0;  ///< game attribute; drawing ignores it

    friend bool operator==(const Dtile&, const Dtile&) = default;
};

inline constexpr int kTileSize = 8;  ///< pixels a side of a tile, a cell and a glyph

/// As `fg`: the glyph is copied from the sheet with its own pixel values. -2 as 16 bits.
inline constexpr int kSpriteMark = -2;
inline constexpr std::uint16_t kSpriteColor = 65534;
/// As a field that is written to a cell, and as `fg` or `bg` of a drawing call: what is there
/// stays.
inline constexpr int kKeepField = -1;

enum Attrib : int { kAttribNone = 0, kAttribSolid = 1, kAttribBreakable = 2, kAttribWater = 3 };

/// A stored field as drawing and the accessors see it.
inline int Signed(std::uint16_t field) { return static_cast<std::int16_t>(field); }

/// An empty cell draws nothing at all.
inline bool IsEmpty(const Dtile& tile) { return tile.fg == 0 && tile.bg == 0; }

/// A solid cell hides all behind it with its 64 pixels, whatever their values; a cell that is
/// neither empty nor solid has holes, and shows only its pixels other than 0. A sprite tile is
/// solid only when its `bg` of 1 promises a glyph without holes.
inline bool IsSolid(const Dtile& tile) {
    return tile.fg != 0 && tile.bg != 0 && !(tile.fg == kSpriteColor && tile.bg == 2);
}

/// What new cells of a resized grid and the inside of a new board hold.
inline constexpr Dtile kBlankTile{0, 255, 255, 0};
