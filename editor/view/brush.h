// The brush: what painting writes into a tile, and how the keys paint with it.
#pragma once

#include <array>
#include <cstdint>

struct Brush {
    std::int32_t chr = 0;     ///< glyph number
    std::int32_t fg = 0;      ///< palette index; -2 marks a sprite brush
    std::int32_t bg = 0;      ///< palette index
    std::int32_t attrib = 0;  ///< tile attribute

    // A field of kKeepField does not paint.

    friend bool operator==(const Brush&, const Brush&) = default;
};

extern Brush vBrush;
extern Brush vSavedBrush;

/// Saving and restoring go in pairs and do not nest.
inline void SaveBrush() { vSavedBrush = vBrush; }
inline void RestoreBrush() { vBrush = vSavedBrush; }

enum BrushMode : int {
    kBrushNormal = 0,
    kBrushTab = 1,
    kBrushText = 2,
    kBrushBlender = 3,
    kBrushBlenderTab = 4,
};
inline constexpr int kBrushModes = 5;

extern BrushMode vBrushMode;

/// The mode's name as the paint panel shows it; empty for a number that is no mode.
const char* BrushModeName(int mode);

/// Nine stored brushes; the slider of the paint panel changes between them.
inline constexpr int kBrushSlots = 9;
struct BrushSlot {
    std::int16_t chr, fg, bg, attrib;
};
extern std::array<BrushSlot, kBrushSlots> vBrushSlots;
extern std::int32_t vBrushSlot;

/// Stores the brush into the slot in use, then loads that slot and makes it the one in use.
/// Nothing for a number that is no slot.
void ChooseBrushSlot(int slot);

/// Columns and rows by which the scroll keys move an object's viewport, 0 to 100.
extern std::int32_t vStepX;
extern std::int32_t vStepY;

/// Everything above as at the start of the program, of which this is a part.
void ResetBrushes();

/// One step along the shade sequence: blank, the three shades, the full block, which stays.
/// Any other glyph becomes blank.
int NextBlendChar(int chr);

/// The `bg` of a sprite tile of that glyph: 1 when none of its pixels is 0, or 0 for one with
/// holes or that does not exist.
int HoleHint(int chr);

/// Moves the current object's viewport on its own grid by the steps, not past the grid.
void ScrollBack();
void ScrollForward();
